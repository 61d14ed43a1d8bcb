#include <algorithm>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/dfdlustringunits.h"

namespace {

bool isInside(const DFDLUString* string, int32_t index) { return index >= 0 && index < string->length; }

void own(DFDLUString* string) {
    if (string->external != 0) DFDLUString_replaceValue(string, string->chars, string->length);
}

void shorten(DFDLUString* string, UChar* end) {
    *end = 0;
    string->length = static_cast<int32_t>(end - string->chars);
}

}  // namespace

void DFDLUString_setValue(DFDLUString* this_, const UChar* chars, int32_t length) {
    if (length < 0) DFDLHeapAdapter_refuse(this_->heap);
    DFDLUStringUnits_set(this_, const_cast<UChar*>(chars), length, true);
}

bool DFDLUString_setValueFromCString(DFDLUString* this_, UConverter* converter, const char* bytes,
                                     int32_t length) {
    int32_t units = 0;
    UChar* chars = DFDLUStringUnits_convert(this_->bufferHeap, converter, bytes, length, &units);
    if (chars != nullptr) DFDLUStringUnits_set(this_, chars, units, false);
    return chars != nullptr;
}

// The copy is there before the old text goes: the new one may be a part of it.
void DFDLUString_replaceValue(DFDLUString* this_, const UChar* chars, int32_t length) {
    UChar* copy = DFDLUStringUnits_copy(this_->bufferHeap, chars, length);
    DFDLUStringUnits_set(this_, copy, length, false);
}

void DFDLUString_setAt(DFDLUString* this_, int32_t index, UChar unit) {
    if (!isInside(this_, index)) return;
    own(this_);
    this_->chars[index] = unit;
}

void DFDLUString_deleteCharAt(DFDLUString* this_, int32_t index) {
    if (!isInside(this_, index)) return;
    own(this_);
    UChar* end = this_->chars + this_->length;
    shorten(this_, std::copy(this_->chars + index + 1, end, this_->chars + index));
}

void DFDLUString_stripAll(DFDLUString* this_, UChar unit) {
    if (!DFDLUString_containsUChar(this_, unit)) return;
    own(this_);
    shorten(this_, std::remove(this_->chars, this_->chars + this_->length, unit));
}

void DFDLUString_reset(DFDLUString* this_) { DFDLUStringUnits_set(this_, DFDLUStringUnits_empty(), 0, true); }
