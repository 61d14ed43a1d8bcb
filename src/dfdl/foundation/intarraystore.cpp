#include "dfdl/foundation/intarraystore.h"

IntArrayStore* new_IntArrayStore(DFDLHeapAdapter* heap, int32_t capacity) {
    auto* this_ = DFDLHeapAdapter_new<IntArrayStore>(heap);
    this_->values = new_ArrayList(heap, capacity, static_cast<int32_t>(sizeof(int64_t)));
    return this_;
}

void delete_IntArrayStore(IntArrayStore* this_) {
    if (this_ == nullptr) return;
    delete_ArrayList(this_->values);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

int32_t IntArrayStore_indexOf(const IntArrayStore* this_, int64_t value) {
    for (int32_t index = 0; index < IntArrayStore_size(this_); ++index) {
        if (IntArrayStore_get(this_, index) == value) return index;
    }
    return -1;
}

bool IntArrayStore_remove(IntArrayStore* this_, int64_t value) {
    const int32_t index = IntArrayStore_indexOf(this_, value);
    if (index >= 0) IntArrayStore_delete(this_, index);
    return index >= 0;
}
