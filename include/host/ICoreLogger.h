// The host's logger. Logging is the first slot after the destructor.
#ifndef ZENTA_HOST_ICORELOGGER_H
#define ZENTA_HOST_ICORELOGGER_H

#include <string>

namespace NVURZENTA20 {

class ICoreLogger {
public:
    enum ELevel { kError = 0, kWarning = 1, kNotice = 2, kTrace = 3, kInformation = 4 };

    virtual ~ICoreLogger() {}
    // Writes one line when `level` is at or below the threshold.
    virtual void Log(int level, const std::string& text) = 0;
    // Messages of levels 0..threshold are written.
    virtual void SetThreshold(int threshold) = 0;
    virtual int GetThreshold() const = 0;
    // Writes to the named file (appending); an empty name means stderr.
    virtual void SetLogFile(const std::string& path) = 0;
};

}  // namespace NVURZENTA20

#endif
