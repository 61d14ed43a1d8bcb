// The reading of texts. It stands on the road of every date, so it has no loop over fields and hardly a
// branch that depends on the text.
#include "dfdl/converters/plaincalendar.h"

#include <algorithm>
#include <cstring>

#include "dfdl/converters/calendarconverter.h"
#include "dfdl/converters/packedcalendar.h"

namespace {

constexpr int32_t WORD_BYTES = 8;
constexpr uint64_t HIGHEST_BITS = 0x8080808080808080;
constexpr size_t MONTH_NAME_UNITS = 3;

// The digits of a text, by value, and the defaults behind them.
using Digits = uint8_t[PLAIN_CALENDAR_BYTES + sizeof PLAIN_CALENDAR_DEFAULTS];

int32_t pairAt(const Digits& digits, uint8_t place) { return digits[place] * 10 + digits[place + 1]; }

// False if a digit or a mark of the pattern is something else. `text` has a word at least.
bool takeDigits(const PlainCalendar* plan, const uint8_t* text, const uint8_t* lastWord, Digits& digits) {
    uint64_t excess = 0;
    for (int32_t i = 0; i < plan->wordCount; ++i) {
        const PlainCalendarWord& word = plan->words[i];
        uint64_t bytes = 0;
        std::memcpy(&bytes, std::min(text + WORD_BYTES * i, lastWord), sizeof bytes);
        const uint64_t values = (bytes & word.kept) ^ word.expected;
        excess |= values | (values + word.excess);
        std::memcpy(digits + WORD_BYTES * i, &values, sizeof values);
    }
    std::memcpy(digits + PLAIN_CALENDAR_BYTES, PLAIN_CALENDAR_DEFAULTS, sizeof PLAIN_CALENDAR_DEFAULTS);
    return (excess & HIGHEST_BITS) == 0;
}

// From 0; -1: it is none.
int32_t findMonth(const uint8_t* name) {
    for (size_t month = 0; month < 12; ++month) {
        const char16_t* const units = PLAIN_CALENDAR_MONTHS.data() + month * MONTH_NAME_UNITS;
        if (std::equal(name, name + MONTH_NAME_UNITS, units)) return static_cast<int32_t>(month);
    }
    return -1;
}

// The first year of the century itself is in either of two, by what follows.
bool extendYear(const PlainCalendar* plan, int32_t* year) {
    const int32_t first = plan->centuryStart;
    const int32_t firstOfTwoDigits = first % 100;
    if (*year == firstOfTwoDigits) return false;
    *year += first - firstOfTwoDigits + (*year < firstOfTwoDigits ? 100 : 0);
    return true;
}

bool isDay(int32_t year, int32_t month, int32_t day) {
    constexpr uint32_t IN_ALL_MONTHS = 28;
    const bool inAll = static_cast<uint32_t>(month) < 12 && static_cast<uint32_t>(day) - 1 < IN_ALL_MONTHS;
    return inAll || CalendarConverter_validateDateFields(year, month, day);
}

bool addDate(const PlainCalendar* plan, const uint8_t* text, const Digits& digits, uint64_t* packed) {
    const PlainCalendarPlaces& places = plan->places;
    int32_t year = pairAt(digits, places.century) * 100 + pairAt(digits, places.year);
    int32_t month = pairAt(digits, places.month) - 1;
    const int32_t day = pairAt(digits, places.day);
    if (plan->hasShortYear && !extendYear(plan, &year)) return false;
    if (plan->monthName >= 0) month = findMonth(text + plan->monthName);
    *packed |= PackedCalendar_date(year, month, day);
    return year >= FIRST_PLAIN_YEAR && year <= LAST_PLAIN_YEAR && isDay(year, month, day);
}

bool addTime(const PlainCalendar* plan, const Digits& digits, uint64_t* packed) {
    const PlainCalendarPlaces& places = plan->places;
    const int32_t hour = pairAt(digits, places.hour);
    const int32_t minute = pairAt(digits, places.minute);
    const int32_t second = pairAt(digits, places.second);
    const uint8_t(&fraction)[3] = places.fraction;
    const int32_t millisecond = digits[fraction[0]] * 100 + digits[fraction[1]] * 10 + digits[fraction[2]];
    *packed |= PackedCalendar_time(hour, minute, second, millisecond);
    return hour < 24 && minute < 60 && second < 60;
}

bool addZone(const PlainCalendar* plan, const uint8_t* text, const Digits& digits, uint64_t* packed) {
    const uint8_t sign = text[plan->zoneSign];
    const int32_t minutes = pairAt(digits, plan->places.zoneMinutes);
    const int32_t offset = pairAt(digits, plan->places.zoneHours) * 60 + minutes;
    if ((sign != '+' && sign != '-') || minutes >= 60 || offset > CALENDAR_MOST_ZONE_MINUTES) return false;
    *packed |= PackedCalendar_zone(sign == '-' ? -offset : offset, true);
    return true;
}

// `text` has the width of the pattern, and a word at least can be read from it.
bool readPadded(const PlainCalendar* plan, const uint8_t* text, const uint8_t* lastWord, int64_t* word) {
    Digits digits;
    uint64_t packed = 0;
    if (!takeDigits(plan, text, lastWord, digits) || !addDate(plan, text, digits, &packed) ||
        (plan->hasTime && !addTime(plan, digits, &packed))) {
        return false;
    }
    if (plan->zoneSign < 0) {
        packed |= plan->zone;
    } else if (!addZone(plan, text, digits, &packed)) {
        return false;
    }
    *word = static_cast<int64_t>(packed);
    return true;
}

}  // namespace

bool PlainCalendar_read(const PlainCalendar* this_, std::span<const uint8_t> text, int64_t* word) {
    if (std::ssize(text) != this_->width || text.empty()) return false;
    if (text.size() >= WORD_BYTES)
        return readPadded(this_, text.data(), text.data() + text.size() - WORD_BYTES, word);
    uint8_t padded[WORD_BYTES] = {};
    std::memcpy(padded, text.data(), text.size());
    return readPadded(this_, padded, padded, word);
}

bool PlainCalendar_read(const PlainCalendar* this_, std::u16string_view text, int64_t* word) {
    constexpr uint8_t OF_NO_PATTERN = 0xFF;
    uint8_t bytes[PLAIN_CALENDAR_BYTES];
    if (std::ssize(text) != this_->width) return false;
    std::transform(text.begin(), text.end(), bytes,
                   [](char16_t unit) { return unit < 0x80 ? static_cast<uint8_t>(unit) : OF_NO_PATTERN; });
    return PlainCalendar_read(this_, std::span<const uint8_t>(bytes, text.size()), word);
}
