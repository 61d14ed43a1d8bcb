#ifndef DFDL_CONVERTERS_CALENDARFIELDS_H
#define DFDL_CONVERTERS_CALENDARFIELDS_H

#include <unicode/ucal.h>

#include <cstdint>

struct DFDLCalendarImpl;
struct DFDLHeapAdapter;

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

// No field needs carrying, the year has four digits and no calendar but the Gregorian one: the record is what
// the text says, whatever ICU would do.
bool CalendarFields_arePlain(const CalendarFields* this_);
// Sets all of a new record.
void CalendarFields_fillCalendar(const CalendarFields* this_, DFDLCalendarImpl* target);
// All fields in one word, and back. False, and no word, for a year of more than four digits.
bool CalendarFields_pack(const CalendarFields* this_, int64_t* word);
CalendarFields CalendarFields_unpack(int64_t word);
DFDLCalendarImpl* CalendarFields_toCalendar(const CalendarFields* this_, DFDLHeapAdapter* heap);
// Sets all but the zone.
void CalendarFields_fillUCalendar(const CalendarFields* this_, UCalendar* target, UErrorCode* status);

#endif
