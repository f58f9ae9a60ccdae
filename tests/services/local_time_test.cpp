#include <time.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "TCIMDateTime.h"
#include "TOSSpecific.h"
#include "TestSupport.h"

using NVURZENTA20::TCIMDateTime;
using NVURZENTA20::TOSSpecific;
using ZentaTest::TScopedEnvironment;

namespace {

// Switches the process to a POSIX time zone for one scope. The C library
// reads TZ only when told to, hence the tzset calls on both ends.
class TScopedTimeZone {
public:
    explicit TScopedTimeZone(const std::string& zone) : fEnvironment(new TScopedEnvironment("TZ", zone)) { tzset(); }
    ~TScopedTimeZone() {
        fEnvironment.reset();
        tzset();
    }

private:
    std::unique_ptr<TScopedEnvironment> fEnvironment;
};

std::string LocalDigits(std::time_t seconds) {
    std::tm local{};
    localtime_r(&seconds, &local);
    char digits[16];
    std::strftime(digits, sizeof(digits), "%Y%m%d%H%M%S", &local);
    return digits;
}

bool AllDigits(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

TEST(LocalTime, IsTheCurrentTimestampWithTheZonesOffset) {
    struct TCase {
        const char* zone;  // POSIX TZ: the offset is counted westward
        const char* offset;
    };
    const TCase cases[] = {{"UTC0", "+000"}, {"IST-05:30", "+330"}, {"NST+03:30", "-210"}, {"LINT-14", "+840"}};
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.zone);
        TScopedTimeZone zone(c.zone);

        const std::time_t before = std::time(nullptr);
        const TCIMDateTime now = TOSSpecific::GetLocalTime();
        const std::time_t after = std::time(nullptr);

        const std::string text = now.ToString();
        ASSERT_EQ(text.size(), 25u) << text;
        EXPECT_FALSE(now.IsInterval());
        EXPECT_TRUE(TCIMDateTime::IsValid(text)) << text;
        EXPECT_EQ(TCIMDateTime(text), now);

        const std::string seconds = text.substr(0, 14);
        EXPECT_TRUE(seconds == LocalDigits(before) || seconds == LocalDigits(after))
            << text << " is not between " << LocalDigits(before) << " and " << LocalDigits(after);
        EXPECT_EQ(text[14], '.');
        EXPECT_TRUE(AllDigits(text.substr(15, 6))) << text;
        EXPECT_EQ(text.substr(21), c.offset);
    }
}

TEST(LocalTime, OffsetFollowsTheMachinesZone) {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    ASSERT_NE(localtime_r(&seconds, &local), nullptr);
    const long minutes = local.tm_gmtoff / 60;
    char digits[4];
    std::snprintf(digits, sizeof(digits), "%03d", static_cast<int>(std::labs(minutes) % 1000));
    const std::string expected = (minutes < 0 ? "-" : "+") + std::string(digits);

    EXPECT_EQ(TOSSpecific::GetLocalTime().ToString().substr(21), expected);
}
