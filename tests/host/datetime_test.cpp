// TCIMDateTime: accepted and rejected CIM date-time text, and the date-times
// built from clock readings and interval lengths.
#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "TCIMDateTime.h"
#include "TZENTAException.h"

using namespace NVURZENTA20;

namespace {

struct TValidRow {
    const char* text;
    bool interval;
};

const TValidRow kValidRows[] = {
    {"20070101100000.000000-000", false},
    {"19991231235959.999999+720", false},
    {"00000101000000.000000+000", false},
    {"20240229000000.000000+000", false},  // leap year
    {"20000229120000.000000-060", false},  // divisible by 400
    {"****0229000000.000000+000", false},  // year unknown: 29 February may exist
    {"2007****100000.000000+000", false},
    {"20070101******.******+000", false},
    {"20070101100000.123***+000", false},
    {"20070101100000.1*****-999", false},
    {"**************.******+000", false},
    {"00000000000000.000000:000", true},
    {"00000001020304.000005:000", true},
    {"99999999235959.999999:000", true},
    {"********235959.******:000", true},
    {"00000010******.******:000", true},
};

class ValidDateTimeTest : public ::testing::TestWithParam<TValidRow> {};

TEST_P(ValidDateTimeTest, ParsesAndFormatsBackExactly) {
    const TValidRow& row = GetParam();
    const TCIMDateTime parsed(row.text);
    EXPECT_EQ(parsed.ToString(), row.text);
    EXPECT_EQ(parsed.IsInterval(), row.interval);
    EXPECT_FALSE(parsed.IsNull());
    EXPECT_TRUE(TCIMDateTime::IsValid(row.text));
    TCIMDateTime copy(parsed);
    EXPECT_EQ(copy, parsed);
    copy.Clear();
    EXPECT_TRUE(copy.IsNull());
    EXPECT_EQ(copy.ToString(), "");
    EXPECT_FALSE(copy.IsInterval());
    EXPECT_EQ(parsed.ToString(), row.text) << "clearing a copy leaves the original";
}

INSTANTIATE_TEST_SUITE_P(DateTime, ValidDateTimeTest, ::testing::ValuesIn(kValidRows));

struct TInvalidRow {
    std::string text;
    const char* problem;
};

const TInvalidRow kInvalidRows[] = {
    {"", "0 characters"},
    {"2007010110000.000000-000", "24 characters"},
    {" 20070101100000.000000-000", "26 characters"},
    {"20071301100000.000000-000", "month 13 is out of range"},
    {"20070001100000.000000-000", "month 00 is out of range"},
    {"20070100100000.000000-000", "day 00 is out of range"},
    {"20070132100000.000000-000", "day 32 is out of range"},
    {"20070431100000.000000-000", "day 31 does not exist in month 04 of 2007"},
    {"20230229100000.000000-000", "day 29 does not exist in month 02 of 2023"},
    {"19000229100000.000000-000", "day 29 does not exist in month 02 of 1900"},
    {"****0230100000.000000-000", "day 30 does not exist in month 02"},
    {"20070101240000.000000-000", "hour 24 is out of range"},
    {"20070101106000.000000-000", "minute 60 is out of range"},
    {"20070101100060.000000-000", "second 60 is out of range"},
    {"2007*101100000.000000-000", "month \"*1\" mixes digits and asterisks"},
    {"2007*1011000001000000-000", "'.' must follow the seconds"},
    {"20070101100000,000000-000", "'.' must follow the seconds"},
    {"20070101100000.0000*0-000", "asterisks before digits"},
    {"20070101100000.00000a-000", "microseconds \"00000a\" are not a number"},
    {"2007010110000x.000000-000", "second \"0x\" is not a number"},
    {"20070101100000.000000*000", "character 22"},
    {"20070101100000.000000-0a0", "UTC offset \"0a0\""},
    {"20070101100000.000000+***", "UTC offset \"***\""},
    {"00000001240000.000000:000", "hours 24 is out of range"},
    {"00000001006000.000000:000", "minutes 60 is out of range"},
    {"00000001000060.000000:000", "seconds 60 is out of range"},
    {"00000001000000.000000:001", "must end in \":000\""},
    {"0000000a000000.000000:000", "days \"0000000a\" is not a number"},
    {"0000**00000000.000000:000", "mixes digits and asterisks"},
    {std::string("20070101100000.000000-00\0", 25), "UTC offset"},
};

class InvalidDateTimeTest : public ::testing::TestWithParam<TInvalidRow> {};

TEST_P(InvalidDateTimeTest, IsRejectedWithTheReason) {
    const TInvalidRow& row = GetParam();
    EXPECT_FALSE(TCIMDateTime::IsValid(row.text));
    try {
        TCIMDateTime parsed(row.text);
        ADD_FAILURE() << "accepted " << parsed.ToString();
    } catch (const TZENTAException& failure) {
        const std::string& message = failure.GetMessage();
        EXPECT_EQ(failure.GetStatusCode(), TZENTAStatusCode::kInvalidDateTime);
        EXPECT_NE(message.find("\"" + row.text + "\""), std::string::npos) << message;
        EXPECT_NE(message.find(row.problem), std::string::npos) << message;
    }
}

INSTANTIATE_TEST_SUITE_P(DateTime, InvalidDateTimeTest, ::testing::ValuesIn(kInvalidRows));

struct TUnixTimeRow {
    long long seconds;
    long microseconds;
    int offset;
    const char* text;
};

const TUnixTimeRow kUnixTimeRows[] = {
    {0, 0, 0, "19700101000000.000000+000"},
    {0, 0, 60, "19700101010000.000000+060"},
    {0, 0, -300, "19691231190000.000000-300"},
    {0, -1, 0, "19691231235959.999999+000"},
    {0, 1500000, 0, "19700101000001.500000+000"},
    {951782400, 123456, 0, "20000229000000.123456+000"},
    {1700000000, 999999, 0, "20231114221320.999999+000"},
    {1700000000, 0, -999, "20231114053420.000000-999"},
    {-86400, 0, 0, "19691231000000.000000+000"},
};

class UnixTimeTest : public ::testing::TestWithParam<TUnixTimeRow> {};

TEST_P(UnixTimeTest, FormatsTheLocalTimestamp) {
    const TUnixTimeRow& row = GetParam();
    const TCIMDateTime made =
        TCIMDateTime::FromUnixTime(static_cast<std::time_t>(row.seconds), row.microseconds, row.offset);
    EXPECT_EQ(made.ToString(), row.text);
    EXPECT_FALSE(made.IsInterval());
    EXPECT_TRUE(TCIMDateTime::IsValid(made.ToString()));
}

INSTANTIATE_TEST_SUITE_P(DateTime, UnixTimeTest, ::testing::ValuesIn(kUnixTimeRows));

TEST(DateTime, OffsetBeyondThreeDigitsIsRefused) {
    EXPECT_THROW(TCIMDateTime::FromUnixTime(0, 0, 1000), TZENTAException);
    EXPECT_THROW(TCIMDateTime::FromUnixTime(0, 0, -1000), TZENTAException);
}

TEST(DateTime, UnixTimeOutsideTheFourDigitYearsIsRefused) {
    if (sizeof(std::time_t) < 8) GTEST_SKIP() << "time_t cannot reach the year 10000";
    const long long lastSecond = 253402300799LL;  // 9999-12-31 23:59:59 UTC
    EXPECT_EQ(TCIMDateTime::FromUnixTime(static_cast<std::time_t>(lastSecond), 0, 0).ToString(),
              "99991231235959.000000+000");
    try {
        TCIMDateTime::FromUnixTime(static_cast<std::time_t>(lastSecond + 1), 0, 0);
        ADD_FAILURE() << "year 10000 accepted";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode(), TZENTAStatusCode::kInvalidArgument);
    }
    EXPECT_THROW(TCIMDateTime::FromUnixTime(static_cast<std::time_t>(-62167219201LL), 0, 0), TZENTAException);
    EXPECT_THROW(TCIMDateTime::FromUnixTime(static_cast<std::time_t>(9223372036854775807LL), 0, 0),
                 TZENTAException);
}

TEST(DateTime, IntervalsFromMicroseconds) {
    const unsigned long long day = 86400000000ULL;
    EXPECT_EQ(TCIMDateTime::FromIntervalMicroseconds(0).ToString(), "00000000000000.000000:000");
    EXPECT_EQ(TCIMDateTime::FromIntervalMicroseconds(day + 7384000005ULL).ToString(), "00000001020304.000005:000");
    const TCIMDateTime longest = TCIMDateTime::FromIntervalMicroseconds(100000000ULL * day - 1);
    EXPECT_EQ(longest.ToString(), "99999999235959.999999:000");
    EXPECT_TRUE(longest.IsInterval());
    try {
        TCIMDateTime::FromIntervalMicroseconds(100000000ULL * day);
        ADD_FAILURE() << "100000000 days accepted";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode(), TZENTAStatusCode::kInvalidArgument);
    }
    EXPECT_THROW(TCIMDateTime::FromIntervalMicroseconds(18446744073709551615ULL), TZENTAException);
}

TEST(DateTime, DefaultIsClearedAndAssignmentCopiesTheText) {
    TCIMDateTime value;
    EXPECT_TRUE(value.IsNull());
    EXPECT_FALSE(value.IsInterval());
    EXPECT_FALSE(TCIMDateTime::IsValid(value.ToString()));
    const TCIMDateTime stamp("20070101100000.000000-000");
    value = stamp;
    EXPECT_EQ(value, stamp);
    value = TCIMDateTime("00000000000001.000000:000");
    EXPECT_NE(value, stamp);
    EXPECT_TRUE(value.IsInterval());
}

}  // namespace
