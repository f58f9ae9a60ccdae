// A CIM date-time: either a timestamp "yyyymmddhhmmss.mmmmmmsutc" or an
// interval "ddddddddhhmmss.mmmmmm:000". Fields may be asterisks where CIM
// allows an unspecified value. The text given is validated and kept as it
// was written, so formatting gives back exactly what was parsed.
#ifndef ZENTA_HOST_TCIMDATETIME_H
#define ZENTA_HOST_TCIMDATETIME_H

#include <ctime>
#include <string>

namespace NVURZENTA20 {

class TCIMDateTime {
public:
    // A cleared date-time (IsNull() true, ToString() empty).
    TCIMDateTime();
    // Parses CIM date-time text; throws TZENTAException on anything else.
    explicit TCIMDateTime(const std::string& text);
    TCIMDateTime(const TCIMDateTime& other);
    TCIMDateTime& operator=(const TCIMDateTime& other);
    ~TCIMDateTime();

    // Builds a timestamp from seconds since the epoch, microseconds and the
    // offset of local time from UTC in minutes.
    static TCIMDateTime FromUnixTime(std::time_t seconds, long microseconds, int utcOffsetMinutes);
    // Builds an interval from a number of microseconds.
    static TCIMDateTime FromIntervalMicroseconds(unsigned long long microseconds);
    // True when `text` is well-formed CIM date-time text.
    static bool IsValid(const std::string& text);

    void Clear();
    bool IsNull() const { return fText.empty(); }
    bool IsInterval() const { return fInterval; }
    const std::string& ToString() const { return fText; }

    bool operator==(const TCIMDateTime& other) const { return fText == other.fText; }
    bool operator!=(const TCIMDateTime& other) const { return fText != other.fText; }

private:
    std::string fText;
    bool fInterval;
};

}  // namespace NVURZENTA20

#endif
