#include "dfdl/foundation/dfdlustringset.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int32_t STEP = 10;

int32_t freeSlot(DFDLUStringSet* set) {
    if (set->count < set->capacity) {
        DFDLUString** end = set->strings + set->capacity;
        return static_cast<int32_t>(std::find(set->strings, end, nullptr) - set->strings);
    }
    if (set->capacity > INT32_MAX - STEP) DFDLHeapAdapter_refuse(set->heap);
    set->strings = static_cast<DFDLUString**>(DFDLHeapAdapter_arrayReallocate(
        set->heap, set->strings, sizeof(DFDLUString*), static_cast<size_t>(set->capacity),
        static_cast<size_t>(set->capacity) + STEP));
    set->capacity += STEP;
    return set->count;
}

}  // namespace

DFDLUStringSet* new_DFDLUStringSet(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<DFDLUStringSet>(heap);
    this_->strings = DFDLHeapAdapter_newArray<DFDLUString*>(heap, STEP);
    this_->capacity = STEP;
    return this_;
}

void delete_DFDLUStringSet(DFDLUStringSet* this_) {
    if (this_ == nullptr) return;
    DFDLUStringSet_clear(this_);
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->strings);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

bool DFDLUStringSet_add(DFDLUStringSet* this_, const DFDLUString* string) {
    const int32_t count = this_->count;
    DFDLUStringSet_addAndIndex(this_, string);
    return this_->count > count;
}

int32_t DFDLUStringSet_addAndIndex(DFDLUStringSet* this_, const DFDLUString* string) {
    const int32_t known = DFDLUStringSet_indexOf(this_, string);
    if (known >= 0) return known;
    DFDLUString* copy = new_DFDLUStringFromDFDLUString(string, this_->heap);
    const int32_t index = freeSlot(this_);
    this_->strings[index] = copy;
    ++this_->count;
    return index;
}

int32_t DFDLUStringSet_indexOf(const DFDLUStringSet* this_, const DFDLUString* string) {
    for (int32_t index = 0; index < this_->capacity; ++index) {
        const DFDLUString* candidate = this_->strings[index];
        if (candidate != nullptr && DFDLUString_equals(candidate, string)) return index;
    }
    return -1;
}

bool DFDLUStringSet_contains(const DFDLUStringSet* this_, const DFDLUString* string) {
    return DFDLUStringSet_indexOf(this_, string) >= 0;
}

bool DFDLUStringSet_remove(DFDLUStringSet* this_, const DFDLUString* string) {
    const int32_t index = DFDLUStringSet_indexOf(this_, string);
    if (index < 0) return false;
    --this_->count;
    delete_DFDLUString(std::exchange(this_->strings[index], nullptr));
    return true;
}

DFDLUString* DFDLUStringSet_get(const DFDLUStringSet* this_, int32_t index) {
    return index < 0 || index >= this_->capacity ? nullptr : this_->strings[index];
}

void DFDLUStringSet_clear(DFDLUStringSet* this_) {
    for (int32_t index = 0; index < this_->capacity; ++index) {
        delete_DFDLUString(std::exchange(this_->strings[index], nullptr));
    }
    this_->count = 0;
}
