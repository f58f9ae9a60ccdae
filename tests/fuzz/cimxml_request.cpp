// libFuzzer target of the CIM-XML request reader: any bytes must give a
// request, a CIM error or an HTTP error, never a crash, a hang or a leak;
// a request read must travel to a worker (serialise) and back unchanged.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "CimXmlRequest.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const TCimCall call = ParseCimCall(reinterpret_cast<const char*>(data), size, TCallLimits());
    if (call.outcome == TCimCall::kCall) {
        const std::string text = call.request.Serialize();
        if (TRequest::Deserialize(text).Serialize() != text) std::abort();
    } else if (call.description.empty()) {
        std::abort();  // every refusal says why
    }
    return 0;
}
