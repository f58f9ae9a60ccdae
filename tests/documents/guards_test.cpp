// What document reading refuses: classes defined again differently or by
// another module, registrations with names too long for the library, files
// that are not regular or too large, nesting beyond the limits.
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "DocumentTestSupport.h"
#include "TDocumentFile.h"
#include "TRootObject.h"

using namespace doctest;

namespace {

typedef TNamespacePopulator P;

const char kWidget[] = "[Description (\"w\")] class Widget { [Key] string Id; uint32 Size = 3; };\n";

TEST(Redefinition, OnlyTheSameDocumentOrASharedOneMayDefineAClassAgainAndOnlyIdentically) {
    TScratch scratch;
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    const std::string first = scratch.Write("a/First.classes.mof", kWidget);
    const auto defined = P::PopulateFromXMLFile(ns, first);

    // The library tags served classes; reading the module again over the
    // same namespace (a second allocation) still finds them identical.
    Qualify(*ns, *defined[0], "PLUGINNAME", TCIMValue("WidgetProvider"));
    EXPECT_EQ(P::PopulateFromXMLFile(ns, first), defined);

    const std::string intruder = scratch.Write("b/Second.classes.mof", kWidget);
    std::string message = ClassDocumentError(ns, intruder);
    EXPECT_EQ(message.rfind(intruder + ":1:", 0), 0u) << message;
    EXPECT_NE(message.find("already defined by another module, at " + first + ":1:"), std::string::npos) << message;

    const std::string shared = scratch.Write("schema/Widget.mof", kWidget);
    EXPECT_EQ(P::PopulateFromSharedFile(ns, shared), defined) << "identical: accepted";
    const std::string changed = scratch.Write("schema/Changed.mof", "class Widget { [Key] string Id; uint32 Size = 4; };");
    EXPECT_EQ(StatusOf([&] { P::PopulateFromSharedFile(ns, changed); }, &message), TZENTAStatusCode::kInvalidDocument);
    EXPECT_NE(message.find("already defined differently, at " + first + ":1:"), std::string::npos) << message;
    EXPECT_NE(message.find("differs"), std::string::npos) << message;
}

// Captures the host log in a file while it lives.
class TLogCapture {
public:
    TLogCapture() : fPath(fScratch.Path() + "/log") {
        TRootObject::GetCoreLogger()->SetLogFile(fPath);
        TRootObject::GetCoreLogger()->SetThreshold(4);
    }
    ~TLogCapture() {
        TRootObject::GetCoreLogger()->SetLogFile("");
        TRootObject::GetCoreLogger()->SetThreshold(1);
    }
    std::string Text() const { return ReadFile(fPath); }

private:
    TScratch fScratch;
    std::string fPath;
};

std::string Registration(const std::string& module, const std::string& provider) {
    return "instance of PG_ProviderModule { Name = \"" + module + "\"; };\n"
           "instance of PG_Provider { ProviderModuleName = \"" + module + "\";\n  Name = \"" + provider + "\"; };\n";
}

TEST(Registration, NamesLongerThanTheBoundAreRefusedAndSharedProviderNamesWarned) {
    TScratch scratch;
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    const std::string bound(TNamespacePopulator::kMaxRegisteredNameLength, 'p');
    EXPECT_EQ(P::PopulateFromRegXMLFile(ns, scratch.Write("ok.reg.mof", Registration("M", bound))).size(), 2u);
    std::string message;
    const std::string tooLong = scratch.Write("long.reg.mof", Registration("M", bound + "p"));
    EXPECT_EQ(StatusOf([&] { P::PopulateFromRegXMLFile(ns, tooLong); }, &message), TZENTAStatusCode::kInvalidDocument);
    EXPECT_EQ(message.rfind(tooLong + ":3:10: PG_Provider.Name has 201 bytes", 0), 0u) << message;
    const std::string longModule = scratch.Write("module.reg.mof", Registration(bound + "m", "P"));
    EXPECT_EQ(StatusOf([&] { P::PopulateFromRegXMLFile(ns, longModule); }), TZENTAStatusCode::kInvalidDocument);

    TLogCapture log;
    const std::string first = scratch.Write("First.reg.mof", Registration("First", "Shared"));
    const std::string second = scratch.Write("Second.reg.mof", Registration("Second", "Shared"));
    P::PopulateFromRegXMLFile(ns, first);
    P::PopulateFromRegXMLFile(ns, first);
    EXPECT_EQ(log.Text().find("is registered by"), std::string::npos) << "reading one document again is no clash";
    P::PopulateFromRegXMLFile(ns, second);
    EXPECT_NE(log.Text().find(second + ":3:3: provider Shared is registered by " + first + ":3:3 as well"),
              std::string::npos)
        << log.Text();
}

TEST(DocumentFiles, OnlyRegularFilesWithinTheSizeLimitAreRead) {
    TScratch scratch;
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    const std::string fifo = scratch.Path() + "/Fifo.reg.xml";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    std::string message;
    EXPECT_EQ(StatusOf([&] { P::PopulateFromRegXMLFile(ns, fifo); }, &message), TZENTAStatusCode::kInvalidDocument)
        << "a FIFO without a writer must not block";
    EXPECT_NE(message.find("not a regular file"), std::string::npos) << message;

    const std::string zero = scratch.Path() + "/Zero.classes.xml";
    ASSERT_EQ(::symlink("/dev/zero", zero.c_str()), 0);
    EXPECT_NE(ClassDocumentError(ns, zero).find(zero + ": not a regular file"), std::string::npos);

    std::string text;
    const std::string big = scratch.Write("big.mof", std::string(100, ' '));
    EXPECT_TRUE(ReadDocumentFile(big, 100, text));
    EXPECT_EQ(StatusOf([&] { ReadDocumentFile(big, 99, text); }, &message), TZENTAStatusCode::kInvalidDocument);
    EXPECT_NE(message.find("at most 99"), std::string::npos) << message;
    EXPECT_FALSE(ReadDocumentFile(scratch.Path() + "/absent.mof", 100, text));
    EXPECT_TRUE(P::PopulateFromXMLFile(ns, scratch.Path() + "/absent.classes.mof").empty());
}

std::string Repeat(const std::string& text, int times) {
    std::string out;
    for (int i = 0; i < times; ++i) out += text;
    return out;
}

TEST(DocumentFiles, DeepNestingIsRefusedNotRecursedInto) {
    TScratch scratch;
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    const int kDepth = 100000;  // far beyond any stack a recursive reader could use
    const std::string wrappers = scratch.Write(
        "wrappers.xml", "<CIM><DECLARATION>" + Repeat("<DECLGROUP>", kDepth) + Repeat("</DECLGROUP>", kDepth) +
                            "</DECLARATION></CIM>");
    EXPECT_NE(ClassDocumentError(ns, wrappers).find("wrappers are nested more than"), std::string::npos);

    const std::string reference = "<VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\">";
    const std::string references = scratch.Write(
        "references.xml", "<CIM><DECLARATION><DECLGROUP><CLASS NAME=\"A\"><PROPERTY.REFERENCE NAME=\"R\">" +
                              Repeat(reference, kDepth) +
                              Repeat("</KEYBINDING></INSTANCENAME></VALUE.REFERENCE>", kDepth) +
                              "</PROPERTY.REFERENCE></CLASS></DECLGROUP></DECLARATION></CIM>");
    EXPECT_NE(ClassDocumentError(ns, references).find("values are nested more than"), std::string::npos);

    // A chain of many subclasses is placed without recursion.
    std::string chain = "class C0 { [Key] string Id; };\n";
    for (int i = kDepth / 10; i > 0; --i) chain += "class C" + std::to_string(i) + " : C" + std::to_string(i - 1) + " {};\n";
    EXPECT_EQ(P::PopulateFromXMLFile(ns, scratch.Write("chain.mof", chain)).size(), kDepth / 10 + 1u);
}

TEST(ValueText, AnArrayReadsAsItsElementsJoined) {
    TCIMValue one;
    one.Set(TCIMValue::TCIMType::kString, 1, std::vector<TCIMValue>{TCIMValue("root/cimv2")});
    EXPECT_EQ(static_cast<std::string>(one), "root/cimv2");
    TCIMValue two;
    two.Set(TCIMValue::TCIMType::kUint16, 2,
            std::vector<TCIMValue>{TCIMValue(static_cast<unsigned short>(2)), TCIMValue(static_cast<unsigned short>(5))});
    EXPECT_EQ(static_cast<std::string>(two), "2,5");
}

}  // namespace

namespace {

TEST(Redefinition, ARepeatedQualifierDeclarationGovernsItsOwnDocumentOnly) {
    TScratch scratch;
    boost::shared_ptr<TInmemNamespace> ns = StandardRepository();
    // The standard Description propagates to subclasses; this document's
    // declaration restricts it, for this document's classes.
    P::PopulateFromSharedFile(ns, scratch.Write("schema.mof", R"(
        Qualifier Description : string = null, Scope(any), Flavor(EnableOverride, Restricted, Translatable);
        [Description ("a")] class A { };
        class B : A { };)"));
    EXPECT_FALSE(ns->GetClass("B", NoContext())->GetQualifier("Description", NoContext()));
    EXPECT_EQ(ns->GetQualifierDecl("Description", NoContext())->GetFlavor() & ICIMQualifierDecl::kToSubclass,
              ICIMQualifierDecl::kToSubclass)
        << "the namespace keeps its declaration";
    P::PopulateFromXMLFile(ns, scratch.Write("module.mof", "[Description (\"c\")] class C { }; class D : C { };"));
    EXPECT_TRUE(ns->GetClass("D", NoContext())->GetQualifier("Description", NoContext()));
}

}  // namespace
