// CIM-XML documents: classes and qualifier declarations, instances, value
// parsing, and failures that name file and line and change nothing.
#include <gtest/gtest.h>

#include "InmemTestSupport.h"
#include "TCIMXMLValues.h"
#include "TNamespacePopulator.h"
#include "TZENTAException.h"

using namespace inmemtest;

namespace {

typedef ICIMQualifierDecl D;
typedef TCIMValue::TCIMType T;

// What a namespace holds, to prove that a failed document changed nothing.
std::vector<std::string> Snapshot(ICIMNamespace& ns) {
    std::vector<std::string> items;
    ns.EnumerateQualifierDecls(
        [&](boost::shared_ptr<ICIMQualifierDecl> decl) {
            items.push_back("qualifier " + decl->GetName());
            return true;
        },
        NoContext());
    for (const auto& name : SubClassNames(*ns.GetClass("<root>", NoContext()), true)) {
        items.push_back("class " + name);
    }
    return items;
}

// The message of the kInvalidDocument failure of `action`, or "".
std::string DocumentFailure(const std::function<void()>& action) {
    try {
        action();
    } catch (const TZENTAException& e) {
        EXPECT_EQ(e.GetStatusCode().GetCode(), TZENTAStatusCode::kInvalidDocument) << e.what();
        return e.what();
    }
    return std::string();
}

class Populator : public ::testing::Test {
protected:
    void SetUp() override { ns = StandardRepository(); }

    std::vector<boost::shared_ptr<ICIMClass> > LoadGoodClasses() {
        return TNamespacePopulator::PopulateFromXMLFile(ns, DataFile("classes_good.xml"));
    }

    boost::shared_ptr<TInmemNamespace> ns;
};

TEST_F(Populator, ClassesComeBackInDocumentOrderWithSuperclassesDefinedFirst) {
    EXPECT_EQ(ClassNames(LoadGoodClasses()), std::vector<std::string>({"Leaf", "Mid", "Root"}));
    boost::shared_ptr<ICIMClass> leaf = ns->GetClass("Leaf", NoContext());
    ASSERT_TRUE(leaf);
    EXPECT_EQ(leaf->GetSuperClass(NoContext())->GetName(NoContext()), "Mid");
    EXPECT_EQ(SubClassNames(*ns->GetClass("Root", NoContext()), true), std::vector<std::string>({"Mid", "Leaf"}));
}

TEST_F(Populator, QualifierDeclarationsAndFlavors) {
    LoadGoodClasses();
    boost::shared_ptr<ICIMQualifierDecl> colour = ns->GetQualifierDecl("Colour", NoContext());
    ASSERT_TRUE(colour);
    EXPECT_EQ(colour->GetScope(), D::kScopeClass | D::kScopeProperty);
    EXPECT_EQ(colour->GetFlavor(), D::kEnableOverride | D::kRestricted);
    EXPECT_TRUE(colour->GetDefaultValue().IsNull());
    boost::shared_ptr<ICIMQualifierDecl> weight = ns->GetQualifierDecl("Weight", NoContext());
    EXPECT_EQ(weight->GetFlavor(), D::kDisableOverride | D::kToSubclass | D::kTranslatable);
    EXPECT_EQ(static_cast<unsigned int>(weight->GetDefaultValue()), 1u);

    boost::shared_ptr<ICIMClass> root = ns->GetClass("Root", NoContext());
    boost::shared_ptr<ICIMClass> mid = ns->GetClass("Mid", NoContext());
    boost::shared_ptr<ICIMClass> leaf = ns->GetClass("Leaf", NoContext());
    EXPECT_EQ(static_cast<std::string>(root->GetQualifier("Colour", NoContext())->GetValue()), "red");
    EXPECT_FALSE(mid->GetQualifier("Colour", NoContext())) << "restricted by its declaration";
    boost::shared_ptr<ICIMQualifier> blue = leaf->GetQualifier("Colour", NoContext());
    ASSERT_TRUE(blue);
    EXPECT_EQ(blue->GetFlavor() & (D::kToSubclass | D::kRestricted), D::kToSubclass) << "the document's own flavor";
    EXPECT_FALSE(mid->GetQualifier("Description", NoContext())) << "TOSUBCLASS=false on the qualifier";
    EXPECT_TRUE(IsTrueQualifier(*leaf, "Terminal")) << "a boolean qualifier without a value is TRUE";
    EXPECT_EQ(static_cast<unsigned int>(root->GetPropertyDecl("PU8", NoContext())->GetQualifier("Weight", NoContext())->GetValue()),
              5u);
}

TEST_F(Populator, EveryValueTypeAsAPropertyDefault) {
    LoadGoodClasses();
    boost::shared_ptr<ICIMClass> leaf = ns->GetClass("Leaf", NoContext());
    auto defaultOf = [&](const char* name) { return leaf->GetPropertyDecl(name, NoContext())->GetDefaultValue(); };
    EXPECT_EQ(defaultOf("PBool"), TCIMValue(true));
    EXPECT_EQ(defaultOf("PU8"), TCIMValue(static_cast<unsigned char>(255))) << "the propagated copy is ignored";
    EXPECT_EQ(defaultOf("PS8"), TCIMValue(static_cast<signed char>(-128)));
    EXPECT_EQ(defaultOf("PU16"), TCIMValue(static_cast<unsigned short>(65535)));
    EXPECT_EQ(defaultOf("PS16"), TCIMValue(static_cast<short>(-32768)));
    EXPECT_EQ(defaultOf("PU32"), TCIMValue(4294967295u));
    EXPECT_EQ(defaultOf("PS32"), TCIMValue(static_cast<int>(-2147483647 - 1)));
    EXPECT_EQ(defaultOf("PU64"), TCIMValue(18446744073709551615ULL));
    EXPECT_EQ(defaultOf("PS64"), TCIMValue(static_cast<long long>(-9223372036854775807LL - 1)));
    EXPECT_EQ(defaultOf("PR32"), TCIMValue(1.5f));
    EXPECT_EQ(defaultOf("PR64"), TCIMValue(-2.25e10));
    EXPECT_EQ(defaultOf("PC16"), TCIMValue(TCIMChar16(0xE9)));
    EXPECT_EQ(defaultOf("PStr"), TCIMValue(" spaced ")) << "strings keep their blanks";
    EXPECT_EQ(defaultOf("PDt"), TCIMValue(TCIMDateTime("20240102030405.000000+060")));
    const TCIMValue array = defaultOf("PArr");
    ASSERT_TRUE(array.IsArray());
    const std::vector<TCIMValue>& elements = array;
    ASSERT_EQ(elements.size(), 3u);
    EXPECT_EQ(elements[0], TCIMValue(static_cast<unsigned short>(1)));
    EXPECT_TRUE(elements[1].IsNull());
    EXPECT_TRUE(defaultOf("PNull").IsNull());
    EXPECT_EQ(defaultOf("PNull").GetType(), T::kSint32);
}

TEST_F(Populator, ReferencesMethodsAndParameters) {
    LoadGoodClasses();
    boost::shared_ptr<ICIMClass> leaf = ns->GetClass("Leaf", NoContext());
    boost::shared_ptr<ICIMPropertyDecl> ref = leaf->GetPropertyDecl("Ref", NoContext());
    EXPECT_EQ(ref->GetType(), T::kReference);
    EXPECT_EQ(ref->GetReferenceClassName(), "Root");
    EXPECT_TRUE(leaf->GetPropertyDecl("Id", NoContext())->IsKey());
    boost::shared_ptr<ICIMMethodDecl> go = leaf->GetMethodDecl("Go", NoContext());
    ASSERT_TRUE(go);
    EXPECT_EQ(go->GetReturnType(), T::kUint32);
    struct TExpected {
        const char* name;
        T::ECIMType type;
        bool isArray;
        const char* referenceClass;
    };
    const TExpected expected[] = {{"Speed", T::kUint16, false, ""},
                                  {"Target", T::kReference, false, "Root"},
                                  {"Flags", T::kString, true, ""},
                                  {"Others", T::kReference, true, "Root"}};
    std::vector<std::string> names;
    go->EnumerateParameterDecls(
        [&](boost::shared_ptr<ICIMParameterDecl> parameter) {
            names.push_back(parameter->GetName());
            return true;
        },
        NoContext());
    EXPECT_EQ(names, std::vector<std::string>({"Speed", "Target", "Flags", "Others"}));
    for (const auto& e : expected) {
        boost::shared_ptr<ICIMParameterDecl> parameter = go->GetParameterDecl(e.name, NoContext());
        ASSERT_TRUE(parameter) << e.name;
        EXPECT_EQ(parameter->GetType(), e.type) << e.name;
        EXPECT_EQ(parameter->IsArray(), e.isArray) << e.name;
        EXPECT_EQ(parameter->GetReferenceClassName(), e.referenceClass) << e.name;
    }
    EXPECT_TRUE(IsTrueQualifier(*go->GetParameterDecl("Speed", NoContext()), "IN"));
    EXPECT_TRUE(IsTrueQualifier(*go->GetParameterDecl("Flags", NoContext()), "OUT"));
}

TEST_F(Populator, InstancesComeBackInDocumentOrderUnfiled) {
    LoadGoodClasses();
    std::vector<boost::shared_ptr<ICIMInstance> > instances =
        TNamespacePopulator::PopulateFromRegXMLFile(ns, DataFile("instances_good.xml"));
    ASSERT_EQ(instances.size(), 3u);
    EXPECT_EQ(PropertyTexts(instances, "Id"), std::vector<std::string>({"r1", "m1", "m2"}));
    const ICIMInstance& r1 = *instances[0];
    auto valueOf = [](const ICIMInstance& instance, const char* name) {
        return instance.GetProperty(name, NoContext())->GetValue();
    };
    EXPECT_EQ(valueOf(r1, "PBool"), TCIMValue(false));
    EXPECT_EQ(valueOf(r1, "PS8"), TCIMValue(static_cast<signed char>(-5)));
    EXPECT_EQ(valueOf(r1, "PU64"), TCIMValue(42ULL)) << "no TYPE attribute: the declared type";
    EXPECT_EQ(valueOf(r1, "PC16"), TCIMValue(TCIMChar16('x')));
    EXPECT_TRUE(TCIMDateTime(valueOf(r1, "PDt")).IsInterval());
    EXPECT_EQ(valueOf(r1, "PArr").ToString(), "7,8,9");
    EXPECT_TRUE(valueOf(r1, "PStr").IsNull()) << "a property without a value is null";
    EXPECT_EQ(valueOf(r1, "PU32"), TCIMValue(4294967295u)) << "unset properties keep the default";

    const TCIMReference r1Path = r1.GetReference(NoContext());
    for (std::size_t i : {1u, 2u}) {
        const TCIMReference ref = valueOf(*instances[i], "Ref");
        EXPECT_TRUE(ref == r1Path) << ref.GetPath();
    }
    EXPECT_EQ(static_cast<TCIMReference>(valueOf(*instances[2], "Ref")).GetNameSpaceName(), "root/test");
    TCollector<ICIMInstance> filed;
    ns->GetClass("Root", NoContext())->EnumerateInstances(filed.Callback(), true, NoContext());
    EXPECT_TRUE(filed.items.empty());
}

TEST_F(Populator, AMissingFileGivesNothing) {
    const std::vector<std::string> before = Snapshot(*ns);
    EXPECT_TRUE(TNamespacePopulator::PopulateFromXMLFile(ns, DataFile("absent.xml")).empty());
    EXPECT_TRUE(TNamespacePopulator::PopulateFromRegXMLFile(ns, DataFile("absent.xml")).empty());
    EXPECT_EQ(Snapshot(*ns), before);
}

TEST_F(Populator, MalformedDocumentsNameFileAndLineAndChangeNothing) {
    boost::shared_ptr<ICIMClass> base = ns->AllocateClass("Base", {}, NoContext());
    AddKey(*ns, *base, "Id");
    struct TCase {
        const char* file;
        bool classes;
        int line;
        const char* reason;
    };
    const TCase cases[] = {
        {"bad_xml.xml", true, 6, "malformed XML"},
        {"not_cim.xml", true, 2, "not CIM"},
        {"unknown_element.xml", true, 6, "unknown element SPARKLE"},
        {"unknown_type.xml", true, 6, "unknown type uint128"},
        {"bad_value.xml", true, 7, "out of the range of uint8"},
        {"missing_superclass.xml", true, 5, "superclass Nowhere of class Orphan is not defined"},
        {"duplicate_class.xml", true, 9, "class TWIN is defined twice"},
        {"unknown_qualifier.xml", true, 6, "unknown qualifier Sparkle"},
        {"disable_override.xml", true, 9, "may not override"},
        {"unknown_class_instance.xml", false, 5, "unknown class Ghost"},
        {"unknown_property_instance.xml", false, 6, "has no property Nope"},
        {"wrong_property_form_instance.xml", false, 7, "is declared string"},
    };
    for (const auto& c : cases) {
        const std::vector<std::string> before = Snapshot(*ns);
        const std::string path = DataFile(c.file);
        const std::string message = DocumentFailure([&] {
            if (c.classes) {
                TNamespacePopulator::PopulateFromXMLFile(ns, path);
            } else {
                TNamespacePopulator::PopulateFromRegXMLFile(ns, path);
            }
        });
        EXPECT_EQ(message.rfind(path + ":" + std::to_string(c.line) + ": ", 0), 0u) << c.file << ": " << message;
        EXPECT_NE(message.find(c.reason), std::string::npos) << c.file << ": " << message;
        EXPECT_EQ(Snapshot(*ns), before) << c.file;
    }
}

TEST_F(Populator, ADocumentCannotDefineItsClassesTwice) {
    LoadGoodClasses();
    const std::vector<std::string> before = Snapshot(*ns);
    const std::string message = DocumentFailure([&] { LoadGoodClasses(); });
    EXPECT_NE(message.find(":15: class Leaf is already defined"), std::string::npos) << message;
    EXPECT_EQ(Snapshot(*ns), before);
}

TEST(ValueText, ParsesEachTypeWithinItsRange) {
    struct TCase {
        T::ECIMType type;
        const char* text;
        bool ok;
        TCIMValue expected;
    };
    const TCase cases[] = {
        {T::kBoolean, "tRuE", true, TCIMValue(true)},
        {T::kBoolean, " false ", true, TCIMValue(false)},
        {T::kBoolean, "yes", false, TCIMValue()},
        {T::kUint8, "0", true, TCIMValue(static_cast<unsigned char>(0))},
        {T::kUint8, "-1", false, TCIMValue()},
        {T::kSint8, "127", true, TCIMValue(static_cast<signed char>(127))},
        {T::kSint8, "-129", false, TCIMValue()},
        {T::kUint16, "65536", false, TCIMValue()},
        {T::kSint16, "0x7fff", true, TCIMValue(static_cast<short>(32767))},
        {T::kUint32, "4294967296", false, TCIMValue()},
        {T::kSint32, "+12", true, TCIMValue(12)},
        {T::kUint64, "18446744073709551616", false, TCIMValue()},
        {T::kSint64, "9223372036854775808", false, TCIMValue()},
        {T::kSint64, "-0x10", true, TCIMValue(-16LL)},
        {T::kUint32, "12abc", false, TCIMValue()},
        {T::kUint32, "", false, TCIMValue()},
        {T::kReal32, "3.4e39", false, TCIMValue()},
        {T::kReal32, "-0.25", true, TCIMValue(-0.25f)},
        {T::kReal64, "1e400", false, TCIMValue()},
        {T::kReal64, "1.0x", false, TCIMValue()},
        {T::kChar16, "ab", false, TCIMValue()},
        {T::kChar16, "\xe2\x82\xac", true, TCIMValue(TCIMChar16(0x20AC))},
        {T::kChar16, "\xf0\x9f\x98\x80", false, TCIMValue()},
        {T::kDateTime, "20070101100000.000000-000", true, TCIMValue(TCIMDateTime("20070101100000.000000-000"))},
        {T::kDateTime, "2007", false, TCIMValue()},
        {T::kString, "", true, TCIMValue("")},
    };
    for (const auto& c : cases) {
        TCIMValue value;
        std::string reason;
        const bool ok = ParseValueText(c.type, c.text, value, reason);
        EXPECT_EQ(ok, c.ok) << T(c.type).GetName() << " \"" << c.text << "\": " << reason;
        if (ok && c.ok) {
            EXPECT_EQ(value, c.expected) << T(c.type).GetName() << " \"" << c.text << "\"";
        }
        if (!ok) {
            EXPECT_FALSE(reason.empty());
        }
    }
}

}  // namespace
