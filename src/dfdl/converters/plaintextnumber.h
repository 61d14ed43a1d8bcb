#ifndef DFDL_CONVERTERS_PLAINTEXTNUMBER_H
#define DFDL_CONVERTERS_PLAINTEXTNUMBER_H

#include <unicode/utypes.h>

#include <cstdint>
#include <span>
#include <string_view>

// Reads the common texts of the common patterns, digits with a sign, groups of three and a point, as ICU
// reads them, but a hundred times as fast. Whatever else there is, ICU has to be asked: this never refuses a
// text.

// What ICU's format would be given, and what follows from it. A plain value.
struct PlainTextNumber {
    bool isUsable;  // false: no text is read
    bool takesPlus;
    bool wantsPlus;
    UChar grouping;  // 0 none
    UChar point;     // 0 none
};

// `pattern` is the one that ICU gets, with the symbols for grouping and point that it gets; empty ones match
// nothing. All other symbols are ICU's own.
PlainTextNumber PlainTextNumber_plan(std::u16string_view pattern, std::u16string_view grouping,
                                     std::u16string_view point, bool isLax);

// A number of at most 18 digits: the word divided by ten to the power of `places`, without zeros at the end
// of its fraction.
struct PlainDigits {
    int64_t word;
    int32_t places;
};

// Both: false if ICU has to be asked, as for a zero with a sign. Bytes are those of an encoding that keeps
// ASCII; up to `loaded` of them may be looked at, be they text or what stands behind it.
bool PlainTextNumber_read(const PlainTextNumber* this_, std::u16string_view text, PlainDigits* digits);
bool PlainTextNumber_read(const PlainTextNumber* this_, std::span<const uint8_t> text, int64_t loaded,
                          PlainDigits* digits);
// The nearest double. False if it takes more than one division that rounds.
bool PlainDigits_toDouble(PlainDigits digits, double* value);

#endif
