// The log relay: lines of the core logger are read back, forwarded to the
// user's destination by the user's threshold, and returned in full.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "LogRelay.h"
#include "TRootObject.h"

using NVURZENTA20::TRootObject;

namespace {

std::string ReadFile(const std::string& path) {
    std::ifstream in(path.c_str());
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

class LogRelayTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/zenta-relay-test-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        fDirectory = pattern;
        fDestination = fDirectory + "/user.log";
    }
    void TearDown() override {
        std::remove(fDestination.c_str());
        rmdir(fDirectory.c_str());
    }
    std::string fDirectory;
    std::string fDestination;
};

}  // namespace

TEST(LogLine, ParsesEveryLevelAndKeepsTheTextWhole) {
    const struct {
        const char* line;
        int level;
        const char* text;
    } cases[] = {
        {"2024-05-01 13:04:05.123 ERROR cannot open x", 0, "cannot open x"},
        {"2024-05-01 13:04:05.123 WARNING  two  blanks ", 1, " two  blanks "},
        {"2024-05-01 13:04:05.123 NOTICE n", 2, "n"},
        {"2024-05-01 13:04:05.123 TRACE providerDriver::invokeMethod Echo", 3, "providerDriver::invokeMethod Echo"},
        {"2024-05-01 13:04:05.123 INFORMATION i", 4, "i"},
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

TEST_F(LogRelayTest, ForwardsByTheUsersThresholdAndReturnsEverything) {
    const boost::shared_ptr<NVURZENTA20::ICoreLogger> logger = TRootObject::GetCoreLogger();
    const int before = logger->GetThreshold();
    {
        TLogRelay relay(1, fDestination);
        relay.AddPathAlias("/private/stage", "/home/me/modules");
        EXPECT_GE(logger->GetThreshold(), 3) << "trace lines would not reach the relay";
        logger->Log(0, "module /private/stage/Broken.cmpi.so failed");
        logger->Log(3, "providerDriver::enumInstances failed for P");
        const std::vector<TLogLine> first = relay.Collect();
        ASSERT_EQ(first.size(), 2u);
        EXPECT_EQ(first[0].level, 0);
        EXPECT_EQ(first[0].text, "module /home/me/modules/Broken.cmpi.so failed");
        EXPECT_EQ(first[1].text, "providerDriver::enumInstances failed for P");
        EXPECT_TRUE(relay.Collect().empty()) << "lines were returned twice";
        logger->Log(1, "later warning");
    }
    EXPECT_EQ(logger->GetThreshold(), 1) << "the user's threshold was not restored";
    const std::string forwarded = ReadFile(fDestination);
    EXPECT_NE(forwarded.find(" ERROR module /home/me/modules/Broken.cmpi.so failed\n"), std::string::npos) << forwarded;
    EXPECT_EQ(forwarded.find("TRACE"), std::string::npos) << forwarded;
    EXPECT_NE(forwarded.find(" WARNING later warning\n"), std::string::npos) << "lines of the last step were lost";
    logger->SetLogFile("");
    logger->SetThreshold(before);
}
