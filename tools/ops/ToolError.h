// A request that cannot be answered: the message says what and why, on one
// line, and the status says it the way a WBEM client reads it (the tool
// exits with 1 whatever the status; the server answers it as a CIM error).
#ifndef ZENTA_OPS_TOOLERROR_H
#define ZENTA_OPS_TOOLERROR_H

#include <stdexcept>
#include <string>

#include "CimStatus.h"

class TToolError : public std::runtime_error {
public:
    explicit TToolError(const std::string& message, ECimStatus status = ECimStatus::kFailed)
        : std::runtime_error(message), fStatus(status) {}

    ECimStatus GetStatus() const { return fStatus; }

private:
    ECimStatus fStatus;
};

#endif
