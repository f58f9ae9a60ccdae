// The CIM-XML answer writer: every answer must be well-formed XML that says
// what the value says, whatever bytes a provider put into it.
#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "CimXml.h"
#include "CimXmlAnswer.h"
#include "ToolError.h"

using namespace NVURZENTA20;

namespace {

class TStringSink : public IByteSink {
public:
    void Write(const char* data, std::size_t size) override {
        text.append(data, size);
        ++writes;
    }
    std::string text;
    int writes = 0;
};

// Parses `fragment` (elements without one root) or fails the test.
pugi::xml_node ParseFragment(pugi::xml_document& document, const std::string& fragment) {
    const std::string wrapped = "<R>" + fragment + "</R>";
    const pugi::xml_parse_result result = document.load_buffer(wrapped.data(), wrapped.size());
    EXPECT_TRUE(result) << result.description() << " in " << fragment;
    return document.child("R");
}

std::string ValueXml(const TCIMValue& value) {
    std::string out;
    AppendCimXmlValue(out, value);
    return out;
}

TEST(CimXmlValues, EscapesEverythingXmlCannotCarryRaw) {
    const std::string nasty = std::string("a<b>&\"c' \t\n\r") + '\x01' + "\xC3\xA9" + "\xFF" + "end";
    pugi::xml_document document;
    const pugi::xml_node root = ParseFragment(document, ValueXml(TCIMValue(nasty)));
    // Markup, white space and valid UTF-8 survive; a control character and
    // a byte that is no UTF-8 become U+FFFD each.
    EXPECT_STREQ(root.child("VALUE").text().get(), "a<b>&\"c' \t\n\r\xEF\xBF\xBD\xC3\xA9\xEF\xBF\xBD" "end");

    std::string attribute;
    AppendXmlAttribute(attribute, "NAME", "x\"\n<y>");
    pugi::xml_document tag;
    ParseFragment(tag, "<E" + attribute + "/>");
    EXPECT_STREQ(tag.child("R").child("E").attribute("NAME").value(), "x\"\n<y>");
}

TEST(CimXmlValues, WritesEachTypeAndNullsAsTheDtdSays) {
    EXPECT_EQ(ValueXml(TCIMValue(true)), "<VALUE>TRUE</VALUE>");
    EXPECT_EQ(ValueXml(TCIMValue(static_cast<long long>(-9223372036854775807LL - 1))),
              "<VALUE>-9223372036854775808</VALUE>");
    EXPECT_EQ(ValueXml(TCIMValue(static_cast<unsigned long long>(18446744073709551615ULL))),
              "<VALUE>18446744073709551615</VALUE>");
    EXPECT_EQ(ValueXml(TCIMValue(std::numeric_limits<double>::quiet_NaN())), "<VALUE>NaN</VALUE>");
    TCIMValue null;
    null.SetNullValue(TCIMValue::TCIMType::kString, 0);
    EXPECT_EQ(ValueXml(null), "");

    std::vector<TCIMValue> elements{TCIMValue("a"), TCIMValue(), TCIMValue("b")};
    elements[1].SetNullValue(TCIMValue::TCIMType::kString, 0);
    TCIMValue array;
    array.Set(TCIMValue::TCIMType::kString, 3, elements);
    EXPECT_EQ(ValueXml(array), "<VALUE.ARRAY><VALUE>a</VALUE><VALUE.NULL/><VALUE>b</VALUE></VALUE.ARRAY>");
}

TEST(CimXmlValues, WritesReferencesWithTheirNamespaceAndTypedKeys) {
    TCIMReference inner;
    inner.SetClassName("Inner");
    inner.AddKeyValue("Name", TCIMValue("a \"quoted\" name"));
    TCIMReference path;
    path.SetNameSpaceName("root/cimv2");
    path.SetClassName("Outer");
    path.AddKeyValue("Flag", TCIMValue(true));
    path.AddKeyValue("Id", TCIMValue(7u));
    path.AddKeyValue("Link", TCIMValue(inner));
    pugi::xml_document document;
    const pugi::xml_node root = ParseFragment(document, ValueXml(TCIMValue(path)));
    const pugi::xml_node local = root.child("VALUE.REFERENCE").child("LOCALINSTANCEPATH");
    ASSERT_TRUE(local);
    EXPECT_STREQ(local.child("LOCALNAMESPACEPATH").first_child().attribute("NAME").value(), "root");
    EXPECT_STREQ(local.child("LOCALNAMESPACEPATH").last_child().attribute("NAME").value(), "cimv2");
    const pugi::xml_node name = local.child("INSTANCENAME");
    EXPECT_STREQ(name.attribute("CLASSNAME").value(), "Outer");
    const pugi::xml_node flag = name.find_child_by_attribute("KEYBINDING", "NAME", "Flag");
    EXPECT_STREQ(flag.child("KEYVALUE").attribute("VALUETYPE").value(), "boolean");
    const pugi::xml_node id = name.find_child_by_attribute("KEYBINDING", "NAME", "Id");
    EXPECT_STREQ(id.child("KEYVALUE").attribute("VALUETYPE").value(), "numeric");
    EXPECT_STREQ(id.child("KEYVALUE").text().get(), "7");
    const pugi::xml_node link = name.find_child_by_attribute("KEYBINDING", "NAME", "Link");
    const pugi::xml_node innerName = link.child("VALUE.REFERENCE").child("INSTANCENAME");
    EXPECT_STREQ(innerName.attribute("CLASSNAME").value(), "Inner");
    EXPECT_STREQ(innerName.child("KEYBINDING").child("KEYVALUE").text().get(), "a \"quoted\" name");
}

struct TInstanceFixture {
    std::string className = "ZENTA_Cat";
    std::string pathText = "ZENTA_Cat.Name=\"Tom\"";
    std::string nameProperty = "Name";
    std::string livesProperty = "Lives";
    TCIMValue name{"Tom & <Jerry>"};
    TCIMValue lives{9u};
    TNamedValues keys{{"Name", TCIMValue("Tom & <Jerry>")}};
    std::vector<TPropertyView> properties;

    TInstanceView View() {
        properties = {TPropertyView{&nameProperty, &name, nullptr}, TPropertyView{&livesProperty, &lives, nullptr}};
        TInstanceView view;
        view.className = &className;
        view.path.className = &className;
        view.path.keys = &keys;
        view.path.text = &pathText;
        view.properties = &properties;
        return view;
    }
};

std::string Answer(EVerb verb, EAnswerKind kind, const std::function<void(TCimXmlAnswer&)>& write) {
    TStringSink sink;
    TOutputBuffer buffer(sink, 64 * 1024);
    TCimXmlAnswer answer(buffer, verb, "host.example", "root/cimv2");
    answer.Begin(kind);
    write(answer);
    answer.End();
    buffer.Flush();
    return sink.text;
}

TEST(CimXmlAnswer, WritesEnumeratedInstancesWithTheirNamesAndWalkedOnesWithFullPaths) {
    TInstanceFixture cat;
    pugi::xml_document enumerated;
    const pugi::xml_node named =
        ParseFragment(enumerated, Answer(EVerb::kEnumerateInstances, EAnswerKind::kInstances,
                                         [&](TCimXmlAnswer& answer) { answer.Instance(cat.View()); }))
            .child("VALUE.NAMEDINSTANCE");
    ASSERT_TRUE(named);
    EXPECT_STREQ(named.child("INSTANCENAME").child("KEYBINDING").child("KEYVALUE").text().get(), "Tom & <Jerry>");
    const pugi::xml_node instance = named.child("INSTANCE");
    EXPECT_STREQ(instance.attribute("CLASSNAME").value(), "ZENTA_Cat");
    const pugi::xml_node lives = instance.find_child_by_attribute("PROPERTY", "NAME", "Lives");
    EXPECT_STREQ(lives.attribute("TYPE").value(), "uint32");
    EXPECT_STREQ(lives.child("VALUE").text().get(), "9");

    pugi::xml_document walked;
    const pugi::xml_node withPath =
        ParseFragment(walked, Answer(EVerb::kAssociators, EAnswerKind::kInstances,
                                     [&](TCimXmlAnswer& answer) { answer.Instance(cat.View()); }))
            .child("VALUE.OBJECTWITHPATH");
    ASSERT_TRUE(withPath);
    const pugi::xml_node path = withPath.child("INSTANCEPATH");
    EXPECT_STREQ(path.child("NAMESPACEPATH").child("HOST").text().get(), "host.example");
    EXPECT_TRUE(path.child("INSTANCENAME"));
    EXPECT_TRUE(withPath.child("INSTANCE"));

    pugi::xml_document single;
    EXPECT_TRUE(ParseFragment(single, Answer(EVerb::kGetInstance, EAnswerKind::kInstance,
                                             [&](TCimXmlAnswer& answer) { answer.Instance(cat.View()); }))
                    .child("INSTANCE"));
}

TEST(CimXmlAnswer, WritesNamesOfEnumerationsAndFullPathsOfWalks) {
    TInstanceFixture cat;
    const TInstanceView view = cat.View();
    pugi::xml_document names;
    EXPECT_TRUE(ParseFragment(names, Answer(EVerb::kEnumerateInstanceNames, EAnswerKind::kInstancePaths,
                                            [&](TCimXmlAnswer& answer) { answer.Path(view.path); }))
                    .child("INSTANCENAME"));
    pugi::xml_document paths;
    const pugi::xml_node objectPath =
        ParseFragment(paths, Answer(EVerb::kReferenceNames, EAnswerKind::kObjectPaths,
                                    [&](TCimXmlAnswer& answer) { answer.Path(view.path); }))
            .child("OBJECTPATH");
    EXPECT_TRUE(objectPath.child("INSTANCEPATH").child("NAMESPACEPATH").child("LOCALNAMESPACEPATH"));
}

TEST(CimXmlAnswer, StartsMethodAnswersWithAReturnValueEvenWhenNoneArrived) {
    TMethodView method;
    method.method = "ReadCommandLine";
    method.outParameters = {{"CommandLine", TCIMValue("init")}, {"Sizes", TCIMValue()}};
    method.outParameters[1].second.SetNullValue(TCIMValue::TCIMType::kUint32, 1);
    pugi::xml_document document;
    const pugi::xml_node root = ParseFragment(
        document, Answer(EVerb::kInvokeMethod, EAnswerKind::kMethod, [&](TCimXmlAnswer& answer) { answer.Method(method); }));
    const pugi::xml_node first = root.first_child();
    EXPECT_STREQ(first.name(), "RETURNVALUE");
    const pugi::xml_node text = root.find_child_by_attribute("PARAMVALUE", "NAME", "CommandLine");
    EXPECT_STREQ(text.attribute("PARAMTYPE").value(), "string");
    EXPECT_STREQ(text.child("VALUE").text().get(), "init");
    // A null output parameter is there, without a value.
    const pugi::xml_node sizes = root.find_child_by_attribute("PARAMVALUE", "NAME", "Sizes");
    ASSERT_TRUE(sizes);
    EXPECT_FALSE(sizes.first_child());
}

TEST(CimXmlAnswer, PassesLargeAnswersOnInBlocksThatJoinIntoOneDocument) {
    TInstanceFixture cat;
    TStringSink sink;
    TOutputBuffer buffer(sink, 1024);
    TCimXmlAnswer answer(buffer, EVerb::kEnumerateInstances, "h", "root/cimv2");
    answer.Begin(EAnswerKind::kInstances);
    for (int i = 0; i < 200; ++i) answer.Instance(cat.View());
    answer.End();
    buffer.Flush();
    EXPECT_GT(sink.writes, 10);
    pugi::xml_document document;
    const pugi::xml_node root = ParseFragment(document, sink.text);
    EXPECT_EQ(std::distance(root.children("VALUE.NAMEDINSTANCE").begin(), root.children("VALUE.NAMEDINSTANCE").end()),
              200);
}

TEST(CimXmlAnswer, RefusesTheProviderListWhichHasNoCimXmlForm) {
    TStringSink sink;
    TOutputBuffer buffer(sink, 1024);
    TCimXmlAnswer answer(buffer, EVerb::kProviders, "h", "root/cimv2");
    answer.Begin(EAnswerKind::kProviders);
    try {
        answer.Provider(TProviderView());
        FAIL() << "a provider list was written";
    } catch (const TToolError& error) {
        EXPECT_EQ(error.GetStatus(), ECimStatus::kNotSupported);
    }
}

}  // namespace
