// The host's logger: one line per message, "<local time> <LEVEL> <text>",
// written to stderr or appended to a file.
//
// Environment, read when a logger is constructed:
//   ZENTA_LOG_LEVEL  threshold 0..4 (default 1: errors and warnings)
//   ZENTA_LOG_FILE   file to append to instead of stderr
// SetThreshold and SetLogFile override both later on.
#ifndef ZENTA_HOST_CORE_TCORELOGGER_H
#define ZENTA_HOST_CORE_TCORELOGGER_H

#include <atomic>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>

#include "ICoreLogger.h"

namespace NVURZENTA20 {

class TCoreLogger : public ICoreLogger {
public:
    static const int kDefaultThreshold = kWarning;

    TCoreLogger();
    ~TCoreLogger() override;

    void Log(int level, const std::string& text) override;
    void SetThreshold(int threshold) override;
    int GetThreshold() const override;
    // Throws TZENTAException (kIOError) when the file cannot be opened for
    // appending; the previous destination stays in use then.
    void SetLogFile(const std::string& path) override;

private:
    struct TFileCloser {
        void operator()(std::FILE* file) const;
    };
    typedef std::unique_ptr<std::FILE, TFileCloser> TFileHandle;

    void ApplyEnvironment();
    void Write(const std::string& line);

    std::atomic<int> fThreshold;
    std::mutex fMutex;  // guards fFile and every write
    TFileHandle fFile;  // empty: stderr

    TCoreLogger(const TCoreLogger&) = delete;
    TCoreLogger& operator=(const TCoreLogger&) = delete;
};

}  // namespace NVURZENTA20

#endif
