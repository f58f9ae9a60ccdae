// TCIMValue and TCIMValue::TCIMType: every type through construction, text,
// conversion back, nulls, arrays, limits and the conversions that must fail.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TCIMReference.h"
#include "TCIMValue.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;

namespace {

typedef TCIMValue::TCIMType TType;
typedef std::vector<TCIMValue> TValues;

TValues& Elements(TCIMValue& value) { return value; }

TCIMValue MakeArray(TType::ECIMType type, const TValues& elements) {
    TCIMValue array;
    array.Set(TType(type), static_cast<unsigned>(elements.size()), elements);
    return array;
}

TCIMReference SamplePath() {
    TCIMReference path;
    path.SetClassName("CIM_Foo");
    path.AddKeyValue("Name", TCIMValue("x"));
    return path;
}

// Runs `action` and returns the status of the TZENTAException it throws.
int StatusOf(const std::function<void()>& action, std::string* message = nullptr) {
    try {
        action();
    } catch (const TZENTAException& failure) {
        if (message) *message = failure.what();
        return failure.GetStatusCode();
    }
    return TZENTAStatusCode::kSuccess;
}

}  // namespace

// --- TCIMType --------------------------------------------------------------

TEST(CIMType, NamesEveryTypeAndParsesItBack) {
    const char* const names[] = {"",       "boolean", "uint8",  "sint8",  "uint16", "sint16",
                                 "uint32", "sint32",  "uint64", "sint64", "real32", "real64",
                                 "char16", "string",  "datetime", "reference"};
    for (int code = 0; code < 16; ++code) {
        const TType type(static_cast<TType::ECIMType>(code));
        EXPECT_EQ(type.GetName(), names[code]) << code;
        TType::ECIMType parsed = TType::kNone;
        if (code == 0) {
            EXPECT_FALSE(TType::FromName(names[code], parsed));
        } else {
            ASSERT_TRUE(TType::FromName(names[code], parsed)) << names[code];
            EXPECT_EQ(parsed, code);
        }
    }
}

TEST(CIMType, NameLookupIgnoresCaseButNothingElse) {
    TType::ECIMType parsed = TType::kNone;
    EXPECT_TRUE(TType::FromName("DateTime", parsed));
    EXPECT_EQ(parsed, TType::kDateTime);
    EXPECT_TRUE(TType::FromName("UINT32", parsed));
    EXPECT_EQ(parsed, TType::kUint32);
    for (const char* bad : {"ref", "int", "uint32[]", " uint8", "real", "none", "object"}) {
        parsed = TType::kChar16;
        EXPECT_FALSE(TType::FromName(bad, parsed)) << bad;
        EXPECT_EQ(parsed, TType::kChar16) << "a failed look-up must leave the result alone";
    }
    EXPECT_EQ(TType(static_cast<TType::ECIMType>(99)).GetName(), "");
    EXPECT_EQ(TType(static_cast<TType::ECIMType>(TType::kArrayFlag | TType::kUint16)).GetName(), "uint16");
}

// --- scalars ---------------------------------------------------------------

struct TScalarRow {
    const char* label;
    TCIMValue value;
    TType::ECIMType type;
    std::string text;
};

class ScalarTest : public ::testing::TestWithParam<TScalarRow> {};

TEST_P(ScalarTest, HasItsTypeAndTextAndSurvivesCopies) {
    const TScalarRow& row = GetParam();
    EXPECT_EQ(row.value.GetType(), row.type);
    EXPECT_FALSE(row.value.IsNull());
    EXPECT_FALSE(row.value.IsArray());
    EXPECT_EQ(row.value.ToString(10), row.text);
    EXPECT_EQ(row.value.ToString(), row.text);

    const TCIMValue copy(row.value);
    EXPECT_EQ(copy, row.value);
    TCIMValue assigned(42);
    assigned = row.value;
    EXPECT_EQ(assigned, row.value);
    EXPECT_EQ(assigned.ToString(10), row.text);

    TCIMValue source(row.value);
    const TCIMValue moved(std::move(source));
    EXPECT_EQ(moved, row.value);
    EXPECT_TRUE(source.IsNull());
    EXPECT_EQ(source.GetType(), TType::kNone);
    EXPECT_EQ(source.ToString(10), "");
}

const TScalarRow kScalarRows[] = {
    {"true", TCIMValue(true), TType::kBoolean, "TRUE"},
    {"false", TCIMValue(false), TType::kBoolean, "FALSE"},
    {"sint8_min", TCIMValue(static_cast<signed char>(-128)), TType::kSint8, "-128"},
    {"sint8_max", TCIMValue(static_cast<signed char>(127)), TType::kSint8, "127"},
    {"uint8_min", TCIMValue(static_cast<unsigned char>(0)), TType::kUint8, "0"},
    {"uint8_max", TCIMValue(static_cast<unsigned char>(255)), TType::kUint8, "255"},
    {"sint16_min", TCIMValue(static_cast<short>(-32768)), TType::kSint16, "-32768"},
    {"sint16_max", TCIMValue(static_cast<short>(32767)), TType::kSint16, "32767"},
    {"uint16_max", TCIMValue(static_cast<unsigned short>(65535)), TType::kUint16, "65535"},
    {"sint32_min", TCIMValue(std::numeric_limits<int>::min()), TType::kSint32, "-2147483648"},
    {"sint32_max", TCIMValue(std::numeric_limits<int>::max()), TType::kSint32, "2147483647"},
    {"uint32_max", TCIMValue(std::numeric_limits<unsigned int>::max()), TType::kUint32, "4294967295"},
    {"sint64_min", TCIMValue(std::numeric_limits<long long>::min()), TType::kSint64, "-9223372036854775808"},
    {"sint64_max", TCIMValue(std::numeric_limits<long long>::max()), TType::kSint64, "9223372036854775807"},
    {"uint64_min", TCIMValue(0ULL), TType::kUint64, "0"},
    {"uint64_max", TCIMValue(std::numeric_limits<unsigned long long>::max()), TType::kUint64,
     "18446744073709551615"},
    {"real32_tenth", TCIMValue(0.1f), TType::kReal32, "0.1"},
    {"real32_max", TCIMValue(std::numeric_limits<float>::max()), TType::kReal32, "3.4028235e+38"},
    {"real32_nan", TCIMValue(std::numeric_limits<float>::quiet_NaN()), TType::kReal32, "NaN"},
    {"real32_inf", TCIMValue(std::numeric_limits<float>::infinity()), TType::kReal32, "INF"},
    {"real32_minus_inf", TCIMValue(-std::numeric_limits<float>::infinity()), TType::kReal32, "-INF"},
    {"real64_tenth", TCIMValue(0.1), TType::kReal64, "0.1"},
    {"real64_negative", TCIMValue(-2.5), TType::kReal64, "-2.5"},
    {"real64_max", TCIMValue(std::numeric_limits<double>::max()), TType::kReal64, "1.7976931348623157e+308"},
    {"real64_nan", TCIMValue(std::numeric_limits<double>::quiet_NaN()), TType::kReal64, "NaN"},
    {"real64_inf", TCIMValue(std::numeric_limits<double>::infinity()), TType::kReal64, "INF"},
    {"real64_minus_inf", TCIMValue(-std::numeric_limits<double>::infinity()), TType::kReal64, "-INF"},
    {"char16_ascii", TCIMValue(TCIMChar16('A')), TType::kChar16, "A"},
    {"char16_two_bytes", TCIMValue(TCIMChar16(0xE9)), TType::kChar16, "\xC3\xA9"},
    {"char16_three_bytes", TCIMValue(TCIMChar16(0x20AC)), TType::kChar16, "\xE2\x82\xAC"},
    {"char16_lone_surrogate", TCIMValue(TCIMChar16(0xD800)), TType::kChar16, "\xEF\xBF\xBD"},
    {"string_empty", TCIMValue(""), TType::kString, ""},
    {"string_std", TCIMValue(std::string("a,b \"c\"")), TType::kString, "a,b \"c\""},
    {"string_long", TCIMValue(std::string(200, 'x')), TType::kString, std::string(200, 'x')},
    {"datetime", TCIMValue(TCIMDateTime("20070101100000.000000-000")), TType::kDateTime,
     "20070101100000.000000-000"},
    {"reference", TCIMValue(SamplePath()), TType::kReference, "CIM_Foo.Name=\"x\""},
};

INSTANTIATE_TEST_SUITE_P(Value, ScalarTest, ::testing::ValuesIn(kScalarRows),
                         [](const ::testing::TestParamInfo<TScalarRow>& info) { return info.param.label; });

TEST(Value, DefaultIsAnUnsetNull) {
    const TCIMValue unset;
    EXPECT_TRUE(unset.IsNull());
    EXPECT_FALSE(unset.IsArray());
    EXPECT_EQ(unset.GetType(), TType::kNone);
    EXPECT_EQ(unset.ToString(10), "");
    EXPECT_EQ(unset, TCIMValue());
}

TEST(Value, SettersReplaceWhateverWasThere) {
    TCIMValue value = MakeArray(TType::kString, {TCIMValue("a"), TCIMValue("b")});
    value.Set(static_cast<unsigned short>(9));
    EXPECT_FALSE(value.IsArray());
    EXPECT_EQ(value.GetType(), TType::kUint16);
    EXPECT_EQ(value.ToString(10), "9");
    value.Set(SamplePath());
    value.Set("text");
    EXPECT_EQ(value, TCIMValue("text"));
    value.Set(static_cast<const char*>(nullptr));
    EXPECT_TRUE(value.IsNull());
    EXPECT_EQ(value.GetType(), TType::kString);
    value.Set(TCIMDateTime());
    EXPECT_TRUE(value.IsNull());
    EXPECT_EQ(value.GetType(), TType::kDateTime);
    TCIMReference path = SamplePath();
    value.Set(path);
    EXPECT_EQ(static_cast<TCIMReference>(value), path);
}

TEST(Value, RealsReadBackEqualFromTheirText) {
    const double doubles[] = {0.1, 1.0 / 3.0, -1e-300, 5e-324, 123456789.125, 1e21, 2.2250738585072014e-308};
    for (double number : doubles) {
        const std::string text = TCIMValue(number).ToString(10);
        EXPECT_EQ(std::strtod(text.c_str(), nullptr), number) << text;
    }
    const float floats[] = {0.1f, 1.0f / 3.0f, -1e-38f, 1e-45f, 16777216.0f, 3.14159274f};
    for (float number : floats) {
        const std::string text = TCIMValue(number).ToString(10);
        EXPECT_EQ(std::strtof(text.c_str(), nullptr), number) << text;
        EXPECT_LE(text.size(), 15u) << "real32 text must not carry double precision noise: " << text;
    }
}

// --- conversions -----------------------------------------------------------

TEST(Value, IntegersReadAsAnyWidthByCConversion) {
    const TCIMValue minusOne(static_cast<signed char>(-1));
    EXPECT_EQ(static_cast<unsigned short>(minusOne), 65535);
    EXPECT_EQ(static_cast<unsigned int>(minusOne), 0xFFFFFFFFu);
    EXPECT_EQ(static_cast<long long>(minusOne), -1);
    EXPECT_EQ(static_cast<unsigned long long>(minusOne), std::numeric_limits<unsigned long long>::max());
    EXPECT_EQ(static_cast<int>(minusOne), -1);

    const TCIMValue big(std::numeric_limits<unsigned long long>::max());
    EXPECT_EQ(static_cast<int>(big), -1);
    EXPECT_EQ(static_cast<unsigned char>(big), 255);

    const TCIMValue wide(0x12345678);
    EXPECT_EQ(static_cast<unsigned char>(wide), 0x78);
    EXPECT_EQ(static_cast<short>(wide), 0x5678);
    EXPECT_EQ(static_cast<signed char>(TCIMValue(static_cast<unsigned char>(200))), static_cast<signed char>(-56));

    // A sint32 read through its unsigned operator keeps its 32 bits.
    const TCIMValue negative(-5);
    EXPECT_EQ(static_cast<unsigned int>(negative), 4294967291u);
    EXPECT_EQ(static_cast<int>(static_cast<unsigned int>(negative)), -5);

    EXPECT_EQ(static_cast<int>(TCIMValue(true)), 1);
    EXPECT_EQ(static_cast<unsigned long long>(TCIMValue(false)), 0u);
}

TEST(Value, AddressCarriedInUint64ComesBack) {
    int target = 0;
    const TCIMValue carried(static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(&target)));
    EXPECT_EQ(carried.GetType(), TType::kUint64);
    int* back = reinterpret_cast<int*>(static_cast<std::uintptr_t>(static_cast<unsigned long long>(carried)));
    EXPECT_EQ(back, &target);
}

TEST(Value, BooleanOperatorAcceptsBooleansAndIntegers) {
    EXPECT_TRUE(static_cast<bool>(TCIMValue(true)));
    EXPECT_FALSE(static_cast<bool>(TCIMValue(false)));
    EXPECT_FALSE(static_cast<bool>(TCIMValue(0)));
    EXPECT_TRUE(static_cast<bool>(TCIMValue(7u)));
    EXPECT_TRUE(static_cast<bool>(TCIMValue(std::numeric_limits<long long>::min())));
    EXPECT_TRUE(static_cast<bool>(TCIMValue(static_cast<unsigned char>(0x80))));
}

TEST(Value, IntegersAndRealsReadAsReals) {
    EXPECT_EQ(static_cast<double>(TCIMValue(-7)), -7.0);
    EXPECT_EQ(static_cast<float>(TCIMValue(static_cast<short>(-300))), -300.0f);
    EXPECT_EQ(static_cast<double>(TCIMValue(std::numeric_limits<unsigned long long>::max())), 18446744073709551615.0);
    EXPECT_EQ(static_cast<double>(TCIMValue(std::numeric_limits<long long>::min())), -9223372036854775808.0);
    EXPECT_EQ(static_cast<double>(TCIMValue(0.1f)), static_cast<double>(0.1f));
    EXPECT_EQ(static_cast<float>(TCIMValue(0.1)), 0.1f);
    EXPECT_TRUE(std::isnan(static_cast<double>(TCIMValue(std::numeric_limits<float>::quiet_NaN()))));
}

TEST(Value, StringOperatorGivesTextOfScalars) {
    EXPECT_EQ(static_cast<std::string>(TCIMValue("abc")), "abc");
    EXPECT_EQ(static_cast<std::string>(TCIMValue(42u)), "42");
    EXPECT_EQ(static_cast<std::string>(TCIMValue(false)), "FALSE");
    EXPECT_EQ(static_cast<std::string>(TCIMValue(-1.5)), "-1.5");
    EXPECT_EQ(static_cast<std::string>(TCIMValue()), "");
    TCIMValue nullString;
    nullString.SetNullValue(TType::kString, 0);
    EXPECT_EQ(static_cast<std::string>(nullString), "");
    TCIMValue nullArray;
    nullArray.SetNullValue(TType::kUint8, 2);
    EXPECT_EQ(static_cast<std::string>(nullArray), "");
}

TEST(Value, TypedReadersReturnWhatWasStored) {
    EXPECT_EQ(static_cast<TCIMChar16>(TCIMValue(TCIMChar16(0x263A))).GetValue(), 0x263A);
    const TCIMDateTime interval("00000001020304.000005:000");
    const TCIMDateTime readBack = TCIMValue(interval);
    EXPECT_EQ(readBack, interval);
    EXPECT_TRUE(readBack.IsInterval());
    const TCIMReference path = SamplePath();
    const TCIMReference pathBack = TCIMValue(path);
    EXPECT_EQ(pathBack.GetPath(), path.GetPath());
}

struct TBadConversion {
    const char* label;
    TCIMValue value;
    std::function<void(const TCIMValue&)> read;
    int status;
    const char* messagePart;
};

class BadConversionTest : public ::testing::TestWithParam<TBadConversion> {};

TEST_P(BadConversionTest, ThrowsTheMatchingStatus) {
    const TBadConversion& row = GetParam();
    std::string message;
    EXPECT_EQ(StatusOf([&] { row.read(row.value); }, &message), row.status);
    EXPECT_NE(message.find(row.messagePart), std::string::npos) << message;
}

TCIMValue NullOf(TType::ECIMType type, unsigned count) {
    TCIMValue value;
    value.SetNullValue(type, count);
    return value;
}

const TBadConversion kBadConversions[] = {
    {"string_as_int", TCIMValue("12"), [](const TCIMValue& v) { (void)static_cast<int>(v); },
     TZENTAStatusCode::kTypeMismatch, "string value \"12\" as int"},
    {"string_as_double", TCIMValue("1.5"), [](const TCIMValue& v) { (void)static_cast<double>(v); },
     TZENTAStatusCode::kTypeMismatch, "as double"},
    {"string_as_bool", TCIMValue("TRUE"), [](const TCIMValue& v) { (void)static_cast<bool>(v); },
     TZENTAStatusCode::kTypeMismatch, "as bool"},
    {"null_as_int", NullOf(TType::kUint32, 0), [](const TCIMValue& v) { (void)static_cast<int>(v); },
     TZENTAStatusCode::kNullValue, "null uint32"},
    {"unset_as_unsigned", TCIMValue(), [](const TCIMValue& v) { (void)static_cast<unsigned int>(v); },
     TZENTAStatusCode::kNullValue, "unset"},
    {"null_as_double", NullOf(TType::kReal64, 0), [](const TCIMValue& v) { (void)static_cast<double>(v); },
     TZENTAStatusCode::kNullValue, "null real64"},
    {"real_as_int", TCIMValue(2.0), [](const TCIMValue& v) { (void)static_cast<int>(v); },
     TZENTAStatusCode::kTypeMismatch, "real64"},
    {"real_as_uint64", TCIMValue(2.0f), [](const TCIMValue& v) { (void)static_cast<unsigned long long>(v); },
     TZENTAStatusCode::kTypeMismatch, "real32"},
    {"real_as_bool", TCIMValue(1.0), [](const TCIMValue& v) { (void)static_cast<bool>(v); },
     TZENTAStatusCode::kTypeMismatch, "as bool"},
    {"bool_as_double", TCIMValue(true), [](const TCIMValue& v) { (void)static_cast<double>(v); },
     TZENTAStatusCode::kTypeMismatch, "boolean"},
    {"char16_as_int", TCIMValue(TCIMChar16('a')), [](const TCIMValue& v) { (void)static_cast<int>(v); },
     TZENTAStatusCode::kTypeMismatch, "char16"},
    {"array_as_int", MakeArray(TType::kUint8, {TCIMValue(static_cast<unsigned char>(1))}),
     [](const TCIMValue& v) { (void)static_cast<int>(v); }, TZENTAStatusCode::kTypeMismatch, "uint8 array"},
    {"array_as_string", MakeArray(TType::kString, {TCIMValue("a")}),
     [](const TCIMValue& v) { (void)static_cast<std::string>(v); }, TZENTAStatusCode::kTypeMismatch,
     "string array"},
    {"null_array_as_int", NullOf(TType::kSint16, 3), [](const TCIMValue& v) { (void)static_cast<short>(v); },
     TZENTAStatusCode::kTypeMismatch, "array"},
    {"scalar_as_array", TCIMValue(5u),
     [](const TCIMValue& v) { (void)static_cast<const TValues&>(v).size(); }, TZENTAStatusCode::kNotAnArray,
     "not an array"},
    {"unset_as_array", TCIMValue(), [](const TCIMValue& v) { (void)static_cast<const TValues&>(v).size(); },
     TZENTAStatusCode::kNotAnArray, "not an array"},
    {"uint_as_reference", TCIMValue(5u), [](const TCIMValue& v) { (void)static_cast<TCIMReference>(v); },
     TZENTAStatusCode::kTypeMismatch, "as reference"},
    {"string_as_reference", TCIMValue("CIM_Foo.Name=\"x\""),
     [](const TCIMValue& v) { (void)static_cast<TCIMReference>(v); }, TZENTAStatusCode::kTypeMismatch,
     "as reference"},
    {"null_reference", NullOf(TType::kReference, 0), [](const TCIMValue& v) { (void)static_cast<TCIMReference>(v); },
     TZENTAStatusCode::kNullValue, "null reference"},
    {"string_as_datetime", TCIMValue("20070101100000.000000-000"),
     [](const TCIMValue& v) { (void)static_cast<TCIMDateTime>(v); }, TZENTAStatusCode::kTypeMismatch,
     "as datetime"},
    {"uint16_as_char16", TCIMValue(static_cast<unsigned short>(65)),
     [](const TCIMValue& v) { (void)static_cast<TCIMChar16>(v); }, TZENTAStatusCode::kTypeMismatch, "as char16"},
    {"radix_16", TCIMValue(10), [](const TCIMValue& v) { (void)v.ToString(16); },
     TZENTAStatusCode::kInvalidArgument, "radix"},
};

INSTANTIATE_TEST_SUITE_P(Value, BadConversionTest, ::testing::ValuesIn(kBadConversions),
                         [](const ::testing::TestParamInfo<TBadConversion>& info) { return info.param.label; });

// --- nulls -----------------------------------------------------------------

TEST(Value, NullsOfEveryTypeKeepTheirTypeAndShape) {
    for (int code = 0; code < 16; ++code) {
        const TType::ECIMType type = static_cast<TType::ECIMType>(code);
        const TCIMValue scalar = NullOf(type, 0);
        EXPECT_TRUE(scalar.IsNull()) << code;
        EXPECT_FALSE(scalar.IsArray()) << code;
        EXPECT_EQ(scalar.GetType(), type);
        EXPECT_EQ(scalar.ToString(10), "");

        const TCIMValue array = NullOf(type, 4);
        EXPECT_TRUE(array.IsNull()) << code;
        EXPECT_TRUE(array.IsArray()) << code;
        EXPECT_EQ(array.GetType(), type);
        EXPECT_TRUE(static_cast<const TValues&>(array).empty());
        EXPECT_EQ(array.ToString(10), "");

        EXPECT_EQ(scalar, NullOf(type, 0));
        EXPECT_NE(scalar, array);
    }
    EXPECT_NE(NullOf(TType::kUint8, 0), NullOf(TType::kSint8, 0));
    EXPECT_NE(NullOf(TType::kString, 0), TCIMValue(""));
    EXPECT_EQ(StatusOf([] { NullOf(static_cast<TType::ECIMType>(40), 0); }), TZENTAStatusCode::kInvalidArgument);
}

// --- arrays ----------------------------------------------------------------

struct TArrayRow {
    const char* label;
    TType::ECIMType type;
    TCIMValue first;
    TCIMValue second;
    std::string joined;
};

class ArrayTest : public ::testing::TestWithParam<TArrayRow> {};

TEST_P(ArrayTest, HoldsZeroOneAndTwoElements) {
    const TArrayRow& row = GetParam();
    for (std::size_t count = 0; count <= 2; ++count) {
        const TValues all = {row.first, row.second};
        const TCIMValue array = MakeArray(row.type, TValues(all.begin(), all.begin() + count));
        EXPECT_TRUE(array.IsArray());
        EXPECT_FALSE(array.IsNull());
        EXPECT_EQ(array.GetType(), row.type);
        const TValues& elements = array;
        ASSERT_EQ(elements.size(), count);
        for (std::size_t i = 0; i < count; ++i) EXPECT_EQ(elements[i], all[i]);
        const std::string expected = count == 0 ? "" : count == 1 ? row.first.ToString(10) : row.joined;
        EXPECT_EQ(array.ToString(10), expected);
        EXPECT_EQ(TCIMValue(array), array);
    }
}

const TArrayRow kArrayRows[] = {
    {"boolean", TType::kBoolean, TCIMValue(true), TCIMValue(false), "TRUE,FALSE"},
    {"uint8", TType::kUint8, TCIMValue(static_cast<unsigned char>(0)), TCIMValue(static_cast<unsigned char>(255)),
     "0,255"},
    {"sint8", TType::kSint8, TCIMValue(static_cast<signed char>(-128)), TCIMValue(static_cast<signed char>(127)),
     "-128,127"},
    {"uint16", TType::kUint16, TCIMValue(static_cast<unsigned short>(1)),
     TCIMValue(static_cast<unsigned short>(65535)), "1,65535"},
    {"sint16", TType::kSint16, TCIMValue(static_cast<short>(-32768)), TCIMValue(static_cast<short>(2)),
     "-32768,2"},
    {"uint32", TType::kUint32, TCIMValue(0u), TCIMValue(4294967295u), "0,4294967295"},
    {"sint32", TType::kSint32, TCIMValue(-1), TCIMValue(1), "-1,1"},
    {"uint64", TType::kUint64, TCIMValue(1ULL), TCIMValue(18446744073709551615ULL), "1,18446744073709551615"},
    {"sint64", TType::kSint64, TCIMValue(-9223372036854775807LL - 1), TCIMValue(0LL), "-9223372036854775808,0"},
    {"real32", TType::kReal32, TCIMValue(0.5f), TCIMValue(-std::numeric_limits<float>::infinity()), "0.5,-INF"},
    {"real64", TType::kReal64, TCIMValue(std::numeric_limits<double>::quiet_NaN()), TCIMValue(1e-7), "NaN,1e-07"},
    {"char16", TType::kChar16, TCIMValue(TCIMChar16('x')), TCIMValue(TCIMChar16(',')), "x,,"},
    {"string", TType::kString, TCIMValue(""), TCIMValue("b c"), ",b c"},
    {"datetime", TType::kDateTime, TCIMValue(TCIMDateTime("20240229235959.999999+060")),
     TCIMValue(TCIMDateTime("00000000000001.000000:000")), "20240229235959.999999+060,00000000000001.000000:000"},
    {"reference", TType::kReference, TCIMValue(SamplePath()), TCIMValue(TCIMReference::Parse("A.b=1")),
     "CIM_Foo.Name=\"x\",A.b=1"},
};

INSTANTIATE_TEST_SUITE_P(Value, ArrayTest, ::testing::ValuesIn(kArrayRows),
                         [](const ::testing::TestParamInfo<TArrayRow>& info) { return info.param.label; });

TEST(Value, ArrayTakesOnlyTheCountedElements) {
    const TValues source = {TCIMValue(1), TCIMValue(2), TCIMValue(3)};
    const TCIMValue array = MakeArray(TType::kSint32, source);
    TCIMValue firstTwo;
    firstTwo.Set(TType(TType::kSint32), 2, source);
    EXPECT_EQ(firstTwo.ToString(10), "1,2");
    EXPECT_EQ(static_cast<const TValues&>(firstTwo).size(), 2u);
    EXPECT_NE(firstTwo, array);

    std::string message;
    EXPECT_EQ(StatusOf([&] { firstTwo.Set(TType(TType::kSint32), 4, source); }, &message),
              TZENTAStatusCode::kInvalidArgument);
    EXPECT_NE(message.find("4"), std::string::npos) << message;
    EXPECT_EQ(firstTwo.ToString(10), "1,2") << "a failed Set leaves the value as it was";
}

TEST(Value, ArrayElementsMustBeOfTheArrayTypeOrNull) {
    TCIMValue array;
    std::string message;
    EXPECT_EQ(StatusOf([&] { array.Set(TType(TType::kUint32), 2, TValues{TCIMValue(1u), TCIMValue(2)}); }, &message),
              TZENTAStatusCode::kTypeMismatch);
    EXPECT_NE(message.find("element 1"), std::string::npos) << message;
    EXPECT_EQ(StatusOf([&] { array.Set(TType(TType::kString), 1, TValues{MakeArray(TType::kString, {})}); }),
              TZENTAStatusCode::kTypeMismatch);
    EXPECT_EQ(StatusOf([&] { array.Set(TType(TType::kNone), 0, TValues()); }), TZENTAStatusCode::kInvalidArgument);

    array.Set(TType(TType::kString), 3, TValues{TCIMValue("a"), TCIMValue(), NullOf(TType::kString, 0)});
    const TValues& elements = array;
    EXPECT_EQ(elements[1], NullOf(TType::kString, 0)) << "a null element takes the array's type";
    EXPECT_EQ(elements[2], NullOf(TType::kString, 0));
    EXPECT_EQ(array.ToString(10), "a,,");
}

TEST(Value, ArrayCanBeRebuiltFromItsOwnElements) {
    TCIMValue array = MakeArray(TType::kString, {TCIMValue("a"), TCIMValue("b"), TCIMValue("c")});
    array.Set(TType(TType::kString), 2, Elements(array));
    EXPECT_EQ(array.ToString(10), "a,b");
    array.Set(TType(TType::kString), 1, std::move(Elements(array)));
    EXPECT_EQ(array.ToString(10), "a");
    array = Elements(array)[0];
    EXPECT_FALSE(array.IsArray());
    EXPECT_EQ(array, TCIMValue("a"));
    TCIMValue nested = MakeArray(TType::kUint8, {TCIMValue(static_cast<unsigned char>(3))});
    nested = std::move(Elements(nested)[0]);
    EXPECT_EQ(nested, TCIMValue(static_cast<unsigned char>(3)));
}

TEST(Value, ArrayElementsCanBeChangedInPlace) {
    TCIMValue array = MakeArray(TType::kUint16, {TCIMValue(static_cast<unsigned short>(1))});
    Elements(array).push_back(TCIMValue(static_cast<unsigned short>(2)));
    Elements(array)[0].Set(static_cast<unsigned short>(7));
    EXPECT_EQ(array.ToString(10), "7,2");
    const TCIMValue copy(array);
    Elements(array)[1].Set(static_cast<unsigned short>(8));
    EXPECT_EQ(copy.ToString(10), "7,2") << "copies do not share elements";
}

// --- equality --------------------------------------------------------------

TEST(Value, EqualityNeedsTheSameTypeShapeAndContents) {
    EXPECT_NE(TCIMValue(5u), TCIMValue(5));
    EXPECT_NE(TCIMValue(5u), TCIMValue(6u));
    EXPECT_NE(TCIMValue(1.0f), TCIMValue(1.0));
    EXPECT_EQ(TCIMValue(std::numeric_limits<double>::quiet_NaN()), TCIMValue(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_NE(TCIMValue("a"), TCIMValue("A"));
    EXPECT_NE(TCIMValue(TCIMChar16('1')), TCIMValue("1"));
    EXPECT_NE(TCIMValue(TCIMDateTime("20070101100000.000000-000")), TCIMValue("20070101100000.000000-000"));
    EXPECT_NE(MakeArray(TType::kSint32, {TCIMValue(1)}), TCIMValue(1));
    EXPECT_NE(MakeArray(TType::kSint32, {TCIMValue(1)}), MakeArray(TType::kSint32, {TCIMValue(1), TCIMValue(1)}));
    EXPECT_EQ(MakeArray(TType::kSint32, {}), MakeArray(TType::kSint32, {}));
    EXPECT_NE(MakeArray(TType::kSint32, {}), NullOf(TType::kSint32, 1));

    TCIMReference other = SamplePath();
    other.AddKeyValue("Name", TCIMValue("y"));
    EXPECT_EQ(TCIMValue(SamplePath()), TCIMValue(SamplePath()));
    EXPECT_NE(TCIMValue(SamplePath()), TCIMValue(other));
}

TEST(Value, CopiesAreIndependentOfTheSource) {
    TCIMValue original(SamplePath());
    const TCIMValue copy(original);
    original.Set(3);
    EXPECT_EQ(copy.GetType(), TType::kReference);
    EXPECT_EQ(copy.ToString(10), "CIM_Foo.Name=\"x\"");

    std::map<std::string, TCIMValue> context;
    context["a"] = TCIMValue("one");
    context["b"] = context["a"];
    context["a"] = TCIMValue(2u);
    EXPECT_EQ(context["b"], TCIMValue("one"));
}
