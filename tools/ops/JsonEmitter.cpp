#include "JsonEmitter.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "Utf8Text.h"

using NVURZENTA20::TCIMValue;
typedef TCIMValue::TCIMType TType;

namespace {

// Text that JSON takes as it is: printable ASCII but for '"' and '\\'.
bool IsPlain(std::string_view text) {
    for (const char ch : text) {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c < 0x20 || c >= 0x80 || c == '"' || c == '\\') return false;
    }
    return true;
}

}  // namespace

void TJsonEmitter::AppendEscaped(std::string& out, std::string_view text) {
    out += '"';
    if (IsPlain(text)) {
        out.append(text.data(), text.size());
        out += '"';
        return;
    }
    AppendValidUtf8(out, text, [](std::string& escaped, unsigned char c) {
        switch (c) {
            case '"': escaped += "\\\""; break;
            case '\\': escaped += "\\\\"; break;
            case '\b': escaped += "\\b"; break;
            case '\f': escaped += "\\f"; break;
            case '\n': escaped += "\\n"; break;
            case '\r': escaped += "\\r"; break;
            case '\t': escaped += "\\t"; break;
            default:
                if (c < 0x20) {
                    char code[8];
                    std::snprintf(code, sizeof(code), "\\u%04x", c);
                    escaped += code;
                } else {
                    escaped += static_cast<char>(c);
                }
        }
    });
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

void TJsonEmitter::Open(char bracket) {
    BeforeValue();
    *fOut += bracket;
    fLevels.push_back(TLevel{true});
}

void TJsonEmitter::Close(char bracket) {
    const bool wasEmpty = fLevels.back().isEmpty;
    fLevels.pop_back();
    if (!wasEmpty) NewLine(fLevels.size());
    *fOut += bracket;
}

void TJsonEmitter::BeginObject() { Open('{'); }
void TJsonEmitter::EndObject() { Close('}'); }
void TJsonEmitter::BeginArray() { Open('['); }
void TJsonEmitter::EndArray() { Close(']'); }

void TJsonEmitter::String(std::string_view text) {
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
    if (type == TType::kString) return String(value.GetStringView());
    String(value.ToString());
}

void TJsonEmitter::Value(const TCIMValue& value) {
    if (!value.IsArray() || value.IsNull()) return Scalar(value);
    const std::vector<TCIMValue>& elements = value;
    BeginArray();
    for (const TCIMValue& element : elements) Scalar(element);
    EndArray();
}
