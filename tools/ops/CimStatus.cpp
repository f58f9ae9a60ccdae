#include "CimStatus.h"

namespace {

const char* const kNames[] = {"CIM_ERR_OK",
                              "CIM_ERR_FAILED",
                              "CIM_ERR_ACCESS_DENIED",
                              "CIM_ERR_INVALID_NAMESPACE",
                              "CIM_ERR_INVALID_PARAMETER",
                              "CIM_ERR_INVALID_CLASS",
                              "CIM_ERR_NOT_FOUND",
                              "CIM_ERR_NOT_SUPPORTED",
                              "CIM_ERR_CLASS_HAS_CHILDREN",
                              "CIM_ERR_CLASS_HAS_INSTANCES",
                              "CIM_ERR_INVALID_SUPERCLASS",
                              "CIM_ERR_ALREADY_EXISTS",
                              "CIM_ERR_NO_SUCH_PROPERTY",
                              "CIM_ERR_TYPE_MISMATCH",
                              "CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED",
                              "CIM_ERR_INVALID_QUERY",
                              "CIM_ERR_METHOD_NOT_AVAILABLE",
                              "CIM_ERR_METHOD_NOT_FOUND"};
const int kNameCount = sizeof(kNames) / sizeof(kNames[0]);

}  // namespace

std::string CimStatusName(int code) {
    if (code >= 0 && code < kNameCount) return kNames[code];
    return "CIM_ERR_" + std::to_string(code);
}
