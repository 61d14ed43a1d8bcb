#ifndef DFDL_CONVERTERS_CALENDARCONVERTER_H
#define DFDL_CONVERTERS_CALENDARCONVERTER_H

#include <unicode/ucal.h>

#include <string_view>

#include "dfdl/converters/calendarepoch.h"
#include "dfdl/converters/calendarfields.h"
#include "dfdl/foundation/dfdlconstants.h"

struct DFDLCalendarImpl;
struct DFDLUString;

// Turns texts and counts into calendars. ICU's are the caller's to close; null stands for a text that is not
// read whole.
//
// Text in the schema's own form. A text without a zone is taken in `zone`, or GMT where that is null. Fields
// that the form has not are those of 1970-01-01 at midnight, or with `keepFields` of the present moment; the
// milliseconds are 0 in any case unless the text has some.
UCalendar* CalendarConverter_createCalendarFromSchemaLexicalDateWithTimezone(const DFDLUString* text,
                                                                             const DFDLUString* zone,
                                                                             DFDLConstants* constants,
                                                                             bool keepFields);
UCalendar* CalendarConverter_createCalendarFromSchemaLexicalTimeWithTimezone(const DFDLUString* text,
                                                                             const DFDLUString* zone,
                                                                             DFDLConstants* constants,
                                                                             bool keepFields);
UCalendar* CalendarConverter_createCalendarFromSchemaLexicalDateTimeWithTimezone(const DFDLUString* text,
                                                                                 const DFDLUString* zone,
                                                                                 DFDLConstants* constants,
                                                                                 bool keepFields);
UCalendar* CalendarConverter_createCalendarFromSchemaLexicalDate(const DFDLUString* text,
                                                                 DFDLConstants* constants);
UCalendar* CalendarConverter_createCalendarFromSchemaLexicalTime(const DFDLUString* text,
                                                                 DFDLConstants* constants);
UCalendar* CalendarConverter_createCalendarFromSchemaLexicalDateTime(const DFDLUString* text,
                                                                     DFDLConstants* constants);
// A date and time in the schema's own form, in GMT where it names no zone. False if it is none.
bool CalendarConverter_readEpoch(const DFDLUString* text, DFDLConstants* constants, CalendarEpoch* epoch);
// So many milliseconds after the epoch, with date, time, fraction and zone. Days before 1582-10-15 are those
// of the Julian calendar, as ICU has them.
DFDLCalendarImpl* CalendarConverter_createCalendarFromMillis(DFDLHeapAdapter* heap,
                                                             const CalendarEpoch& epoch, double milliseconds);

// A stamp of ISO 8601 as it was read: its fields, and the text of its offset, which borrows from the stamp's.
struct IsoStamp {
    CalendarFields fields;     // zoneOffset is not set
    std::u16string_view zone;  // empty: GMT
};
// A date, a date and a time behind "T", or "T" and a time. Only `strict` reading wants a date that exists. Of
// an offset the hours alone count.
bool CalendarConverter_readISO8601String(std::u16string_view text, bool forDate, bool strict,
                                         IsoStamp* stamp);
// A time with colons; an offset counts as a whole.
bool CalendarConverter_readISO8601Time(std::u16string_view text, IsoStamp* stamp);
// The same in ICU's form, in GMT where the text names no zone.
UCalendar* CalendarConverter_createCalendarFromISO8601String(const DFDLUString* text, bool forDate,
                                                             bool strict, bool* hasZone);
UCalendar* CalendarConverter_createCalendarFromISO8601Time(const DFDLUString* text, bool* hasZone);
// In ICU's form. Null if ICU refuses.
UCalendar* IsoStamp_toUCalendar(const IsoStamp* this_);
// ICU's name of the zone, in at most 32 units, not terminated. Returns its length.
int32_t IsoStamp_zoneName(const IsoStamp* this_, UChar* name);
// Works out fields.zoneOffset. False if that takes ICU.
bool IsoStamp_findOffset(IsoStamp* this_);

// The same for the whole process, and asked from ICU once, unless `force` is set.
int32_t CalendarConverter_getCurrentYear(bool force);
// Whether there is such a day; months count from 0.
bool CalendarConverter_validateDateFields(int32_t year, int32_t month, int32_t day);
// The year of the century of `current`, or of the one before unless it lies below `start`.
int32_t CalendarConverter_getYearFromTruncatedFormat(int32_t year, int32_t start, int32_t current);
// An offset of whole minutes, of 14 hours at most.
bool CalendarConverter_isIcuTimezoneInRange(const UCalendar* calendar);
// -1, 0, 1, or CALENDARS_INCOMPARABLE when ICU cannot tell.
int32_t CalendarConverter_CompareTo(const UCalendar* a, const UCalendar* b);
inline constexpr int32_t CALENDARS_INCOMPARABLE = -2;
// ICU's pattern for a time: "HH:mm:ss", the digits of its fraction, its zone.
DFDLUString* CalendarConverter_calculateICUTimePattern(const DFDLUString* text, DFDLHeapAdapter* heap);

// The text ends in "Z" or in an offset of the form "+hh:mm".
bool CalendarConverter_hasTimezone(const DFDLUString* text);
// The text has a "." with a digit behind it.
bool CalendarConverter_hasFractionalSeconds(const DFDLUString* text);

#endif
