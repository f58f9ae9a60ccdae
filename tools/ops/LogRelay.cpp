#include "LogRelay.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ICoreLogger.h"
#include "TRootObject.h"
#include "ToolError.h"

using NVURZENTA20::ICoreLogger;
using NVURZENTA20::TRootObject;

namespace {

const char* const kLevelNames[] = {"ERROR", "WARNING", "NOTICE", "TRACE", "INFORMATION"};
const int kLevelCount = sizeof(kLevelNames) / sizeof(kLevelNames[0]);
const char kNumberedLevel[] = "LEVEL";

int LevelFromName(const std::string& name) {
    for (int level = 0; level < kLevelCount; ++level) {
        if (name == kLevelNames[level]) return level;
    }
    if (name.compare(0, sizeof(kNumberedLevel) - 1, kNumberedLevel) == 0) {
        return std::atoi(name.c_str() + sizeof(kNumberedLevel) - 1);
    }
    return -1;
}

// Points the core logger at a private in-memory file and returns a
// descriptor to read it back by. Nothing lands on a disk, so neither a full
// nor an unusable temporary directory keeps a request from running.
int CaptureLogger() {
    const int descriptor = memfd_create("zenta-log", MFD_CLOEXEC);
    if (descriptor < 0) throw TToolError(std::string("cannot create the log capture: ") + std::strerror(errno));
    try {
        TRootObject::GetCoreLogger()->SetLogFile("/proc/self/fd/" + std::to_string(descriptor));
    } catch (...) {
        close(descriptor);
        throw;
    }
    return descriptor;
}

bool CanAppendTo(const std::string& path) {
    std::FILE* probe = std::fopen(path.c_str(), "a");
    if (probe == nullptr) return false;
    std::fclose(probe);
    return true;
}

}  // namespace

TLogRelay::TLogRelay(int threshold, const std::string& destination)
    : fThreshold(threshold), fDestination(destination), fCapture(-1), fOffset(0) {
    boost::shared_ptr<ICoreLogger> logger = TRootObject::GetCoreLogger();
    if (fThreshold < 0) fThreshold = logger->GetThreshold();
    if (!fDestination.empty()) {
        // Fail before anything is logged, and the way the user expects.
        if (!CanAppendTo(fDestination)) {
            throw TToolError("cannot open log file " + fDestination + ": " + std::strerror(errno));
        }
    } else if (const char* configured = std::getenv("ZENTA_LOG_FILE")) {
        // A file the environment names may be stale: say so and log to stderr.
        if (*configured != '\0' && CanAppendTo(configured)) {
            fDestination = configured;
        } else if (*configured != '\0') {
            std::fprintf(stderr, "zenta: cannot open log file %s (ZENTA_LOG_FILE): %s; logging to stderr\n",
                         configured, std::strerror(errno));
        }
    }
    fCapture = CaptureLogger();
    logger->SetThreshold(std::max(fThreshold, static_cast<int>(ICoreLogger::kInformation)));
}

TLogRelay::~TLogRelay() {
    try {
        Collect();
        boost::shared_ptr<ICoreLogger> logger = TRootObject::GetCoreLogger();
        logger->SetLogFile(fDestination);
        logger->SetThreshold(fThreshold);
    } catch (...) {
        // Nothing sensible is left to report to at this point.
    }
    close(fCapture);
}

void TLogRelay::AddPathAlias(const std::string& from, const std::string& to) {
    fAliases.push_back(std::make_pair(from, to));
}

bool TLogRelay::ParseLine(const std::string& line, TLogLine& parsed) {
    // "<date> <time> <LEVEL> <text>"
    std::size_t levelStart = line.find(' ');
    if (levelStart == std::string::npos) return false;
    levelStart = line.find(' ', levelStart + 1);
    if (levelStart == std::string::npos) return false;
    ++levelStart;
    const std::size_t levelEnd = line.find(' ', levelStart);
    const int level = LevelFromName(line.substr(levelStart, levelEnd - levelStart));
    if (level < 0) return false;
    parsed.level = level;
    parsed.text = levelEnd == std::string::npos ? std::string() : line.substr(levelEnd + 1);
    return true;
}

std::vector<TLogLine> TLogRelay::Collect() {
    std::vector<TLogLine> lines;
    char buffer[4096];
    ssize_t count;
    while ((count = pread(fCapture, buffer, sizeof(buffer), fOffset)) > 0) {
        fOffset += count;
        fPartial.append(buffer, static_cast<std::size_t>(count));
    }
    std::string forwarded;
    std::size_t start = 0;
    std::size_t end;
    while ((end = fPartial.find('\n', start)) != std::string::npos) {
        const std::string line = ApplyAliases(fPartial.substr(start, end - start));
        start = end + 1;
        TLogLine parsed;
        const bool understood = ParseLine(line, parsed);
        if (!understood || parsed.level <= fThreshold) forwarded += line + "\n";
        if (understood) lines.push_back(parsed);
    }
    fPartial.erase(0, start);
    Forward(forwarded);
    return lines;
}

void TLogRelay::Forward(const std::string& text) {
    if (text.empty()) return;
    std::FILE* out = fDestination.empty() ? stderr : std::fopen(fDestination.c_str(), "a");
    if (out == nullptr) return;
    std::fwrite(text.data(), 1, text.size(), out);
    if (out == stderr) {
        std::fflush(out);
    } else {
        std::fclose(out);
    }
}

std::string TLogRelay::ApplyAliases(std::string line) const {
    for (std::size_t i = 0; i < fAliases.size(); ++i) {
        const std::string& from = fAliases[i].first;
        std::size_t at = 0;
        while (!from.empty() && (at = line.find(from, at)) != std::string::npos) {
            line.replace(at, from.size(), fAliases[i].second);
            at += fAliases[i].second.size();
        }
    }
    return line;
}
