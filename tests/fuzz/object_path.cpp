// Fuzz target: object path text. What Parse accepts must write back as
// text that parses to the same path.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "TCIMReference.h"
#include "TZENTAException.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace NVURZENTA20;
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::string written;
    try {
        written = TCIMReference::Parse(text).GetPath();
    } catch (const TZENTAException&) {
        return 0;
    }
    if (TCIMReference::Parse(written).GetPath() != written) std::abort();
    return 0;
}
