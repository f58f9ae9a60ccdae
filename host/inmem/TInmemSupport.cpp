#include "TInmemSupport.h"

#include <algorithm>
#include <utility>

#include "ICIMNamespace.h"
#include "TCIMReference.h"

namespace NVURZENTA20 {

namespace {

bool HoldsReferences(const TCIMValue& value) {
    return value.GetType() == TCIMValue::TCIMType::kReference && !value.IsNull();
}

// Applies `change` to every reference of a (scalar or array) reference value.
template <class Change>
TCIMValue MapReferences(const TCIMValue& value, Change change) {
    if (!value.IsArray()) {
        TCIMReference reference = value;
        change(reference, 0);
        return TCIMValue(reference);
    }
    std::vector<TCIMValue> elements = value;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (elements[i].IsNull()) continue;
        TCIMReference reference = elements[i];
        change(reference, i);
        elements[i] = TCIMValue(reference);
    }
    TCIMValue result;
    result.Set(TCIMValue::TCIMType::kReference, static_cast<unsigned int>(elements.size()), elements);
    return result;
}

// ASCII only, without the C library's locale look-up: names are compared
// on every property access.
char LowerAscii(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

bool SameName(const std::string& a, const std::string& b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

std::string NameKey(const std::string& name) {
    std::string key(name);
    std::transform(key.begin(), key.end(), key.begin(), LowerAscii);
    return key;
}

void ThrowStatus(TZENTAStatusCode::EStatusCode code, const std::string& message) {
    throw TZENTAException(code, message);
}

std::string DescribeType(TCIMValue::TCIMType type, bool isArray) {
    std::string name = type.GetName();
    if (name.empty()) name = "untyped";
    return isArray ? name + "[]" : name;
}

TCIMValue CheckDeclaredValue(TCIMValue::TCIMType type, bool isArray, const TCIMValue& value,
                             const std::string& what) {
    if (value.IsNull()) {
        TCIMValue null;
        null.SetNullValue(type, isArray ? 1 : 0);
        return null;
    }
    if (value.GetType() != type || value.IsArray() != isArray) {
        ThrowStatus(TZENTAStatusCode::kTypeMismatch, what + " is declared " + DescribeType(type, isArray) +
                                                         ", not " + DescribeType(value.GetType(), value.IsArray()));
    }
    return value;
}

bool IsTrue(const TCIMValue& value) {
    return !value.IsNull() && !value.IsArray() && value.GetType() == TCIMValue::TCIMType::kBoolean &&
           static_cast<bool>(value);
}

void TStoredValue::Set(const TCIMValue& value) {
    fNamespaces.clear();
    if (!HoldsReferences(value)) {
        fValue = value;
        return;
    }
    std::vector<boost::weak_ptr<ICIMNamespace> > namespaces;
    fValue = MapReferences(value, [&](TCIMReference& reference, std::size_t index) {
        namespaces.resize(index + 1);
        namespaces[index] = reference.GetNamespace();
        reference.SetNamespace(boost::shared_ptr<ICIMNamespace>());
    });
    fNamespaces.swap(namespaces);
}

void TStoredValue::Set(TCIMValue&& value) {
    if (HoldsReferences(value)) {
        Set(static_cast<const TCIMValue&>(value));
        return;
    }
    fNamespaces.clear();
    fValue = std::move(value);
}

TCIMValue TStoredValue::Get() const {
    if (fNamespaces.empty()) return fValue;
    return MapReferences(fValue, [&](TCIMReference& reference, std::size_t index) {
        if (index < fNamespaces.size()) reference.SetNamespace(fNamespaces[index].lock());
    });
}

}  // namespace NVURZENTA20
