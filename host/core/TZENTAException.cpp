#include "TZENTAException.h"

#include <sstream>

namespace NVURZENTA20 {

namespace {

struct TStatusText {
    int code;
    const char* name;
    const char* text;
};

const TStatusText kStatusTexts[] = {
    {TZENTAStatusCode::kSuccess, "kSuccess", "the operation succeeded"},
    {TZENTAStatusCode::kUnsupportedOperation, "kUnsupportedOperation", "the operation is not supported"},
    {TZENTAStatusCode::kInvalidArgument, "kInvalidArgument", "an argument is not valid"},
    {TZENTAStatusCode::kOutOfMemory, "kOutOfMemory", "out of memory"},
    {TZENTAStatusCode::kAccessDenied, "kAccessDenied", "access denied"},
    {TZENTAStatusCode::kAlreadyExists, "kAlreadyExists", "the element already exists"},
    {TZENTAStatusCode::kInvalidClass, "kInvalidClass", "the class is not valid"},
    {TZENTAStatusCode::kInvalidNamespace, "kInvalidNamespace", "the namespace is not valid"},
    {TZENTAStatusCode::kInvalidProperty, "kInvalidProperty", "no such property"},
    {TZENTAStatusCode::kInvalidQualifier, "kInvalidQualifier", "the qualifier is not valid"},
    {TZENTAStatusCode::kInvalidMethod, "kInvalidMethod", "the method is not valid"},
    {TZENTAStatusCode::kInvalidParameter, "kInvalidParameter", "the parameter is not valid"},
    {TZENTAStatusCode::kTypeMismatch, "kTypeMismatch", "the value does not have the required type"},
    {TZENTAStatusCode::kInvalidValue, "kInvalidValue", "the value is not valid"},
    {TZENTAStatusCode::kInvalidContext, "kInvalidContext", "a context entry is not valid"},
    {TZENTAStatusCode::kNotFound, "kNotFound", "not found"},
    {TZENTAStatusCode::kInvalidPath, "kInvalidPath", "the object path is not valid"},
    {TZENTAStatusCode::kParseError, "kParseError", "the text could not be parsed"},
    {TZENTAStatusCode::kIOError, "kIOError", "input or output failed"},
    {TZENTAStatusCode::kProviderFailure, "kProviderFailure", "the provider failed"},
    {TZENTAStatusCode::kInvalidDateTime, "kInvalidDateTime", "the date-time is not valid"},
    {TZENTAStatusCode::kInvalidReference, "kInvalidReference", "the reference is not valid"},
    {TZENTAStatusCode::kNotAnArray, "kNotAnArray", "the value is not an array"},
    {TZENTAStatusCode::kNullValue, "kNullValue", "the value is null"},
    {TZENTAStatusCode::kDuplicateClass, "kDuplicateClass", "the class is defined twice"},
    {TZENTAStatusCode::kMissingSuperclass, "kMissingSuperclass", "the superclass is not defined"},
    {TZENTAStatusCode::kInstanceNotFound, "kInstanceNotFound", "no such instance"},
    {TZENTAStatusCode::kMethodNotFound, "kMethodNotFound", "no such method"},
    {TZENTAStatusCode::kQueryNotSupported, "kQueryNotSupported", "the query language is not supported"},
    {TZENTAStatusCode::kPluginLoadFailure, "kPluginLoadFailure", "the plug-in could not be loaded"},
    {TZENTAStatusCode::kInternalError, "kInternalError", "internal error"},
    {TZENTAStatusCode::kUnsupportedNamespace, "kUnsupportedNamespace", "the namespace kind is not supported"},
    {TZENTAStatusCode::kInvalidDocument, "kInvalidDocument", "the document is not valid"},
    {TZENTAStatusCode::kNotInitialized, "kNotInitialized", "not initialized"},
    {TZENTAStatusCode::kLimitExceeded, "kLimitExceeded", "a limit was exceeded"},
    {TZENTAStatusCode::kTimeout, "kTimeout", "the operation timed out"},
    {TZENTAStatusCode::kCancelled, "kCancelled", "the operation was cancelled"},
    {TZENTAStatusCode::kMissingUpcall, "kMissingUpcall", "no upcall namespace"},
    {TZENTAStatusCode::kMissingRepository, "kMissingRepository", "no repository namespace"},
};

const TStatusText* FindStatusText(int code) {
    for (const TStatusText& entry : kStatusTexts) {
        if (entry.code == code) return &entry;
    }
    return nullptr;
}

}  // namespace

std::string TZENTAStatusCode::GetName() const {
    const TStatusText* entry = FindStatusText(fCode);
    return entry ? entry->name : "kUnknownStatus";
}

std::string TZENTAStatusCode::TranslateStatusCode() const {
    std::ostringstream out;
    const TStatusText* entry = FindStatusText(fCode);
    if (entry) {
        out << entry->name << " (" << fCode << "): " << entry->text;
    } else {
        out << "kUnknownStatus (" << fCode << "): unknown status";
    }
    return out.str();
}

TZENTAException::TZENTAException(TZENTAStatusCode code, const std::string& message)
    : fCode(code), fMessage(message) {}

TZENTAException::TZENTAException(const TZENTAException& other)
    : std::exception(other), fCode(other.fCode), fMessage(other.fMessage) {}

TZENTAException& TZENTAException::operator=(const TZENTAException& other) {
    fCode = other.fCode;
    fMessage = other.fMessage;
    return *this;
}

TZENTAException::~TZENTAException() throw() {}

const char* TZENTAException::what() const throw() { return fMessage.c_str(); }

}  // namespace NVURZENTA20
