// CIM-XML documents: good ones, value texts, and failures that name file and line and change nothing.
#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TValueText.h"
#include "TNamespacePopulator.h"

using namespace inmemtest;

namespace {

typedef ICIMQualifierDecl D;
typedef TCIMValue::TCIMType T;
typedef TNamespacePopulator P;

// What a namespace holds, to prove that a failed document changed nothing.
std::vector<std::string> Snapshot(ICIMNamespace& ns) {
    std::vector<std::string> items = SubClassNames(*ns.GetClass("<root>", NoContext()), true);
    ns.EnumerateQualifierDecls([&](boost::shared_ptr<ICIMQualifierDecl> decl) {
        items.push_back("qualifier " + decl->GetName());
        return true;
    }, NoContext());
    return items;
}

class Populator : public ::testing::Test {
protected:
    auto LoadGoodClasses() { return P::PopulateFromXMLFile(ns, DataFile("classes_good.xml")); }
    TCIMValue DefaultOf(const char* cls, const char* property) {
        return ns->GetClass(cls, NoContext())->GetPropertyDecl(property, NoContext())->GetDefaultValue();
    }
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
};

TEST_F(Populator, ClassesComeInDocumentOrderWithTheirDeclarationsFlavorsAndDefaults) {
    EXPECT_EQ(ClassNames(LoadGoodClasses()), std::vector<std::string>({"Leaf", "Mid", "Root"}));
    EXPECT_EQ(ns->GetClass("Leaf", NoContext())->GetSuperClass(NoContext())->GetName(NoContext()), "Mid");
    boost::shared_ptr<ICIMClass> mid = ns->GetClass("Mid", NoContext()), leaf = ns->GetClass("Leaf", NoContext());
    EXPECT_FALSE(mid->GetQualifier("Colour", NoContext())) << "restricted by its declaration";
    EXPECT_EQ(leaf->GetQualifier("Colour", NoContext())->GetFlavor() & D::kToSubclass, D::kToSubclass);
    EXPECT_FALSE(mid->GetQualifier("Description", NoContext())) << "TOSUBCLASS=false on the qualifier";
    EXPECT_EQ(leaf->GetQualifier("Terminal", NoContext())->GetValue(), TCIMValue(true)) << "no value: TRUE";
    EXPECT_EQ(DefaultOf("Leaf", "PU8"), TCIMValue(static_cast<unsigned char>(255))) << "propagated copies are ignored";
    EXPECT_EQ(DefaultOf("Leaf", "PStr"), TCIMValue(" spaced ")) << "strings keep their blanks";
    EXPECT_EQ(DefaultOf("Leaf", "PNull"), NullOf(T::kSint32));
}

TEST_F(Populator, BadDocumentsNameFileAndLineAndChangeNothing) {
    AddKey(*ns, *ns->AllocateClass("Base", {}, NoContext()), "Id");
    const struct { const char* file; bool classes; int line; const char* reason; } cases[] = {
        {"bad_xml.xml", true, 6, "malformed XML"}, {"not_cim.xml", true, 2, "not CIM"},
        {"unknown_element.xml", true, 6, "unknown element SPARKLE"},
        {"unknown_type.xml", true, 6, "unknown type uint128"}, {"bad_value.xml", true, 7, "out of the range of uint8"},
        {"missing_superclass.xml", true, 5, "superclass Nowhere of class Orphan is not defined"},
        {"duplicate_class.xml", true, 9, "class TWIN is defined twice"},
        {"unknown_qualifier.xml", true, 6, "qualifier Sparkle is not declared"},
        {"disable_override.xml", true, 9, "may not override"},
        {"unknown_class_instance.xml", false, 5, "unknown class Ghost"},
        {"unknown_property_instance.xml", false, 6, "has no property Nope"},
        {"wrong_property_form_instance.xml", false, 6, "is declared string"},
    };
    LoadGoodClasses();
    for (const auto& c : cases) {
        const std::vector<std::string> before = Snapshot(*ns);
        const std::string path = DataFile(c.file);
        std::string message;
        const auto read = [&] {
            c.classes ? (void)P::PopulateFromXMLFile(ns, path) : (void)P::PopulateFromRegXMLFile(ns, path);
        };
        EXPECT_EQ(StatusOf(read, &message), TZENTAStatusCode::kInvalidDocument) << c.file;
        EXPECT_EQ(message.rfind(path + ":" + std::to_string(c.line) + ":", 0), 0u) << message;
        EXPECT_NE(message.find(c.reason), std::string::npos) << message;
        EXPECT_EQ(Snapshot(*ns), before) << c.file;
    }
    EXPECT_TRUE(P::PopulateFromXMLFile(ns, DataFile("absent.xml")).empty()) << "a missing file gives nothing";
}

TEST(ValueText, ParsesEachTypeWithinItsRange) {
    const struct { T::ECIMType type; const char* text; TCIMValue expected; } cases[] = {  // expected unset: refused
        {T::kBoolean, " tRuE ", TCIMValue(true)}, {T::kBoolean, "yes", TCIMValue()},
        {T::kUint8, "-1", TCIMValue()}, {T::kUint16, "65536", TCIMValue()},
        {T::kSint16, "0x7fff", TCIMValue(static_cast<short>(32767))}, {T::kUint32, "4294967296", TCIMValue()},
        {T::kSint32, "+12", TCIMValue(12)}, {T::kUint64, "18446744073709551616", TCIMValue()},
        {T::kSint64, "9223372036854775808", TCIMValue()}, {T::kSint64, "-0x10", TCIMValue(-16LL)},
        {T::kUint32, "12abc", TCIMValue()}, {T::kReal32, "3.4e39", TCIMValue()},
        {T::kReal32, "-0.25", TCIMValue(-0.25f)}, {T::kReal64, "1e400", TCIMValue()}, {T::kReal64, "1.0x", TCIMValue()},
        {T::kChar16, "ab", TCIMValue()}, {T::kChar16, "\xe2\x82\xac", TCIMValue(TCIMChar16(0x20AC))},
        {T::kChar16, "\xf0\x9f\x98\x80", TCIMValue()}, {T::kDateTime, "2007", TCIMValue()},
        {T::kString, "", TCIMValue("")},
    };
    for (const auto& c : cases) {
        TCIMValue value;
        std::string reason;
        const bool ok = ParseValueText(c.type, c.text, value, reason);
        EXPECT_EQ(ok, !c.expected.IsNull()) << T(c.type).GetName() << " \"" << c.text << "\": " << reason;
        EXPECT_TRUE(ok ? value == c.expected : !reason.empty()) << T(c.type).GetName() << " \"" << c.text << "\"";
    }
}

}  // namespace
