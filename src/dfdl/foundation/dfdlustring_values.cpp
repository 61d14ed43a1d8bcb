#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/dfdlustringunits.h"

namespace {

// Room for the longest text of a number or a calendar.
constexpr size_t TEXT_CAPACITY = 128;

// ASCII text that grows from the front; nothing here is longer than its room.
struct Text {
    char chars[TEXT_CAPACITY];
    size_t length = 0;

    void add(std::string_view part) {
        std::copy(part.begin(), part.end(), chars + length);
        length += part.size();
    }
    void zeros(int count) {
        for (int i = 0; i < count; ++i) add("0");
    }
    template <class Integer>
    void number(Integer value) {
        length = static_cast<size_t>(std::to_chars(chars + length, std::end(chars), value).ptr - chars);
    }
    void padded(int64_t value, int digits) {
        Text plain;
        plain.number(value);
        zeros(digits - static_cast<int>(plain.length));
        add({plain.chars, plain.length});
    }
    DFDLUString* toString(DFDLHeapAdapter* heap) const {
        UChar units[TEXT_CAPACITY];
        std::copy_n(chars, length, units);
        return DFDLUStringPooler_getDFDLUStringFromUChars(heap, units, static_cast<int32_t>(length));
    }
};

template <class Integer>
DFDLUString* fromInteger(DFDLHeapAdapter* heap, Integer value) {
    Text text;
    text.number(value);
    return text.toString(heap);
}

constexpr double PLAIN_FROM = 0.000001;
constexpr double PLAIN_BELOW = 1000000.0;

// The digits with the point behind the first `exponent + 1` of them; zeros fill up on either side.
void addPlain(Text* text, std::string_view digits, int exponent) {
    const auto count = static_cast<int>(digits.size());
    if (exponent < 0) {
        text->add("0.");
        text->zeros(-exponent - 1);
        text->add(digits);
    } else if (exponent >= count - 1) {
        text->add(digits);
        text->zeros(exponent + 1 - count);
    } else {
        const auto whole = static_cast<size_t>(exponent) + 1;
        text->add(digits.substr(0, whole));
        text->add(".");
        text->add(digits.substr(whole));
    }
}

void addScientific(Text* text, std::string_view digits, int exponent) {
    text->add(digits.substr(0, 1));
    text->add(".");
    text->add(digits.size() > 1 ? digits.substr(1) : "0");
    text->add("E");
    text->number(exponent);
}

// Takes "d.ddde+xx" apart.
template <class Real>
void addFinite(Text* text, Real magnitude) {
    char shortest[TEXT_CAPACITY];
    const char* end =
        std::to_chars(shortest, std::end(shortest), magnitude, std::chars_format::scientific).ptr;
    const char* mark = std::find(static_cast<const char*>(shortest), end, 'e');
    Text digits;
    std::for_each(static_cast<const char*>(shortest), mark, [&](char c) {
        if (c != '.') digits.add({&c, 1});
    });
    int exponent = 0;
    std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, exponent);
    const bool plain = magnitude == 0 || (magnitude >= static_cast<Real>(PLAIN_FROM) &&
                                          magnitude < static_cast<Real>(PLAIN_BELOW));
    (plain ? addPlain : addScientific)(text, {digits.chars, digits.length}, exponent);
}

template <class Real>
DFDLUString* fromReal(DFDLHeapAdapter* heap, Real value) {
    Text text;
    if (std::isnan(value)) {
        text.add("NaN");
    } else {
        if (std::signbit(value)) text.add("-");
        if (std::isinf(value)) {
            text.add("INF");
        } else {
            addFinite(&text, std::abs(value));
        }
    }
    return text.toString(heap);
}

// `count` digits of `bits` bits each, from digit `first` on.
DFDLUString* fromDigits(DFDLHeapAdapter* heap, const uint8_t* bytes, int64_t first, int64_t count,
                        unsigned bits) {
    const auto units = DFDLUStringUnits_length(heap, static_cast<uint64_t>(count));
    UChar* chars = DFDLUStringUnits_new(heap, units);
    const unsigned perByte = 8 / bits;
    for (int32_t unit = 0; unit < units; ++unit) {
        const auto digit = static_cast<uint64_t>(first) + static_cast<uint64_t>(unit);
        const unsigned shift = 8 - bits * (1 + static_cast<unsigned>(digit % perByte));
        const unsigned byte = bytes[digit / perByte];
        chars[unit] = u"0123456789ABCDEF"[(byte >> shift) & ((1U << bits) - 1)];
    }
    return DFDLUStringPooler_getDFDLUStringUseUChars(heap, chars, units);
}

void addDate(Text* text, const DFDLCalendarImpl* calendar) {
    if (calendar->year < 0) text->add("-");
    text->padded(std::abs(static_cast<int64_t>(calendar->year)), 4);
    text->add("-");
    text->padded(static_cast<int64_t>(calendar->month) + 1, 2);
    text->add("-");
    text->padded(calendar->day, 2);
}

// Digits of a second as far as they are not zero.
void addFraction(Text* text, int32_t microSecond) {
    text->add(".");
    text->padded(microSecond, 6);
    while (text->chars[text->length - 1] == '0') --text->length;
}

void addTime(Text* text, const DFDLCalendarImpl* calendar) {
    text->padded(calendar->hour, 2);
    text->add(":");
    text->padded(calendar->minute, 2);
    text->add(":");
    text->padded(calendar->second, 2);
    if (calendar->hasMicroSec != 0 && calendar->microSecond > 0) addFraction(text, calendar->microSecond);
}

void addZone(Text* text, const DFDLCalendarImpl* calendar) {
    const int64_t offset = calendar->timeZoneOffset;
    if (offset == 0) return text->add("Z");
    text->add(offset < 0 ? "-" : "+");
    text->padded(std::abs(offset) / 60, 2);
    text->add(":");
    text->padded(std::abs(offset) % 60, 2);
}

DFDLUString* fromParts(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar, bool date, bool time,
                       bool zone) {
    Text text;
    if (date) addDate(&text, calendar);
    if (date && time) text.add("T");
    if (time) addTime(&text, calendar);
    if (zone) addZone(&text, calendar);
    return text.toString(heap);
}

}  // namespace

DFDLUString* new_DFDLUString_fromBoolean(DFDLHeapAdapter* heap, bool value) {
    return DFDLUStringPooler_getDFDLUStringFromView(heap, value ? u"true" : u"false");
}

DFDLUString* new_DFDLUString_fromSignedQValue(DFDLHeapAdapter* heap, int64_t value) {
    return fromInteger(heap, value);
}

DFDLUString* new_DFDLUString_fromUnsignedQValue(DFDLHeapAdapter* heap, uint64_t value) {
    return fromInteger(heap, value);
}

DFDLUString* new_DFDLUString_fromDouble(DFDLHeapAdapter* heap, double value) { return fromReal(heap, value); }

DFDLUString* new_DFDLUString_fromFloat(DFDLHeapAdapter* heap, float value) { return fromReal(heap, value); }

DFDLUString* new_DFDLUString_fromHexBinary(DFDLHeapAdapter* heap, const uint8_t* bytes, int64_t length) {
    if (length < 0 || length > INT32_MAX / 2) DFDLHeapAdapter_refuse(heap);
    return fromDigits(heap, bytes, 0, 2 * length, 4);
}

DFDLUString* new_DFDLUString_fromBinaryBits(DFDLHeapAdapter* heap, const uint8_t* bytes, int64_t length,
                                            int64_t offset) {
    return fromDigits(heap, bytes, offset, length, 1);
}

DFDLUString* new_DFDLUString_fromDate(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar,
                                      bool hasTimeZone) {
    return fromParts(heap, calendar, true, false, hasTimeZone);
}

DFDLUString* new_DFDLUString_fromTime(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar,
                                      bool hasTimeZone) {
    return fromParts(heap, calendar, false, true, hasTimeZone);
}

DFDLUString* new_DFDLUString_fromDateTime(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar,
                                          bool hasTimeZone) {
    return fromParts(heap, calendar, true, true, hasTimeZone);
}

DFDLUString* new_DFDLUString_fromCalendar(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar,
                                          bool hasTimeZone) {
    const bool time = calendar->hasTime != 0;
    return fromParts(heap, calendar, !time || calendar->hasDate != 0, time, hasTimeZone);
}
