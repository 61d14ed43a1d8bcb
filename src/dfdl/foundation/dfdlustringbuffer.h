#ifndef DFDL_FOUNDATION_DFDLUSTRINGBUFFER_H
#define DFDL_FOUNDATION_DFDLUSTRINGBUFFER_H

#include "dfdl/foundation/dfdlustring.h"

// A text that grows. Owned by whoever made it; not terminated. It has no storage until something is put in.
struct DFDLUStringBuffer {
    DFDLHeapAdapter* heap;
    UChar* chars;  // of heap->bufferFactory
    int32_t capacity;
    int32_t length;  // units
};

DFDLUStringBuffer* new_DFDLUStringBuffer(DFDLHeapAdapter* heap);
void delete_DFDLUStringBuffer(DFDLUStringBuffer* this_);  // null is ignored

// Room for `extra` units and one more.
void DFDLUStringBuffer_ensureCapacity(DFDLUStringBuffer* this_, int32_t extra);
void DFDLUStringBuffer_appendUChar(DFDLUStringBuffer* this_, UChar unit);
void DFDLUStringBuffer_appendUChars(DFDLUStringBuffer* this_, const UChar* chars, int32_t length);
void DFDLUStringBuffer_appendDFDLUString(DFDLUStringBuffer* this_, const DFDLUString* string);
void DFDLUStringBuffer_appendDFDLStringBuffer(DFDLUStringBuffer* this_, const DFDLUStringBuffer* other);
void DFDLUStringBuffer_appendInt(DFDLUStringBuffer* this_, int64_t value);  // decimal digits
void DFDLUStringBuffer_prependUChar(DFDLUStringBuffer* this_, UChar unit);
void DFDLUStringBuffer_prependUChars(DFDLUStringBuffer* this_, const UChar* chars, int32_t length);
void DFDLUStringBuffer_prependDFDLUString(DFDLUStringBuffer* this_, const DFDLUString* string);

UChar DFDLUStringBuffer_getUCharAt(const DFDLUStringBuffer* this_, int32_t index);  // 0 outside the text
// The units from `from` up to, but not with, `to`; what lies outside the text is left out.
void DFDLUStringBuffer_delete(DFDLUStringBuffer* this_, int32_t from, int32_t to);
// The last occurrence that starts at `start` or before it; -1 none.
int32_t DFDLUStringBuffer_lastIndexOfWithStart(const DFDLUStringBuffer* this_, const DFDLUString* part,
                                               int32_t start);
void DFDLUStringBuffer_reset(DFDLUStringBuffer* this_);  // empty; the storage stays

// A terminated copy in a buffer of the heap's factory, to which the caller gives it back.
UChar* DFDLUStringBuffer_toString(const DFDLUStringBuffer* this_);
DFDLUString* DFDLUStringBuffer_toDFDLUString(const DFDLUStringBuffer* this_);  // a copy
// The contents become a string and the buffer is deleted.
DFDLUString* DFDLUStringBuffer_convertToDFDLUString(DFDLUStringBuffer* this_);
DFDLUString* DFDLUStringBuffer_convertToPooledDFDLUString(DFDLUStringBuffer* this_);

inline std::u16string_view DFDLUStringBuffer_view(const DFDLUStringBuffer* this_) {
    return {this_->chars, static_cast<size_t>(this_->length)};
}

#endif
