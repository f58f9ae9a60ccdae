#include "TCIMDateTime.h"

#include <cstdio>
#include <cstdlib>

#include "LastDateTime.h"
#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

// A fixed-width numeric field of the date-time text.
struct TField {
    std::size_t offset;
    std::size_t length;
    const char* name;
    unsigned long minimum;
    unsigned long maximum;
};

const TField kYear = {0, 4, "year", 0, 9999};
const TField kMonth = {4, 2, "month", 1, 12};
const TField kDay = {6, 2, "day", 1, 31};
const TField kHour = {8, 2, "hour", 0, 23};
const TField kMinute = {10, 2, "minute", 0, 59};
const TField kSecond = {12, 2, "second", 0, 59};
const TField kIntervalDays = {0, 8, "days", 0, 99999999};
const TField kIntervalHours = {8, 2, "hours", 0, 23};
const TField kIntervalMinutes = {10, 2, "minutes", 0, 59};
const TField kIntervalSeconds = {12, 2, "seconds", 0, 59};

const std::size_t kDotPosition = 14;
const std::size_t kMicrosecondsOffset = 15;
const std::size_t kMicrosecondsLength = 6;
const std::size_t kKindPosition = 21;  // '+'/'-' of a timestamp, ':' of an interval
const std::size_t kOffsetOffset = 22;
const std::size_t kOffsetLength = 3;

const long kMicrosecondsPerSecond = 1000000;
const long long kSecondsPerDay = 86400;
const unsigned long long kMicrosecondsPerDay = kSecondsPerDay * kMicrosecondsPerSecond;
const int kLargestOffset = 999;
// Far enough beyond year 9999 either way to keep the day arithmetic exact.
const long long kLargestEpochSeconds = 400000000000LL;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string Quote(const std::string& text) { return "\"" + text + "\""; }

// A field that is either a number or unspecified (all asterisks).
struct TFieldValue {
    bool specified;
    unsigned long value;
};

// Reads `field` of `text` in place (every date-time a provider makes is
// read here); the empty string when it is acceptable, otherwise what is
// wrong with it.
std::string ReadField(const std::string& text, const TField& field, TFieldValue& result) {
    const char* const digits = text.data() + field.offset;
    std::size_t digitCount = 0;
    std::size_t asteriskCount = 0;
    unsigned long value = 0;
    for (std::size_t i = 0; i < field.length; ++i) {
        const char c = digits[i];
        if (IsDigit(c)) {
            ++digitCount;
            value = value * 10 + static_cast<unsigned long>(c - '0');
        } else if (c == '*') {
            ++asteriskCount;
        } else {
            return std::string("the ") + field.name + " " + Quote(std::string(digits, field.length)) +
                   " is not a number";
        }
    }
    if (digitCount != 0 && asteriskCount != 0) {
        return std::string("the ") + field.name + " " + Quote(std::string(digits, field.length)) +
               " mixes digits and asterisks";
    }
    result.specified = digitCount != 0;
    result.value = value;
    if (result.specified && (result.value < field.minimum || result.value > field.maximum)) {
        return std::string("the ") + field.name + " " + std::string(digits, field.length) + " is out of range";
    }
    return std::string();
}

// Reads several fields in order, stopping at the first problem.
template <std::size_t kCount>
std::string ReadFields(const std::string& text, const TField* const (&fields)[kCount],
                       TFieldValue (&values)[kCount]) {
    for (std::size_t i = 0; i < kCount; ++i) {
        std::string problem = ReadField(text, *fields[i], values[i]);
        if (!problem.empty()) return problem;
    }
    return std::string();
}

// The '.' and the microseconds, whose low-order digits may be asterisks.
std::string CheckFraction(const std::string& text) {
    if (text[kDotPosition] != '.') return "a '.' must follow the seconds";
    const char* const micro = text.data() + kMicrosecondsOffset;
    bool asterisksStarted = false;
    for (std::size_t i = 0; i < kMicrosecondsLength; ++i) {
        const char c = micro[i];
        if (c == '*') {
            asterisksStarted = true;
        } else if (!IsDigit(c)) {
            return "the microseconds " + Quote(std::string(micro, kMicrosecondsLength)) + " are not a number";
        } else if (asterisksStarted) {
            return "the microseconds " + Quote(std::string(micro, kMicrosecondsLength)) +
                   " have asterisks before digits";
        }
    }
    return std::string();
}

bool IsLeapYear(unsigned long year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

unsigned long DaysInMonth(const TFieldValue& month, const TFieldValue& year) {
    switch (month.value) {
        case 2:
            return !year.specified || IsLeapYear(year.value) ? 29 : 28;
        case 4:
        case 6:
        case 9:
        case 11:
            return 30;
        default:
            return 31;
    }
}

std::string CheckTimestamp(const std::string& text) {
    static const TField* const kFields[] = {&kYear, &kMonth, &kDay, &kHour, &kMinute, &kSecond};
    TFieldValue values[6];
    std::string problem = ReadFields(text, kFields, values);
    if (!problem.empty()) return problem;
    const TFieldValue& year = values[0];
    const TFieldValue& month = values[1];
    const TFieldValue& day = values[2];
    if (month.specified && day.specified && day.value > DaysInMonth(month, year)) {
        return "the day " + text.substr(kDay.offset, kDay.length) + " does not exist in month " +
               text.substr(kMonth.offset, kMonth.length) +
               (year.specified ? " of " + text.substr(kYear.offset, kYear.length) : std::string());
    }
    for (std::size_t i = 0; i < kOffsetLength; ++i) {
        if (!IsDigit(text[kOffsetOffset + i])) {
            return "the UTC offset " + Quote(text.substr(kOffsetOffset, kOffsetLength)) + " must be three digits";
        }
    }
    return std::string();
}

std::string CheckInterval(const std::string& text) {
    static const TField* const kFields[] = {&kIntervalDays, &kIntervalHours, &kIntervalMinutes,
                                            &kIntervalSeconds};
    TFieldValue values[4];
    std::string problem = ReadFields(text, kFields, values);
    if (!problem.empty()) return problem;
    if (text.compare(kOffsetOffset, kOffsetLength, "000") != 0) return "an interval must end in \":000\"";
    return std::string();
}

// The empty string for valid date-time text, otherwise what is wrong.
std::string FindProblem(const std::string& text) {
    if (text.size() != TCIMDateTime::kTextLength) {
        return "it has " + std::to_string(text.size()) + " characters instead of 25";
    }
    std::string problem = CheckFraction(text);
    if (!problem.empty()) return problem;
    switch (text[kKindPosition]) {
        case '+':
        case '-':
            return CheckTimestamp(text);
        case ':':
            return CheckInterval(text);
        default:
            return "character 22 must be '+' or '-' (timestamp) or ':' (interval)";
    }
}

struct TCivilDate {
    long long year;
    unsigned month;
    unsigned day;
};

// The proleptic Gregorian date of a day counted from 1970-01-01.
TCivilDate CivilFromDays(long long days) {
    days += 719468;  // count from 0000-03-01 so that leap days end a year
    const long long era = (days >= 0 ? days : days - 146096) / 146097;
    const long long dayOfEra = days - era * 146097;
    const long long yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const long long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const long long shiftedMonth = (5 * dayOfYear + 2) / 153;
    TCivilDate date;
    date.day = static_cast<unsigned>(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1);
    date.month = static_cast<unsigned>(shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9);
    date.year = yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0);
    return date;
}

long long FloorDivide(long long value, long long divisor) {
    long long quotient = value / divisor;
    if (value % divisor < 0) --quotient;
    return quotient;
}

[[noreturn]] void ThrowInvalidArgument(const std::string& message) {
    throw TZENTAException(TZENTAStatusCode::kInvalidArgument, message);
}

}  // namespace

TCIMDateTime::TCIMDateTime() {}

namespace {

// The text last found valid on this thread is not checked again.
struct TValid {};
thread_local TLastDateTime<TValid> gLastValid = {};

}  // namespace

TCIMDateTime::TCIMDateTime(const std::string& text) : fText(text) {
    if (gLastValid.Find(text)) return;
    const std::string problem = FindProblem(text);
    if (problem.empty()) {
        gLastValid.Keep(text, TValid());
    } else {
        throw TZENTAException(TZENTAStatusCode::kInvalidDateTime,
                              "invalid date-time " + Quote(text) + ": " + problem);
    }
}

TCIMDateTime::TCIMDateTime(const TCIMDateTime& other) = default;
TCIMDateTime::TCIMDateTime(TCIMDateTime&& other) noexcept = default;
TCIMDateTime& TCIMDateTime::operator=(const TCIMDateTime& other) = default;
TCIMDateTime& TCIMDateTime::operator=(TCIMDateTime&& other) noexcept = default;
TCIMDateTime::~TCIMDateTime() {}

TCIMDateTime TCIMDateTime::FromUnixTime(std::time_t seconds, long microseconds, int utcOffsetMinutes) {
    if (utcOffsetMinutes < -kLargestOffset || utcOffsetMinutes > kLargestOffset) {
        ThrowInvalidArgument("UTC offset of " + std::to_string(utcOffsetMinutes) + " minutes does not fit a date-time");
    }
    const long long epochSeconds = static_cast<long long>(seconds);
    if (epochSeconds < -kLargestEpochSeconds || epochSeconds > kLargestEpochSeconds) {
        ThrowInvalidArgument("time " + std::to_string(epochSeconds) + " is beyond the year 9999");
    }
    long long localSeconds = epochSeconds + microseconds / kMicrosecondsPerSecond + utcOffsetMinutes * 60LL;
    long micro = microseconds % kMicrosecondsPerSecond;
    if (micro < 0) {
        micro += kMicrosecondsPerSecond;
        --localSeconds;
    }
    const long long days = FloorDivide(localSeconds, kSecondsPerDay);
    const long long secondOfDay = localSeconds - days * kSecondsPerDay;
    const TCivilDate date = CivilFromDays(days);
    if (date.year < 0 || date.year > 9999) {
        ThrowInvalidArgument("time " + std::to_string(epochSeconds) + " is outside the years 0000 to 9999");
    }
    char text[64];
    std::snprintf(text, sizeof(text), "%04lld%02u%02u%02lld%02lld%02lld.%06ld%c%03d", date.year, date.month,
                  date.day, secondOfDay / 3600, secondOfDay / 60 % 60, secondOfDay % 60, micro,
                  utcOffsetMinutes < 0 ? '-' : '+', std::abs(utcOffsetMinutes));
    return TCIMDateTime(text, TValidated());
}

TCIMDateTime TCIMDateTime::FromIntervalMicroseconds(unsigned long long microseconds) {
    const unsigned long long days = microseconds / kMicrosecondsPerDay;
    if (days > kIntervalDays.maximum) {
        ThrowInvalidArgument("interval of " + std::to_string(microseconds) + " microseconds exceeds 99999999 days");
    }
    const unsigned long long micro = microseconds % kMicrosecondsPerSecond;
    const unsigned long long secondOfDay = microseconds / kMicrosecondsPerSecond % kSecondsPerDay;
    char text[64];
    std::snprintf(text, sizeof(text), "%08llu%02llu%02llu%02llu.%06llu:000", days, secondOfDay / 3600,
                  secondOfDay / 60 % 60, secondOfDay % 60, micro);
    return TCIMDateTime(text, TValidated());
}

bool TCIMDateTime::IsValid(const std::string& text) { return FindProblem(text).empty(); }

bool TCIMDateTime::IsInterval() const { return fText.size() == kTextLength && fText[kKindPosition] == ':'; }

void TCIMDateTime::Clear() { fText.clear(); }

}  // namespace NVURZENTA20
