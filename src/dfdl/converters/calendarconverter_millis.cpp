// Calendars that are counted in milliseconds. ICU takes some microseconds for what is a few divisions here.
#include <algorithm>

#include "dfdl/converters/calendarconverter.h"
#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/guard.h"

namespace {

constexpr int64_t MILLISECONDS_OF_SECOND = 1000;
constexpr int64_t MILLISECONDS_OF_MINUTE = 60000;
constexpr int64_t MILLISECONDS_OF_DAY = 86400000;

// As far as ICU counts; what lies beyond is moved there.
constexpr double FIRST_MOMENT = -184303902528000000.0;
constexpr double LAST_MOMENT = 183882168921600000.0;

// Of days since 1970-01-01: 1582-10-15. The day before has the Julian date 1582-10-04.
constexpr int64_t FIRST_GREGORIAN_DAY = -141427;
// Days from March 1 of the year 0 to 1970-01-01, as the two calendars have it.
constexpr int64_t GREGORIAN_START = 719468;
constexpr int64_t JULIAN_START = 719470;
constexpr int64_t DAYS_OF_4_YEARS = 1461;
constexpr int64_t DAYS_OF_100_YEARS = 36524;
constexpr int64_t DAYS_OF_400_YEARS = 146097;

int64_t floorDivide(int64_t value, int64_t by) { return value >= 0 ? value / by : -((by - 1 - value) / by); }

// A day of a year that begins in March, so that a leap day is its last one.
struct YearDay {
    int64_t year;
    int64_t day;  // from 0
};

YearDay yearDayOf(int64_t days) {
    if (days < FIRST_GREGORIAN_DAY) {
        const int64_t cycle = floorDivide(days + JULIAN_START, DAYS_OF_4_YEARS);
        const int64_t rest = days + JULIAN_START - cycle * DAYS_OF_4_YEARS;
        const int64_t year = (rest - rest / (DAYS_OF_4_YEARS - 1)) / 365;
        return {cycle * 4 + year, rest - year * 365};
    }
    const int64_t cycle = floorDivide(days + GREGORIAN_START, DAYS_OF_400_YEARS);
    const int64_t rest = days + GREGORIAN_START - cycle * DAYS_OF_400_YEARS;
    const int64_t leapDays =
        rest / (DAYS_OF_4_YEARS - 1) - rest / DAYS_OF_100_YEARS + rest / (DAYS_OF_400_YEARS - 1);
    const int64_t year = (rest - leapDays) / 365;
    return {cycle * 400 + year, rest - (year * 365 + year / 4 - year / 100)};
}

void setDate(DFDLCalendarImpl* calendar, int64_t days) {
    const YearDay at = yearDayOf(days);
    // From March on, months have 31, 30, 31, 30, 31 days, and so again: 153 days.
    const int64_t month = (5 * at.day + 2) / 153;
    const int64_t day = at.day - (153 * month + 2) / 5 + 1;
    const bool nextYear = month >= 10;
    const auto year = static_cast<int32_t>(at.year + (nextYear ? 1 : 0));
    DfdlCalendarImpl_setDate(calendar, year > 0 ? year : year - 1,
                             static_cast<int32_t>(nextYear ? month - 10 : month + 2),
                             static_cast<int32_t>(day));
}

void setTime(DFDLCalendarImpl* calendar, int64_t milliseconds) {
    const auto seconds = static_cast<int32_t>(milliseconds / MILLISECONDS_OF_SECOND);
    DfdlCalendarImpl_setTime(calendar, seconds / 3600, seconds / 60 % 60, seconds % 60);
    calendar->microSecond = static_cast<int32_t>(milliseconds % MILLISECONDS_OF_SECOND * 1000);
    calendar->hasMicroSec = 1;
}

}  // namespace

bool CalendarConverter_readEpoch(const DFDLUString* text, DFDLConstants* constants, CalendarEpoch* epoch) {
    const Owned<UCalendar, ucal_close> calendar(
        CalendarConverter_createCalendarFromSchemaLexicalDateTime(text, constants));
    if (calendar == nullptr) return false;
    UErrorCode status = U_ZERO_ERROR;
    epoch->milliseconds = ucal_getMillis(calendar.get(), &status);
    epoch->zoneOffset = ucal_get(calendar.get(), UCAL_ZONE_OFFSET, &status);
    return U_SUCCESS(status);
}

DFDLCalendarImpl* CalendarConverter_createCalendarFromMillis(DFDLHeapAdapter* heap,
                                                             const CalendarEpoch& epoch,
                                                             double milliseconds) {
    const double moment = std::clamp(epoch.milliseconds + milliseconds, FIRST_MOMENT, LAST_MOMENT);
    const int64_t local = static_cast<int64_t>(moment) + epoch.zoneOffset;
    const int64_t days = floorDivide(local, MILLISECONDS_OF_DAY);
    DFDLCalendarImpl* calendar = new_DFDLCalendarImpl(heap);
    setDate(calendar, days);
    setTime(calendar, local - days * MILLISECONDS_OF_DAY);
    calendar->timeZoneOffset = static_cast<int32_t>(epoch.zoneOffset / MILLISECONDS_OF_MINUTE);
    calendar->hasTimeZone = 1;
    return calendar;
}
