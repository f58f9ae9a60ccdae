// Host failures: a status number with a readable name, and the exception
// that carries it.
#ifndef ZENTA_HOST_TZENTAEXCEPTION_H
#define ZENTA_HOST_TZENTAEXCEPTION_H

#include <exception>
#include <string>

namespace NVURZENTA20 {

class TZENTAStatusCode {
public:
    enum EStatusCode {
        kSuccess = 0,
        kUnsupportedOperation = 1,
        kInvalidArgument = 2,
        kOutOfMemory = 3,
        kAccessDenied = 4,
        kAlreadyExists = 5,
        kInvalidClass = 6,
        kInvalidNamespace = 7,
        kInvalidProperty = 8,
        kInvalidQualifier = 9,
        kInvalidMethod = 10,
        kInvalidParameter = 11,
        kTypeMismatch = 12,
        kInvalidValue = 13,
        kInvalidContext = 14,
        kNotFound = 15,
        kInvalidPath = 16,
        kParseError = 17,
        kIOError = 18,
        kProviderFailure = 19,
        kInvalidDateTime = 20,
        kInvalidReference = 21,
        kNotAnArray = 22,
        kNullValue = 23,
        kDuplicateClass = 24,
        kMissingSuperclass = 25,
        kInstanceNotFound = 26,
        kMethodNotFound = 27,
        kQueryNotSupported = 28,
        kPluginLoadFailure = 29,
        kInternalError = 30,
        kUnsupportedNamespace = 31,
        kInvalidDocument = 32,
        kNotInitialized = 33,
        kLimitExceeded = 34,
        kTimeout = 35,
        kCancelled = 36,
        kMissingUpcall = 37,
        kMissingRepository = 38
    };

    TZENTAStatusCode(int code = kSuccess) : fCode(code) {}

    int GetCode() const { return fCode; }
    operator int() const { return fCode; }

    // The symbolic name of the status, e.g. "kNotFound".
    std::string GetName() const;
    // "<name> (<number>): <description>" for log lines and messages.
    std::string TranslateStatusCode() const;

private:
    int fCode;
};

class TZENTAException : public std::exception {
public:
    TZENTAException(TZENTAStatusCode code, const std::string& message);
    TZENTAException(const TZENTAException& other);
    TZENTAException& operator=(const TZENTAException& other);
    ~TZENTAException() throw() override;

    const char* what() const throw() override;
    TZENTAStatusCode GetStatusCode() const { return fCode; }
    const std::string& GetMessage() const { return fMessage; }

private:
    TZENTAStatusCode fCode;
    std::string fMessage;
};

}  // namespace NVURZENTA20

#endif
