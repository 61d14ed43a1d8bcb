#ifndef DFDL_CONVERTERS_CALENDARFIELDS_H
#define DFDL_CONVERTERS_CALENDARFIELDS_H

#include <unicode/ucal.h>

#include <cstdint>

#include "dfdl/converters/dfdlcalendar.h"

// What a text says of a point in time, before anything is carried over into another field. A plain value.
struct CalendarFields {
    int32_t year = 1970;
    int32_t month = 0;  // 0 to 11
    int32_t day = 1;
    int32_t hour = 0;
    int32_t minute = 0;
    int32_t second = 0;
    int32_t millisecond = 0;
    int32_t zoneOffset = 0;  // minutes east of Greenwich
    bool hasZone = false;
};

// The greatest offset of a zone, either way.
inline constexpr int32_t CALENDAR_MOST_ZONE_MINUTES = 14 * 60;

inline constexpr int32_t FIRST_PLAIN_YEAR = 1583;  // the first one that is Gregorian as a whole
inline constexpr int32_t LAST_PLAIN_YEAR = 9999;

// No field needs carrying, the year has four digits and no calendar but the Gregorian one: the record is what
// the text says, whatever ICU would do.
bool CalendarFields_arePlain(const CalendarFields* this_);
// Sets all of a new record.
inline void CalendarFields_fillCalendar(const CalendarFields* this_, DFDLCalendarImpl* target) {
    DfdlCalendarImpl_setDate(target, this_->year, this_->month, this_->day);
    DfdlCalendarImpl_setTime(target, this_->hour, this_->minute, this_->second);
    target->microSecond = this_->millisecond * 1000;
    target->hasMicroSec = 1;
    target->timeZoneOffset = this_->zoneOffset;
    target->hasTimeZone = this_->hasZone ? 1 : 0;
}
DFDLCalendarImpl* CalendarFields_toCalendar(const CalendarFields* this_, DFDLHeapAdapter* heap);
// Sets all but the zone.
void CalendarFields_fillUCalendar(const CalendarFields* this_, UCalendar* target, UErrorCode* status);

#endif
