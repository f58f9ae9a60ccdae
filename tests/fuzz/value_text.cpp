// Fuzz target: values typed on the command line (and sent by WBEM clients
// as text), read by the type a declaration gives. The first byte picks the
// type and whether it is an array; the rest is the text. Text a type
// refuses must be refused with TToolError, and what is read must print.
#include <cstdint>
#include <string>

#include "MofText.h"
#include "TCIMReference.h"
#include "TZENTAException.h"
#include "ToolError.h"
#include "ValueText.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace NVURZENTA20;
    if (size == 0) return 0;
    const int type = 1 + data[0] % 15;  // boolean .. reference
    const bool isArray = (data[0] & 0x80) != 0;
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    const TReferenceReader readReference = [](const std::string& path) { return TCIMReference::Parse(path); };
    try {
        const TCIMValue value = ValueFromText(text, TCIMValue::TCIMType(static_cast<TCIMValue::TCIMType::ECIMType>(type)),
                                              isArray, readReference, "parameter P");
        MofValue(value);
    } catch (const TToolError&) {
    } catch (const TZENTAException&) {
        // A reference that does not parse.
    }
    return 0;
}
