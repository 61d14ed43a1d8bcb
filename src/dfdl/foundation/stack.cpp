#include "dfdl/foundation/stack.h"

#include <algorithm>

Stack* new_Stack(DFDLHeapAdapter* heap, int32_t capacity, int32_t rowSize, ArrayRowCallback construct,
                 ArrayRowCallback destroy, ArrayRowCallback extra, void* contextWord) {
    Array* array =
        new_DerivedArray(heap, sizeof(Stack), capacity, rowSize, construct, destroy, extra, contextWord);
    auto* this_ = reinterpret_cast<Stack*>(array);
    this_->top = -1;
    return this_;
}

void delete_Stack(Stack* this_) {
    if (this_ != nullptr) delete_Array(&this_->array);
}

void* Stack_push(Stack* this_) {
    Array* array = &this_->array;
    if (array->count == array->capacity) {
        if (array->capacity > INT32_MAX / 2) DFDLHeapAdapter_refuse(array->heap);
        Array_ensureSize_private(array, std::max(2 * array->capacity, 1));
    }
    this_->top = array->count++;
    return Stack_peek(this_);
}

void Stack_pop(Stack* this_) {
    if (Stack_isEmpty(this_)) return;
    --this_->top;
    --this_->array.count;
}

void Stack_reset(Stack* this_) {
    Array_reset(&this_->array);
    this_->top = -1;
}
