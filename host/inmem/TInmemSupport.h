// Helpers shared by the in-memory repository: CIM name comparison (names
// are case-insensitive but keep their spelling), value checks against a
// declaration, and the exception shorthand.
#ifndef ZENTA_HOST_INMEM_TINMEMSUPPORT_H
#define ZENTA_HOST_INMEM_TINMEMSUPPORT_H

#include <string>
#include <vector>

#include <boost/weak_ptr.hpp>

#include "TCIMValue.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

// CIM names compare without regard to ASCII case.
bool SameName(const std::string& a, const std::string& b);
std::string NameKey(const std::string& name);

[[noreturn]] void ThrowStatus(TZENTAStatusCode::EStatusCode code, const std::string& message);

// "uint16", "string[]", "reference" ...
std::string DescribeType(TCIMValue::TCIMType type, bool isArray);

// Checks `value` against a declared type: a null of any type is accepted
// (and comes back as a null of the declared type), anything else must have
// exactly the declared type and array-ness (kTypeMismatch otherwise).
// `what` names the element for the message.
TCIMValue CheckDeclaredValue(TCIMValue::TCIMType type, bool isArray, const TCIMValue& value,
                             const std::string& what);

// True when `value` is not null and has exactly the declared type and
// array-ness: CheckDeclaredValue would return it unchanged.
inline bool HasDeclaredType(TCIMValue::TCIMType type, bool isArray, const TCIMValue& value) {
    return !value.IsNull() && value.GetType() == type && value.IsArray() == isArray;
}

// A boolean value that is set and true (qualifiers such as Key, Abstract).
bool IsTrue(const TCIMValue& value);

// A value kept by the repository. References are kept without their
// namespace object, which may be the repository itself (an instance
// holding it would keep it alive for ever), and get it back, while it
// lives, when the value is read.
class TStoredValue {
public:
    TStoredValue() {}
    explicit TStoredValue(const TCIMValue& value) { Set(value); }

    void Set(const TCIMValue& value);
    void Set(TCIMValue&& value);
    TCIMValue Get() const;
    // The declared type and array-ness, which do not depend on the
    // namespaces of references.
    TCIMValue::TCIMType GetType() const { return fValue.GetType(); }
    bool IsArray() const { return fValue.IsArray(); }

private:
    TCIMValue fValue;
    std::vector<boost::weak_ptr<ICIMNamespace> > fNamespaces;  // one per reference, in order
};

}  // namespace NVURZENTA20

#endif
