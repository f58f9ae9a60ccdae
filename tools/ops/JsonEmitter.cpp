#include "JsonEmitter.h"

#include <charconv>
#include <cmath>
#include <cstdio>

using NVURZENTA20::TCIMValue;
typedef TCIMValue::TCIMType TType;

namespace {

const char kReplacement[] = "\xEF\xBF\xBD";

}  // namespace

std::size_t Utf8SequenceLength(const std::string& text, std::size_t at) {
    const unsigned char lead = static_cast<unsigned char>(text[at]);
    std::size_t length;
    unsigned int minimum;
    unsigned int code;
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2, minimum = 0x80, code = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3, minimum = 0x800, code = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4, minimum = 0x10000, code = lead & 0x07;
    } else {
        return 0;
    }
    if (at + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char next = static_cast<unsigned char>(text[at + i]);
        if ((next & 0xC0) != 0x80) return 0;
        code = (code << 6) | (next & 0x3F);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < minimum || code > 0x10FFFF || surrogate ? 0 : length;
}

void TJsonEmitter::AppendEscaped(std::string& out, const std::string& text) {
    out += '"';
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c >= 0x80) {
            const std::size_t length = Utf8SequenceLength(text, i);
            if (length == 0) {
                out += kReplacement;
                ++i;
            } else {
                out.append(text, i, length);
                i += length;
            }
            continue;
        }
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\b': out += "\\b"; break;
            case '\f': out += "\\f"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20) {
                    char escaped[8];
                    std::snprintf(escaped, sizeof(escaped), "\\u%04x", c);
                    out += escaped;
                } else {
                    out += static_cast<char>(c);
                }
        }
        ++i;
    }
    out += '"';
}

void TJsonEmitter::NewLine(std::size_t depth) {
    *fOut += '\n';
    fOut->append(depth * 2, ' ');
}

void TJsonEmitter::BeforeValue() {
    if (fAfterKey) {
        fAfterKey = false;
        return;
    }
    if (fLevels.empty()) return;
    TLevel& level = fLevels.back();
    if (!level.isEmpty) *fOut += ',';
    level.isEmpty = false;
    NewLine(fLevels.size());
}

void TJsonEmitter::Key(const std::string& name) {
    TLevel& level = fLevels.back();
    if (!level.isEmpty) *fOut += ',';
    level.isEmpty = false;
    NewLine(fLevels.size());
    AppendEscaped(*fOut, name);
    *fOut += ": ";
    fAfterKey = true;
}

void TJsonEmitter::Open(char bracket, bool isObject) {
    BeforeValue();
    *fOut += bracket;
    fLevels.push_back(TLevel{isObject, true});
}

void TJsonEmitter::Close(char bracket) {
    const bool wasEmpty = fLevels.back().isEmpty;
    fLevels.pop_back();
    if (!wasEmpty) NewLine(fLevels.size());
    *fOut += bracket;
}

void TJsonEmitter::BeginObject() { Open('{', true); }
void TJsonEmitter::EndObject() { Close('}'); }
void TJsonEmitter::BeginArray() { Open('[', false); }
void TJsonEmitter::EndArray() { Close(']'); }

void TJsonEmitter::String(const std::string& text) {
    BeforeValue();
    AppendEscaped(*fOut, text);
}

void TJsonEmitter::Null() {
    BeforeValue();
    *fOut += "null";
}

void TJsonEmitter::Bool(bool value) {
    BeforeValue();
    *fOut += value ? "true" : "false";
}

void TJsonEmitter::Number(const char* begin, const char* end, bool isReal) {
    BeforeValue();
    fOut->append(begin, end);
    // A real that prints like an integer keeps a fraction, as JSON readers
    // that tell integers from reals expect.
    if (isReal && std::string(begin, end).find_first_of(".e") == std::string::npos) *fOut += ".0";
}

void TJsonEmitter::Signed(long long value) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof(text), value).ptr;
    Number(text, end, false);
}

void TJsonEmitter::Unsigned(unsigned long long value) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof(text), value).ptr;
    Number(text, end, false);
}

void TJsonEmitter::Scalar(const TCIMValue& value) {
    if (value.IsNull()) return Null();
    const TType type = value.GetType();
    if (type == TType::kBoolean) return Bool(static_cast<bool>(value));
    if (type.IsInteger()) {
        if (type.IsSigned()) return Signed(static_cast<long long>(value));
        return Unsigned(static_cast<unsigned long long>(value));
    }
    if (type.IsReal()) {
        const double number = value;
        // JSON has no NaN or infinity: those travel as their CIM text.
        if (std::isfinite(number)) {
            char text[64];
            // A real32 prints as the float it is, not as the double it widens to.
            const auto end = type == TType::kReal32
                                 ? std::to_chars(text, text + sizeof(text), static_cast<float>(value)).ptr
                                 : std::to_chars(text, text + sizeof(text), number).ptr;
            return Number(text, end, true);
        }
    }
    String(value.ToString());
}

void TJsonEmitter::Value(const TCIMValue& value) {
    if (!value.IsArray() || value.IsNull()) return Scalar(value);
    const std::vector<TCIMValue>& elements = value;
    BeginArray();
    for (const TCIMValue& element : elements) Scalar(element);
    EndArray();
}
