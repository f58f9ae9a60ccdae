// The host value classes: TCIMValue and its types (text forms, the C
// conversions that must work and the mismatches that must throw, nulls,
// arrays), TCIMDateTime text and clock readings, TCIMReference text, keys,
// equality and handle reading, statuses and assertions. Resolution of paths
// through a namespace is tested with the in-memory repository.
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <gtest/gtest.h>

#include "TAssertionFailure.h"
#include "TCIMDateTime.h"
#include "TCIMReference.h"
#include "TCIMValue.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;

namespace {

typedef TCIMValue::TCIMType TType;
typedef std::vector<TCIMValue> TValues;
typedef std::numeric_limits<float> TFloat;
typedef std::numeric_limits<double> TDouble;

TValues& Elements(TCIMValue& value) { return value; }

TCIMValue MakeArray(TType::ECIMType type, const TValues& elements) {
    TCIMValue array;
    array.Set(TType(type), static_cast<unsigned>(elements.size()), elements);
    return array;
}

TCIMValue NullOf(TType::ECIMType type, unsigned count) {
    TCIMValue value;
    value.SetNullValue(type, count);
    return value;
}

typedef std::vector<std::pair<std::string, TCIMValue> > TBindings;

TCIMReference MakePath(const std::string& className, const TBindings& bindings, const std::string& ns = "") {
    TCIMReference path;
    path.SetClassName(className);
    path.SetNameSpaceName(ns);
    for (const auto& binding : bindings) path.AddKeyValue(binding.first, binding.second);
    return path;
}

// A path of class X with the single key k.
TCIMReference X(const TCIMValue& key) { return MakePath("X", {{"k", key}}); }

// The handle reading of a path: the first two words as a shared reference.
boost::shared_ptr<TCIMReference>& AsSharedHandle(TCIMReference& path) {
    return *reinterpret_cast<boost::shared_ptr<TCIMReference>*>(&path);
}

// Runs `action` and returns the status of the TZENTAException it throws.
int StatusOf(const std::function<void()>& action, std::string* message = nullptr) {
    try {
        action();
    } catch (const TZENTAException& failure) {
        if (message) *message = failure.GetMessage();
        return failure.GetStatusCode();
    }
    return TZENTAStatusCode::kSuccess;
}

}  // namespace

TEST(CIMType, NamesParseBackIgnoringCaseButNothingElse) {
    const char* const names[] = {"", "boolean", "uint8", "sint8", "uint16", "sint16", "uint32", "sint32", "uint64",
                                 "sint64", "real32", "real64", "char16", "string", "datetime", "reference"};
    TType::ECIMType parsed = TType::kNone;
    for (int code = 1; code < 16; ++code) {
        EXPECT_EQ(TType(static_cast<TType::ECIMType>(code)).GetName(), names[code]);
        EXPECT_TRUE(TType::FromName(names[code], parsed) && parsed == code) << names[code];
    }
    EXPECT_TRUE(TType::FromName("DateTime", parsed) && parsed == TType::kDateTime);
    for (const char* bad : {"", "ref", "uint32[]", " uint8", "none"}) {
        EXPECT_FALSE(TType::FromName(bad, parsed)) << bad;
        EXPECT_EQ(parsed, TType::kDateTime) << "a failed look-up must leave the result alone";
    }
    EXPECT_EQ(TType(static_cast<TType::ECIMType>(99)).GetName(), "");
    EXPECT_EQ(TType(static_cast<TType::ECIMType>(TType::kArrayFlag | TType::kUint16)).GetName(), "uint16");
}

TEST(Value, ScalarsHaveTheirTypeAndTextAndSurviveMoves) {
    const struct { TCIMValue value; TType::ECIMType type; std::string text; } rows[] = {
        {TCIMValue(false), TType::kBoolean, "FALSE"},
        {TCIMValue(static_cast<signed char>(-128)), TType::kSint8, "-128"},
        {TCIMValue(std::numeric_limits<long long>::min()), TType::kSint64, "-9223372036854775808"},
        {TCIMValue(std::numeric_limits<unsigned long long>::max()), TType::kUint64, "18446744073709551615"},
        {TCIMValue(TFloat::max()), TType::kReal32, "3.4028235e+38"},
        {TCIMValue(TFloat::quiet_NaN()), TType::kReal32, "NaN"},
        {TCIMValue(-TDouble::infinity()), TType::kReal64, "-INF"},
        {TCIMValue(TDouble::max()), TType::kReal64, "1.7976931348623157e+308"},
        {TCIMValue(TCIMChar16(0xE9)), TType::kChar16, "\xC3\xA9"},
        {TCIMValue(TCIMChar16(0xD800)), TType::kChar16, "\xEF\xBF\xBD"},  // a lone surrogate
        {TCIMValue(TCIMReference::Parse("A.b=\"x\"")), TType::kReference, "A.b=\"x\""},
        {TCIMValue(TCIMDateTime("20070101100000.000000-000")), TType::kDateTime, "20070101100000.000000-000"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.value.GetType(), row.type) << row.text;
        EXPECT_FALSE(row.value.IsNull() || row.value.IsArray()) << row.text;
        EXPECT_EQ(row.value.ToString(10), row.text);
        TCIMValue source(row.value);
        const TCIMValue moved(std::move(source));
        EXPECT_EQ(moved, row.value) << row.text;
        EXPECT_TRUE(source.IsNull() && source.GetType() == TType::kNone) << "moved from " << row.text;
    }
    for (double number : {0.1, 1.0 / 3.0, 5e-324, 1e21, 2.2250738585072014e-308}) {
        const std::string text = TCIMValue(number).ToString(10);
        EXPECT_EQ(std::strtod(text.c_str(), nullptr), number) << text;
    }
    for (float number : {0.1f, 1.0f / 3.0f, 1e-45f, 16777216.0f}) {
        const std::string text = TCIMValue(number).ToString(10);
        EXPECT_EQ(std::strtof(text.c_str(), nullptr), number) << text;
        EXPECT_LE(text.size(), 15u) << "real32 text must not carry double precision noise: " << text;
    }
}

TEST(Value, NumbersConvertAsInC) {
    EXPECT_EQ(static_cast<unsigned short>(TCIMValue(static_cast<signed char>(-1))), 65535);
    EXPECT_EQ(static_cast<int>(TCIMValue(std::numeric_limits<unsigned long long>::max())), -1);
    EXPECT_EQ(static_cast<unsigned int>(TCIMValue(-5)), 4294967291u) << "a sint32 keeps its 32 bits";
    EXPECT_TRUE(static_cast<bool>(TCIMValue(std::numeric_limits<long long>::min())));
    EXPECT_EQ(static_cast<double>(TCIMValue(std::numeric_limits<long long>::min())), -9223372036854775808.0);
    int target = 0;  // an address carried in a uint64 comes back on every width
    const TCIMValue carried(static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(&target)));
    EXPECT_EQ(reinterpret_cast<int*>(static_cast<std::uintptr_t>(static_cast<unsigned long long>(carried))), &target);
}

#define READ_AS(T) [](const TCIMValue& v) { (void)static_cast<T>(v); }

TEST(Value, MismatchedReadsThrowTheMatchingStatus) {
    const int kMismatch = TZENTAStatusCode::kTypeMismatch, kNull = TZENTAStatusCode::kNullValue;
    const struct {
        TCIMValue value;
        std::function<void(const TCIMValue&)> read;
        int status;
        const char* messagePart;
    } rows[] = {
        {TCIMValue("12"), READ_AS(int), kMismatch, "string value \"12\" as int"},
        {TCIMValue("TRUE"), READ_AS(bool), kMismatch, "as bool"}, {TCIMValue(2.0), READ_AS(int), kMismatch, "real64"},
        {NullOf(TType::kUint32, 0), READ_AS(int), kNull, "null uint32"},
        {TCIMValue(), READ_AS(unsigned int), kNull, "unset"}, {TCIMValue(true), READ_AS(double), kMismatch, "boolean"},
        {TCIMValue(2.0f), READ_AS(unsigned long long), kMismatch, "real32"},
        {TCIMValue(TCIMChar16('a')), READ_AS(int), kMismatch, "char16"},
        {NullOf(TType::kSint16, 3), READ_AS(short), kMismatch, "array"},
        {TCIMValue(5u), READ_AS(const TValues&), TZENTAStatusCode::kNotAnArray, "not an array"},
        {TCIMValue("A.b=1"), READ_AS(TCIMReference), kMismatch, "as reference"},
        {NullOf(TType::kReference, 0), READ_AS(TCIMReference), kNull, "null reference"},
        {TCIMValue("20070101100000.000000-000"), READ_AS(TCIMDateTime), kMismatch, "as datetime"},
        {TCIMValue(static_cast<unsigned short>(65)), READ_AS(TCIMChar16), kMismatch, "as char16"},
        {TCIMValue(10), [](const TCIMValue& v) { (void)v.ToString(16); }, TZENTAStatusCode::kInvalidArgument, "radix"},
    };
    for (const auto& row : rows) {
        std::string message;
        EXPECT_EQ(StatusOf([&] { row.read(row.value); }, &message), row.status) << row.messagePart;
        EXPECT_NE(message.find(row.messagePart), std::string::npos) << message;
    }
}

TEST(Value, NullsOfEveryTypeKeepTheirTypeAndShape) {
    for (int code = 0; code < 16; ++code) {
        const TType::ECIMType type = static_cast<TType::ECIMType>(code);
        const TCIMValue scalar = NullOf(type, 0), array = NullOf(type, 4);
        EXPECT_TRUE(scalar.IsNull() && !scalar.IsArray() && scalar.ToString(10).empty()) << code;
        EXPECT_TRUE(array.IsNull() && array.IsArray() && array.GetType() == type) << code;
        EXPECT_TRUE(static_cast<const TValues&>(array).empty());
        EXPECT_NE(scalar, array);
    }
    EXPECT_NE(NullOf(TType::kUint8, 0), NullOf(TType::kSint8, 0));
    EXPECT_NE(NullOf(TType::kString, 0), TCIMValue(""));
    EXPECT_EQ(StatusOf([] { NullOf(static_cast<TType::ECIMType>(40), 0); }), TZENTAStatusCode::kInvalidArgument);
    TCIMValue value(7);
    value.Set(static_cast<const char*>(nullptr));
    EXPECT_EQ(value, NullOf(TType::kString, 0));
}

TEST(Value, ArraysJoinTheirElementsAndNullElementsTakeTheArrayType) {
    EXPECT_EQ(MakeArray(TType::kUint16, {}).ToString(10), "");
    EXPECT_EQ(MakeArray(TType::kReal64, {TCIMValue(TDouble::quiet_NaN()), TCIMValue(1e-7)}).ToString(10), "NaN,1e-07");
    EXPECT_EQ(MakeArray(TType::kChar16, {TCIMValue(TCIMChar16('x')), TCIMValue(TCIMChar16(','))}).ToString(10), "x,,");
    EXPECT_EQ(MakeArray(TType::kReference, {TCIMValue(TCIMReference::Parse("A.b=1"))}).ToString(10), "A.b=1");
    const TCIMValue withNulls = MakeArray(TType::kString, {TCIMValue("a"), TCIMValue(), NullOf(TType::kString, 0)});
    EXPECT_EQ(withNulls.ToString(10), "a,,");
    EXPECT_EQ(static_cast<const TValues&>(withNulls)[1], NullOf(TType::kString, 0));
}

TEST(Value, ArraySetTakesTheCountedElementsOfTheArrayTypeOrChangesNothing) {
    const TValues source = {TCIMValue(1), TCIMValue(2), TCIMValue(3)};
    TCIMValue firstTwo;
    firstTwo.Set(TType(TType::kSint32), 2, source);
    EXPECT_EQ(firstTwo.ToString(10), "1,2");
    std::string message;
    EXPECT_EQ(StatusOf([&] { firstTwo.Set(TType(TType::kSint32), 4, source); }, &message),
              TZENTAStatusCode::kInvalidArgument);
    EXPECT_NE(message.find("4"), std::string::npos) << message;
    EXPECT_EQ(StatusOf([&] { firstTwo.Set(TType(TType::kUint32), 2, {TCIMValue(1u), TCIMValue(2)}); }, &message),
              TZENTAStatusCode::kTypeMismatch);
    EXPECT_NE(message.find("element 1"), std::string::npos) << message;
    EXPECT_EQ(StatusOf([&] { firstTwo.Set(TType(TType::kString), 1, {MakeArray(TType::kString, {})}); }),
              TZENTAStatusCode::kTypeMismatch);
    EXPECT_EQ(StatusOf([&] { firstTwo.Set(TType(TType::kNone), 0, TValues()); }), TZENTAStatusCode::kInvalidArgument);
    EXPECT_EQ(firstTwo.ToString(10), "1,2") << "a failed Set leaves the value as it was";
}

TEST(Value, ArraysCanBeRebuiltFromTheirOwnElementsAndCopiesNeverSeeEachOthersChanges) {
    TCIMValue array = MakeArray(TType::kString, {TCIMValue("a"), TCIMValue("b"), TCIMValue("c")});
    array.Set(TType(TType::kString), 2, Elements(array));
    EXPECT_EQ(array.ToString(10), "a,b");
    array.Set(TType(TType::kString), 1, std::move(Elements(array)));
    EXPECT_EQ(array.ToString(10), "a");
    array = std::move(Elements(array)[0]);
    EXPECT_EQ(array, TCIMValue("a"));
    TCIMValue numbers = MakeArray(TType::kUint16, {TCIMValue(static_cast<unsigned short>(1))});
    const TCIMValue copy(numbers);
    Elements(numbers)[0].Set(static_cast<unsigned short>(8));
    EXPECT_EQ(copy.ToString(10), "1");
}

// Short text lives in the value, long text in a payload its copies share:
// both must give back every byte, NULs included, and outlive the original.
TEST(Value, TextOfEveryLengthSurvivesCopiesAndTheOriginalsEnd) {
    for (std::size_t length : {0u, 1u, 12u, 13u, 14u, 15u, 16u, 200u}) {
        std::string text(length, 'x');
        for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<char>('a' + i % 26);
        if (length > 2) text[length / 2] = '\0';
        std::unique_ptr<TCIMValue> original(new TCIMValue(text));
        const TCIMValue copy(*original);
        TCIMValue assigned(5);
        assigned = *original;
        original.reset();
        for (const TCIMValue* value : {&copy, static_cast<const TCIMValue*>(&assigned)}) {
            EXPECT_EQ(static_cast<std::string>(*value), text) << length;
            EXPECT_EQ(value->ToString(10), text) << length;
            EXPECT_EQ(*value, TCIMValue(text)) << length;
        }
        EXPECT_NE(copy, TCIMValue(text + "y")) << length;
        assigned = static_cast<std::string>(assigned).substr(length / 3);  // from its own text
        EXPECT_EQ(static_cast<std::string>(assigned), text.substr(length / 3)) << length;
    }
}

TEST(Value, DateTimesKeepEveryFormTheyAreWrittenIn) {
    const char* const texts[] = {"20070101100000.000000-000", "99991231235959.999999+999", "00000229000000.000000+000",
                                 "********103000.******-060", "2024****000000.123***+000", "00000001020304.500000:000",
                                 "99999999235959.999999:000", "********010203.******:000"};
    for (const char* text : texts) {
        const TCIMValue value{TCIMDateTime(text)};
        EXPECT_EQ(value.ToString(10), text);
        EXPECT_EQ(static_cast<TCIMDateTime>(value).ToString(), text);
        EXPECT_EQ(value, TCIMValue(TCIMDateTime(text))) << text;
        for (const char* other : texts) {
            if (other != text) {
                EXPECT_NE(value, TCIMValue(TCIMDateTime(other))) << text << " " << other;
            }
        }
    }
}

TEST(Value, EqualityNeedsTheSameTypeShapeAndContents) {
    EXPECT_NE(TCIMValue(5u), TCIMValue(5));
    EXPECT_EQ(TCIMValue(TDouble::quiet_NaN()), TCIMValue(TDouble::quiet_NaN()));
    EXPECT_NE(TCIMValue(TCIMChar16('a')), TCIMValue("a"));
    EXPECT_NE(TCIMValue(TCIMDateTime("20070101100000.000000-000")), TCIMValue("20070101100000.000000-000"));
    EXPECT_NE(MakeArray(TType::kSint32, {TCIMValue(1)}), MakeArray(TType::kSint32, {TCIMValue(1), TCIMValue(1)}));
    EXPECT_NE(MakeArray(TType::kSint32, {}), NullOf(TType::kSint32, 1));
}

TEST(Reference, WritesTheTextAndReadsItBack) {
    // typesSurvive: the parsed path equals the original, not only its text.
    const struct { TCIMReference path; std::string text; bool typesSurvive; } rows[] = {
        {MakePath("CIM_Foo", {}), "CIM_Foo", true}, {X("a\"b\\c"), "X.k=\"a\\\"b\\\\c\"", true},
        {X("a,b=c.d:e"), "X.k=\"a,b=c.d:e\"", true},
        {MakePath("X", {{"t", TCIMValue(true)}, {"f", TCIMValue(false)}}), "X.f=FALSE,t=TRUE", true},
        {X(18446744073709551615ULL), "X.k=18446744073709551615", true},
        {X(std::numeric_limits<long long>::min()), "X.k=-9223372036854775808", true},
        {MakePath("X", {{"a", TCIMValue(static_cast<unsigned char>(7))}, {"b", TCIMValue(-3)}}), "X.a=7,b=-3", false},
        {X(1.0), "X.k=1.0", true}, {X(-0.0), "X.k=-0.0", true}, {X(1e21), "X.k=1e+21", true},
        {X(0.1f), "X.k=0.1", false}, {X(std::numeric_limits<double>::quiet_NaN()), "X.k=NaN", true},
        {X(-std::numeric_limits<double>::infinity()), "X.k=-INF", true}, {X(TCIMChar16('"')), "X.k=\"\\\"\"", false},
        {X(TCIMDateTime("20070101100000.000000-000")), "X.k=\"20070101100000.000000-000\"", false},
        {MakePath("X", {{"Zeta", TCIMValue(1ULL)}, {"alpha", TCIMValue(2ULL)}, {"Beta", TCIMValue(3ULL)}}),
         "X.alpha=2,Beta=3,Zeta=1", true},
        {X(MakePath("CIM_B", {{"Id", TCIMValue(3ULL)}}, "root/cimv2")), "X.k=\"root/cimv2:CIM_B.Id=3\"", true},
        {X(X(X("q\"\\"))), "X.k=\"X.k=\\\"X.k=\\\\\\\"q\\\\\\\\\\\\\\\"\\\\\\\\\\\\\\\\\\\\\\\"\\\"\"", true},
        {X("Y.k="), "X.k=\"Y.k=\"", true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.path.GetPath(), row.text);
        const TCIMReference parsed = TCIMReference::Parse(row.text);
        EXPECT_EQ(parsed.GetPath(), row.text);
        EXPECT_EQ(parsed.GetKeyCount(), row.path.GetKeyCount()) << row.text;
        if (row.typesSurvive) { EXPECT_EQ(parsed, row.path) << row.text; }
    }
}

TEST(Reference, ParsedValuesGetTheirTypes) {
    const TCIMReference path =
        TCIMReference::Parse("root/cimv2:CIM_Foo.a=-5,B=true,c=5,d=2.5,e=\"x\",f=1e3,h=+7,i=\"X.k=1\"");
    EXPECT_EQ(path.GetNameSpaceName(), "root/cimv2");
    EXPECT_EQ(path.GetClassName(), "CIM_Foo");
    EXPECT_FALSE(path.GetNamespace());
    const std::pair<const char*, TCIMValue> keys[] = {
        {"a", TCIMValue(-5LL)}, {"b", TCIMValue(true)}, {"c", TCIMValue(5ULL)}, {"d", TCIMValue(2.5)},
        {"e", TCIMValue("x")},  {"f", TCIMValue(1000.0)}, {"h", TCIMValue(7ULL)}, {"i", TCIMValue(X(1ULL))}};
    for (const auto& key : keys) EXPECT_EQ(path.GetKeyValue(key.first), key.second) << key.first;
    // Quoted text becomes a reference only when written as GetPath writes one.
    for (const char* text : {"X.s=\"Y\"", "X.s=\"Y.k=01\"", "X.s=\"Y.b=1,a=2\"", "X.s=\"Y.k=1,\"", "X.s=\"a.b\""}) {
        EXPECT_EQ(TCIMReference::Parse(text).GetKeyValue("s").GetType(), TType::kString) << text;
    }
}

TEST(Reference, MalformedTextIsRejectedWithWhereItWentWrong) {
    const struct { const char* text; const char* problem; } rows[] = {
        {"", "empty at offset 0"}, {".k=1", "class name is missing at offset 0"},
        {"root/cimv2:", "class name is missing at offset 11"},
        {":X", "namespace name before ':' is empty"}, {"X y", "' ' follows the class name at offset 1"},
        {"X.", "key name is missing at offset 2"}, {"X.k=1,", "key name is missing at offset 6"},
        {"X.k", "'=' is missing after key k at offset 3"}, {"X.k=", "value of key k is missing at offset 4"},
        {"X.k=\"abc\\\"", "quoted value is not terminated at offset 4"},
        {"X.k=\"a\"b", "'b' follows a key value at offset 7"},
        {"X.k=abc", "value abc of key k is neither quoted nor a boolean or number"}, {"X.k=1 ", "value 1  of key k"},
        {"X.k=1.2.3", "value 1.2.3"}, {"X.k=18446744073709551616", "integer 18446744073709551616 is out of range"},
        {"X.k=-9223372036854775809", "integer -9223372036854775809 is out of range"},
        {"X.k=1e999", "real 1e999 is out of range"}, {"X.Key=1,kEY=2", "key kEY is bound twice at offset 8"},
    };
    for (const auto& row : rows) {
        std::string message;
        EXPECT_EQ(StatusOf([&] { TCIMReference::Parse(row.text); }, &message), TZENTAStatusCode::kInvalidPath);
        EXPECT_NE(message.find(std::string("\"") + row.text + "\""), std::string::npos) << message;
        EXPECT_NE(message.find(row.problem), std::string::npos) << message;
    }
}

TEST(Reference, KeysAreReplacedFoundAndComparedIgnoringCase) {
    TCIMReference path =
        MakePath("X", {{"Name", TCIMValue("a")}, {"id", TCIMValue(1u)}, {"c", TCIMValue(3)}, {"z", TCIMValue(4)}});
    path.AddKeyValue("NAME", TCIMValue("b"));
    EXPECT_EQ(path.GetKeyCount(), 4u);
    EXPECT_EQ(path.GetKeyValue("nAmE"), TCIMValue("b"));
    EXPECT_TRUE(path.GetKeyValue("missing").IsNull());
    TBindings seen;
    path.EnumerateKeyBindings([&seen](std::pair<std::string, TCIMValue> binding) {
        seen.push_back(binding);
        return seen.size() < 3;
    });
    ASSERT_EQ(seen.size(), 3u) << "the walk stops when the callback says so";
    EXPECT_EQ(seen[0].first, "c");
    EXPECT_EQ(seen[2].first, "NAME") << "the latest spelling is kept";
    path.EnumerateKeyBindings(TKeyBindingCallback());  // an empty callback visits nothing

    const TCIMReference base = MakePath("CIM_Foo", {{"Name", TCIMValue("a")}, {"Id", TCIMValue(1u)}});
    EXPECT_EQ(base, MakePath("cim_foo", {{"ID", TCIMValue(1u)}, {"name", TCIMValue("a")}}, "root/other"));
    EXPECT_NE(base, MakePath("CIM_Foo", {{"Name", TCIMValue("A")}, {"Id", TCIMValue(1u)}}));
    // A path typed as text reads integers as 64-bit; it must still name the
    // instance whose key is a uint32 of the same value.
    EXPECT_EQ(base, MakePath("CIM_Foo", {{"Name", TCIMValue("a")}, {"Id", TCIMValue(1ULL)}}));
    EXPECT_NE(base, MakePath("CIM_Foo", {{"Name", TCIMValue("a")}, {"Id", TCIMValue(2ULL)}}));
    EXPECT_NE(base, MakePath("CIM_Foo", {{"Name", TCIMValue("a")}}));
    EXPECT_NE(base, MakePath("CIM_Foo", {{"Name", TCIMValue("a")}, {"Other", TCIMValue(1u)}}));
}

static_assert(!std::is_polymorphic<TCIMReference>::value, "a path handle must not start with a vtable pointer");

TEST(ReferenceHandle, PointsBackAtTheObjectThroughEveryLifeEventAndNeverOwnsIt) {
    TCIMReference original = X(1);
    TCIMReference copy(original);
    TCIMReference assigned;
    assigned = original;
    TCIMReference moved(std::move(copy));
    TCIMReference parsed = TCIMReference::Parse("A.b=1");
    TCIMReference fromValue = TCIMValue(original);
    for (TCIMReference* path : {&original, &copy, &assigned, &moved, &parsed, &fromValue}) {
        EXPECT_EQ(AsSharedHandle(*path).get(), path);
    }
    assigned = std::move(moved);
    EXPECT_EQ(AsSharedHandle(assigned).get(), &assigned);
    assigned.Clear();
    EXPECT_EQ(AsSharedHandle(assigned).get(), &assigned);
    std::vector<TCIMReference> paths;
    for (int i = 0; i < 100; ++i) paths.push_back(X(i));
    for (TCIMReference& path : paths) EXPECT_EQ(AsSharedHandle(path).get(), &path) << "after reallocation";

    // A strong reference taken for a call is released cleanly.
    TCIMReference* heap = new TCIMReference(X("x"));
    const long before = AsSharedHandle(*heap).use_count();
    {
        const boost::shared_ptr<TCIMReference> strong = AsSharedHandle(*heap);
        EXPECT_EQ(AsSharedHandle(*heap).use_count(), before + 1);
        EXPECT_EQ(strong->GetPath(), "X.k=\"x\"");
    }
    EXPECT_EQ(AsSharedHandle(*heap).use_count(), before);
    delete heap;  // the self pointer never owned the object: exactly one delete
}

TEST(DateTime, ValidTextParsesAndFormatsBackExactly) {
    const struct { const char* text; bool interval; } rows[] = {
        {"00000101000000.000000+000", false},
        {"20240229000000.000000+000", false},  // leap year
        {"20000229120000.000000-060", false},  // divisible by 400
        {"****0229000000.000000+000", false},  // year unknown: 29 February may exist
        {"2007****100000.000000+000", false}, {"20070101100000.1*****-999", false},
        {"99999999235959.999999:000", true}, {"********235959.******:000", true},
    };
    for (const auto& row : rows) {
        TCIMDateTime parsed(row.text);
        EXPECT_EQ(parsed.ToString(), row.text);
        EXPECT_EQ(parsed.IsInterval(), row.interval) << row.text;
        EXPECT_TRUE(TCIMDateTime::IsValid(row.text));
        parsed.Clear();
        EXPECT_TRUE(parsed.IsNull() && !parsed.IsInterval());
    }
}

TEST(DateTime, InvalidTextIsRejectedWithTheReason) {
    const struct { std::string text; const char* problem; } rows[] = {
        {"", "0 characters"}, {"2007010110000.000000-000", "24 characters"},
        {"20071301100000.000000-000", "month 13 is out of range"},
        {"20070431100000.000000-000", "day 31 does not exist in month 04 of 2007"},
        {"20230229100000.000000-000", "day 29 does not exist in month 02 of 2023"},
        {"19000229100000.000000-000", "day 29 does not exist in month 02 of 1900"},
        {"****0230100000.000000-000", "day 30 does not exist in month 02"},
        {"20070101240000.000000-000", "hour 24 is out of range"},
        {"2007*101100000.000000-000", "month \"*1\" mixes digits and asterisks"},
        {"20070101100000,000000-000", "'.' must follow the seconds"},
        {"20070101100000.0000*0-000", "asterisks before digits"},
        {"20070101100000.00000a-000", "microseconds \"00000a\" are not a number"},
        {"20070101100000.000000*000", "character 22"}, {"20070101100000.000000+***", "UTC offset \"***\""},
        {"00000001240000.000000:000", "hours 24 is out of range"},
        {"00000001000000.000000:001", "must end in \":000\""},
        {"0000**00000000.000000:000", "mixes digits and asterisks"},
        {std::string("20070101100000.000000-00\0", 25), "UTC offset"},
    };
    for (const auto& row : rows) {
        // Right after a valid text of the same length, which is remembered
        // as valid: the next text is checked all the same.
        const TCIMDateTime valid(std::string("20070101100000.000000-000"));
        std::string message;
        EXPECT_FALSE(TCIMDateTime::IsValid(row.text)) << row.text;
        EXPECT_EQ(StatusOf([&] { TCIMDateTime parsed(row.text); }, &message), TZENTAStatusCode::kInvalidDateTime);
        EXPECT_NE(message.find("\"" + row.text + "\""), std::string::npos) << message;
        EXPECT_NE(message.find(row.problem), std::string::npos) << message;
    }
}

TEST(DateTime, UnixTimeFormatsTheLocalTimestamp) {
    const struct { long long seconds; long microseconds; int offset; const char* text; } rows[] = {
        {0, 0, -300, "19691231190000.000000-300"},     {0, -1, 0, "19691231235959.999999+000"},
        {0, 1500000, 0, "19700101000001.500000+000"},  {951782400, 123456, 0, "20000229000000.123456+000"},
        {1700000000, 0, -999, "20231114053420.000000-999"},
    };
    for (const auto& row : rows) {
        const TCIMDateTime made =
            TCIMDateTime::FromUnixTime(static_cast<std::time_t>(row.seconds), row.microseconds, row.offset);
        EXPECT_EQ(made.ToString(), row.text);
    }
    EXPECT_EQ(StatusOf([] { TCIMDateTime::FromUnixTime(0, 0, 1000); }), TZENTAStatusCode::kInvalidArgument);
    EXPECT_EQ(StatusOf([] { TCIMDateTime::FromUnixTime(0, 0, -1000); }), TZENTAStatusCode::kInvalidArgument);
}

TEST(DateTime, UnixTimeOutsideTheFourDigitYearsIsRefused) {
    if (sizeof(std::time_t) < 8) GTEST_SKIP() << "time_t cannot reach the year 10000";
    EXPECT_EQ(TCIMDateTime::FromUnixTime(static_cast<std::time_t>(253402300799LL), 0, 0).ToString(),
              "99991231235959.000000+000");  // the last second of 9999 UTC
    EXPECT_EQ(StatusOf([] { TCIMDateTime::FromUnixTime(static_cast<std::time_t>(253402300800LL), 0, 0); }),
              TZENTAStatusCode::kInvalidArgument);
    EXPECT_THROW(TCIMDateTime::FromUnixTime(static_cast<std::time_t>(-62167219201LL), 0, 0), TZENTAException);
    EXPECT_THROW(TCIMDateTime::FromUnixTime(static_cast<std::time_t>(9223372036854775807LL), 0, 0),
                 TZENTAException);
}

TEST(DateTime, IntervalsFromMicroseconds) {
    const unsigned long long day = 86400000000ULL;
    EXPECT_EQ(TCIMDateTime::FromIntervalMicroseconds(day + 7384000005ULL).ToString(), "00000001020304.000005:000");
    const TCIMDateTime longest = TCIMDateTime::FromIntervalMicroseconds(100000000ULL * day - 1);
    EXPECT_EQ(longest.ToString(), "99999999235959.999999:000");
    EXPECT_TRUE(longest.IsInterval());
    EXPECT_EQ(StatusOf([] { TCIMDateTime::FromIntervalMicroseconds(100000000ULL * 86400000000ULL); }),
              TZENTAStatusCode::kInvalidArgument);
    EXPECT_THROW(TCIMDateTime::FromIntervalMicroseconds(18446744073709551615ULL), TZENTAException);
}

TEST(StatusCode, TranslationNamesTheStatusAndItsNumber) {
    EXPECT_EQ(TZENTAStatusCode(15).TranslateStatusCode(), "kNotFound (15): not found");
    EXPECT_EQ(TZENTAStatusCode(999).TranslateStatusCode(), "kUnknownStatus (999): unknown status");
}

TEST(Exception, CarriesStatusAndMessageThroughCopies) {
    const TZENTAException* original = new TZENTAException(TZENTAStatusCode::kNotFound, "class Foo not found");
    const TZENTAException copy(*original);
    delete original;
    EXPECT_EQ(copy.GetStatusCode().GetCode(), 15);
    EXPECT_STREQ(copy.what(), "class Foo not found");
}

TEST(AssertionHandler, NullSharedPointerThrowsInsteadOfAborting) {
    boost::shared_ptr<int> empty;
    try {
        int value = *empty;
        ADD_FAILURE() << "dereferenced a null pointer and read " << value;
    } catch (const TAssertionFailure& failure) {
        EXPECT_EQ(failure.GetExpression(), "px != 0");
        EXPECT_NE(std::string(failure.what()).find("px != 0"), std::string::npos);
        EXPECT_GT(failure.GetLine(), 0);
    }
    EXPECT_THROW(*empty, std::logic_error);
}
