#include "ValueText.h"

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

#include "TCIMDateTime.h"
#include "TZENTAException.h"
#include "ToolError.h"

using namespace NVURZENTA20;

namespace {

typedef TCIMValue::TCIMType TType;

[[noreturn]] void Refuse(const std::string& text, TType type, const std::string& subject) {
    throw TToolError(subject + ": \"" + text + "\" is not a valid " + type.GetName(), ECimStatus::kInvalidParameter);
}

bool EqualsIgnoringCase(const std::string& text, const char* word) {
    std::size_t i = 0;
    for (; i < text.size() && word[i] != '\0'; ++i) {
        if (std::tolower(static_cast<unsigned char>(text[i])) != word[i]) return false;
    }
    return i == text.size() && word[i] == '\0';
}

bool ReadUnsigned(const std::string& text, unsigned long long maximum, unsigned long long& value) {
    if (text.empty() || text[0] == '-' || text[0] == '+' || std::isspace(static_cast<unsigned char>(text[0]))) {
        return false;
    }
    char* end = nullptr;
    errno = 0;
    value = std::strtoull(text.c_str(), &end, 10);
    return errno == 0 && *end == '\0' && value <= maximum;
}

bool ReadSigned(const std::string& text, long long minimum, long long maximum, long long& value) {
    if (text.empty() || std::isspace(static_cast<unsigned char>(text[0]))) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtoll(text.c_str(), &end, 10);
    return errno == 0 && *end == '\0' && value >= minimum && value <= maximum;
}

// A finite number must fit: 1e39 is no real32 and 1e999 no real64, however
// C would round them. NaN and the infinities are taken when written as such.
bool ReadReal(const std::string& text, bool isReal32, double& value) {
    if (text.empty() || std::isspace(static_cast<unsigned char>(text[0]))) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtod(text.c_str(), &end);
    if (*end != '\0') return false;
    const bool overflowed = errno == ERANGE && std::isinf(value);
    const bool tooLargeForReal32 = isReal32 && std::isfinite(value) && std::fabs(value) > std::numeric_limits<float>::max();
    return !overflowed && !tooLargeForReal32;
}

// One UTF-8 character of the basic multilingual plane.
bool ReadChar16(const std::string& text, unsigned short& value) {
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(text.data());
    if (text.size() == 1 && bytes[0] < 0x80) {
        value = bytes[0];
        return true;
    }
    if (text.size() == 2 && (bytes[0] & 0xE0) == 0xC0 && (bytes[1] & 0xC0) == 0x80) {
        value = static_cast<unsigned short>(((bytes[0] & 0x1F) << 6) | (bytes[1] & 0x3F));
        return value >= 0x80;
    }
    if (text.size() == 3 && (bytes[0] & 0xF0) == 0xE0 && (bytes[1] & 0xC0) == 0x80 && (bytes[2] & 0xC0) == 0x80) {
        value = static_cast<unsigned short>(((bytes[0] & 0x0F) << 12) | ((bytes[1] & 0x3F) << 6) | (bytes[2] & 0x3F));
        return value >= 0x800;
    }
    return false;
}

template <class TInteger>
TCIMValue UnsignedValue(const std::string& text, TType type, const std::string& subject) {
    unsigned long long value = 0;
    if (!ReadUnsigned(text, std::numeric_limits<TInteger>::max(), value)) Refuse(text, type, subject);
    return TCIMValue(static_cast<TInteger>(value));
}

template <class TInteger>
TCIMValue SignedValue(const std::string& text, TType type, const std::string& subject) {
    long long value = 0;
    if (!ReadSigned(text, std::numeric_limits<TInteger>::min(), std::numeric_limits<TInteger>::max(), value)) {
        Refuse(text, type, subject);
    }
    return TCIMValue(static_cast<TInteger>(value));
}

TCIMValue ScalarFromText(const std::string& text, TType type, const TReferenceReader& readReference,
                         const std::string& subject) {
    switch (static_cast<TType::ECIMType>(type)) {
        case TType::kBoolean:
            if (EqualsIgnoringCase(text, "true")) return TCIMValue(true);
            if (EqualsIgnoringCase(text, "false")) return TCIMValue(false);
            Refuse(text, type, subject);
        case TType::kUint8: return UnsignedValue<unsigned char>(text, type, subject);
        case TType::kUint16: return UnsignedValue<unsigned short>(text, type, subject);
        case TType::kUint32: return UnsignedValue<unsigned int>(text, type, subject);
        case TType::kUint64: return UnsignedValue<unsigned long long>(text, type, subject);
        case TType::kSint8: return SignedValue<signed char>(text, type, subject);
        case TType::kSint16: return SignedValue<short>(text, type, subject);
        case TType::kSint32: return SignedValue<int>(text, type, subject);
        case TType::kSint64: return SignedValue<long long>(text, type, subject);
        case TType::kReal32:
        case TType::kReal64: {
            double value = 0;
            if (!ReadReal(text, type == TType::kReal32, value)) Refuse(text, type, subject);
            return type == TType::kReal32 ? TCIMValue(static_cast<float>(value)) : TCIMValue(value);
        }
        case TType::kChar16: {
            unsigned short value = 0;
            if (!ReadChar16(text, value)) Refuse(text, type, subject);
            return TCIMValue(TCIMChar16(value));
        }
        case TType::kString: return TCIMValue(text);
        case TType::kDateTime:
            if (!TCIMDateTime::IsValid(text)) Refuse(text, type, subject);
            return TCIMValue(TCIMDateTime(text));
        case TType::kReference: return TCIMValue(readReference(text));
        default: throw TToolError(subject + ": values of this type cannot be written on the command line");
    }
}

std::vector<std::string> SplitElements(const std::string& text) {
    std::vector<std::string> elements;
    if (text.empty()) return elements;
    std::size_t start = 0;
    for (;;) {
        const std::size_t comma = text.find(',', start);
        elements.push_back(text.substr(start, comma - start));
        if (comma == std::string::npos) return elements;
        start = comma + 1;
    }
}

}  // namespace

TCIMValue ValueFromText(const std::string& text, TCIMValue::TCIMType type, bool isArray,
                        const TReferenceReader& readReference, const std::string& subject) {
    if (!isArray) {
        const TType elementType(static_cast<TType::ECIMType>(type & ~TType::kArrayFlag));
        return ScalarFromText(text, elementType, readReference, subject);
    }
    return ValueFromItems(SplitElements(text), type, true, readReference, subject);
}

TCIMValue ValueFromItems(const std::vector<std::string>& items, TCIMValue::TCIMType type, bool isArray,
                         const TReferenceReader& readReference, const std::string& subject) {
    const TType elementType(static_cast<TType::ECIMType>(type & ~TType::kArrayFlag));
    if (!isArray) {
        if (items.size() != 1) throw TToolError(subject + ": one value expected, not a list", ECimStatus::kInvalidParameter);
        return ScalarFromText(items.front(), elementType, readReference, subject);
    }
    std::vector<TCIMValue> elements;
    elements.reserve(items.size());
    for (const std::string& item : items) elements.push_back(ScalarFromText(item, elementType, readReference, subject));
    TCIMValue array;
    array.Set(elementType, static_cast<unsigned int>(elements.size()), elements);
    return array;
}
