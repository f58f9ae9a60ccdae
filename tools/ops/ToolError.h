// A request that cannot be answered: the message says what and why, on one
// line, and the tool exits with status 1.
#ifndef ZENTA_TOOL_TOOLERROR_H
#define ZENTA_TOOL_TOOLERROR_H

#include <stdexcept>
#include <string>

class TToolError : public std::runtime_error {
public:
    explicit TToolError(const std::string& message) : std::runtime_error(message) {}
};

#endif
