// The current time read once, as seconds and microseconds since the epoch
// together with its broken-down local form. The logger's time stamps and
// the host's local-time service both start from here.
#ifndef ZENTA_HOST_CORE_TLOCALCLOCK_H
#define ZENTA_HOST_CORE_TLOCALCLOCK_H

#include <ctime>

namespace NVURZENTA20 {

struct TLocalClockReading {
    std::time_t seconds;
    long microseconds;
    std::tm local;  // local time; tm_gmtoff holds the offset from UTC in seconds
};

TLocalClockReading ReadLocalClock();

}  // namespace NVURZENTA20

#endif
