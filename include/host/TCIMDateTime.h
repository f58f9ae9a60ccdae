// A CIM date-time: either a timestamp "yyyymmddhhmmss.mmmmmmsutc" or an
// interval "ddddddddhhmmss.mmmmmm:000". Fields may be asterisks where CIM
// allows an unspecified value. The text given is validated and kept as it
// was written, so formatting gives back exactly what was parsed.
#ifndef ZENTA_HOST_TCIMDATETIME_H
#define ZENTA_HOST_TCIMDATETIME_H

#include <cstddef>
#include <ctime>
#include <string>

namespace NVURZENTA20 {

class TCIMDateTime {
public:
    // A cleared date-time (IsNull() true, ToString() empty).
    TCIMDateTime();
    // Parses CIM date-time text; throws TZENTAException (kInvalidDateTime)
    // naming what is wrong on anything else.
    explicit TCIMDateTime(const std::string& text);
    TCIMDateTime(const TCIMDateTime& other);
    TCIMDateTime(TCIMDateTime&& other) noexcept;
    TCIMDateTime& operator=(const TCIMDateTime& other);
    TCIMDateTime& operator=(TCIMDateTime&& other) noexcept;
    ~TCIMDateTime();

    // Builds a timestamp from seconds since the epoch, microseconds and the
    // offset of local time from UTC in minutes: the local wall-clock time
    // with that offset. Throws kInvalidArgument when the offset does not fit
    // three digits or the year falls outside 0000..9999.
    static TCIMDateTime FromUnixTime(std::time_t seconds, long microseconds, int utcOffsetMinutes);
    // Builds an interval from a number of microseconds; kInvalidArgument
    // beyond 99999999 days.
    static TCIMDateTime FromIntervalMicroseconds(unsigned long long microseconds);
    // True when `text` is well-formed CIM date-time text.
    static bool IsValid(const std::string& text);

    void Clear();
    bool IsNull() const { return fText.empty(); }
    bool IsInterval() const;
    const std::string& ToString() const { return fText; }

    bool operator==(const TCIMDateTime& other) const { return fText == other.fText; }
    bool operator!=(const TCIMDateTime& other) const { return fText != other.fText; }

    // Every date-time text has this length.
    static constexpr std::size_t kTextLength = 25;

private:
    friend class TCIMValue;

    struct TValidated {};
    // Adopts text already known to be valid (kept by a TCIMValue).
    TCIMDateTime(const std::string& text, TValidated) : fText(text) {}

    std::string fText;
};

}  // namespace NVURZENTA20

#endif
