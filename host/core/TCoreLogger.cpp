#include "TCoreLogger.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <system_error>

#include "TLocalClock.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

const char kLevelVariable[] = "ZENTA_LOG_LEVEL";
const char kFileVariable[] = "ZENTA_LOG_FILE";
const char* const kLevelNames[] = {"ERROR", "WARNING", "NOTICE", "TRACE", "INFORMATION"};
const int kLevelCount = sizeof(kLevelNames) / sizeof(kLevelNames[0]);

// The threshold a ZENTA_LOG_LEVEL text asks for, or `fallback` when the
// text is not a whole number naming one of the levels.
int ParseThreshold(const char* text, int fallback) {
    if (text == nullptr || *text == '\0') {
        return fallback;
    }
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text, &end, 10);
    if (errno != 0 || *end != '\0' || value < 0 || value >= kLevelCount) {
        return fallback;
    }
    return static_cast<int>(value);
}

// "ERROR" ... "INFORMATION", or "LEVEL<n>" for a number outside the levels.
std::string LevelName(int level) {
    if (level >= 0 && level < kLevelCount) {
        return kLevelNames[level];
    }
    return "LEVEL" + std::to_string(level);
}

// "2024-05-01 13:04:05.123"
std::string FormatTimestamp() {
    const TLocalClockReading now = ReadLocalClock();
    char seconds[32];
    std::strftime(seconds, sizeof(seconds), "%Y-%m-%d %H:%M:%S", &now.local);
    char stamp[64];
    std::snprintf(stamp, sizeof(stamp), "%s.%03d", seconds, static_cast<int>(now.microseconds / 1000));
    return stamp;
}

// Line breaks inside a message would split it over several log lines.
std::string SingleLine(std::string text) {
    for (char& c : text) {
        if (c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return text;
}

}  // namespace

void TCoreLogger::TFileCloser::operator()(std::FILE* file) const {
    std::fclose(file);
}

TCoreLogger::TCoreLogger() : fThreshold(kDefaultThreshold) {
    ApplyEnvironment();
}

TCoreLogger::~TCoreLogger() {}

void TCoreLogger::ApplyEnvironment() {
    fThreshold = ParseThreshold(std::getenv(kLevelVariable), kDefaultThreshold);
    const char* file = std::getenv(kFileVariable);
    if (file == nullptr || *file == '\0') {
        return;
    }
    try {
        SetLogFile(file);
    } catch (const TZENTAException& failure) {
        Log(kWarning, std::string(failure.what()) + "; logging to stderr");
    }
}

void TCoreLogger::Log(int level, const std::string& text) {
    if (level > fThreshold) {
        return;
    }
    Write(FormatTimestamp() + " " + LevelName(level) + " " + SingleLine(text) + "\n");
}

void TCoreLogger::SetThreshold(int threshold) {
    fThreshold = threshold;
}

int TCoreLogger::GetThreshold() const {
    return fThreshold;
}

void TCoreLogger::SetLogFile(const std::string& path) {
    TFileHandle file;
    if (!path.empty()) {
        file.reset(std::fopen(path.c_str(), "a"));
        if (!file) {
            throw TZENTAException(TZENTAStatusCode::kIOError,
                                  "cannot open log file \"" + path + "\": " + std::generic_category().message(errno));
        }
    }
    std::lock_guard<std::mutex> lock(fMutex);
    fFile.swap(file);
}

void TCoreLogger::Write(const std::string& line) {
    std::lock_guard<std::mutex> lock(fMutex);
    std::FILE* out = fFile ? fFile.get() : stderr;
    std::fwrite(line.data(), 1, line.size(), out);
    std::fflush(out);
}

}  // namespace NVURZENTA20
