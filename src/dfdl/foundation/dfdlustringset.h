#ifndef DFDL_FOUNDATION_DFDLUSTRINGSET_H
#define DFDL_FOUNDATION_DFDLUSTRINGSET_H

#include "dfdl/foundation/dfdlustring.h"

// Different texts, owned by the set. A text's index is its identity as long as the set lives, so no text
// moves.
struct DFDLUStringSet {
    DFDLHeapAdapter* heap;
    int32_t count;
    int32_t capacity;
    DFDLUString** strings;  // a null slot is free
};

DFDLUStringSet* new_DFDLUStringSet(DFDLHeapAdapter* heap);
void delete_DFDLUStringSet(DFDLUStringSet* this_);  // null is ignored

// True if it took a copy, false if an equal string is there.
bool DFDLUStringSet_add(DFDLUStringSet* this_, const DFDLUString* string);
// The index of an equal string, which is added if it is missing.
int32_t DFDLUStringSet_addAndIndex(DFDLUStringSet* this_, const DFDLUString* string);
int32_t DFDLUStringSet_indexOf(const DFDLUStringSet* this_, const DFDLUString* string);  // -1 missing
bool DFDLUStringSet_contains(const DFDLUStringSet* this_, const DFDLUString* string);
// Leaves a free slot, which a later string takes. False if missing.
bool DFDLUStringSet_remove(DFDLUStringSet* this_, const DFDLUString* string);
DFDLUString* DFDLUStringSet_get(const DFDLUStringSet* this_, int32_t index);  // null if there is none
void DFDLUStringSet_clear(DFDLUStringSet* this_);

inline int32_t DFDLUStringSet_size(const DFDLUStringSet* this_) { return this_->count; }

#endif
