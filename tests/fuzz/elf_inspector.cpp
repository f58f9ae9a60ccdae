// Fuzz target: the ELF headers of a module file, read before anything is
// loaded. Whatever the bytes, the inspection reads only inside them and
// says loadable or why not.
#include <cstdint>
#include <cstdlib>

#include "ElfInspector.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const TElfFacts facts = InspectElfImage(data, size);
    if (facts.loadable == !facts.problem.empty()) std::abort();
    return 0;
}
