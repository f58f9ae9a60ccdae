// Values read from command-line text by their declared type and printed as
// MOF and JSON; references and whole answers are left to the end-to-end tests.
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "JsonAnswer.h"
#include "MofText.h"
#include "TCIMDateTime.h"
#include "TCIMReference.h"
#include "TextAnswer.h"
#include "ToolError.h"
#include "ValueText.h"

using namespace NVURZENTA20;
typedef TCIMValue::TCIMType TType;

namespace {

TCIMValue Read(const std::string& text, TType::ECIMType type, bool isArray = false) {
    // No reference is read here: an empty reader throws when called.
    return ValueFromText(text, TType(type), isArray, TReferenceReader(), "parameter P");
}

std::string Refusal(const std::string& text, TType::ECIMType type, bool isArray = false) {
    try {
        Read(text, type, isArray);
        return std::string();
    } catch (const TToolError& refused) {
        return refused.what();
    }
}

TCIMValue Array(TType::ECIMType type, const std::vector<TCIMValue>& elements) {
    TCIMValue array;
    array.Set(TType(type), static_cast<unsigned int>(elements.size()), elements);
    return array;
}

TCIMValue Null(TType::ECIMType type) {
    TCIMValue value;
    value.SetNullValue(type, 0);
    return value;
}

class TStringSink : public IByteSink {
public:
    void Write(const char* data, std::size_t size) override { text.append(data, size); }
    std::string text;
};

// What a writer makes of one answer; a tiny threshold makes every element
// pass through the sink on its own.
template <class TWriter, class TBody>
std::string Render(EAnswerKind kind, const TBody& body) {
    TStringSink sink;
    TOutputBuffer buffer(sink, 1);
    TWriter writer(buffer);
    writer.Begin(kind);
    body(writer);
    writer.End();
    buffer.Flush();
    return sink.text;
}

std::string JsonInstance(const TNamedValues& properties) {
    const std::string className = "Thing";
    const std::string path = "Thing.Id=1";
    std::vector<TPropertyView> views;
    for (const auto& property : properties) {
        TPropertyView view;
        view.name = &property.first;
        view.value = &property.second;
        views.push_back(view);
    }
    TInstanceView instance;
    instance.className = &className;
    instance.path.text = &path;
    instance.properties = &views;
    return Render<TJsonAnswer>(EAnswerKind::kInstance, [&](IAnswerWriter& writer) { writer.Instance(instance); });
}

nlohmann::ordered_json JsonProperties(const TNamedValues& properties) {
    return nlohmann::ordered_json::parse(JsonInstance(properties)).at("instance").at("properties");
}

}  // namespace

TEST(ValueText, ScalarsAreReadAtTheirLimits) {
    const struct {
        const char* text;
        TType::ECIMType type;
        TCIMValue expected;
    } cases[] = {
        {"255", TType::kUint8, TCIMValue(static_cast<unsigned char>(255))}, {"007", TType::kUint32, TCIMValue(7u)},
        {"-128", TType::kSint8, TCIMValue(static_cast<signed char>(-128))}, {"-2", TType::kReal32, TCIMValue(-2.0f)},
        {"65535", TType::kUint16, TCIMValue(static_cast<unsigned short>(65535))}, {"", TType::kString, TCIMValue("")},
        {"-32768", TType::kSint16, TCIMValue(static_cast<short>(-32768))}, {"FaLsE", TType::kBoolean, TCIMValue(false)},
        {"4294967295", TType::kUint32, TCIMValue(4294967295u)},
        {"-2147483648", TType::kSint32, TCIMValue(-2147483647 - 1)},
        {"a, \"b\"", TType::kString, TCIMValue("a, \"b\"")}, {"\xC3\xA9", TType::kChar16, TCIMValue(TCIMChar16(0xE9))},
        {"18446744073709551615", TType::kUint64, TCIMValue(18446744073709551615ull)},
        {"-9223372036854775808", TType::kSint64, TCIMValue(-9223372036854775807ll - 1)},
        {"\xE2\x82\xAC", TType::kChar16, TCIMValue(TCIMChar16(0x20AC))},
        {"00000001020304.000000:000", TType::kDateTime, TCIMValue(TCIMDateTime("00000001020304.000000:000"))},
    };
    for (const auto& c : cases) EXPECT_EQ(Read(c.text, c.type), c.expected) << c.text;
    EXPECT_TRUE(std::isnan(static_cast<double>(Read("NaN", TType::kReal64))));
    EXPECT_TRUE(std::isinf(static_cast<double>(Read("-INF", TType::kReal64))));
}

TEST(ValueText, TextOutsideItsTypeIsRefusedNamingTheText) {
    const struct {
        const char* text;
        TType::ECIMType type;
    } cases[] = {
        {"256", TType::kUint8}, {"-1", TType::kUint8}, {"+1", TType::kUint8}, {" 1", TType::kUint8},
        {"1 ", TType::kUint8}, {"", TType::kUint32}, {"0x10", TType::kUint32}, {"1.0", TType::kUint32},
        {"-129", TType::kSint8}, {"128", TType::kSint8}, {"65536", TType::kUint16}, {"-32769", TType::kSint16},
        {"4294967296", TType::kUint32}, {"2147483648", TType::kSint32}, {"18446744073709551616", TType::kUint64},
        {"-9223372036854775809", TType::kSint64}, {"yes", TType::kBoolean}, {"1", TType::kBoolean},
        {"1.5x", TType::kReal64}, {"", TType::kReal32}, {"", TType::kChar16}, {"AB", TType::kChar16},
        {"\xF0\x9F\x98\x80", TType::kChar16}, {"\xC3", TType::kChar16}, {"\xC1\x81", TType::kChar16},
        {"\xE0\x81\x81", TType::kChar16}, {"2024-05-01", TType::kDateTime}, {"", TType::kDateTime},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Refusal(c.text, c.type),
                  std::string("parameter P: \"") + c.text + "\" is not a valid " + TType(c.type).GetName());
    }
}

TEST(ValueText, ArraysAreCommaSeparatedElements) {
    const TCIMValue numbers = Read("1,2,300", TType::kUint16, true);
    EXPECT_EQ(numbers.GetType(), TType::kUint16);
    EXPECT_EQ(MofValue(numbers), "{1, 2, 300}");
    EXPECT_EQ(MofValue(Read("", TType::kString, true)), "{}");
    EXPECT_EQ(MofValue(Read("a,,b", TType::kString, true)), "{\"a\", \"\", \"b\"}");
    EXPECT_EQ(Refusal("1,256", TType::kUint8, true), "parameter P: \"256\" is not a valid uint8");
}

TEST(Output, MofValuesQuoteAndEscapeWhatMofQuotes) {
    const struct {
        TCIMValue value;
        const char* mof;
    } cases[] = {
        {TCIMValue("a\"b\\c\nd\te\r"), "\"a\\\"b\\\\c\\nd\\te\\r\""},
        {TCIMValue(std::string("bell\x07", 5)), "\"bell\\x07\""},
        {Null(TType::kString), "NULL"},
        {TCIMValue(TCIMChar16('x')), "\"x\""},
        {TCIMValue(TCIMReference::Parse("Dog.Name=\"Rex\"")), "\"Dog.Name=\\\"Rex\\\"\""},
        {Array(TType::kString, {TCIMValue("a"), Null(TType::kString)}), "{\"a\", NULL}"},
        {Array(TType::kString, {}), "{}"},
    };
    for (const auto& c : cases) EXPECT_EQ(MofValue(c.value), c.mof);
}

TEST(Output, JsonKeepsTypesAndDeclarationOrder) {
    const nlohmann::ordered_json values = JsonProperties({
        {"Zeta", TCIMValue(std::numeric_limits<unsigned long long>::max())},
        {"Alpha", TCIMValue(-7ll)},
        {"Bad", TCIMValue(std::nan(""))},
        {"Empty", Null(TType::kUint32)},
        {"Owner", TCIMValue(TCIMReference::Parse("Dog.Name=\"Rex\""))},
        {"List", Array(TType::kSint16, {TCIMValue(static_cast<short>(-1)), Null(TType::kSint16)})},
    });
    EXPECT_EQ(values.dump(), R"({"Zeta":18446744073709551615,"Alpha":-7,"Bad":"NaN","Empty":null,)"
                             R"("Owner":"Dog.Name=\"Rex\"","List":[-1,null]})");
    // Text that is not UTF-8 must not break the document.
    EXPECT_EQ(JsonProperties({{"Text", TCIMValue("bad\xff\xfe")}}).at("Text").get<std::string>().substr(0, 3), "bad");
}

TEST(Output, AMethodsReturnValueComesBeforeItsOutputs) {
    TMethodView method;
    method.method = "Count";
    method.outParameters = {{"Total", TCIMValue(2u)}};
    method.returnValue = TCIMValue(0u);
    EXPECT_EQ(Render<TTextAnswer>(EAnswerKind::kMethod, [&](IAnswerWriter& writer) { writer.Method(method); }),
              "ReturnValue = 0;\nTotal = 2;\n");
}

// Scripts may compare the streamed document with what a JSON library
// writes: the layout is nlohmann's dump(2), empty containers included.
TEST(Output, StreamedJsonIsLaidOutAsAJsonLibraryLaysItOut) {
    const TNamedValues properties = {{"Name", TCIMValue("Rex")},
                                     {"Legs", TCIMValue(4u)},
                                     {"Weight", TCIMValue(3.8f)},
                                     {"Ratio", TCIMValue(100.0)},
                                     {"Tags", Array(TType::kString, {TCIMValue("a"), TCIMValue("b")})},
                                     {"None", Array(TType::kString, {})}};
    const std::string streamed = JsonInstance(properties);
    EXPECT_EQ(streamed, nlohmann::ordered_json::parse(streamed).dump(2) + "\n");
    // A real32 prints as the float it is; a whole real keeps its fraction.
    EXPECT_NE(streamed.find("\"Weight\": 3.8,"), std::string::npos) << streamed;
    EXPECT_NE(streamed.find("\"Ratio\": 100.0,"), std::string::npos) << streamed;
    EXPECT_EQ(Render<TJsonAnswer>(EAnswerKind::kInstancePaths, [](IAnswerWriter&) {}), "{\n  \"paths\": []\n}\n");
}

TEST(ValueText, RealsOutsideTheirRangeAreRefusedButInfinityIsTaken) {
    EXPECT_EQ(Refusal("1e39", TType::kReal32), "parameter P: \"1e39\" is not a valid real32");
    EXPECT_EQ(Refusal("1e999", TType::kReal64), "parameter P: \"1e999\" is not a valid real64");
    EXPECT_TRUE(std::isinf(static_cast<float>(Read("INF", TType::kReal32))));
    EXPECT_EQ(static_cast<double>(Read("1e-320", TType::kReal64)) > 0, true) << "a denormal is still a real64";
}

TEST(ValueText, ElementListsAreReadOneByOne) {
    const TCIMValue list = ValueFromItems({"a,b", ""}, TType(TType::kString), true, TReferenceReader(), "parameter P");
    EXPECT_EQ(MofValue(list), "{\"a,b\", \"\"}");
    EXPECT_THROW(ValueFromItems({"1", "2"}, TType(TType::kUint8), false, TReferenceReader(), "parameter P"), TToolError);
}
