#ifndef DFDL_FOUNDATION_DFDLUSTRING_H
#define DFDL_FOUNDATION_DFDLUSTRING_H

#include <unicode/ucnv.h>

#include <cstdint>
#include <string_view>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLCalendarImpl;
struct DFDLConstants;
struct DFDLDecimal;
struct DFDLString;

// The text of this system: UTF-16 units, terminated unless it refers to storage of somebody else that is not.
// Whoever receives one from `new_...`, from a pool or from an operation deletes it with delete_DFDLUString
// and need not care which of them it was. An empty string needs no storage of its own.
struct DFDLUString {
    DFDLHeapAdapter* heap;
    DFDLHeapAdapter* bufferHeap;  // whose buffer factory `chars` comes from
    UChar* chars;
    int32_t length;  // units
    uint32_t pooled;
    uint32_t external;  // `chars` belongs to somebody else and is neither freed nor written to
};

// ---- Creation ------------------------------------------------------------------------------------------
// A negative length, or one that 32 bits cannot count, is an allocation failure.

DFDLUString* new_DFDLUString(DFDLHeapAdapter* heap);  // empty
DFDLUString* new_DFDLUStringFromUChars(DFDLHeapAdapter* heap, const UChar* chars, int32_t length);
DFDLUString* new_DFDLUStringFromDFDLUString(const DFDLUString* source, DFDLHeapAdapter* heap);
// The first `end` units.
DFDLUString* new_DFDLUStringFromDFDLUStringWithEnd(const DFDLUString* source, int32_t end,
                                                   DFDLHeapAdapter* heap);
// Converts `length` bytes; -1: up to the terminator. The buffer comes from `bufferHeap`. Null if the
// converter refuses; bytes that are no characters are the business of its callback.
DFDLUString* new_DFDLUString_fromCString(DFDLHeapAdapter* heap, DFDLHeapAdapter* bufferHeap,
                                         UConverter* converter, const char* bytes, int32_t length);
inline DFDLUString* new_DFDLUString_fromCStringWithStart(DFDLHeapAdapter* heap, DFDLHeapAdapter* bufferHeap,
                                                         UConverter* converter, const char* bytes,
                                                         int32_t start, int32_t length) {
    return new_DFDLUString_fromCString(heap, bufferHeap, converter, bytes + start, length);
}
inline DFDLUString* new_DFDLUString_useCString(DFDLHeapAdapter* heap, UConverter* converter,
                                               const char* text) {
    return new_DFDLUString_fromCString(heap, heap, converter, text, -1);
}
// Refers to storage that outlives the string.
DFDLUString* new_DFDLUStringUseUChars(DFDLHeapAdapter* heap, const UChar* chars, int32_t length);

// From values, in the lexical forms of the schema's types.
DFDLUString* new_DFDLUString_fromBoolean(DFDLHeapAdapter* heap, bool value);
DFDLUString* new_DFDLUString_fromSignedQValue(DFDLHeapAdapter* heap, int64_t value);
DFDLUString* new_DFDLUString_fromUnsignedQValue(DFDLHeapAdapter* heap, uint64_t value);
// The least number of digits that reads back as the same value: in plain form from 0.000001 up to a million,
// otherwise as mantissa and exponent; INF, -INF, NaN.
DFDLUString* new_DFDLUString_fromDouble(DFDLHeapAdapter* heap, double value);
DFDLUString* new_DFDLUString_fromFloat(DFDLHeapAdapter* heap, float value);
// Upper-case digits.
DFDLUString* new_DFDLUString_fromHexBinary(DFDLHeapAdapter* heap, const uint8_t* bytes, int64_t length);
inline DFDLUString* new_DFDLUString_fromHexBinaryChar(DFDLHeapAdapter* heap, const char* bytes,
                                                      int64_t length) {
    return new_DFDLUString_fromHexBinary(heap, reinterpret_cast<const uint8_t*>(bytes), length);
}
// `length` bits, the most significant of a byte first, from bit `offset` of the first byte on.
DFDLUString* new_DFDLUString_fromBinaryBits(DFDLHeapAdapter* heap, const uint8_t* bytes, int64_t length,
                                            int64_t offset);
DFDLUString* new_DFDLUString_fromDate(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar,
                                      bool hasTimeZone);
DFDLUString* new_DFDLUString_fromTime(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar,
                                      bool hasTimeZone);
DFDLUString* new_DFDLUString_fromDateTime(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar,
                                          bool hasTimeZone);
// One of the three, by what the calendar holds.
DFDLUString* new_DFDLUString_fromCalendar(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar,
                                          bool hasTimeZone);

void delete_DFDLUString(DFDLUString* this_);  // null is ignored; a pooled string goes back to its pool
// The same, and the units stay, whoever they belong to.
void delete_DFDLUString_externalUChars(DFDLUString* this_);

// From the engine's pool. The buffer comes from the given heap, which may be the message's.
DFDLUString* DFDLUStringPooler_getDFDLUString(DFDLHeapAdapter* heap);
DFDLUString* DFDLUStringPooler_getDFDLUStringFromUChars(DFDLHeapAdapter* heap, const UChar* chars,
                                                        int32_t length);
inline DFDLUString* DFDLUStringPooler_getDFDLUStringFromView(DFDLHeapAdapter* heap,
                                                             std::u16string_view text) {
    if (text.size() > INT32_MAX) DFDLHeapAdapter_refuse(heap);
    return DFDLUStringPooler_getDFDLUStringFromUChars(heap, text.data(), static_cast<int32_t>(text.size()));
}
// Adopts `chars`, a buffer of heap->bufferFactory that holds length + 1 units or more.
DFDLUString* DFDLUStringPooler_getDFDLUStringUseUChars(DFDLHeapAdapter* heap, UChar* chars, int32_t length);
DFDLUString* DFDLUStringPooler_getDFDLUStringFromCString(DFDLHeapAdapter* heap, UConverter* converter,
                                                         const char* text, int32_t length);
void DFDLUStringPooler_releaseDFDLUString(DFDLUString* string);

inline std::u16string_view DFDLUString_view(const DFDLUString* this_) {
    return this_ == nullptr ? std::u16string_view()
                            : std::u16string_view(this_->chars, static_cast<size_t>(this_->length));
}
inline int32_t DFDLUString_length(const DFDLUString* this_) { return this_ == nullptr ? 0 : this_->length; }

// ---- Comparison ----------------------------------------------------------------------------------------

bool DFDLUString_equals(const DFDLUString* a, const DFDLUString* b);  // null equals empty
bool DFDLUString_equalsIgnoreCase(const DFDLUString* a, const DFDLUString* b);
// A length of 0 never matches, not even an empty string.
bool DFDLUString_equalsString(const DFDLUString* this_, const UChar* chars, int32_t length);
bool DFDLUString_equalsStringIgnoreCase(const DFDLUString* this_, const UChar* chars, int32_t length);
bool DFDLUString_equalsWithUChar(const DFDLUString* this_, UChar unit);  // is just this unit
// Both have that many units, and these are the same.
bool DFDLUString_equalsInLength(const DFDLUString* a, const DFDLUString* b, int32_t length);
int32_t DFDLUString_compare(const DFDLUString* a, const DFDLUString* b);  // code units; -1 if either is null

// ---- Search: indices of units; -1 none. A start outside the text finds nothing. ------------------------

int32_t DFDLUString_findFirst(const DFDLUString* this_, const DFDLUString* part);
int32_t DFDLUString_findFirstWithStartIndex(const DFDLUString* this_, const DFDLUString* part, int32_t start);
int32_t DFDLUString_findFirstUChar(const DFDLUString* this_, UChar unit);
int32_t DFDLUString_findFirstUCharWithStartIndex(const DFDLUString* this_, UChar unit, int32_t start);
int32_t DFDLUString_lastIndexOf(const DFDLUString* this_, const DFDLUString* part);
int32_t DFDLUString_lastIndexOfWithUChar(const DFDLUString* this_, UChar unit);
bool DFDLUString_contains(const DFDLUString* this_, const DFDLUString* part);
bool DFDLUString_containsUChar(const DFDLUString* this_, UChar unit);
bool DFDLUString_startsWith(const DFDLUString* this_, const DFDLUString* start);
bool DFDLUString_startsWithUChar(const DFDLUString* this_, UChar unit);
bool DFDLUString_startsWithChars(const DFDLUString* this_, const char* ascii);
bool DFDLUString_startsWithUChars(const DFDLUString* this_, const UChar* chars, int32_t length);
bool DFDLUString_endsWith(const DFDLUString* this_, const DFDLUString* end);
bool DFDLUString_endsWithUChar(const DFDLUString* this_, UChar unit);
// Without overlap; an empty part occurs nowhere.
int32_t DFDLUString_countOccurrencesOf(const DFDLUString* this_, const DFDLUString* part);
int32_t DFDLUString_countCharacters(const DFDLUString* this_);  // a surrogate pair is one

// ---- Change --------------------------------------------------------------------------------------------
// A string that refers to storage of somebody else takes a copy before the first change. An index outside the
// text changes nothing.

// Refers to storage that outlives this use of the string.
void DFDLUString_setValue(DFDLUString* this_, const UChar* chars, int32_t length);
// False, and the string as it was, if the converter refuses.
bool DFDLUString_setValueFromCString(DFDLUString* this_, UConverter* converter, const char* bytes,
                                     int32_t length);
void DFDLUString_replaceValue(DFDLUString* this_, const UChar* chars, int32_t length);  // copies
void DFDLUString_setAt(DFDLUString* this_, int32_t index, UChar unit);
void DFDLUString_deleteCharAt(DFDLUString* this_, int32_t index);
void DFDLUString_stripAll(DFDLUString* this_, UChar unit);  // every occurrence goes
void DFDLUString_reset(DFDLUString* this_);                 // empty

// ---- New strings, of the given heap's pool -------------------------------------------------------------
// Null is taken for an empty string. Indices outside the text are moved to its ends.

DFDLUString* DFDLUString_substring(const DFDLUString* this_, int32_t start, DFDLHeapAdapter* heap);
DFDLUString* DFDLUString_substringWithEnd(const DFDLUString* this_, int32_t start, int32_t end,
                                          DFDLHeapAdapter* heap);
DFDLUString* DFDLUString_concat(const DFDLUString* this_, const DFDLUString* other, DFDLHeapAdapter* heap);
DFDLUString* DFDLUString_concatWithUChar(const DFDLUString* this_, UChar unit, DFDLHeapAdapter* heap);
DFDLUString* DFDLUString_concatWithUChars(const DFDLUString* this_, const UChar* chars, int32_t length,
                                          DFDLHeapAdapter* heap);
// The first occurrence. An empty part occurs nowhere.
DFDLUString* DFDLUString_replace(const DFDLUString* this_, const DFDLUString* part,
                                 const DFDLUString* replacement, DFDLHeapAdapter* heap);
DFDLUString* DFDLUString_replaceAll(const DFDLUString* this_, const DFDLUString* part,
                                    const DFDLUString* replacement, DFDLHeapAdapter* heap);
DFDLUString* DFDLUString_replaceAllUChar(const DFDLUString* this_, UChar unit, UChar replacement,
                                         DFDLHeapAdapter* heap);
DFDLUString* DFDLUString_replaceAllWithEmpty(const DFDLUString* this_, const DFDLUString* part,
                                             DFDLHeapAdapter* heap);
DFDLUString* DFDLUString_toUpper(const DFDLUString* this_, DFDLHeapAdapter* heap);  // of no language
DFDLUString* DFDLUString_toLower(const DFDLUString* this_, DFDLHeapAdapter* heap);
// Takes a unit off both ends; 0: everything that Unicode counts as white space.
DFDLUString* DFDLUString_trim(const DFDLUString* this_, UChar unit, DFDLHeapAdapter* heap);
// Fills up to a width in characters with the pad string, one character of text. In the middle, the larger
// half of the padding stands in front. A text that is wide enough stays as it is.
DFDLUString* DFDLUString_leftJustify(const DFDLUString* this_, int32_t width, const DFDLUString* pad,
                                     DFDLHeapAdapter* heap);
DFDLUString* DFDLUString_rightJustify(const DFDLUString* this_, int32_t width, const DFDLUString* pad,
                                      DFDLHeapAdapter* heap);
DFDLUString* DFDLUString_centerJustify(const DFDLUString* this_, int32_t width, const DFDLUString* pad,
                                       DFDLHeapAdapter* heap);

// ---- Numbers -------------------------------------------------------------------------------------------
// The schema's lexical forms, white space around them included. Malformed text and numbers out of range leave
// U_INVALID_FORMAT_ERROR and give 0, otherwise *status is U_ZERO_ERROR.

double DFDLUString_toDouble(const DFDLUString* this_, UErrorCode* status);
inline constexpr auto& DFDLUString_toDoubleWithErr = DFDLUString_toDouble;
float DFDLUString_toFloat(const DFDLUString* this_, UErrorCode* status);
// A new decimal of the given heap; null if malformed.
DFDLDecimal* DFDLUString_toDecimal(const DFDLUString* this_, const DFDLConstants* constants,
                                   UErrorCode* status, DFDLHeapAdapter* heap);
bool DFDLUString_toBoolean(const DFDLUString* this_, UErrorCode* status);
int32_t DFDLUString_toInt(const DFDLUString* this_, UErrorCode* status);
uint32_t DFDLUString_toUnsignedInt(const DFDLUString* this_, UErrorCode* status);
int16_t DFDLUString_toShort(const DFDLUString* this_, UErrorCode* status);
uint16_t DFDLUString_toUnsignedShort(const DFDLUString* this_, UErrorCode* status);
int64_t DFDLUString_toSignedQValue(const DFDLUString* this_, UErrorCode* status);
uint64_t DFDLUString_toUnsignedQValue(const DFDLUString* this_, UErrorCode* status);
inline constexpr auto& DFDLUString_toLong = DFDLUString_toSignedQValue;
inline constexpr auto& DFDLUString_toLongLong = DFDLUString_toSignedQValue;
inline constexpr auto& DFDLUString_toUnsignedLong = DFDLUString_toUnsignedQValue;
inline constexpr auto& DFDLUString_toUnsignedLongLong = DFDLUString_toUnsignedQValue;

#endif
