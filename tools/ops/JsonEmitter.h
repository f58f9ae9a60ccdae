// Writes JSON as it goes, laid out as nlohmann::json's dump(2) lays it out
// (two spaces per level, "key": value), so that an answer of any length
// streams without a document in memory. Strings that are not valid UTF-8
// (process names and command lines need not be) get U+FFFD for each bad
// byte.
#ifndef ZENTA_OPS_JSONEMITTER_H
#define ZENTA_OPS_JSONEMITTER_H

#include <string>
#include <string_view>
#include <vector>

#include "TCIMValue.h"

class TJsonEmitter {
public:
    explicit TJsonEmitter(std::string& out) : fOut(&out) {}

    void BeginObject();
    void EndObject();
    void BeginArray();
    void EndArray();
    // The name of the next member of the current object.
    void Key(const std::string& name);

    void String(std::string_view text);
    void Null();
    void Bool(bool value);
    void Signed(long long value);
    void Unsigned(unsigned long long value);
    // A CIM value, typed: integers and finite reals as numbers, NaN and
    // the infinities as their CIM text, booleans, null, everything else
    // (char16, date-time, reference, string) as its CIM text; arrays as
    // arrays.
    void Value(const NVURZENTA20::TCIMValue& value);

    static void AppendEscaped(std::string& out, std::string_view text);

private:
    struct TLevel {
        bool isEmpty;
    };

    // Places the next value: after a key, or as the next array element.
    void BeforeValue();
    void Open(char bracket);
    void Close(char bracket);
    void NewLine(std::size_t depth);
    void Scalar(const NVURZENTA20::TCIMValue& value);
    void Number(const char* begin, const char* end, bool isReal);

    std::string* fOut;
    std::vector<TLevel> fLevels;
    bool fAfterKey = false;
};

#endif
