#ifndef DFDL_CONVERTERS_CALENDARCONVERTER_H
#define DFDL_CONVERTERS_CALENDARCONVERTER_H

#include <unicode/ucal.h>

#include "dfdl/foundation/dfdlconstants.h"

struct DFDLUString;

// Turns texts into ICU calendars, which are the caller's to close. All answer null for a text that is not
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
// So many milliseconds after the epoch, or after the start of 1970 in GMT where that is null. The epoch
// stays. Null if ICU refuses.
UCalendar* CalendarConverter_createCalendarFromMillis(const UCalendar* epoch, DFDLConstants* constants,
                                                      double milliseconds);

// The text ends in "Z" or in an offset of the form "+hh:mm".
bool CalendarConverter_hasTimezone(const DFDLUString* text);
// The text has a "." with a digit behind it.
bool CalendarConverter_hasFractionalSeconds(const DFDLUString* text);

#endif
