#include <map>
#include <optional>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "TCoreLogger.h"
#include "TZENTAException.h"
#include "TestSupport.h"

using NVURZENTA20::ICoreLogger;
using NVURZENTA20::TCoreLogger;
using NVURZENTA20::TZENTAException;
using NVURZENTA20::TZENTAStatusCode;
using ZentaTest::ReadLines;
using ZentaTest::TScopedEnvironment;
using ZentaTest::TTempDirectory;
using ZentaTest::WriteFile;

namespace {

typedef std::optional<std::string> TEnvValue;

const char kLevelVariable[] = "ZENTA_LOG_LEVEL";
const char kFileVariable[] = "ZENTA_LOG_FILE";

// "2024-05-01 13:04:05.123 LEVEL text"
const std::regex kLinePattern(R"(^\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2}\.\d{3} ([A-Z0-9-]+) (.*)$)");

struct TLine {
    std::string level;
    std::string text;
};

std::vector<TLine> ParseLines(const std::vector<std::string>& lines) {
    std::vector<TLine> parsed;
    for (const std::string& line : lines) {
        std::smatch match;
        if (!std::regex_match(line, match, kLinePattern)) {
            ADD_FAILURE() << "malformed log line: " << line;
            continue;
        }
        parsed.push_back(TLine{match[1], match[2]});
    }
    return parsed;
}

std::vector<TLine> ReadLog(const std::string& path) {
    return ParseLines(ReadLines(path));
}

std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::string::size_type start = 0;
    for (std::string::size_type end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        lines.push_back(text.substr(start, end - start));
    }
    EXPECT_EQ(start, text.size()) << "unterminated last line";
    return lines;
}

void LogAllLevels(ICoreLogger& logger) {
    for (int level = ICoreLogger::kError; level <= ICoreLogger::kInformation; ++level) {
        logger.Log(level, "message " + std::to_string(level));
    }
}

// Every logger test starts from a clean environment and a scratch file.
class CoreLogger : public testing::Test {
protected:
    CoreLogger() : fLevel(kLevelVariable, std::nullopt), fFile(kFileVariable, std::nullopt) {}

    std::string LogPath() const { return fDir / "zenta.log"; }

    TScopedEnvironment fLevel;
    TScopedEnvironment fFile;
    TTempDirectory fDir;
};

}  // namespace

TEST_F(CoreLogger, ThresholdComesFromTheEnvironment) {
    const std::map<TEnvValue, int> cases = {
        {std::nullopt, 1}, {std::string("0"), 0}, {std::string("2"), 2}, {std::string("4"), 4},
        // Anything but a whole level number leaves the default.
        {std::string(""), 1}, {std::string("abc"), 1}, {std::string("3x"), 1}, {std::string("5"), 1},
        {std::string("-1"), 1}, {std::string("99999999999999999999"), 1},
    };
    for (const auto& c : cases) {
        TScopedEnvironment level(kLevelVariable, c.first);
        TCoreLogger logger;
        EXPECT_EQ(logger.GetThreshold(), c.second) << "ZENTA_LOG_LEVEL=" << c.first.value_or("(unset)");
    }
}

TEST_F(CoreLogger, WritesLevelsUpToTheThresholdWithTheirNames) {
    TCoreLogger logger;
    logger.SetLogFile(LogPath());
    LogAllLevels(logger);  // default threshold: errors and warnings
    logger.SetThreshold(ICoreLogger::kTrace);
    LogAllLevels(logger);
    logger.SetThreshold(-1);
    LogAllLevels(logger);

    const std::vector<TLine> lines = ReadLog(LogPath());
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"ERROR", "message 0"}, {"WARNING", "message 1"}, {"ERROR", "message 0"},
        {"WARNING", "message 1"}, {"NOTICE", "message 2"}, {"TRACE", "message 3"},
    };
    ASSERT_EQ(lines.size(), expected.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i].level, expected[i].first) << "line " << i;
        EXPECT_EQ(lines[i].text, expected[i].second) << "line " << i;
    }
}

TEST_F(CoreLogger, SetterOverridesTheEnvironmentThreshold) {
    TScopedEnvironment level(kLevelVariable, std::string("0"));
    TCoreLogger logger;
    logger.SetLogFile(LogPath());
    logger.Log(ICoreLogger::kWarning, "hidden");
    logger.SetThreshold(ICoreLogger::kInformation);
    logger.Log(ICoreLogger::kInformation, "shown");

    const std::vector<TLine> lines = ReadLog(LogPath());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].level, "INFORMATION");
    EXPECT_EQ(lines[0].text, "shown");
}

TEST_F(CoreLogger, FileFromTheEnvironmentIsAppendedTo) {
    WriteFile(LogPath(), "earlier line\n");
    TScopedEnvironment file(kFileVariable, LogPath());
    {
        TCoreLogger logger;
        logger.Log(ICoreLogger::kError, "first run");
    }
    TCoreLogger logger;
    logger.Log(ICoreLogger::kWarning, "second run");

    const std::vector<std::string> lines = ReadLines(LogPath());
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "earlier line");
    const std::vector<TLine> logged = ParseLines({lines[1], lines[2]});
    ASSERT_EQ(logged.size(), 2u);
    EXPECT_EQ(logged[0].text, "first run");
    EXPECT_EQ(logged[1].text, "second run");
}

TEST_F(CoreLogger, SetLogFileRedirectsAndEmptyNameMeansStderr) {
    const std::string other = fDir / "other.log";
    TScopedEnvironment file(kFileVariable, LogPath());
    TCoreLogger logger;
    logger.SetLogFile(other);
    logger.Log(ICoreLogger::kError, "to the other file");

    logger.SetLogFile("");
    testing::internal::CaptureStderr();
    logger.Log(ICoreLogger::kError, "to stderr");
    const std::vector<TLine> onStderr = ParseLines(SplitLines(testing::internal::GetCapturedStderr()));

    EXPECT_TRUE(ReadLines(LogPath()).empty());
    const std::vector<TLine> inOther = ReadLog(other);
    ASSERT_EQ(inOther.size(), 1u);
    EXPECT_EQ(inOther[0].text, "to the other file");
    ASSERT_EQ(onStderr.size(), 1u);
    EXPECT_EQ(onStderr[0].text, "to stderr");
}

TEST_F(CoreLogger, UnopenableFileKeepsThePreviousDestination) {
    TCoreLogger logger;
    logger.SetLogFile(LogPath());
    try {
        logger.SetLogFile(fDir / "missing/zenta.log");
        ADD_FAILURE() << "opened a file in a missing directory";
    } catch (const TZENTAException& failure) {
        EXPECT_EQ(failure.GetStatusCode().GetCode(), TZENTAStatusCode::kIOError);
        EXPECT_NE(std::string(failure.what()).find("missing"), std::string::npos) << failure.what();
    }
    logger.Log(ICoreLogger::kError, "still here");

    const std::vector<TLine> lines = ReadLog(LogPath());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].text, "still here");
}

TEST_F(CoreLogger, UnopenableFileFromTheEnvironmentFallsBackToStderr) {
    const std::string unopenable = fDir / "missing/zenta.log";
    TScopedEnvironment file(kFileVariable, unopenable);
    testing::internal::CaptureStderr();
    TCoreLogger logger;
    logger.Log(ICoreLogger::kError, "after the fallback");
    const std::vector<TLine> lines = ParseLines(SplitLines(testing::internal::GetCapturedStderr()));

    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].level, "WARNING");
    EXPECT_NE(lines[0].text.find(unopenable), std::string::npos) << lines[0].text;
    EXPECT_EQ(lines[1].text, "after the fallback");
}

TEST_F(CoreLogger, LineBreaksInAMessageStayOnOneLine) {
    TCoreLogger logger;
    logger.SetLogFile(LogPath());
    logger.Log(ICoreLogger::kError, "first\nsecond\r\nthird\n");

    const std::vector<TLine> lines = ReadLog(LogPath());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].text, "first second  third ");
}

TEST_F(CoreLogger, ConcurrentMessagesArriveWholeAndOnce) {
    const int kThreads = 6;
    const int kMessagesPerThread = 300;
    const std::string padding(200, 'x');
    TCoreLogger logger;
    logger.SetLogFile(LogPath());

    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&logger, &padding, t] {
            for (int i = 0; i < kMessagesPerThread; ++i) {
                logger.Log(ICoreLogger::kError, std::to_string(t) + ":" + std::to_string(i) + ":" + padding);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    std::map<std::string, int> seen;
    for (const TLine& line : ReadLog(LogPath())) {
        ++seen[line.text];
    }
    ASSERT_EQ(seen.size(), static_cast<std::size_t>(kThreads * kMessagesPerThread));
    for (int t = 0; t < kThreads; ++t) {
        for (int i = 0; i < kMessagesPerThread; ++i) {
            const std::string text = std::to_string(t) + ":" + std::to_string(i) + ":" + padding;
            EXPECT_EQ(seen[text], 1) << text.substr(0, 12);
        }
    }
}
