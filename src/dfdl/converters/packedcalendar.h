#ifndef DFDL_CONVERTERS_PACKEDCALENDAR_H
#define DFDL_CONVERTERS_PACKEDCALENDAR_H

#include <cstdint>

#include "dfdl/converters/calendarfields.h"

// The fields of a calendar in one word, as they wait between the text that they were read from and the
// callback that gets them: the road of every plain value, so all of it is inline. The three parts of a word
// are put together with "|". A field has room for its bounds, and the year for 0 to 9999.

// The bit that a field begins at. The offset of the zone is counted from the most negative one.
enum PackedCalendarBit : int {
    PACKED_HAS_ZONE = 0,
    PACKED_ZONE = 1,
    PACKED_MILLISECOND = 12,
    PACKED_SECOND = 22,
    PACKED_MINUTE = 28,
    PACKED_HOUR = 34,
    PACKED_DAY = 39,
    PACKED_MONTH = 44,
    PACKED_YEAR = 48,
    PACKED_END = 62
};

inline uint64_t PackedCalendar_put(int32_t value, PackedCalendarBit bit) {
    return static_cast<uint64_t>(value) << bit;
}
inline int32_t PackedCalendar_take(int64_t word, PackedCalendarBit bit, PackedCalendarBit next) {
    return static_cast<int32_t>(static_cast<uint64_t>(word) >> bit & ((uint64_t{1} << (next - bit)) - 1));
}

inline uint64_t PackedCalendar_date(int32_t year, int32_t month, int32_t day) {  // months count from 0
    return PackedCalendar_put(year, PACKED_YEAR) | PackedCalendar_put(month, PACKED_MONTH) |
           PackedCalendar_put(day, PACKED_DAY);
}
inline uint64_t PackedCalendar_time(int32_t hour, int32_t minute, int32_t second, int32_t millisecond) {
    return PackedCalendar_put(hour, PACKED_HOUR) | PackedCalendar_put(minute, PACKED_MINUTE) |
           PackedCalendar_put(second, PACKED_SECOND) | PackedCalendar_put(millisecond, PACKED_MILLISECOND);
}
inline uint64_t PackedCalendar_zone(int32_t offset, bool hasZone) {
    return PackedCalendar_put(offset + CALENDAR_MOST_ZONE_MINUTES, PACKED_ZONE) |
           PackedCalendar_put(hasZone ? 1 : 0, PACKED_HAS_ZONE);
}

inline CalendarFields PackedCalendar_fields(int64_t word) {
    return {PackedCalendar_take(word, PACKED_YEAR, PACKED_END),
            PackedCalendar_take(word, PACKED_MONTH, PACKED_YEAR),
            PackedCalendar_take(word, PACKED_DAY, PACKED_MONTH),
            PackedCalendar_take(word, PACKED_HOUR, PACKED_DAY),
            PackedCalendar_take(word, PACKED_MINUTE, PACKED_HOUR),
            PackedCalendar_take(word, PACKED_SECOND, PACKED_MINUTE),
            PackedCalendar_take(word, PACKED_MILLISECOND, PACKED_SECOND),
            PackedCalendar_take(word, PACKED_ZONE, PACKED_MILLISECOND) - CALENDAR_MOST_ZONE_MINUTES,
            PackedCalendar_take(word, PACKED_HAS_ZONE, PACKED_ZONE) != 0};
}

#endif
