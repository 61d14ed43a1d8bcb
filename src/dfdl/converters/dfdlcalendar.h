#ifndef DFDL_CONVERTERS_DFDLCALENDAR_H
#define DFDL_CONVERTERS_DFDLCALENDAR_H

#include <dfdl/dfdl.h>
#include <unicode/ucal.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

// A point in time as callers see it: what was given of a date, a time, microseconds and a zone. Owned by the
// value that holds it, or by the caller who made it.
struct DFDLCalendarImpl {
    DFDLHeapAdapter* heap;
    int32_t year;   // never 0: -1 is the year before 1
    int32_t month;  // 0 to 11
    int32_t day;
    int32_t hour;
    int32_t minute;
    int32_t second;
    int32_t microSecond;     // of a second
    int32_t timeZoneOffset;  // minutes east of Greenwich
    uint32_t hasDate;
    uint32_t hasTime;
    uint32_t hasMicroSec;
    uint32_t hasTimeZone;
};

DFDLCalendarImpl* new_DFDLCalendarImpl(DFDLHeapAdapter* heap);  // nothing is present
// What is set in `source`. Null if ICU cannot tell.
DFDLCalendarImpl* new_DFDLCalendarImplFromUCalendar(DFDLHeapAdapter* heap, UCalendar* source);
// A null heap: the copy gets an adapter of its own and goes with delete_DFDLCalendarImpl.
DFDLCalendarImpl* DfdlCalendarImpl_clone(DFDLHeapAdapter* heap, const DFDLCalendarImpl* source);
void delete_DFDLCalendarImplFromUCalendar(DFDLCalendarImpl* this_);  // null is ignored
void delete_DFDLCalendarImpl(DFDLCalendarImpl* this_);               // with its adapter; null is ignored

inline void DfdlCalendarImpl_setDate(DFDLCalendarImpl* this_, int32_t year, int32_t month, int32_t day) {
    this_->year = year == 0 ? -1 : year;
    this_->month = month;
    this_->day = day;
    this_->hasDate = 1;
}
inline void DfdlCalendarImpl_setTime(DFDLCalendarImpl* this_, int32_t hour, int32_t minute, int32_t second) {
    this_->hour = hour;
    this_->minute = minute;
    this_->second = second;
    this_->hasTime = 1;
}

// A name of the zone for ICU: "GMT+05:30"; "Etc/Unknown" without a zone. `name` holds CALENDAR_ZONE_NAME
// units and is terminated; returns its length.
inline constexpr int32_t CALENDAR_ZONE_NAME = 32;
int32_t DfdlCalendarImpl_zoneName(const DFDLCalendarImpl* this_, UChar* name);
// Clears `target` and sets what is present; the zone is not touched.
void DfdlCalendarImpl_fillUCalendar(const DFDLCalendarImpl* this_, UCalendar* target);
// A new calendar in the zone of the record, the caller's to close; null when ICU refuses.
UCalendar* DfdlCalendarImpl_getUCalendar(const DFDLCalendarImpl* this_, UErrorCode* status);

#endif
