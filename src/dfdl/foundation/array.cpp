#include "dfdl/foundation/array.h"

#include "dfdl/foundation/guard.h"

Array* new_Array(DFDLHeapAdapter* heap, int32_t capacity, int32_t rowSize, ArrayRowCallback construct,
                 ArrayRowCallback destroy, ArrayRowCallback extra, void* contextWord) {
    return new_DerivedArray(heap, sizeof(Array), capacity, rowSize, construct, destroy, extra, contextWord);
}

Array* new_DerivedArray(DFDLHeapAdapter* heap, size_t objectSize, int32_t capacity, int32_t rowSize,
                        ArrayRowCallback construct, ArrayRowCallback destroy, ArrayRowCallback extra,
                        void* contextWord) {
    Owned<Array, delete_Array> this_(static_cast<Array*>(DFDLHeapAdapter_objectAllocate(heap, objectSize)));
    this_->rowSize = rowSize;
    this_->construct = construct;
    this_->destroy = destroy;
    this_->extra = extra;
    this_->contextWord = contextWord;
    Array_ensureSize_private(this_.get(), capacity);
    return this_.release();
}

void delete_Array(Array* this_) {
    if (this_ == nullptr) return;
    for (int32_t row = 0; this_->destroy != nullptr && row < this_->capacity; ++row) {
        this_->destroy(Array_at(this_, row), this_->heap, this_->contextWord);
    }
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->rows);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

// The capacity follows row by row: after a constructor that fails it covers just the rows that need their
// destructor.
void Array_ensureSize_private(Array* this_, int32_t newCapacity) {
    if (newCapacity <= this_->capacity) return;
    this_->rows = static_cast<uint8_t*>(DFDLHeapAdapter_arrayReallocate(
        this_->heap, this_->rows, static_cast<size_t>(this_->rowSize), static_cast<size_t>(this_->capacity),
        static_cast<size_t>(newCapacity)));
    while (this_->capacity < newCapacity) {
        if (this_->construct != nullptr) {
            this_->construct(Array_at(this_, this_->capacity), this_->heap, this_->contextWord);
        }
        ++this_->capacity;
    }
}

void Array_reset(Array* this_) { this_->count = 0; }

int32_t Array_indexOf(const Array* this_, const void* row) {
    const auto address = reinterpret_cast<uintptr_t>(row);
    const auto first = reinterpret_cast<uintptr_t>(this_->rows);
    const auto rowSize = static_cast<uintptr_t>(this_->rowSize);
    if (address < first || (address - first) % rowSize != 0) return -1;
    const uintptr_t index = (address - first) / rowSize;
    return index < static_cast<uintptr_t>(this_->count) ? static_cast<int32_t>(index) : -1;
}
