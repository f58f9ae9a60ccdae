#include "TCIMValue.h"

#include <atomic>
#include <charconv>
#include <cmath>
#include <cstring>
#include <new>
#include <utility>

#include "CIMNames.h"
#include "LastDateTime.h"
#include "TCIMReference.h"
#include "TZENTAException.h"
#include "Utf8.h"

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

// --- payloads ----------------------------------------------------------------

// Every instance holds one value per property and every path one per key:
// the size is what the host's memory per instance is made of.
static_assert(sizeof(TCIMValue) == 16, "a value takes sixteen bytes on every target");

// Shared by the copies of a value, never changed while shared; the last
// copy to go frees it. The count is atomic: copies may live on several
// threads.
struct TCIMValue::TPayload {
    TPayload() : fReferences(1) {}
    std::atomic<unsigned> fReferences;
};

// Text longer than a value holds: the characters follow the header.
struct TCIMValue::TTextPayload : TPayload {
    std::size_t fLength;
    char* Characters() { return reinterpret_cast<char*>(this + 1); }
    const char* Characters() const { return reinterpret_cast<const char*>(this + 1); }

    static TTextPayload* Make(const char* text, std::size_t length) {
        void* memory = ::operator new(sizeof(TTextPayload) + length + 1);
        TTextPayload* payload = new (memory) TTextPayload;
        payload->fLength = length;
        std::memcpy(payload->Characters(), text, length);
        payload->Characters()[length] = '\0';
        return payload;
    }
};

struct TCIMValue::TReferencePayload : TPayload {
    explicit TReferencePayload(const TCIMReference& reference) : fReference(reference) {}
    TCIMReference fReference;
};

struct TCIMValue::TArrayPayload : TPayload {
    explicit TArrayPayload(std::vector<TCIMValue>&& elements) : fElements(std::move(elements)) {}
    std::vector<TCIMValue> fElements;
};

namespace {

// Date-times are kept packed in the value: every character of the text but
// the '.' as one half-byte (digits, '*', and the kind '+', '-' or ':').
const std::size_t kDotPosition = 14;
const std::size_t kPackedDateTimeBytes = (TCIMDateTime::kTextLength - 1 + 1) / 2;
const char kDateTimeSymbols[] = "0123456789*+-:";
const unsigned char kNoSymbol = 0xFF;

// The half-byte of each character date-time text may hold, kNoSymbol for
// the others.
struct TSymbolCodes {
    unsigned char code[256];
    TSymbolCodes() {
        std::memset(code, kNoSymbol, sizeof(code));
        for (unsigned i = 0; kDateTimeSymbols[i] != '\0'; ++i) {
            code[static_cast<unsigned char>(kDateTimeSymbols[i])] = static_cast<unsigned char>(i);
        }
    }
};

// False when `text` is not date-time text that packs (it is then kept as a
// payload, as any other text).
bool PackDateTime(const std::string& text, unsigned char* packed) {
    static const TSymbolCodes symbols;
    if (text.size() != TCIMDateTime::kTextLength || text[kDotPosition] != '.') return false;
    std::size_t nibble = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i == kDotPosition) continue;
        const unsigned code = symbols.code[static_cast<unsigned char>(text[i])];
        if (code == kNoSymbol) return false;
        if (nibble % 2 == 0) {
            packed[nibble / 2] = static_cast<unsigned char>(code);
        } else {
            packed[nibble / 2] = static_cast<unsigned char>(packed[nibble / 2] | (code << 4));
        }
        ++nibble;
    }
    return true;
}

void AppendPackedDateTime(std::string& out, const unsigned char* packed) {
    char text[TCIMDateTime::kTextLength];
    std::size_t nibble = 0;
    for (std::size_t i = 0; i < TCIMDateTime::kTextLength; ++i) {
        if (i == kDotPosition) {
            text[i] = '.';
            continue;
        }
        text[i] = kDateTimeSymbols[(packed[nibble / 2] >> (4 * (nibble % 2))) & 0xF];
        ++nibble;
    }
    out.append(text, sizeof(text));
}

}  // namespace

std::uint64_t TCIMValue::Bits() const {
    std::uint64_t bits;
    std::memcpy(&bits, fBytes, sizeof(bits));
    return bits;
}

double TCIMValue::Real() const {
    double real;
    std::memcpy(&real, fBytes, sizeof(real));
    return real;
}

TCIMValue::TPayload* TCIMValue::Payload() const {
    TPayload* payload;
    std::memcpy(&payload, fBytes, sizeof(payload));
    return payload;
}

const TCIMValue::TTextPayload& TCIMValue::Text() const { return *static_cast<TTextPayload*>(Payload()); }

const TCIMValue::TReferencePayload& TCIMValue::Reference() const {
    return *static_cast<TReferencePayload*>(Payload());
}

const TCIMValue::TArrayPayload& TCIMValue::Array() const { return *static_cast<TArrayPayload*>(Payload()); }

// Only strings are kept inline as characters; date-times are packed.
const char* TCIMValue::TextData() const {
    return Has(kInlineBit) ? reinterpret_cast<const char*>(fBytes) : Text().Characters();
}

std::size_t TCIMValue::TextLength() const { return Has(kInlineBit) ? fBytes[kInlineCapacity] : Text().fLength; }

// --- construction ----------------------------------------------------------

TCIMValue::TCIMValue() : fType(TType::kNone), fFlags(kNullBit) { std::memset(fBytes, 0, sizeof(fBytes)); }

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
TCIMValue::TCIMValue(std::string&& value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(const TCIMChar16& value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(const TCIMDateTime& value) : TCIMValue() { Set(value); }
TCIMValue::TCIMValue(const TCIMReference& value) : TCIMValue() { Set(value); }

TCIMValue::TCIMValue(const TCIMValue& other) : fType(other.fType), fFlags(other.fFlags) {
    std::memcpy(fBytes, other.fBytes, sizeof(fBytes));
    if (Has(kPayloadBit)) Payload()->fReferences.fetch_add(1, std::memory_order_relaxed);
}

TCIMValue::TCIMValue(TCIMValue&& other) noexcept : fType(other.fType), fFlags(other.fFlags) {
    std::memcpy(fBytes, other.fBytes, sizeof(fBytes));
    other.fType = TType::kNone;
    other.fFlags = kNullBit;
}

// Values without payloads are copied as they are. Others go through a
// temporary: the source may be an element of this value's own array.
TCIMValue& TCIMValue::operator=(const TCIMValue& other) {
    if (!Has(kPayloadBit) && !other.Has(kPayloadBit)) {
        std::memcpy(fBytes, other.fBytes, sizeof(fBytes));
        fType = other.fType;
        fFlags = other.fFlags;
        return *this;
    }
    TCIMValue copy(other);
    Swap(copy);
    return *this;
}

TCIMValue& TCIMValue::operator=(TCIMValue&& other) noexcept {
    TCIMValue taken(std::move(other));
    Swap(taken);
    return *this;
}

TCIMValue::~TCIMValue() { Release(); }

void TCIMValue::Release() noexcept {
    if (!Has(kPayloadBit)) return;
    TPayload* payload = Payload();
    fFlags = static_cast<unsigned char>(fFlags & ~kPayloadBit);
    if (payload->fReferences.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    if (Has(kArrayBit)) {
        delete static_cast<TArrayPayload*>(payload);
    } else if (fType == TType::kReference) {
        delete static_cast<TReferencePayload*>(payload);
    } else {
        TTextPayload* text = static_cast<TTextPayload*>(payload);
        text->~TTextPayload();
        ::operator delete(text);
    }
}

void TCIMValue::Swap(TCIMValue& other) noexcept {
    unsigned char bytes[sizeof(fBytes)];
    std::memcpy(bytes, fBytes, sizeof(bytes));
    std::memcpy(fBytes, other.fBytes, sizeof(bytes));
    std::memcpy(other.fBytes, bytes, sizeof(bytes));
    std::swap(fType, other.fType);
    std::swap(fFlags, other.fFlags);
}

// --- setters ---------------------------------------------------------------

void TCIMValue::Reset(TType::ECIMType type) {
    Release();
    fType = static_cast<unsigned char>(type);
    fFlags = 0;
    std::memset(fBytes, 0, sizeof(fBytes));
}

void TCIMValue::SetInteger(TType::ECIMType type, std::uint64_t bits) {
    Reset(type);
    std::memcpy(fBytes, &bits, sizeof(bits));
}

void TCIMValue::SetReal(TType::ECIMType type, double real) {
    Reset(type);
    std::memcpy(fBytes, &real, sizeof(real));
}

// Set last: `text` may lie in this value's own payload.
void TCIMValue::SetText(TType::ECIMType type, const char* text, std::size_t length) {
    if (length <= kInlineCapacity) {
        unsigned char bytes[sizeof(fBytes)] = {};
        std::memcpy(bytes, text, length);
        bytes[kInlineCapacity] = static_cast<unsigned char>(length);
        Reset(type);
        std::memcpy(fBytes, bytes, sizeof(bytes));
        fFlags = kInlineBit;
        return;
    }
    SetPayload(type, TTextPayload::Make(text, length));
}

void TCIMValue::SetPayload(TType::ECIMType type, TPayload* payload) {
    Reset(type);
    std::memcpy(fBytes, &payload, sizeof(payload));
    fFlags = kPayloadBit;
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
void TCIMValue::Set(float value) { SetReal(TType::kReal32, value); }
void TCIMValue::Set(double value) { SetReal(TType::kReal64, value); }

void TCIMValue::Set(const char* value) {
    if (value == nullptr) {
        SetNullValue(TType::kString, 0);
        return;
    }
    SetText(TType::kString, value, std::strlen(value));
}

void TCIMValue::Set(const std::string& value) { SetText(TType::kString, value.data(), value.size()); }

void TCIMValue::Set(std::string&& value) { SetText(TType::kString, value.data(), value.size()); }

// A provider that stamps its instances sets the same date-time on each:
// the text packed last is kept to be copied.
void TCIMValue::Set(const TCIMDateTime& value) {
    if (value.IsNull()) {
        SetNullValue(TType::kDateTime, 0);
        return;
    }
    struct TPacked {
        unsigned char bytes[kPackedDateTimeBytes];
    };
    thread_local TLastDateTime<TPacked> last = {};
    const std::string& text = value.ToString();
    TPacked packed;
    if (const TPacked* kept = last.Find(text)) {
        packed = *kept;
    } else if (PackDateTime(text, packed.bytes)) {
        last.Keep(text, packed);
    } else {
        SetPayload(TType::kDateTime, TTextPayload::Make(text.data(), text.size()));
        return;
    }
    Reset(TType::kDateTime);
    std::memcpy(fBytes, packed.bytes, sizeof(packed.bytes));
    fFlags = kInlineBit;
}

void TCIMValue::Set(TCIMReference& value) { Set(static_cast<const TCIMReference&>(value)); }

void TCIMValue::Set(const TCIMReference& value) { SetPayload(TType::kReference, new TReferencePayload(value)); }

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
        if (element.IsNull() && !element.IsArray()) {
            element.SetNullValue(base, 0);
        } else if (element.IsArray() || element.fType != base) {
            ThrowStatus(TZENTAStatusCode::kTypeMismatch, "element " + std::to_string(i) + " of a " +
                                                             kTypeNames[base] + " array is " +
                                                             element.Describe());
        }
    }
    SetPayload(base, new TArrayPayload(std::move(elements)));
    fFlags = kPayloadBit | kArrayBit;
}

void TCIMValue::SetNullValue(TType::ECIMType type, unsigned int count) {
    const TType::ECIMType base = WithoutArrayFlag(type);
    if (!IsKnownType(base)) {
        ThrowStatus(TZENTAStatusCode::kInvalidArgument,
                    "cannot make a null of type code " + std::to_string(static_cast<int>(type)));
    }
    Reset(base);
    fFlags = kNullBit;
    if (count > 0 || (type & TType::kArrayFlag) != 0) fFlags |= kArrayBit;
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

std::string_view TCIMValue::GetStringView() const {
    if (IsNull() || IsArray() || fType != TType::kString) return std::string_view();
    return std::string_view(TextData(), TextLength());
}

void TCIMValue::AppendText(std::string& out) const {
    if (IsNull()) return;
    if (IsArray()) {
        const std::vector<TCIMValue>& elements = Array().fElements;
        for (std::size_t i = 0; i < elements.size(); ++i) {
            if (i != 0) out += ',';
            elements[i].AppendText(out);
        }
        return;
    }
    switch (fType) {
        case TType::kBoolean:
            out += Bits() ? "TRUE" : "FALSE";
            break;
        case TType::kUint8:
        case TType::kUint16:
        case TType::kUint32:
        case TType::kUint64:
            AppendNumber(out, Bits());
            break;
        case TType::kSint8:
        case TType::kSint16:
        case TType::kSint32:
        case TType::kSint64:
            AppendNumber(out, static_cast<std::int64_t>(Bits()));
            break;
        case TType::kReal32:
            AppendReal(out, static_cast<float>(Real()));
            break;
        case TType::kReal64:
            AppendReal(out, Real());
            break;
        case TType::kChar16:
            AppendUtf8(out, static_cast<unsigned>(Bits()));
            break;
        case TType::kString:
            out.append(TextData(), TextLength());
            break;
        case TType::kDateTime:
            if (Has(kInlineBit)) {
                AppendPackedDateTime(out, fBytes);
            } else {
                out.append(Text().Characters(), Text().fLength);
            }
            break;
        case TType::kReference:
            out += Reference().fReference.GetPath();
            break;
        default:
            break;
    }
}

// "the uint8 value 7", "a null string value", "a sint32 array", ...
std::string TCIMValue::Describe() const {
    const std::string type = TypeNameOrUntyped(GetType());
    if (fType == TType::kNone) return "an unset value";
    if (IsNull()) return "a null " + type + (IsArray() ? " array" : " value");
    if (IsArray()) return "a " + type + " array";
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
    if (IsArray()) ThrowMismatch(target);
    if (IsNull()) ThrowStatus(TZENTAStatusCode::kNullValue, "cannot read " + Describe() + " as " + target);
}

void TCIMValue::RequireType(TType::ECIMType type, const char* target) const {
    RequireScalar(target);
    if (fType != type) ThrowMismatch(target);
}

template <class TTarget>
TTarget TCIMValue::ReadInteger(const char* target) const {
    RequireScalar(target);
    if (fType != TType::kBoolean && !GetType().IsInteger()) ThrowMismatch(target);
    return static_cast<TTarget>(Bits());
}

template <class TTarget>
TTarget TCIMValue::ReadReal(const char* target) const {
    RequireScalar(target);
    const TType type = GetType();
    if (type.IsReal()) return static_cast<TTarget>(Real());
    if (type.IsSigned()) return static_cast<TTarget>(static_cast<std::int64_t>(Bits()));
    if (type.IsInteger()) return static_cast<TTarget>(Bits());
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
    if (IsNull()) return std::string();
    if (fType == TType::kString && !IsArray()) return std::string(TextData(), TextLength());
    return ToString(10);
}

TCIMValue::operator TCIMChar16() const {
    RequireType(TType::kChar16, "char16");
    return TCIMChar16(static_cast<unsigned short>(Bits()));
}

TCIMValue::operator TCIMDateTime() const {
    RequireType(TType::kDateTime, "datetime");
    std::string text;
    AppendText(text);
    return TCIMDateTime(text, TCIMDateTime::TValidated());
}

const TCIMReference& TCIMValue::GetReference() const {
    RequireType(TType::kReference, "reference");
    return Reference().fReference;
}

TCIMValue::operator TCIMReference() const { return GetReference(); }

// Writing through the vector must not change the other copies of the value.
std::vector<TCIMValue>& TCIMValue::OwnArray() {
    if (!Has(kPayloadBit)) {
        TPayload* empty = new TArrayPayload(std::vector<TCIMValue>());
        std::memcpy(fBytes, &empty, sizeof(empty));
        fFlags |= kPayloadBit;
    } else if (Payload()->fReferences.load(std::memory_order_acquire) != 1) {
        std::vector<TCIMValue> elements(Array().fElements);
        TPayload* own = new TArrayPayload(std::move(elements));
        Release();
        std::memcpy(fBytes, &own, sizeof(own));
        fFlags |= kPayloadBit;
    }
    return static_cast<TArrayPayload*>(Payload())->fElements;
}

TCIMValue::operator std::vector<TCIMValue>&() {
    if (!IsArray()) ThrowStatus(TZENTAStatusCode::kNotAnArray, Describe() + " is not an array");
    return OwnArray();
}

TCIMValue::operator const std::vector<TCIMValue>&() const {
    static const std::vector<TCIMValue> kNoElements;
    if (!IsArray()) ThrowStatus(TZENTAStatusCode::kNotAnArray, Describe() + " is not an array");
    return Has(kPayloadBit) ? Array().fElements : kNoElements;
}

// --- comparison ------------------------------------------------------------

bool TCIMValue::operator==(const TCIMValue& other) const {
    if (fType != other.fType || IsArray() != other.IsArray() || IsNull() != other.IsNull()) return false;
    if (IsNull()) return true;
    if (Has(kPayloadBit) && other.Has(kPayloadBit) && Payload() == other.Payload()) return true;
    if (IsArray()) {
        return static_cast<const std::vector<TCIMValue>&>(*this) == static_cast<const std::vector<TCIMValue>&>(other);
    }
    return SameContents(other);
}

// NaN equals NaN here: a value must equal its own copy.
bool TCIMValue::SameContents(const TCIMValue& other) const {
    switch (fType) {
        case TType::kReal32:
        case TType::kReal64:
            return SameReal(Real(), other.Real());
        case TType::kString:
            return TextLength() == other.TextLength() && std::memcmp(TextData(), other.TextData(), TextLength()) == 0;
        case TType::kDateTime:
            if (Has(kInlineBit) && other.Has(kInlineBit)) {
                return std::memcmp(fBytes, other.fBytes, kPackedDateTimeBytes) == 0;
            }
            return ToString(10) == other.ToString(10);
        case TType::kReference:
            return Reference().fReference == other.Reference().fReference;
        default:
            return Bits() == other.Bits();
    }
}

}  // namespace NVURZENTA20
