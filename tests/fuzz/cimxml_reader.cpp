// Fuzz target: CIM-XML documents, read and defined.
#include "FuzzDocuments.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzDocument("/fuzz/input.xml", data, size);
    return 0;
}
