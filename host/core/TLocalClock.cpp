#include "TLocalClock.h"

#include <time.h>

namespace NVURZENTA20 {

TLocalClockReading ReadLocalClock() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    TLocalClockReading reading{};
    reading.seconds = now.tv_sec;
    reading.microseconds = now.tv_nsec / 1000;
    if (localtime_r(&reading.seconds, &reading.local) == nullptr) {
        // Cannot happen for the current time; a zeroed reading (offset 0)
        // is still usable should it ever do so.
        reading.local = std::tm{};
    }
    return reading;
}

}  // namespace NVURZENTA20
