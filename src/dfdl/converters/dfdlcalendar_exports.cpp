#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/handlerobject.h"

DFDLCalendar* new_DFDLCalendar() { return HandlerObject_new<DFDLCalendarImpl>(); }
void delete_DFDLCalendar(DFDLCalendar* calendar) { delete_DFDLCalendarImpl(calendar); }

void DfdlCalendar_getDate(const DFDLCalendar* calendar, int32_t* year, int32_t* month, int32_t* day) {
    *year = calendar->year;
    *month = calendar->month;
    *day = calendar->day;
}

void DfdlCalendar_setDate(DFDLCalendar* calendar, int32_t year, int32_t month, int32_t day) {
    DfdlCalendarImpl_setDate(calendar, year, month, day);
}

void DfdlCalendar_getTime(const DFDLCalendar* calendar, int32_t* hour, int32_t* minute, int32_t* second) {
    *hour = calendar->hour;
    *minute = calendar->minute;
    *second = calendar->second;
}

void DfdlCalendar_setTime(DFDLCalendar* calendar, int32_t hour, int32_t minute, int32_t second) {
    DfdlCalendarImpl_setTime(calendar, hour, minute, second);
}

int32_t DfdlCalendar_getMicroSec(const DFDLCalendar* calendar) { return calendar->microSecond; }

void DfdlCalendar_setMicroSec(DFDLCalendar* calendar, int32_t microSecond) {
    calendar->microSecond = microSecond;
    calendar->hasMicroSec = 1;
}

int32_t DfdlCalendar_getTimeZoneOffset(const DFDLCalendar* calendar) { return calendar->timeZoneOffset; }

void DfdlCalendar_setTimeZoneOffset(DFDLCalendar* calendar, int32_t minutes) {
    calendar->timeZoneOffset = minutes;
    calendar->hasTimeZone = 1;
}

DFDLBoolean DfdlCalendar_hasTimeZone(const DFDLCalendar* calendar) {
    return static_cast<DFDLBoolean>(calendar->hasTimeZone);
}

DFDLBoolean DfdlCalendar_hasMicroSec(const DFDLCalendar* calendar) {
    return static_cast<DFDLBoolean>(calendar->hasMicroSec);
}
