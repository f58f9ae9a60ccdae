// Reading method arguments and path keys from command-line text by their
// declared type: the edges of every type, and the refusals.
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TCIMDateTime.h"
#include "TCIMReference.h"
#include "ToolError.h"
#include "ValueText.h"

using namespace NVURZENTA20;
typedef TCIMValue::TCIMType TType;

namespace {

TCIMReference NoReference(const std::string&) {
    ADD_FAILURE() << "a reference was read";
    return TCIMReference();
}

TCIMValue Read(const std::string& text, TType::ECIMType type, bool isArray = false) {
    return ValueFromText(text, TType(type), isArray, NoReference, "parameter P");
}

// The message of the refusal, or "" when the text was accepted.
std::string Refusal(const std::string& text, TType::ECIMType type, bool isArray = false) {
    try {
        Read(text, type, isArray);
    } catch (const TToolError& refused) {
        return refused.what();
    }
    return std::string();
}

struct TAccepted {
    const char* text;
    TType::ECIMType type;
    TCIMValue expected;
};

struct TRefused {
    const char* text;
    TType::ECIMType type;
};

}  // namespace

TEST(ValueText, IntegersAreReadAtTheirLimits) {
    const TAccepted cases[] = {
        {"0", TType::kUint8, TCIMValue(static_cast<unsigned char>(0))},
        {"255", TType::kUint8, TCIMValue(static_cast<unsigned char>(255))},
        {"-128", TType::kSint8, TCIMValue(static_cast<signed char>(-128))},
        {"127", TType::kSint8, TCIMValue(static_cast<signed char>(127))},
        {"65535", TType::kUint16, TCIMValue(static_cast<unsigned short>(65535))},
        {"-32768", TType::kSint16, TCIMValue(static_cast<short>(-32768))},
        {"4294967295", TType::kUint32, TCIMValue(4294967295u)},
        {"-2147483648", TType::kSint32, TCIMValue(-2147483647 - 1)},
        {"18446744073709551615", TType::kUint64, TCIMValue(18446744073709551615ull)},
        {"-9223372036854775808", TType::kSint64, TCIMValue(-9223372036854775807ll - 1)},
        {"007", TType::kUint32, TCIMValue(7u)},
    };
    for (const TAccepted& c : cases) {
        const TCIMValue value = Read(c.text, c.type);
        EXPECT_EQ(value, c.expected) << c.text << " as " << TType(c.type).GetName();
    }
}

TEST(ValueText, IntegersOutsideTheirTypeAreRefused) {
    const TRefused cases[] = {
        {"256", TType::kUint8},     {"-1", TType::kUint8},       {"+1", TType::kUint8},
        {" 1", TType::kUint8},      {"1 ", TType::kUint8},       {"", TType::kUint32},
        {"0x10", TType::kUint32},   {"1.0", TType::kUint32},     {"-129", TType::kSint8},
        {"128", TType::kSint8},     {"65536", TType::kUint16},   {"-32769", TType::kSint16},
        {"4294967296", TType::kUint32}, {"2147483648", TType::kSint32},
        {"18446744073709551616", TType::kUint64}, {"-9223372036854775809", TType::kSint64},
        {"lots", TType::kSint64},
    };
    for (const TRefused& c : cases) {
        const std::string refusal = Refusal(c.text, c.type);
        EXPECT_EQ(refusal, std::string("parameter P: \"") + c.text + "\" is not a valid " + TType(c.type).GetName())
            << c.text;
    }
}

TEST(ValueText, BooleansRealsAndStrings) {
    EXPECT_EQ(Read("TRUE", TType::kBoolean), TCIMValue(true));
    EXPECT_EQ(Read("false", TType::kBoolean), TCIMValue(false));
    EXPECT_EQ(Read("FaLsE", TType::kBoolean), TCIMValue(false));
    EXPECT_NE(Refusal("yes", TType::kBoolean), "");
    EXPECT_NE(Refusal("1", TType::kBoolean), "");

    EXPECT_EQ(Read("1.5", TType::kReal64), TCIMValue(1.5));
    EXPECT_EQ(Read("-2.25", TType::kReal32), TCIMValue(-2.25f));
    EXPECT_TRUE(std::isnan(static_cast<double>(Read("NaN", TType::kReal64))));
    EXPECT_TRUE(std::isinf(static_cast<double>(Read("-INF", TType::kReal64))));
    EXPECT_NE(Refusal("1.5x", TType::kReal64), "");
    EXPECT_NE(Refusal("", TType::kReal32), "");

    EXPECT_EQ(Read("", TType::kString), TCIMValue(""));
    EXPECT_EQ(Read("a, \"b\"", TType::kString), TCIMValue("a, \"b\""));
}

TEST(ValueText, Char16IsOneCharacterOfTheBasicPlane) {
    EXPECT_EQ(Read("A", TType::kChar16), TCIMValue(TCIMChar16(65)));
    EXPECT_EQ(Read("\xC3\xA9", TType::kChar16), TCIMValue(TCIMChar16(0xE9)));          // é
    EXPECT_EQ(Read("\xE2\x82\xAC", TType::kChar16), TCIMValue(TCIMChar16(0x20AC)));    // €
    for (const char* text : {"", "AB", "\xF0\x9F\x98\x80", "\xC3", "\xC1\x81", "\xE0\x81\x81"}) {
        EXPECT_NE(Refusal(text, TType::kChar16), "") << "accepted " << text;
    }
}

TEST(ValueText, DateTimesMustBeCimText) {
    EXPECT_EQ(Read("20240501130405.123456+060", TType::kDateTime),
              TCIMValue(TCIMDateTime("20240501130405.123456+060")));
    EXPECT_EQ(Read("00000001020304.000000:000", TType::kDateTime),
              TCIMValue(TCIMDateTime("00000001020304.000000:000")));
    EXPECT_NE(Refusal("2024-05-01", TType::kDateTime), "");
    EXPECT_NE(Refusal("", TType::kDateTime), "");
}

TEST(ValueText, ReferencesAreHandedToTheReader) {
    std::vector<std::string> asked;
    const TReferenceReader reader = [&](const std::string& text) {
        asked.push_back(text);
        TCIMReference path;
        path.SetClassName("Seen");
        return path;
    };
    const TCIMValue value = ValueFromText("X.Id=1", TType(TType::kReference), false, reader, "key K");
    ASSERT_EQ(asked, std::vector<std::string>{"X.Id=1"});
    EXPECT_EQ(static_cast<TCIMReference>(value).GetClassName(), "Seen");
}

TEST(ValueText, ArraysAreCommaSeparatedElements) {
    const TCIMValue numbers = Read("1,2,300", TType::kUint16, true);
    ASSERT_TRUE(numbers.IsArray());
    EXPECT_EQ(numbers.GetType(), TType::kUint16);
    const std::vector<TCIMValue>& elements = numbers;
    ASSERT_EQ(elements.size(), 3u);
    EXPECT_EQ(elements[2], TCIMValue(static_cast<unsigned short>(300)));

    const TCIMValue empty = Read("", TType::kString, true);
    EXPECT_TRUE(empty.IsArray());
    EXPECT_FALSE(empty.IsNull());
    EXPECT_TRUE(static_cast<const std::vector<TCIMValue>&>(empty).empty());

    const TCIMValue words = Read("a,,b", TType::kString, true);
    EXPECT_EQ(static_cast<const std::vector<TCIMValue>&>(words).size(), 3u);
    EXPECT_NE(Refusal("1,,2", TType::kUint8, true), "");
    EXPECT_NE(Refusal("1,256", TType::kUint8, true), "");
}
