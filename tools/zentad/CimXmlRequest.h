// Reads the body of a CIM-XML request (an intrinsic IMETHODCALL or an
// extrinsic METHODCALL inside a SIMPLEREQ) into the host request it asks
// for. A pure function of the bytes: whatever they hold, it returns a
// request, a CIM error to answer inside a well-formed response, or the
// HTTP-level error a WBEM client expects for a document it cannot use.
#ifndef ZENTA_ZENTAD_CIMXMLREQUEST_H
#define ZENTA_ZENTAD_CIMXMLREQUEST_H

#include <cstddef>
#include <string>

#include "CimStatus.h"
#include "Request.h"

struct TCallLimits {
    std::size_t maxDepth = 32;           // element nesting
    std::size_t maxElements = 100000;    // elements in the document
};

struct TCimCall {
    enum EOutcome {
        kCall,       // `request` is ready
        kCimError,   // answer `status` and `description` in an ERROR element
        kHttpError   // answer `httpStatus` with the CIMError header `cimError`
    };

    EOutcome outcome = kHttpError;
    std::string messageId = "0";
    std::string methodName;  // as the client named it
    bool intrinsic = true;
    TRequest request;

    ECimStatus status = ECimStatus::kFailed;
    std::string description;

    int httpStatus = 400;
    std::string cimError = "request-not-well-formed";
};

TCimCall ParseCimCall(const char* data, std::size_t size, const TCallLimits& limits);

#endif
