// The log relay: lines of the core logger are read back and returned in full.
#include <string>

#include <gtest/gtest.h>

#include "LogRelay.h"
#include "TRootObject.h"

TEST(LogLine, ParsesEveryLevelAndKeepsTheTextWhole) {
    const struct {
        const char* line;
        int level;
        const char* text;
    } cases[] = {
        {"2024-05-01 13:04:05.123 ERROR cannot open x", 0, "cannot open x"},
        {"2024-05-01 13:04:05.123 WARNING  two  blanks ", 1, " two  blanks "},
        {"2024-05-01 13:04:05.123 LEVEL7 odd", 7, "odd"},
        {"2024-05-01 13:04:05.123 TRACE", 3, ""},
    };
    for (const auto& c : cases) {
        TLogLine parsed;
        ASSERT_TRUE(TLogRelay::ParseLine(c.line, parsed)) << c.line;
        EXPECT_EQ(parsed.level, c.level) << c.line;
        EXPECT_EQ(parsed.text, c.text) << c.line;
    }
    for (const char* garbage : {"", "no", "2024-05-01 13:04:05.123", "2024-05-01 13:04:05.123 LOUD text"}) {
        TLogLine parsed;
        EXPECT_FALSE(TLogRelay::ParseLine(garbage, parsed)) << garbage;
    }
}

// Forwarding by threshold, to files and with path aliases: see the e2e tests.
TEST(LogRelay, CollectsTraceLinesOnceAndRestoresTheUsersThreshold) {
    const boost::shared_ptr<NVURZENTA20::ICoreLogger> logger = NVURZENTA20::TRootObject::GetCoreLogger();
    logger->SetThreshold(1);
    {
        TLogRelay relay(1, "");
        relay.AddPathAlias("/private/stage", "/home/me/modules");
        EXPECT_GE(logger->GetThreshold(), 3) << "trace lines would not reach the relay";
        logger->Log(3, "module /private/stage/Broken.cmpi.so failed");
        const std::vector<TLogLine> first = relay.Collect();
        ASSERT_EQ(first.size(), 1u);
        EXPECT_EQ(first[0].level, 3);
        EXPECT_EQ(first[0].text, "module /home/me/modules/Broken.cmpi.so failed");
        EXPECT_TRUE(relay.Collect().empty()) << "lines were returned twice";
    }
    EXPECT_EQ(logger->GetThreshold(), 1) << "the user's threshold was not restored";
}
