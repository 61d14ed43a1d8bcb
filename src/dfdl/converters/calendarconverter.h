#ifndef DFDL_CONVERTERS_CALENDARCONVERTER_H
#define DFDL_CONVERTERS_CALENDARCONVERTER_H

#include <unicode/ucal.h>

#include "dfdl/converters/calendarepoch.h"
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

// The text ends in "Z" or in an offset of the form "+hh:mm".
bool CalendarConverter_hasTimezone(const DFDLUString* text);
// The text has a "." with a digit behind it.
bool CalendarConverter_hasFractionalSeconds(const DFDLUString* text);

#endif
