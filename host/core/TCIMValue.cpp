#include "TCIMValue.h"

#include <charconv>
#include <cmath>
#include <utility>

#include <boost/make_shared.hpp>

#include "CIMNames.h"
#include "TCIMReference.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

typedef TCIMValue::TCIMType TType;

const char* const kTypeNames[] = {"",       "boolean", "uint8",  "sint8",  "uint16", "sint16",
                                  "uint32", "sint32",  "uint64", "sint64", "real32", "real64",
                                  "char16", "string",  "datetime", "reference"};
const unsigned kTypeCount = sizeof(kTypeNames) / sizeof(kTypeNames[0]);

TType::ECIMType WithoutArrayFlag(TType::ECIMType type) {
    return static_cast<TType::ECIMType>(type & ~TType::kArrayFlag);
}

bool IsKnownType(TType::ECIMType type) { return static_cast<unsigned>(type) < kTypeCount; }

// Code units that are halves of a surrogate pair are no character on their
// own; they show as the replacement character.
void AppendUtf8(std::string& out, unsigned codeUnit) {
    if (codeUnit >= 0xD800 && codeUnit <= 0xDFFF) codeUnit = 0xFFFD;
    if (codeUnit < 0x80) {
        out += static_cast<char>(codeUnit);
    } else if (codeUnit < 0x800) {
        out += static_cast<char>(0xC0 | (codeUnit >> 6));
        out += static_cast<char>(0x80 | (codeUnit & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (codeUnit >> 12));
        out += static_cast<char>(0x80 | ((codeUnit >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codeUnit & 0x3F));
    }
}

// Integers in decimal and reals in the shortest text that reads back equal.
template <class TNumber>
void AppendNumber(std::string& out, TNumber number) {
    char text[64];
    const std::to_chars_result written = std::to_chars(text, text + sizeof(text), number);
    out.append(text, written.ptr);
}

template <class TReal>
void AppendReal(std::string& out, TReal real) {
    if (std::isnan(real)) {
        out += "NaN";
    } else if (std::isinf(real)) {
        out += real < 0 ? "-INF" : "INF";
    } else {
        AppendNumber(out, real);
    }
}

bool SameReal(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

std::string TypeNameOrUntyped(TType::ECIMType type) {
    const std::string name = TType(type).GetName();
    return name.empty() ? "untyped" : name;
}

[[noreturn]] void ThrowStatus(TZENTAStatusCode::EStatusCode code, const std::string& message) {
    throw TZENTAException(code, message);
}

}  // namespace

// --- TCIMType --------------------------------------------------------------

std::string TType::GetName() const {
    const ECIMType base = WithoutArrayFlag(fType);
    return IsKnownType(base) ? kTypeNames[base] : "";
}

bool TType::FromName(const std::string& name, ECIMType& type) {
    for (unsigned code = kBoolean; code < kTypeCount; ++code) {
        if (SameCIMName(name, kTypeNames[code])) {
            type = static_cast<ECIMType>(code);
            return true;
        }
    }
    return false;
}

bool TType::IsInteger() const { return fType >= kUint8 && fType <= kSint64; }

bool TType::IsSigned() const { return fType == kSint8 || fType == kSint16 || fType == kSint32 || fType == kSint64; }

bool TType::IsReal() const { return fType == kReal32 || fType == kReal64; }

// --- construction ----------------------------------------------------------

TCIMValue::TCIMValue() : fType(TType::kNone), fIsNull(true), fIsArray(false) { fScalar.integer = 0; }

TCIMValue::TCIMValue(bool value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(signed char value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(unsigned char value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(short value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(unsigned short value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(int value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(unsigned int value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(long long value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(unsigned long long value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(float value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(double value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(const char* value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(const std::string& value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(std::string&& value) : TCIMValue() { Set(std::move(value)); }
TCIMValue::TCIMValue(const TCIMChar16& value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(const TCIMDateTime& value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(const TCIMReference& value) : TCIMValue() { Set(value); }

TCIMValue::TCIMValue(const TCIMValue& other) = default;

TCIMValue::TCIMValue(TCIMValue&& other) noexcept
    : fType(other.fType),
      fIsNull(other.fIsNull),
      fIsArray(other.fIsArray),
      fScalar(other.fScalar),
      fText(std::move(other.fText)),
      fReference(std::move(other.fReference)),
      fArray(std::move(other.fArray)) {
    other.fType = TType::kNone;
    other.fIsNull = true;
    other.fIsArray = false;
}

// Both assignments go through a temporary: the source may be an element of
// this value's own array.
TCIMValue& TCIMValue::operator=(const TCIMValue& other) {
    TCIMValue copy(other);
    Swap(copy);
    return *this;
}

TCIMValue& TCIMValue::operator=(TCIMValue&& other) noexcept {
    TCIMValue taken(std::move(other));
    Swap(taken);
    return *this;
}

TCIMValue::~TCIMValue() {}

void TCIMValue::Swap(TCIMValue& other) noexcept {
    std::swap(fType, other.fType);
    std::swap(fIsNull, other.fIsNull);
    std::swap(fIsArray, other.fIsArray);
    std::swap(fScalar, other.fScalar);
    fText.swap(other.fText);
    fReference.swap(other.fReference);
    fArray.swap(other.fArray);
}

// --- setters ---------------------------------------------------------------

void TCIMValue::Reset(TType::ECIMType type) {
    fType = type;
    fIsNull = false;
    fIsArray = false;
    fScalar.integer = 0;
    fText.clear();
    fReference.reset();
    if (fArray.capacity() != 0) std::vector<TCIMValue>().swap(fArray);
}

void TCIMValue::SetInteger(TType::ECIMType type, std::uint64_t bits) {
    Reset(type);
    fScalar.integer = bits;
}

// Signed values are stored sign-extended, so that narrowing the stored bits
// to any width gives the C conversion of the original value.
void TCIMValue::Set(bool value) { SetInteger(TType::kBoolean, value ? 1 : 0); }
void TCIMValue::Set(signed char value) { SetInteger(TType::kSint8, static_cast<std::int64_t>(value)); }
void TCIMValue::Set(unsigned char value) { SetInteger(TType::kUint8, value); }
void TCIMValue::Set(short value) { SetInteger(TType::kSint16, static_cast<std::int64_t>(value)); }
void TCIMValue::Set(unsigned short value) { SetInteger(TType::kUint16, value); }
void TCIMValue::Set(int value) { SetInteger(TType::kSint32, static_cast<std::int64_t>(value)); }
void TCIMValue::Set(unsigned int value) { SetInteger(TType::kUint32, value); }
void TCIMValue::Set(long long value) { SetInteger(TType::kSint64, static_cast<std::uint64_t>(value)); }
void TCIMValue::Set(unsigned long long value) { SetInteger(TType::kUint64, value); }
void TCIMValue::Set(const TCIMChar16& value) { SetInteger(TType::kChar16, value.GetValue()); }

void TCIMValue::Set(float value) {
    Reset(TType::kReal32);
    fScalar.real = value;
}

void TCIMValue::Set(double value) {
    Reset(TType::kReal64);
    fScalar.real = value;
}

void TCIMValue::Set(const char* value) {
    if (value == nullptr) {
        SetNullValue(TType::kString, 0);
        return;
    }
    Reset(TType::kString);
    fText.assign(value);
}

void TCIMValue::Set(const std::string& value) {
    Reset(TType::kString);
    fText.assign(value);
}

void TCIMValue::Set(std::string&& value) {
    Reset(TType::kString);
    fText = std::move(value);
}

void TCIMValue::Set(const TCIMDateTime& value) {
    if (value.IsNull()) {
        SetNullValue(TType::kDateTime, 0);
        return;
    }
    Reset(TType::kDateTime);
    fText.assign(value.ToString());
}

void TCIMValue::Set(TCIMReference& value) { Set(static_cast<const TCIMReference&>(value)); }

void TCIMValue::Set(const TCIMReference& value) {
    boost::shared_ptr<const TCIMReference> stored = boost::make_shared<TCIMReference>(value);
    Reset(TType::kReference);
    fReference.swap(stored);
}

void TCIMValue::Set(TCIMType type, unsigned int count, const std::vector<TCIMValue>& elements) {
    const std::size_t taken = count < elements.size() ? count : elements.size();
    std::vector<TCIMValue> copy(elements.begin(), elements.begin() + taken);
    SetArray(type, count, copy);  // reports a count beyond the copy
}

void TCIMValue::Set(TCIMType type, unsigned int count, std::vector<TCIMValue>&& elements) {
    SetArray(type, count, elements);
}

void TCIMValue::SetArray(TCIMType type, unsigned int count, std::vector<TCIMValue>& source) {
    // Take the elements first: they may be this value's own array.
    std::vector<TCIMValue> elements(std::move(source));
    const TType::ECIMType base = WithoutArrayFlag(type);
    if (base == TType::kNone || !IsKnownType(base)) {
        ThrowStatus(TZENTAStatusCode::kInvalidArgument,
                    "cannot make an array of type code " + std::to_string(static_cast<int>(type)));
    }
    if (count > elements.size()) {
        ThrowStatus(TZENTAStatusCode::kInvalidArgument, "cannot take " + std::to_string(count) + " " +
                                                            kTypeNames[base] + " elements from " +
                                                            std::to_string(elements.size()) + " values");
    }
    elements.resize(count);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        TCIMValue& element = elements[i];
        if (element.fIsNull && !element.fIsArray) {
            element.SetNullValue(base, 0);
        } else if (element.fIsArray || element.fType != base) {
            ThrowStatus(TZENTAStatusCode::kTypeMismatch, "element " + std::to_string(i) + " of a " +
                                                             kTypeNames[base] + " array is " +
                                                             element.Describe());
        }
    }
    Reset(base);
    fIsArray = true;
    fArray.swap(elements);
}

void TCIMValue::SetNullValue(TType::ECIMType type, unsigned int count) {
    const TType::ECIMType base = WithoutArrayFlag(type);
    if (!IsKnownType(base)) {
        ThrowStatus(TZENTAStatusCode::kInvalidArgument,
                    "cannot make a null of type code " + std::to_string(static_cast<int>(type)));
    }
    Reset(base);
    fIsNull = true;
    fIsArray = count > 0 || (type & TType::kArrayFlag) != 0;
}

// --- text ------------------------------------------------------------------

std::string TCIMValue::ToString(unsigned char radix) const {
    if (radix != 10) {
        ThrowStatus(TZENTAStatusCode::kInvalidArgument,
                    "values are written in radix 10, not " + std::to_string(static_cast<int>(radix)));
    }
    std::string out;
    AppendText(out);
    return out;
}

void TCIMValue::AppendText(std::string& out) const {
    if (fIsNull) return;
    if (fIsArray) {
        for (std::size_t i = 0; i < fArray.size(); ++i) {
            if (i != 0) out += ',';
            fArray[i].AppendText(out);
        }
        return;
    }
    switch (fType) {
        case TType::kBoolean:
            out += fScalar.integer ? "TRUE" : "FALSE";
            break;
        case TType::kUint8:
        case TType::kUint16:
        case TType::kUint32:
        case TType::kUint64:
            AppendNumber(out, fScalar.integer);
            break;
        case TType::kSint8:
        case TType::kSint16:
        case TType::kSint32:
        case TType::kSint64:
            AppendNumber(out, static_cast<std::int64_t>(fScalar.integer));
            break;
        case TType::kReal32:
            AppendReal(out, static_cast<float>(fScalar.real));
            break;
        case TType::kReal64:
            AppendReal(out, fScalar.real);
            break;
        case TType::kChar16:
            AppendUtf8(out, static_cast<unsigned>(fScalar.integer));
            break;
        case TType::kString:
        case TType::kDateTime:
            out += fText;
            break;
        case TType::kReference:
            out += fReference->GetPath();
            break;
        default:
            break;
    }
}

// "the uint8 value 7", "a null string value", "a sint32 array", ...
std::string TCIMValue::Describe() const {
    const std::string type = TypeNameOrUntyped(fType);
    if (fType == TType::kNone) return "an unset value";
    if (fIsNull) return "a null " + type + (fIsArray ? " array" : " value");
    if (fIsArray) return "a " + type + " array";
    const std::size_t kShownLength = 60;
    std::string text = ToString(10);
    if (text.size() > kShownLength) text = text.substr(0, kShownLength) + "...";
    if (fType == TType::kString) text = "\"" + text + "\"";
    return "the " + type + " value " + text;
}

// --- reading ---------------------------------------------------------------

void TCIMValue::ThrowMismatch(const char* target) const {
    ThrowStatus(TZENTAStatusCode::kTypeMismatch, "cannot read " + Describe() + " as " + target);
}

void TCIMValue::RequireScalar(const char* target) const {
    if (fIsArray) ThrowMismatch(target);
    if (fIsNull) ThrowStatus(TZENTAStatusCode::kNullValue, "cannot read " + Describe() + " as " + target);
}

void TCIMValue::RequireType(TType::ECIMType type, const char* target) const {
    RequireScalar(target);
    if (fType != type) ThrowMismatch(target);
}

template <class TTarget>
TTarget TCIMValue::ReadInteger(const char* target) const {
    RequireScalar(target);
    if (fType != TType::kBoolean && !GetType().IsInteger()) ThrowMismatch(target);
    return static_cast<TTarget>(fScalar.integer);
}

template <class TTarget>
TTarget TCIMValue::ReadReal(const char* target) const {
    RequireScalar(target);
    const TType type = GetType();
    if (type.IsReal()) return static_cast<TTarget>(fScalar.real);
    if (type.IsSigned()) return static_cast<TTarget>(static_cast<std::int64_t>(fScalar.integer));
    if (type.IsInteger()) return static_cast<TTarget>(fScalar.integer);
    ThrowMismatch(target);
}

TCIMValue::operator bool() const { return ReadInteger<std::uint64_t>("bool") != 0; }
TCIMValue::operator signed char() const { return ReadInteger<signed char>("signed char"); }
TCIMValue::operator unsigned char() const { return ReadInteger<unsigned char>("unsigned char"); }
TCIMValue::operator short() const { return ReadInteger<short>("short"); }
TCIMValue::operator unsigned short() const { return ReadInteger<unsigned short>("unsigned short"); }
TCIMValue::operator int() const { return ReadInteger<int>("int"); }
TCIMValue::operator unsigned int() const { return ReadInteger<unsigned int>("unsigned int"); }
TCIMValue::operator long long() const { return ReadInteger<long long>("long long"); }
TCIMValue::operator unsigned long long() const { return ReadInteger<unsigned long long>("unsigned long long"); }
TCIMValue::operator float() const { return ReadReal<float>("float"); }
TCIMValue::operator double() const { return ReadReal<double>("double"); }

// An array reads as its text form, the elements joined with ",": code that
// reads a property as a string (the CMPI library reads registrations so)
// gets a one-element array's element itself.
TCIMValue::operator std::string() const {
    if (fIsNull) return std::string();
    if (fType == TType::kString && !fIsArray) return fText;
    return ToString(10);
}

TCIMValue::operator TCIMChar16() const {
    RequireType(TType::kChar16, "char16");
    return TCIMChar16(static_cast<unsigned short>(fScalar.integer));
}

TCIMValue::operator TCIMDateTime() const {
    RequireType(TType::kDateTime, "datetime");
    return TCIMDateTime(fText, TCIMDateTime::TValidated());
}

TCIMValue::operator TCIMReference() const {
    RequireType(TType::kReference, "reference");
    return *fReference;
}

TCIMValue::operator std::vector<TCIMValue>&() {
    if (!fIsArray) ThrowStatus(TZENTAStatusCode::kNotAnArray, Describe() + " is not an array");
    return fArray;
}

TCIMValue::operator const std::vector<TCIMValue>&() const {
    if (!fIsArray) ThrowStatus(TZENTAStatusCode::kNotAnArray, Describe() + " is not an array");
    return fArray;
}

// --- comparison ------------------------------------------------------------

bool TCIMValue::operator==(const TCIMValue& other) const {
    if (fType != other.fType || fIsArray != other.fIsArray || fIsNull != other.fIsNull) return false;
    if (fIsNull) return true;
    if (fIsArray) return fArray == other.fArray;
    return SameContents(other);
}

// NaN equals NaN here: a value must equal its own copy.
bool TCIMValue::SameContents(const TCIMValue& other) const {
    switch (fType) {
        case TType::kReal32:
        case TType::kReal64:
            return SameReal(fScalar.real, other.fScalar.real);
        case TType::kString:
        case TType::kDateTime:
            return fText == other.fText;
        case TType::kReference:
            return fReference == other.fReference || *fReference == *other.fReference;
        default:
            return fScalar.integer == other.fScalar.integer;
    }
}

}  // namespace NVURZENTA20
