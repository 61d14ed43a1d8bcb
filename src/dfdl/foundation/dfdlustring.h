#ifndef DFDL_FOUNDATION_DFDLUSTRING_H
#define DFDL_FOUNDATION_DFDLUSTRING_H

#include <unicode/ucnv.h>

#include <cstdint>
#include <string_view>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLCalendarImpl;
struct DFDLString;

// The text of this system: UTF-16 units, always terminated. Whoever receives one from `new_...` or from a
// pool deletes it with delete_DFDLUString and need not care which of the two it was.
struct DFDLUString {
    DFDLHeapAdapter* heap;
    DFDLHeapAdapter* bufferHeap;  // whose buffer factory `chars` comes from
    UChar* chars;
    int32_t length;  // units
    uint32_t pooled;
    uint32_t external;  // `chars` belongs to somebody else and is not freed
};

DFDLUString* new_DFDLUString(DFDLHeapAdapter* heap);  // empty
DFDLUString* new_DFDLUStringFromUChars(DFDLHeapAdapter* heap, const UChar* chars, int32_t length);
DFDLUString* new_DFDLUStringFromDFDLUString(const DFDLUString* source, DFDLHeapAdapter* heap);
// Converts `length` bytes; -1: up to the terminator. The buffer comes from `bufferHeap`.
DFDLUString* new_DFDLUString_fromCString(DFDLHeapAdapter* heap, DFDLHeapAdapter* bufferHeap,
                                         UConverter* converter, const char* bytes, int32_t length);
// Refers to storage that outlives the string.
DFDLUString* new_DFDLUStringUseUChars(DFDLHeapAdapter* heap, const UChar* chars, int32_t length);
// From values, in the lexical forms of the schema's types.
DFDLUString* new_DFDLUString_fromBoolean(DFDLHeapAdapter* heap, bool value);
DFDLUString* new_DFDLUString_fromSignedQValue(DFDLHeapAdapter* heap, int64_t value);
DFDLUString* new_DFDLUString_fromUnsignedQValue(DFDLHeapAdapter* heap, uint64_t value);
DFDLUString* new_DFDLUString_fromDouble(DFDLHeapAdapter* heap, double value);
DFDLUString* new_DFDLUString_fromFloat(DFDLHeapAdapter* heap, float value);
DFDLUString* new_DFDLUString_fromHexBinary(DFDLHeapAdapter* heap, const uint8_t* bytes, int64_t length);
DFDLUString* new_DFDLUString_fromDate(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar,
                                      bool hasTimeZone);
DFDLUString* new_DFDLUString_fromTime(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar,
                                      bool hasTimeZone);
DFDLUString* new_DFDLUString_fromDateTime(DFDLHeapAdapter* heap, const DFDLCalendarImpl* calendar,
                                          bool hasTimeZone);
void delete_DFDLUString(DFDLUString* this_);  // null is ignored; a pooled string goes back to its pool

// From the engine's pool.
DFDLUString* DFDLUStringPooler_getDFDLUString(DFDLHeapAdapter* heap);
DFDLUString* DFDLUStringPooler_getDFDLUStringFromUChars(DFDLHeapAdapter* heap, const UChar* chars,
                                                        int32_t length);
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

bool DFDLUString_equals(const DFDLUString* a, const DFDLUString* b);  // null equals empty
bool DFDLUString_equalsIgnoreCase(const DFDLUString* a, const DFDLUString* b);
int32_t DFDLUString_compare(const DFDLUString* a, const DFDLUString* b);  // code units; -1 if either is null

// Malformed text and numbers out of range leave U_INVALID_FORMAT_ERROR and give 0.
int64_t DFDLUString_toSignedQValue(const DFDLUString* this_, UErrorCode* status);
uint64_t DFDLUString_toUnsignedQValue(const DFDLUString* this_, UErrorCode* status);

#endif
