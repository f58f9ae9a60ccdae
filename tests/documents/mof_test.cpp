// MOF documents: the same classes as CIM-XML, instances with aliases,
// includes, and failures that name file, line and column and change nothing.
#include <gtest/gtest.h>

#include "DocumentTestSupport.h"

using namespace doctest;

namespace {

typedef TNamespacePopulator P;
typedef TCIMValue::TCIMType T;

std::string DocumentData(const std::string& name) { return std::string(ZENTA_DOCUMENT_DATA_DIR) + "/" + name; }

TCIMValue DefaultOf(ICIMNamespace& ns, const char* cls, const char* property) {
    return ns.GetClass(cls, NoContext())->GetPropertyDecl(property, NoContext())->GetDefaultValue();
}

TEST(Mof, DefinesTheSameClassesAsTheCimXmlDocument) {
    // Each format read over the other is accepted as an identical
    // redefinition only when every qualifier, flavor, default, reference
    // class and parameter agrees.
    const std::string xml = DataFile("classes_good.xml"), mof = DocumentData("classes_good.mof");
    for (const auto& order : {std::make_pair(xml, mof), std::make_pair(mof, xml)}) {
        boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
        const auto first = P::PopulateFromSharedFile(ns, order.first);
        std::vector<boost::shared_ptr<ICIMClass> > second;
        ASSERT_EQ(StatusOf([&] { second = P::PopulateFromSharedFile(ns, order.second); }), 0) << order.second;
        EXPECT_EQ(ClassNames(second), std::vector<std::string>({"Leaf", "Mid", "Root"}));
        EXPECT_EQ(second, first) << "the classes already defined are returned";
    }
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    P::PopulateFromSharedFile(ns, mof);
    EXPECT_EQ(DefaultOf(*ns, "Root", "PS8"), TCIMValue(static_cast<signed char>(-128))) << "binary";
    EXPECT_EQ(DefaultOf(*ns, "Root", "PU8"), TCIMValue(static_cast<unsigned char>(255))) << "octal";
    EXPECT_EQ(DefaultOf(*ns, "Root", "PC16"), TCIMValue(TCIMChar16(0xE9))) << "escape";
    EXPECT_EQ(ns->GetClass("Root", NoContext())->GetQualifier("Description", NoContext())->GetValue(),
              TCIMValue("the root"))
        << "concatenated literals";
}

TEST(Mof, InstancesTakeAliasesReferencesAndSingleValuesForArrays) {
    TScratch scratch;
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    P::PopulateFromXMLFile(ns, scratch.Write("pets.classes.mof", R"(
        class Pet { [Key] string Name; uint32 Age; string Tags[]; };
        [Association] class Owns { [Key] Pet REF Owner; [Key] Pet REF Owned; };)"));
    const auto instances = P::PopulateFromRegXMLFile(ns, scratch.Write("pets.reg.mof", R"(
        instance of Pet as $Rex { Name = "Rex"; Age = 0x10; Tags = "good"; };
        instance of Owns { Owner = $rex; Owned = "Pet.Name=\"Tom\""; };)"));
    ASSERT_EQ(instances.size(), 2u);
    EXPECT_EQ(instances[0]->GetProperty("Age", NoContext())->GetValue(), TCIMValue(16u));
    EXPECT_EQ(static_cast<std::string>(instances[0]->GetProperty("Tags", NoContext())->GetValue()), "good");
    const TCIMReference owner = instances[1]->GetProperty("Owner", NoContext())->GetValue();
    EXPECT_EQ(owner.GetPath(), instances[0]->GetReference(NoContext()).GetPath()) << "aliases ignore case";
    const TCIMReference owned = instances[1]->GetProperty("Owned", NoContext())->GetValue();
    EXPECT_EQ(owned.GetClassName(), "Pet");
}

TEST(Mof, BadDocumentsNameFileLineAndColumnAndChangeNothing) {
    const char* const kBase = "class Base { [Key] string Id; };\nclass Holder { [Key] Base REF Ref; };\n";
    const struct {
        const char* text;
        int line;
        int column;
        const char* reason;
    } cases[] = {
        {"class A { string S }", 1, 20, "expected (, [, = or ;"},
        {"class A {\n  string S = \"open;\n};", 3, 3, "not closed"},
        {"class A { string S = \"\\q\"; };", 1, 24, "unknown escape"},
        {"class A { uint128 X; };", 1, 11, "expected a property"},
        {"[Sparkle] class A { };", 1, 2, "qualifier Sparkle is not declared"},
        {"class A : Nowhere { };", 1, 7, "superclass Nowhere of class A is not defined"},
        {"class A { Ghost REF G; };", 1, 21, "reference class Ghost of G is not defined"},
        {"class A { uint8 U = 256; };", 1, 21, "out of the range of uint8"},
        {"class A { uint8 U = \"1\"; };", 1, 21, "not given a string"},
        {"class A { string S[] = \"x\"; };", 1, 24, "not given a single value"},
        {"class A { string S; uint8 s; };", 1, 27, "declares s twice"},
        {"class A { uint64 U = 0777777777777777777777777; };", 1, 22, "does not fit in 64 bits"},
        {"class A { string S = \"a\\x0\"; };", 1, 22, "character 0"},
        {"\x7f" "ELF\x01\x02\x00\x00", 1, 1, "expected a class"},
        {"instance of Base { Id = \"a\"; Id = \"b\"; };", 1, 30, "gives property Id twice"},
        {"instance of Base { Nope = 1; };", 1, 20, "has no property Nope"},
        {"instance of Holder { Ref = $nobody; };", 1, 28, "alias $nobody names no instance"},
        {"#pragma include (\"missing.mof\")", 1, 9, "does not exist"},
        {"Qualifier Key : string, Scope(property);", 1, 11, "declared string here and boolean"},
        {"class A { [Key (1, 2)] string S; };", 1, 18, "expected )"},
    };
    TScratch scratch;
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    P::PopulateFromXMLFile(ns, scratch.Write("base.mof", kBase));
    int index = 0;
    for (const auto& c : cases) {
        const std::string path = scratch.Write("case" + std::to_string(index++) + ".mof", c.text);
        const std::vector<std::string> before = Snapshot(*ns);
        std::string message;
        const bool instances = std::string(c.text).rfind("instance", 0) == 0;
        const auto read = [&] { instances ? (void)P::PopulateFromRegXMLFile(ns, path) : (void)P::PopulateFromXMLFile(ns, path); };
        EXPECT_EQ(StatusOf(read, &message), TZENTAStatusCode::kInvalidDocument) << c.text << "\n" << message;
        const std::string where = path + ":" + std::to_string(c.line) + ":" + std::to_string(c.column) + ": ";
        EXPECT_EQ(message.rfind(where, 0), 0u) << c.text << "\n" << message;
        EXPECT_NE(message.find(c.reason), std::string::npos) << message;
        EXPECT_EQ(Snapshot(*ns), before) << c.text;
    }
}

TEST(Mof, IncludesResolveAgainstTheIncludingFileAndStopAtCyclesAndDepth) {
    TScratch scratch;
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    const std::string top = scratch.Write("top.mof", "#pragma include (\"sub/a.mof\")\n#pragma locale (\"en_US\")\n");
    scratch.Write("sub/a.mof", "#pragma include (\"b.mof\")\nclass A : B { };\n");
    const std::string b = scratch.Write("sub/b.mof", "// B\n\nclass B { [Key] string Id; };\n");
    EXPECT_EQ(ClassNames(P::PopulateFromXMLFile(ns, top)), std::vector<std::string>({"B", "A"}));

    // A fault in an included file is named by that file's own line.
    scratch.Write("sub/b.mof", "// B\n\nclass C { [Key] string Id };\n");
    EXPECT_EQ(ClassDocumentError(StandardRepository(), top).rfind(b + ":3:27: expected", 0), 0u)
        << ClassDocumentError(StandardRepository(), top);

    const std::string cycle = scratch.Write("cycle.mof", "#pragma include (\"./loop/../cycle.mof\")\n");
    EXPECT_NE(ClassDocumentError(ns, cycle).find("which is being read already"), std::string::npos);

    // Each level includes the next one down: deeper than the limit fails.
    std::string deep;
    for (int level = 0; level < 40; ++level) {
        deep = scratch.Write("deep/" + std::to_string(level) + ".mof",
                             "#pragma include (\"" + std::to_string(level + 1) + ".mof\")\n");
    }
    scratch.Write("deep/40.mof", "");
    EXPECT_NE(ClassDocumentError(ns, scratch.Path() + "/deep/0.mof").find("nested more than 32 deep"),
              std::string::npos);
}

TEST(Schema, TheCimSchemaReadsInFull) {
    if (!std::filesystem::is_directory(ZENTA_SCHEMA_DIR)) GTEST_SKIP() << "no CIM schema at " << ZENTA_SCHEMA_DIR;
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    EXPECT_EQ(P::PopulateFromSchemaDirectories(ns, {ZENTA_SCHEMA_DIR}), std::vector<std::string>());
    EXPECT_GT(SubClassNames(*ns->GetClass("<root>", NoContext()), true).size(), 1400u);
    boost::shared_ptr<ICIMClass> process = ns->GetClass("CIM_Process", NoContext());
    ASSERT_TRUE(process);
    EXPECT_TRUE(process->IsSubclassOf(ns->GetClass("CIM_ManagedElement", NoContext()), NoContext()));
    EXPECT_TRUE(process->GetPropertyDecl("Handle", NoContext())->IsKey());
    EXPECT_TRUE(ns->GetClass("CIM_Dependency", NoContext())->IsAssociation(NoContext()));
}

}  // namespace
