#ifndef DFDL_FOUNDATION_STACK_H
#define DFDL_FOUNDATION_STACK_H

#include "dfdl/foundation/array.h"

// Rows by value, last in, first out. A row that is pushed is the one that was there before, constructed with
// the stack and kept when it was popped: the pusher fills it. Rows move when the stack grows.
struct Stack {
    Array array;
    int32_t top;  // index of the top row; -1 empty
};

Stack* new_Stack(DFDLHeapAdapter* heap, int32_t capacity, int32_t rowSize, ArrayRowCallback construct,
                 ArrayRowCallback destroy, ArrayRowCallback extra, void* contextWord = nullptr);
void delete_Stack(Stack* this_);  // null is ignored
void* Stack_push(Stack* this_);   // the new top row; doubles the capacity when it is used up
void Stack_pop(Stack* this_);     // of an empty stack: nothing
void Stack_reset(Stack* this_);   // empty

inline bool Stack_isEmpty(const Stack* this_) { return this_->top < 0; }
inline void* Stack_peek(const Stack* this_) {  // null if empty
    return this_->top < 0 ? nullptr : Array_at(&this_->array, this_->top);
}

#endif
