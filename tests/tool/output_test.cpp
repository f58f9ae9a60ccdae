// Printing answers: MOF values with their escapes, and JSON documents with
// typed values that scripts can rely on.
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Output.h"
#include "TCIMDateTime.h"
#include "TCIMReference.h"

using namespace NVURZENTA20;
typedef TCIMValue::TCIMType TType;

namespace {

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

TCIMReference DogPath() {
    TCIMReference path;
    path.SetClassName("Dog");
    path.AddKeyValue("Name", TCIMValue("Rex"));
    return path;
}

TRequestResult OneInstance(const TNamedValues& properties) {
    TRequestResult result;
    result.kind = TRequestResult::kInstance;
    TInstanceRecord instance;
    instance.className = "Thing";
    instance.path = "Thing.Id=1";
    instance.properties = properties;
    result.instances.push_back(instance);
    return result;
}

}  // namespace

TEST(Output, MofValuesQuoteAndEscapeWhatMofQuotes) {
    const struct {
        TCIMValue value;
        const char* mof;
    } cases[] = {
        {TCIMValue("plain"), "\"plain\""},
        {TCIMValue("a\"b\\c\nd\te\r"), "\"a\\\"b\\\\c\\nd\\te\\r\""},
        {TCIMValue(std::string("bell\x07", 5)), "\"bell\\x07\""},
        {Null(TType::kString), "NULL"},
        {TCIMValue(true), "TRUE"},
        {TCIMValue(-5), "-5"},
        {TCIMValue(2.5), "2.5"},
        {TCIMValue(TCIMChar16('x')), "\"x\""},
        {TCIMValue(TCIMDateTime("20240501130405.000000+000")), "\"20240501130405.000000+000\""},
        {TCIMValue(DogPath()), "\"Dog.Name=\\\"Rex\\\"\""},
        {Array(TType::kUint8, {TCIMValue(static_cast<unsigned char>(1)), TCIMValue(static_cast<unsigned char>(2))}),
         "{1, 2}"},
        {Array(TType::kString, {TCIMValue("a"), Null(TType::kString)}), "{\"a\", NULL}"},
        {Array(TType::kString, {}), "{}"},
    };
    for (const auto& c : cases) EXPECT_EQ(MofValue(c.value), c.mof);
}

TEST(Output, InstancesPrintAsMofWithTheirPath) {
    const std::string text = RenderText(OneInstance({{"Id", TCIMValue(1u)}, {"Note", Null(TType::kString)}}));
    EXPECT_EQ(text, "// Thing.Id=1\ninstance of Thing {\n    Id = 1;\n    Note = NULL;\n};\n");
}

TEST(Output, JsonKeepsTypesAndDeclarationOrder) {
    const TNamedValues properties = {
        {"Zeta", TCIMValue(std::numeric_limits<unsigned long long>::max())},
        {"Alpha", TCIMValue(-7ll)},
        {"Flag", TCIMValue(false)},
        {"Ratio", TCIMValue(0.25)},
        {"Bad", TCIMValue(std::nan(""))},
        {"Empty", Null(TType::kUint32)},
        {"When", TCIMValue(TCIMDateTime("20240501130405.000000+000"))},
        {"Owner", TCIMValue(DogPath())},
        {"List", Array(TType::kSint16, {TCIMValue(static_cast<short>(-1)), Null(TType::kSint16)})},
    };
    const std::string text = RenderJson(OneInstance(properties));
    const nlohmann::ordered_json document = nlohmann::ordered_json::parse(text);
    const nlohmann::ordered_json& instance = document.at("instance");
    EXPECT_EQ(instance.at("className"), "Thing");
    EXPECT_EQ(instance.at("path"), "Thing.Id=1");
    const nlohmann::ordered_json& values = instance.at("properties");
    std::vector<std::string> order;
    for (auto it = values.begin(); it != values.end(); ++it) order.push_back(it.key());
    EXPECT_EQ(order, (std::vector<std::string>{"Zeta", "Alpha", "Flag", "Ratio", "Bad", "Empty", "When", "Owner",
                                               "List"}));
    EXPECT_EQ(values.at("Zeta").get<unsigned long long>(), std::numeric_limits<unsigned long long>::max());
    EXPECT_EQ(values.at("Alpha").get<long long>(), -7);
    EXPECT_TRUE(values.at("Flag").is_boolean());
    EXPECT_DOUBLE_EQ(values.at("Ratio").get<double>(), 0.25);
    EXPECT_EQ(values.at("Bad"), "NaN");
    EXPECT_TRUE(values.at("Empty").is_null());
    EXPECT_EQ(values.at("When"), "20240501130405.000000+000");
    EXPECT_EQ(values.at("Owner"), "Dog.Name=\"Rex\"");
    EXPECT_EQ(values.at("List"), nlohmann::ordered_json::parse("[-1, null]"));
}

TEST(Output, JsonSurvivesTextThatIsNotUtf8) {
    const std::string text = RenderJson(OneInstance({{"Name", TCIMValue("bad\xff\xfe")}}));
    const nlohmann::json document = nlohmann::json::parse(text);
    EXPECT_EQ(document.at("instance").at("properties").at("Name").get<std::string>().substr(0, 3), "bad");
}

TEST(Output, EveryKindOfAnswerHasItsJsonDocument) {
    TRequestResult result;
    const struct {
        TRequestResult::EKind kind;
        const char* field;
    } kinds[] = {
        {TRequestResult::kProviders, "providers"}, {TRequestResult::kClasses, "classes"},
        {TRequestResult::kInstances, "instances"}, {TRequestResult::kPaths, "paths"},
        {TRequestResult::kMethod, "outParameters"},
    };
    for (const auto& k : kinds) {
        result.kind = k.kind;
        const nlohmann::json document = nlohmann::json::parse(RenderJson(result));
        EXPECT_TRUE(document.contains(k.field)) << k.field;
    }
    result.kind = TRequestResult::kMethod;
    result.method.method = "Count";
    result.method.outParameters = {{"Total", TCIMValue(2u)}};
    EXPECT_EQ(RenderText(result), "Total = 2;\n");
    result.method.returnValue = TCIMValue(0u);
    EXPECT_EQ(RenderText(result), "ReturnValue = 0;\nTotal = 2;\n");
}
