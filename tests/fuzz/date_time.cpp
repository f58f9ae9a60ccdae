// Fuzz target: CIM date-time text. What the constructor accepts is valid
// text and keeps it as given; what it refuses, IsValid refuses too.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "TCIMDateTime.h"
#include "TZENTAException.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace NVURZENTA20;
    const std::string text(reinterpret_cast<const char*>(data), size);
    bool accepted = true;
    try {
        const TCIMDateTime value(text);
        if (value.ToString() != text || value.ToString().size() != TCIMDateTime::kTextLength) std::abort();
    } catch (const TZENTAException&) {
        accepted = false;
    }
    if (accepted != TCIMDateTime::IsValid(text)) std::abort();
    return 0;
}
