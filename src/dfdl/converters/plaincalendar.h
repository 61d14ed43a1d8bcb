#ifndef DFDL_CONVERTERS_PLAINCALENDAR_H
#define DFDL_CONVERTERS_PLAINCALENDAR_H

#include <cstdint>
#include <string_view>

#include "dfdl/converters/calendarfields.h"

inline constexpr int32_t PLAIN_CALENDAR_STEPS = 24;

// One thing that a text has next.
struct PlainCalendarStep {
    uint8_t kind;   // of the implementation
    uint8_t width;  // units
    char16_t literal;
};

// A pattern of digits of fixed number and of single characters between them, or of English names of months,
// compiled for reading without ICU. A plain value; no steps: the pattern is another.
struct PlainCalendar {
    PlainCalendarStep steps[PLAIN_CALENDAR_STEPS];
    int32_t count;
    int32_t centuryStart;  // the first year that two digits can mean
};

// The names of months, of three letters, are PLAIN_CALENDAR_MONTHS if `namesMonths` is set.
void PlainCalendar_compile(PlainCalendar* this_, std::u16string_view pattern, int32_t centuryStart,
                           bool namesMonths);
inline constexpr std::u16string_view PLAIN_CALENDAR_MONTHS = u"JanFebMarAprMayJunJulAugSepOctNovDec";
// False unless the text is of the plainest: digits as many as the letters are, every field within its bounds.
// Of the others, ICU says what they are.
bool PlainCalendar_read(const PlainCalendar* this_, std::u16string_view text, CalendarFields* fields);

#endif
