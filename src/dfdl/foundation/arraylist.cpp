#include "dfdl/foundation/arraylist.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int32_t STEP = 10;
// From here on by half of the size, so that a long list is not copied again for every tenth element.
constexpr int32_t LONG_LIST = 1000;

size_t bytesOf(const ArrayList* list, int32_t elements) {
    return static_cast<size_t>(elements) * static_cast<size_t>(list->elementSize);
}

void store(ArrayList* list, int32_t index, const void* element) {
    std::memcpy(ArrayList_get(list, index), element, static_cast<size_t>(list->elementSize));
}

}  // namespace

ArrayList* new_ArrayList(DFDLHeapAdapter* heap, int32_t capacity, int32_t elementSize) {
    auto* this_ = DFDLHeapAdapter_new<ArrayList>(heap);
    this_->elementSize = elementSize;
    ArrayList_ensureCapacity(this_, capacity < 1 ? STEP : capacity);
    return this_;
}

void delete_ArrayList(ArrayList* this_) {
    if (this_ == nullptr) return;
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->storage);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void ArrayList_add(ArrayList* this_, const void* element) {
    ArrayList_makeRoomAfter(this_, this_->count);
    store(this_, this_->count, element);
    ++this_->count;
}

void ArrayList_set(ArrayList* this_, int32_t index, const void* element) {
    if (index >= this_->count) {
        ArrayList_makeRoomAfter(this_, index);
        std::memset(ArrayList_get(this_, this_->count), 0, bytesOf(this_, index - this_->count));
        this_->count = index + 1;
    }
    store(this_, index, element);
}

void ArrayList_removeAt(ArrayList* this_, int32_t index) {
    --this_->count;
    std::memmove(ArrayList_get(this_, index), ArrayList_get(this_, index + 1),
                 bytesOf(this_, this_->count - index));
}

void ArrayList_removeFirst(ArrayList* this_, int32_t count) {
    if (count == 0) return;
    this_->count -= count;
    std::memmove(this_->storage, ArrayList_get(this_, count), bytesOf(this_, this_->count));
}

void ArrayList_makeRoomAfter(ArrayList* this_, int32_t count) {
    if (count < this_->capacity) return;
    if (count == INT32_MAX) DFDLHeapAdapter_refuse(this_->heap);
    const int64_t grown = static_cast<int64_t>(count) + (count < LONG_LIST ? STEP : count / 2);
    ArrayList_ensureCapacity(this_, static_cast<int32_t>(std::min<int64_t>(grown, INT32_MAX)));
}

void ArrayList_ensureCapacity(ArrayList* this_, int32_t capacity) {
    if (capacity <= this_->capacity) return;
    this_->storage = static_cast<uint8_t*>(
        DFDLHeapAdapter_arrayReallocate(this_->heap, this_->storage, static_cast<size_t>(this_->elementSize),
                                        static_cast<size_t>(this_->capacity), static_cast<size_t>(capacity)));
    this_->capacity = capacity;
}

int32_t ArrayList_indexOfPointer(const ArrayList* this_, const void* pointer) {
    for (int32_t index = 0; index < this_->count; ++index) {
        if (ArrayList_getPointer<void>(this_, index) == pointer) return index;
    }
    return -1;
}
