#include "TInmemSupport.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace NVURZENTA20 {

namespace {

std::atomic<unsigned long>& Generation() {
    static std::atomic<unsigned long> generation(0);
    return generation;
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

std::size_t TNameHash::operator()(const std::string& name) const {
    std::size_t hash = 0;
    for (char c : name) hash = hash * 31 + static_cast<unsigned char>(LowerAscii(c));
    return hash;
}

std::string NameKey(const std::string& name) {
    std::string key(name);
    std::transform(key.begin(), key.end(), key.begin(), LowerAscii);
    return key;
}

unsigned long SchemaGeneration() { return Generation().load(std::memory_order_acquire); }

void NoteSchemaChange() { Generation().fetch_add(1, std::memory_order_acq_rel); }

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

}  // namespace NVURZENTA20
