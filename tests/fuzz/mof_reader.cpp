// Fuzz target: MOF documents, read and defined.
#include "FuzzDocuments.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzDocument("/fuzz/input.mof", data, size);
    return 0;
}
