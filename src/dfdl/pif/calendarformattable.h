#ifndef DFDL_PIF_CALENDARFORMATTABLE_H
#define DFDL_PIF_CALENDARFORMATTABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLString;
struct DFDLUString;
struct sPIF;

// A pattern of dates and times, and how strictly and where it is read.
struct CalendarFormatTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    DFDLUString* iCalendarFormatName = nullptr;
    DFDLUString* iCalendarPattern = nullptr;
    CalendarPatternKindEnum iCalendarPatternKind = CALENDAR_PATTERN_KIND_EXPLICIT;
    bool iCalendarStrictChecking = false;
    DFDLUString* iCalendarTimeZone = nullptr;
    bool iCalendarObserveDST = false;
    CalendarUseZForUTCEnum iCalendarUseZForUTC = ALWAYS;
    CalendarFirstDayOfWeekEnum iCalendarFirstDayOfWeek = MONDAY;
    int32_t iCalendarDaysInFirstWeek = -1;
    int32_t iCalendarCenturyStart = -1;
    DFDLUString* iCalendarLanguage = nullptr;

    int32_t id = -1;                        // row index + 1
    const char* patternKindName = nullptr;  // constant
    DFDLString* languageName = nullptr;     // owned; iCalendarLanguage in bytes
};

using CalendarFormatTable = Table<CalendarFormatTableRow>;

CalendarFormatTable* new_CalendarFormatTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_CalendarFormatTable(CalendarFormatTable* this_);  // null is ignored
void CalendarFormatTable_finalizeTable(CalendarFormatTable* this_);
CalendarFormatTableRow* CalendarFormatTable_findRow(const CalendarFormatTable* this_,
                                                    int32_t id);                         // -1: null
int32_t CalendarFormatTable_findRowIndex(const CalendarFormatTable* this_, int32_t id);  // -1 none

#endif
