#ifndef DFDL_CONVERTERS_CALENDAREPOCH_H
#define DFDL_CONVERTERS_CALENDAREPOCH_H

#include <cstdint>

// From where calendars are counted, and in which zone they are told. A plain value.
struct CalendarEpoch {
    double milliseconds;  // since the start of 1970 in GMT
    int32_t zoneOffset;   // milliseconds east of Greenwich
};
inline constexpr CalendarEpoch CALENDAR_UNIX_EPOCH = {0, 0};

#endif
