// The status codes of WBEM operations. CMPI providers report their status
// with the same numbers (CMPI_RC_ERR_ACCESS_DENIED is CIM_ERR_ACCESS_DENIED),
// so one table names both.
#ifndef ZENTA_OPS_CIMSTATUS_H
#define ZENTA_OPS_CIMSTATUS_H

#include <string>

enum class ECimStatus : int {
    kOk = 0,
    kFailed = 1,
    kAccessDenied = 2,
    kInvalidNamespace = 3,
    kInvalidParameter = 4,
    kInvalidClass = 5,
    kNotFound = 6,
    kNotSupported = 7,
    kClassHasChildren = 8,
    kClassHasInstances = 9,
    kInvalidSuperclass = 10,
    kAlreadyExists = 11,
    kNoSuchProperty = 12,
    kTypeMismatch = 13,
    kQueryLanguageNotSupported = 14,
    kInvalidQuery = 15,
    kMethodNotAvailable = 16,
    kMethodNotFound = 17
};

// "CIM_ERR_NOT_FOUND", ...; codes outside the table read as their number
// ("CIM_ERR_100" for CMPI_RC_ERROR_SYSTEM, which has no CIM name).
std::string CimStatusName(int code);

#endif
