#include "TValueText.h"

#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

typedef TCIMValue::TCIMType T;

std::string Trim(const std::string& text) {
    const char* const blanks = " \t\r\n";
    const std::string::size_type first = text.find_first_not_of(blanks);
    if (first == std::string::npos) return std::string();
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool EqualsIgnoringCase(const std::string& text, const char* word) {
    std::string::size_type i = 0;
    for (; word[i] != '\0'; ++i) {
        if (i >= text.size() || std::tolower(static_cast<unsigned char>(text[i])) != word[i]) return false;
    }
    return i == text.size();
}

// The magnitude and sign of decimal or 0x-hex integer text.
bool ParseMagnitude(const std::string& text, bool& negative, unsigned long long& magnitude) {
    std::string::size_type at = 0;
    negative = false;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) negative = text[at++] == '-';
    int base = 10;
    if (text.size() > at + 1 && text[at] == '0' && (text[at + 1] == 'x' || text[at + 1] == 'X')) {
        base = 16;
        at += 2;
    }
    if (at >= text.size() || !std::isxdigit(static_cast<unsigned char>(text[at]))) return false;
    if (base == 10 && !std::isdigit(static_cast<unsigned char>(text[at]))) return false;
    errno = 0;
    char* end = nullptr;
    magnitude = std::strtoull(text.c_str() + at, &end, base);
    return errno == 0 && *end == '\0';
}

struct TIntegerRange {
    long long minimum;
    unsigned long long maximum;
};

TIntegerRange RangeOf(T::ECIMType type) {
    switch (type) {
        case T::kUint8: return {0, std::numeric_limits<unsigned char>::max()};
        case T::kSint8: return {std::numeric_limits<signed char>::min(), std::numeric_limits<signed char>::max()};
        case T::kUint16: return {0, std::numeric_limits<unsigned short>::max()};
        case T::kSint16: return {std::numeric_limits<short>::min(), std::numeric_limits<short>::max()};
        case T::kUint32: return {0, std::numeric_limits<unsigned int>::max()};
        case T::kSint32: return {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
        case T::kUint64: return {0, std::numeric_limits<unsigned long long>::max()};
        default: return {std::numeric_limits<long long>::min(), std::numeric_limits<long long>::max()};
    }
}

TCIMValue MakeInteger(T::ECIMType type, long long value) {
    switch (type) {
        case T::kUint8: return TCIMValue(static_cast<unsigned char>(value));
        case T::kSint8: return TCIMValue(static_cast<signed char>(value));
        case T::kUint16: return TCIMValue(static_cast<unsigned short>(value));
        case T::kSint16: return TCIMValue(static_cast<short>(value));
        case T::kUint32: return TCIMValue(static_cast<unsigned int>(value));
        case T::kSint32: return TCIMValue(static_cast<int>(value));
        case T::kUint64: return TCIMValue(static_cast<unsigned long long>(value));
        default: return TCIMValue(value);
    }
}

bool ParseInteger(T::ECIMType type, const std::string& text, TCIMValue& value, std::string& reason) {
    bool negative = false;
    unsigned long long magnitude = 0;
    if (!ParseMagnitude(text, negative, magnitude)) {
        reason = "\"" + text + "\" is not an integer";
        return false;
    }
    const TIntegerRange range = RangeOf(type);
    const unsigned long long lowest = range.minimum < 0 ? 0ULL - static_cast<unsigned long long>(range.minimum) : 0;
    if (negative ? magnitude > lowest : magnitude > range.maximum) {
        reason = text + " is out of the range of " + T(type).GetName();
        return false;
    }
    if (type == T::kUint64) {
        value = TCIMValue(magnitude);
        return true;
    }
    const long long signedValue =
        negative ? static_cast<long long>(0ULL - magnitude) : static_cast<long long>(magnitude);
    value = MakeInteger(type, signedValue);
    return true;
}

bool ParseReal(T::ECIMType type, const std::string& text, TCIMValue& value, std::string& reason) {
    errno = 0;
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || (errno == ERANGE && std::isinf(number))) {
        reason = "\"" + text + "\" is not a " + T(type).GetName();
        return false;
    }
    if (type == T::kReal64) {
        value = TCIMValue(number);
        return true;
    }
    if (std::isfinite(number) && std::fabs(number) > FLT_MAX) {
        reason = text + " is out of the range of real32";
        return false;
    }
    value = TCIMValue(static_cast<float>(number));
    return true;
}

// One UTF-8 encoded character of the Basic Multilingual Plane.
bool ParseChar16(const std::string& text, TCIMValue& value, std::string& reason) {
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(text.data());
    unsigned int code = 0;
    std::size_t length = 0;
    if (!text.empty() && bytes[0] < 0x80) {
        code = bytes[0];
        length = 1;
    } else if (text.size() >= 2 && (bytes[0] & 0xE0) == 0xC0 && (bytes[1] & 0xC0) == 0x80) {
        code = ((bytes[0] & 0x1Fu) << 6) | (bytes[1] & 0x3Fu);
        length = 2;
    } else if (text.size() >= 3 && (bytes[0] & 0xF0) == 0xE0 && (bytes[1] & 0xC0) == 0x80 &&
               (bytes[2] & 0xC0) == 0x80) {
        code = ((bytes[0] & 0x0Fu) << 12) | ((bytes[1] & 0x3Fu) << 6) | (bytes[2] & 0x3Fu);
        length = 3;
    }
    if (length == 0 || length != text.size()) {
        reason = "\"" + text + "\" is not one char16 character";
        return false;
    }
    value = TCIMValue(TCIMChar16(static_cast<unsigned short>(code)));
    return true;
}

bool ParseDateTime(const std::string& text, TCIMValue& value, std::string& reason) {
    try {
        value = TCIMValue(TCIMDateTime(text));
        return true;
    } catch (const TZENTAException& e) {
        reason = "\"" + text + "\" is not a datetime: " + e.what();
        return false;
    }
}

}  // namespace

TCIMValue NullOf(TCIMValue::TCIMType type, bool isArray) {
    TCIMValue null;
    null.SetNullValue(type, isArray ? 1 : 0);
    return null;
}

bool ParseValueText(TCIMValue::TCIMType type, const std::string& text, TCIMValue& value, std::string& reason) {
    if (type == T::kString) {
        value = TCIMValue(text);
        return true;
    }
    const std::string trimmed = Trim(text);
    switch (static_cast<T::ECIMType>(type)) {
        case T::kBoolean:
            if (EqualsIgnoringCase(trimmed, "true") || EqualsIgnoringCase(trimmed, "false")) {
                value = TCIMValue(EqualsIgnoringCase(trimmed, "true"));
                return true;
            }
            reason = "\"" + text + "\" is neither TRUE nor FALSE";
            return false;
        case T::kReal32:
        case T::kReal64: return ParseReal(type, trimmed, value, reason);
        case T::kChar16: return ParseChar16(text, value, reason);
        case T::kDateTime: return ParseDateTime(trimmed, value, reason);
        default: break;
    }
    if (type.IsInteger()) return ParseInteger(type, trimmed, value, reason);
    reason = "values of type " + type.GetName() + " cannot be written as text";
    return false;
}

}  // namespace NVURZENTA20
