#ifndef DFDL_FOUNDATION_ARRAY_H
#define DFDL_FOUNDATION_ARRAY_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct Array;
using ArrayRowCallback = void (*)(void* row, DFDLHeapAdapter* heap, void* contextWord);

// Rows by value. All rows of the capacity are constructed when it is reached, used or not, and all are
// destroyed with the array. Rows move when the array grows.
struct Array {
    DFDLHeapAdapter* heap;
    uint8_t* rows;
    int32_t capacity;
    int32_t rowSize;  // bytes
    int32_t count;
    ArrayRowCallback construct;  // may be null
    ArrayRowCallback destroy;    // may be null
    ArrayRowCallback extra;      // may be null
    void* contextWord;
};

Array* new_Array(DFDLHeapAdapter* heap, int32_t capacity, int32_t rowSize, ArrayRowCallback construct,
                 ArrayRowCallback destroy, ArrayRowCallback extra, void* contextWord = nullptr);
// The head of an object of `objectSize` bytes that starts with an Array; the bytes behind it are zero.
Array* new_DerivedArray(DFDLHeapAdapter* heap, size_t objectSize, int32_t capacity, int32_t rowSize,
                        ArrayRowCallback construct, ArrayRowCallback destroy, ArrayRowCallback extra,
                        void* contextWord = nullptr);
void delete_Array(Array* this_);  // null is ignored
void Array_ensureSize_private(Array* this_, int32_t newCapacity);
void Array_reset(Array* this_);                              // count 0
int32_t Array_indexOf(const Array* this_, const void* row);  // -1 if the address is no row of it

inline void* Array_at(const Array* this_, int32_t index) {
    return this_->rows + static_cast<size_t>(index) * static_cast<size_t>(this_->rowSize);
}
template <class T>
T* Array_row(const Array* this_, int32_t index) {  // null outside the rows in use
    return index < 0 || index >= this_->count ? nullptr : static_cast<T*>(Array_at(this_, index));
}

#endif
