#ifndef DFDL_CONVERTERS_PLAINCALENDAR_H
#define DFDL_CONVERTERS_PLAINCALENDAR_H

#include <cstdint>
#include <span>
#include <string_view>

// Reads the common texts of the common patterns as ICU reads them, but a thousand times as fast. A pattern of
// digits of fixed number and of single characters between them has all its texts alike: every character has
// one place. So the pattern is compiled to where each field's digits stand and to what eight characters at
// once have to be; the text is then compared word by word, and the fields are looked up.

inline constexpr int32_t PLAIN_CALENDAR_WORDS = 4;
inline constexpr int32_t PLAIN_CALENDAR_BYTES = 8 * PLAIN_CALENDAR_WORDS;  // of the longest text

// What eight bytes of a text are compared with: (bytes & kept) ^ expected has the value of each digit, and 0
// for all else. Adding `excess` sets the highest bit of each byte that is more.
struct PlainCalendarWord {
    uint64_t kept;
    uint64_t expected;
    uint64_t excess;
};

// Where the digits of each field stand among those that the words give. Fields of more than two digits are
// made of several. A field that the pattern has not stands behind the text, where its default is.
struct PlainCalendarPlaces {
    uint8_t century;
    uint8_t year;  // of the century
    uint8_t month;
    uint8_t day;
    uint8_t hour;
    uint8_t minute;
    uint8_t second;
    uint8_t fraction[3];  // one digit each
    uint8_t zoneHours;
    uint8_t zoneMinutes;
};

// A compiled pattern. A plain value.
struct PlainCalendar {
    int32_t width;  // bytes of every text; 0: the pattern is another
    int32_t wordCount;
    PlainCalendarWord words[PLAIN_CALENDAR_WORDS];  // the last one ends with the text
    PlainCalendarPlaces places;
    int8_t monthName;      // where it stands in the text; -1 none
    int8_t zoneSign;       // the same
    bool hasShortYear;     // of two digits
    bool hasTime;          // at least a part of it
    int32_t centuryStart;  // the first year that two digits can mean
    uint64_t zone;         // of texts without one, as part of a packed calendar
};

// What a pattern means beyond what it says.
struct PlainCalendarSetting {
    int32_t centuryStart;
    bool namesMonths;    // names of three letters are PLAIN_CALENDAR_MONTHS
    int32_t zoneOffset;  // minutes east of Greenwich; of texts without zone
    bool namesZone;      // texts without zone are in that one, and not in none
};

inline constexpr std::u16string_view PLAIN_CALENDAR_MONTHS = u"JanFebMarAprMayJunJulAugSepOctNovDec";

PlainCalendar PlainCalendar_compile(std::u16string_view pattern, const PlainCalendarSetting& setting);
// Both: the packed calendar. False unless the text is of the plainest: digits as many as the letters are,
// every field within its bounds. Of the others, ICU says what they are. Bytes are those of an encoding that
// keeps ASCII; nothing behind the length is touched.
bool PlainCalendar_read(const PlainCalendar* this_, std::span<const uint8_t> text, int64_t* word);
bool PlainCalendar_read(const PlainCalendar* this_, std::u16string_view text, int64_t* word);

// For what compiles: the default fields, as pairs of digits behind those of the text.
inline constexpr uint8_t PLAIN_CALENDAR_DEFAULTS[8] = {1, 9, 7, 0, 0, 1, 0, 0};
enum PlainCalendarDefault : uint8_t {
    DEFAULT_CENTURY = PLAIN_CALENDAR_BYTES,
    DEFAULT_YEAR = DEFAULT_CENTURY + 2,
    DEFAULT_MONTH_OR_DAY = DEFAULT_YEAR + 2,
    DEFAULT_ZERO = DEFAULT_MONTH_OR_DAY + 2
};

#endif
