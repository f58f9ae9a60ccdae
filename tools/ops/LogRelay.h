// Sits between the host's core logger and the user's log destination.
//
// The CMPI library reports provider failures (a failed enumeration, get or
// method call) only as log lines, at the trace level. To tell the user that
// a request failed, the tool lets the core logger write every line up to
// the trace level into a private file, reads the new lines after each step,
// forwards those at or below the user's threshold to the user's destination
// (stderr or --log-file) unchanged, and hands all of them to the caller to
// look for failures. The private file lives in memory only, so nothing is
// left behind whatever happens to the process, and no temporary directory
// has to be usable.
#ifndef ZENTA_OPS_LOGRELAY_H
#define ZENTA_OPS_LOGRELAY_H

#include <string>
#include <vector>

struct TLogLine {
    int level;         // 0 error ... 4 information
    std::string text;  // the message, without time stamp and level
};

class TLogRelay {
public:
    // `threshold` < 0 keeps the logger's own threshold (ZENTA_LOG_LEVEL or
    // its default); an empty `destination` means ZENTA_LOG_FILE when it is
    // set and can be written, else stderr. A `destination` that cannot be
    // written throws TToolError.
    TLogRelay(int threshold, const std::string& destination);
    ~TLogRelay();

    // Log lines name files by the paths the host saw; `from` is shown to
    // the user as `to` (a private directory as the directory it mirrors).
    void AddPathAlias(const std::string& from, const std::string& to);

    // Forwards and returns the lines written since the last call.
    std::vector<TLogLine> Collect();

    // Splits one line of the core logger ("<date> <time> <LEVEL> <text>").
    // False for a line of another shape.
    static bool ParseLine(const std::string& line, TLogLine& parsed);

private:
    void Forward(const std::string& text);
    std::string ApplyAliases(std::string line) const;

    int fThreshold;
    std::string fDestination;  // empty: stderr
    int fCapture;              // read end of the private file
    long long fOffset;
    std::string fPartial;  // a line not yet finished
    std::vector<std::pair<std::string, std::string> > fAliases;

    TLogRelay(const TLogRelay&) = delete;
    TLogRelay& operator=(const TLogRelay&) = delete;
};

#endif
