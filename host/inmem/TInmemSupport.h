// Helpers shared by the in-memory repository: CIM name comparison (names
// are case-insensitive but keep their spelling), value checks against a
// declaration, and the exception shorthand.
#ifndef ZENTA_HOST_INMEM_TINMEMSUPPORT_H
#define ZENTA_HOST_INMEM_TINMEMSUPPORT_H

#include <string>
#include <vector>

#include "TCIMValue.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

// CIM names compare without regard to ASCII case.
bool SameName(const std::string& a, const std::string& b);
std::string NameKey(const std::string& name);

// Hash and equality of names for unordered containers: names that differ
// only in ASCII case are one key, and looking one up copies nothing.
struct TNameHash {
    std::size_t operator()(const std::string& name) const;
};
struct TNameEqual {
    bool operator()(const std::string& a, const std::string& b) const { return SameName(a, b); }
};

// Counts the changes made to the classes, declarations and qualifiers of
// every in-memory repository. What is built from them (the layouts of
// instances, the manager's routes) remembers the count it was built at and
// is built again once the count has moved on.
unsigned long SchemaGeneration();
void NoteSchemaChange();

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

}  // namespace NVURZENTA20

#endif
