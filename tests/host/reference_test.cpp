// TCIMReference: path text and its parser, key bindings, equality, the two
// readings of a path handle, and resolution through a namespace.
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MockHostObjects.h"
#include "TCIMReference.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;
using ::testing::_;
using ::testing::Return;

namespace {

typedef TCIMValue::TCIMType TType;
typedef std::vector<std::pair<std::string, TCIMValue> > TBindings;

TCIMReference MakePath(const std::string& className, const TBindings& bindings) {
    TCIMReference path;
    path.SetClassName(className);
    for (const std::pair<std::string, TCIMValue>& binding : bindings) path.AddKeyValue(binding.first, binding.second);
    return path;
}

TCIMValue NullString() {
    TCIMValue value;
    value.SetNullValue(TType::kString, 0);
    return value;
}

TCIMValue UnsignedPair() {
    TCIMValue array;
    const std::vector<TCIMValue> elements = {TCIMValue(static_cast<unsigned char>(1)),
                                             TCIMValue(static_cast<unsigned char>(2))};
    array.Set(TType(TType::kUint8), 2, elements);
    return array;
}

TCIMReference WithNamespaceName(TCIMReference path, const std::string& ns) {
    path.SetNameSpaceName(ns);
    return path;
}

TBindings Collect(const TCIMReference& path) {
    TBindings seen;
    path.EnumerateKeyBindings([&seen](std::pair<std::string, TCIMValue> binding) {
        seen.push_back(binding);
        return true;
    });
    return seen;
}

// The handle reading of a path: the first two words as a shared reference.
boost::shared_ptr<TCIMReference>& AsSharedHandle(TCIMReference& path) {
    return *reinterpret_cast<boost::shared_ptr<TCIMReference>*>(&path);
}

}  // namespace

// --- writing and reading back ----------------------------------------------

struct TPathTextRow {
    const char* label;
    TCIMReference path;
    std::string text;
    bool typesSurvive;  // the parsed path equals the original, not only its text
};

class PathTextTest : public ::testing::TestWithParam<TPathTextRow> {};

TEST_P(PathTextTest, WritesTheTextAndReadsItBack) {
    const TPathTextRow& row = GetParam();
    EXPECT_EQ(row.path.GetPath(), row.text);
    const TCIMReference parsed = TCIMReference::Parse(row.text);
    EXPECT_EQ(parsed.GetPath(), row.text);
    EXPECT_EQ(parsed.GetKeyCount(), row.path.GetKeyCount());
    if (row.typesSurvive) {
        EXPECT_EQ(parsed, row.path);
    }
}

const TPathTextRow kPathTextRows[] = {
    {"class_only", MakePath("CIM_Foo", {}), "CIM_Foo", true},
    {"string", MakePath("CIM_Foo", {{"Name", TCIMValue("abc")}}), "CIM_Foo.Name=\"abc\"", true},
    {"empty_string", MakePath("CIM_Foo", {{"Name", TCIMValue("")}}), "CIM_Foo.Name=\"\"", true},
    {"escapes", MakePath("X", {{"s", TCIMValue("a\"b\\c")}}), "X.s=\"a\\\"b\\\\c\"", true},
    {"separators_in_string", MakePath("X", {{"s", TCIMValue("a,b=c.d:e")}}), "X.s=\"a,b=c.d:e\"", true},
    {"booleans", MakePath("X", {{"t", TCIMValue(true)}, {"f", TCIMValue(false)}}), "X.f=FALSE,t=TRUE", true},
    {"unsigned", MakePath("X", {{"k", TCIMValue(18446744073709551615ULL)}}), "X.k=18446744073709551615", true},
    {"signed", MakePath("X", {{"k", TCIMValue(std::numeric_limits<long long>::min())}}),
     "X.k=-9223372036854775808", true},
    {"narrow_integers", MakePath("X", {{"a", TCIMValue(static_cast<unsigned char>(7))}, {"b", TCIMValue(-3)}}),
     "X.a=7,b=-3", false},
    {"real", MakePath("X", {{"r", TCIMValue(1.5)}}), "X.r=1.5", true},
    {"whole_real", MakePath("X", {{"r", TCIMValue(1.0)}}), "X.r=1.0", true},
    {"negative_zero", MakePath("X", {{"r", TCIMValue(-0.0)}}), "X.r=-0.0", true},
    {"big_real", MakePath("X", {{"r", TCIMValue(1e21)}}), "X.r=1e+21", true},
    {"real32", MakePath("X", {{"r", TCIMValue(0.1f)}}), "X.r=0.1", false},
    {"not_a_number", MakePath("X", {{"r", TCIMValue(std::numeric_limits<double>::quiet_NaN())}}), "X.r=NaN", true},
    {"infinities",
     MakePath("X", {{"n", TCIMValue(-std::numeric_limits<double>::infinity())},
                    {"p", TCIMValue(std::numeric_limits<double>::infinity())}}),
     "X.n=-INF,p=INF", true},
    {"char16", MakePath("X", {{"c", TCIMValue(TCIMChar16('"'))}}), "X.c=\"\\\"\"", false},
    {"datetime", MakePath("X", {{"d", TCIMValue(TCIMDateTime("20070101100000.000000-000"))}}),
     "X.d=\"20070101100000.000000-000\"", false},
    {"null", MakePath("X", {{"n", NullString()}}), "X.n=\"\"", false},
    {"array", MakePath("X", {{"a", UnsignedPair()}}), "X.a=\"1,2\"", false},
    {"key_order_ignores_case",
     MakePath("X", {{"Zeta", TCIMValue(1ULL)}, {"alpha", TCIMValue(2ULL)}, {"Beta", TCIMValue(3ULL)}}),
     "X.alpha=2,Beta=3,Zeta=1", true},
    {"embedded_reference", MakePath("Assoc", {{"Ref", TCIMValue(MakePath("CIM_A", {{"Name", TCIMValue("x")}}))}}),
     "Assoc.Ref=\"CIM_A.Name=\\\"x\\\"\"", true},
    {"embedded_with_namespace",
     MakePath("Assoc", {{"Ref", TCIMValue(WithNamespaceName(MakePath("CIM_B", {{"Id", TCIMValue(3ULL)}}),
                                                             "root/cimv2"))}}),
     "Assoc.Ref=\"root/cimv2:CIM_B.Id=3\"", true},
    {"doubly_embedded",
     MakePath("Outer",
              {{"Mid", TCIMValue(MakePath("Mid", {{"In", TCIMValue(MakePath("In", {{"s", TCIMValue("q\"\\")}}))}}))}}),
     "Outer.Mid=\"Mid.In=\\\"In.s=\\\\\\\"q\\\\\\\\\\\\\\\"\\\\\\\\\\\\\\\\\\\\\\\"\\\"\"", true},
    {"string_that_looks_like_a_path", MakePath("X", {{"s", TCIMValue("Y.k=01")}}), "X.s=\"Y.k=01\"", true},
    {"string_that_is_a_path_prefix", MakePath("X", {{"s", TCIMValue("Y.k=")}}), "X.s=\"Y.k=\"", true},
};

INSTANTIATE_TEST_SUITE_P(Reference, PathTextTest, ::testing::ValuesIn(kPathTextRows),
                         [](const ::testing::TestParamInfo<TPathTextRow>& info) { return info.param.label; });

TEST(Reference, ParsedValuesGetTheirTypes) {
    const TCIMReference path =
        TCIMReference::Parse("root/cimv2:CIM_Foo.a=-5,B=true,c=5,d=2.5,e=\"x\",f=1e3,g=false,h=+7,i=\"Y.k=1\"");
    EXPECT_EQ(path.GetNameSpaceName(), "root/cimv2");
    EXPECT_EQ(path.GetClassName(), "CIM_Foo");
    EXPECT_FALSE(path.GetNamespace());
    EXPECT_EQ(path.GetKeyValue("a"), TCIMValue(-5LL));
    EXPECT_EQ(path.GetKeyValue("b"), TCIMValue(true));
    EXPECT_EQ(path.GetKeyValue("c"), TCIMValue(5ULL));
    EXPECT_EQ(path.GetKeyValue("d"), TCIMValue(2.5));
    EXPECT_EQ(path.GetKeyValue("e"), TCIMValue("x"));
    EXPECT_EQ(path.GetKeyValue("f"), TCIMValue(1000.0));
    EXPECT_EQ(path.GetKeyValue("G"), TCIMValue(false));
    EXPECT_EQ(path.GetKeyValue("h"), TCIMValue(7ULL));
    const TCIMValue embedded = path.GetKeyValue("i");
    ASSERT_EQ(embedded.GetType(), TType::kReference);
    EXPECT_EQ(static_cast<TCIMReference>(embedded), MakePath("Y", {{"k", TCIMValue(1ULL)}}));
}

TEST(Reference, QuotedTextBecomesAReferenceOnlyWhenWrittenAsOne) {
    const char* const strings[] = {"X.s=\"Y\"", "X.s=\"Y.k=01\"", "X.s=\"Y.b=1,a=2\"", "X.s=\"Y.k=1,\"",
                                   "X.s=\"just.text\""};
    for (const char* text : strings) {
        EXPECT_EQ(TCIMReference::Parse(text).GetKeyValue("s").GetType(), TType::kString) << text;
    }
    EXPECT_EQ(TCIMReference::Parse("X.s=\"Y.a=1,b=2\"").GetKeyValue("s").GetType(), TType::kReference);
}

TEST(Reference, ArbitraryStringsRoundTrip) {
    const char* const strings[] = {"", "\"", "\\", "\\\"", "a\\", "x\"y\"z", ",", "=", ":", ".", "A.b=\"c",
                                   "A.b=\\\"c\\\"", "é ü", "\t\n"};
    for (const char* text : strings) {
        const TCIMReference path = MakePath("X", {{"s", TCIMValue(text)}});
        const TCIMReference parsed = TCIMReference::Parse(path.GetPath());
        EXPECT_EQ(parsed.GetPath(), path.GetPath()) << text;
        EXPECT_EQ(static_cast<std::string>(parsed.GetKeyValue("s")), text) << path.GetPath();
    }
}

struct TMalformedRow {
    const char* text;
    const char* problem;
};

class MalformedPathTest : public ::testing::TestWithParam<TMalformedRow> {};

TEST_P(MalformedPathTest, IsRejectedWithWhereItWentWrong) {
    const TMalformedRow& row = GetParam();
    try {
        const TCIMReference path = TCIMReference::Parse(row.text);
        ADD_FAILURE() << "accepted as " << path.GetPath();
    } catch (const TZENTAException& failure) {
        const std::string message = failure.what();
        EXPECT_EQ(failure.GetStatusCode(), TZENTAStatusCode::kInvalidPath);
        EXPECT_NE(message.find(std::string("\"") + row.text + "\""), std::string::npos) << message;
        EXPECT_NE(message.find(row.problem), std::string::npos) << message;
    }
}

const TMalformedRow kMalformedRows[] = {
    {"", "empty at offset 0"},
    {".k=1", "class name is missing at offset 0"},
    {"1X", "class name is missing"},
    {"root/cimv2:", "class name is missing at offset 11"},
    {":X", "namespace name before ':' is empty"},
    {"X y", "' ' follows the class name at offset 1"},
    {"X.", "key name is missing at offset 2"},
    {"X.=1", "key name is missing at offset 2"},
    {"X.k=1,", "key name is missing at offset 6"},
    {"X.k", "'=' is missing after key k at offset 3"},
    {"X.k 1", "'=' is missing after key k"},
    {"X.k=", "value of key k is missing at offset 4"},
    {"X.k=,j=1", "value of key k is missing"},
    {"X.k=\"abc", "quoted value is not terminated at offset 4"},
    {"X.k=\"abc\\\"", "not terminated"},
    {"X.k=\"a\"b", "'b' follows a key value at offset 7"},
    {"X.k=abc", "value abc of key k is neither quoted nor a boolean or number"},
    {"X.k=1 ", "value 1  of key k"},
    {"X.k=1.2.3", "value 1.2.3"},
    {"X.k=1e", "value 1e"},
    {"X.k=.", "value ."},
    {"X.k=nan", "value nan"},
    {"X.k=18446744073709551616", "integer 18446744073709551616 is out of range"},
    {"X.k=-9223372036854775809", "integer -9223372036854775809 is out of range"},
    {"X.k=1e999", "real 1e999 is out of range"},
    {"X.k=1,k=2", "key k is bound twice at offset 6"},
    {"X.Key=1,kEY=2", "key kEY is bound twice"},
};

INSTANTIATE_TEST_SUITE_P(Reference, MalformedPathTest, ::testing::ValuesIn(kMalformedRows));

// --- key bindings and equality ---------------------------------------------

TEST(Reference, KeysAreReplacedAndFoundIgnoringCase) {
    TCIMReference path = MakePath("X", {{"Name", TCIMValue("a")}, {"id", TCIMValue(1u)}});
    path.AddKeyValue("NAME", TCIMValue("b"));
    EXPECT_EQ(path.GetKeyCount(), 2u);
    EXPECT_TRUE(path.HasKey("name"));
    EXPECT_FALSE(path.HasKey("nam"));
    EXPECT_EQ(path.GetKeyValue("nAmE"), TCIMValue("b"));
    EXPECT_TRUE(path.GetKeyValue("missing").IsNull());
    const TBindings seen = Collect(path);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].first, "id");
    EXPECT_EQ(seen[1].first, "NAME") << "the latest spelling is kept";
    EXPECT_EQ(seen[1].second, TCIMValue("b"));
}

TEST(Reference, EnumerationStopsWhenTheCallbackSaysSo) {
    const TCIMReference path = MakePath("X", {{"c", TCIMValue(3)}, {"a", TCIMValue(1)}, {"b", TCIMValue(2)}});
    std::vector<std::string> names;
    path.EnumerateKeyBindings([&names](std::pair<std::string, TCIMValue> binding) {
        names.push_back(binding.first);
        return names.size() < 2;
    });
    EXPECT_EQ(names, (std::vector<std::string>{"a", "b"}));
    path.EnumerateKeyBindings(TKeyBindingCallback());  // an empty callback visits nothing
}

TEST(Reference, EqualityIgnoresCaseOfNamesAndTheNamespace) {
    const TCIMReference base = MakePath("CIM_Foo", {{"Name", TCIMValue("a")}, {"Id", TCIMValue(1u)}});
    EXPECT_EQ(base, MakePath("cim_foo", {{"ID", TCIMValue(1u)}, {"name", TCIMValue("a")}}));
    EXPECT_EQ(base, WithNamespaceName(base, "root/other"));
    EXPECT_NE(base, MakePath("CIM_Bar", {{"Name", TCIMValue("a")}, {"Id", TCIMValue(1u)}}));
    EXPECT_NE(base, MakePath("CIM_Foo", {{"Name", TCIMValue("A")}, {"Id", TCIMValue(1u)}}));
    // A path typed as text reads integers as 64-bit; it must still name the
    // instance whose key is a uint32 of the same value.
    EXPECT_EQ(base, MakePath("CIM_Foo", {{"Name", TCIMValue("a")}, {"Id", TCIMValue(1ULL)}}));
    EXPECT_NE(base, MakePath("CIM_Foo", {{"Name", TCIMValue("a")}, {"Id", TCIMValue(2ULL)}}));
    EXPECT_NE(base, MakePath("CIM_Foo", {{"Name", TCIMValue("a")}}));
    EXPECT_NE(base, MakePath("CIM_Foo", {{"Name", TCIMValue("a")}, {"Other", TCIMValue(1u)}}));
}

TEST(Reference, ClearEmptiesEverything) {
    const boost::shared_ptr<MockNamespace> ns = boost::make_shared<MockNamespace>();
    TCIMContext context;
    context["nspID"] = TCIMValue("cmpi");
    TCIMReference path(ns, context);
    path.SetClassName("X");
    path.SetNameSpaceName("root");
    path.AddKeyValue("k", TCIMValue(1));
    path.Clear();
    EXPECT_EQ(path.GetClassName(), "");
    EXPECT_EQ(path.GetNameSpaceName(), "");
    EXPECT_FALSE(path.GetNamespace());
    EXPECT_EQ(path.GetKeyCount(), 0u);
    EXPECT_TRUE(path.GetContext().empty());
    EXPECT_EQ(path.GetPath(), "");
    EXPECT_EQ(ns.use_count(), 1) << "the namespace is released";
}

// --- the handle readings ---------------------------------------------------

static_assert(!std::is_polymorphic<TCIMReference>::value, "a path handle must not start with a vtable pointer");

TEST(ReferenceHandle, PointsBackAtTheObjectThroughEveryLifeEvent) {
    TCIMReference original = MakePath("X", {{"k", TCIMValue(1)}});
    EXPECT_EQ(AsSharedHandle(original).get(), &original);

    TCIMReference copy(original);
    EXPECT_EQ(AsSharedHandle(copy).get(), &copy);
    EXPECT_EQ(AsSharedHandle(original).get(), &original);

    TCIMReference assigned;
    assigned = original;
    EXPECT_EQ(AsSharedHandle(assigned).get(), &assigned);

    TCIMReference moved(std::move(copy));
    EXPECT_EQ(AsSharedHandle(moved).get(), &moved);
    EXPECT_EQ(AsSharedHandle(copy).get(), &copy);

    assigned = std::move(moved);
    EXPECT_EQ(AsSharedHandle(assigned).get(), &assigned);

    TCIMReference parsed = TCIMReference::Parse("A.b=1");
    EXPECT_EQ(AsSharedHandle(parsed).get(), &parsed);

    assigned.Clear();
    EXPECT_EQ(AsSharedHandle(assigned).get(), &assigned);

    const boost::shared_ptr<MockNamespace> ns = boost::make_shared<MockNamespace>();
    TCIMReference withNamespace(ns, TCIMContext());
    EXPECT_EQ(AsSharedHandle(withNamespace).get(), &withNamespace);

    TCIMReference fromValue = TCIMValue(original);
    EXPECT_EQ(AsSharedHandle(fromValue).get(), &fromValue);
    EXPECT_EQ(fromValue.GetPath(), "X.k=1");
}

TEST(ReferenceHandle, SurvivesReallocationInsideAVector) {
    std::vector<TCIMReference> paths;
    for (int i = 0; i < 100; ++i) paths.push_back(MakePath("X", {{"k", TCIMValue(i)}}));
    for (TCIMReference& path : paths) EXPECT_EQ(AsSharedHandle(path).get(), &path);
}

TEST(ReferenceHandle, StrongReferenceTakenForACallIsReleasedCleanly) {
    TCIMReference* path = new TCIMReference(MakePath("CIM_Foo", {{"Name", TCIMValue("x")}}));
    const boost::shared_ptr<TCIMReference>& handle = AsSharedHandle(*path);
    ASSERT_TRUE(handle);
    const long before = handle.use_count();
    EXPECT_GT(before, 0);
    {
        const boost::shared_ptr<TCIMReference> strong = handle;
        EXPECT_EQ(strong.get(), path);
        EXPECT_EQ(handle.use_count(), before + 1);
        EXPECT_EQ(strong->GetPath(), "CIM_Foo.Name=\"x\"");
    }
    EXPECT_EQ(handle.use_count(), before);
    delete path;  // the self pointer never owned the object: exactly one delete
}

// --- resolution through a namespace ----------------------------------------

class ReferenceResolution : public ::testing::Test {
protected:
    ReferenceResolution()
        : fNamespace(boost::make_shared<MockNamespace>()),
          fClass(boost::make_shared<MockClass>()),
          fInstance(boost::make_shared<MockInstance>()) {
        fContext["nspID"] = TCIMValue("cmpi");
    }

    boost::shared_ptr<MockNamespace> fNamespace;
    boost::shared_ptr<MockClass> fClass;
    boost::shared_ptr<MockInstance> fInstance;
    TCIMContext fContext;
};

TEST_F(ReferenceResolution, WithoutANamespaceNothingResolves) {
    const TCIMReference path = MakePath("CIM_Foo", {{"Name", TCIMValue("x")}});
    EXPECT_FALSE(path.GetClass());
    EXPECT_FALSE(path.GetCIMElement(true));
    EXPECT_FALSE(path.GetCIMElement(false));
}

TEST_F(ReferenceResolution, ClassComesFromTheNamespaceWithTheOwnContext) {
    TCIMReference path(fNamespace, fContext);
    path.SetClassName("CIM_Foo");
    EXPECT_CALL(*fNamespace, GetClass("CIM_Foo", fContext)).Times(2).WillRepeatedly(Return(fClass));
    EXPECT_EQ(path.GetClass(), fClass);
    EXPECT_EQ(path.GetCIMElement(false), fClass) << "a path without keys names its class";
    EXPECT_EQ(path.GetNamespace(), fNamespace);
}

TEST_F(ReferenceResolution, PathWithKeysNamesItsInstanceUnlessOnlyTheClassIsAsked) {
    TCIMReference path(fNamespace, fContext);
    path.SetClassName("CIM_Foo");
    path.AddKeyValue("Name", TCIMValue("x"));
    // Matched by an equal path without the namespace: the expectation must
    // not hold the namespace that holds it.
    EXPECT_CALL(*fNamespace, GetInstance(MakePath("CIM_Foo", {{"Name", TCIMValue("x")}}), fContext))
        .WillOnce(Return(fInstance));
    EXPECT_CALL(*fNamespace, GetClass("CIM_Foo", fContext)).WillOnce(Return(fClass));
    EXPECT_EQ(path.GetCIMElement(false), fInstance);
    EXPECT_EQ(path.GetCIMElement(true), fClass);
}

TEST_F(ReferenceResolution, MissingInstanceGivesAnEmptyElement) {
    TCIMReference path(fNamespace, TCIMContext());
    path.SetClassName("CIM_Foo");
    path.AddKeyValue("Name", TCIMValue("gone"));
    EXPECT_CALL(*fNamespace, GetInstance(_, _)).WillOnce(Return(boost::shared_ptr<ICIMInstance>()));
    EXPECT_FALSE(path.GetCIMElement(false));
}
