#ifndef DFDL_FOUNDATION_INTARRAYSTORE_H
#define DFDL_FOUNDATION_INTARRAYSTORE_H

#include "dfdl/foundation/arraylist.h"

// A list of numbers.
struct IntArrayStore {
    DFDLHeapAdapter* heap;
    ArrayList* values;  // of int64_t
};

// A capacity below 1 is taken as 10.
IntArrayStore* new_IntArrayStore(DFDLHeapAdapter* heap, int32_t capacity);
void delete_IntArrayStore(IntArrayStore* this_);  // null is ignored

inline int32_t IntArrayStore_size(const IntArrayStore* this_) { return ArrayList_size(this_->values); }
inline bool IntArrayStore_isEmpty(const IntArrayStore* this_) { return ArrayList_isEmpty(this_->values); }
inline void IntArrayStore_add(IntArrayStore* this_, int64_t value) { ArrayList_add(this_->values, &value); }
inline int64_t IntArrayStore_get(const IntArrayStore* this_, int32_t index) {
    return *static_cast<int64_t*>(ArrayList_get(this_->values, index));
}
// Beyond the end: extends the list, with zeros in between.
inline void IntArrayStore_set(IntArrayStore* this_, int32_t index, int64_t value) {
    ArrayList_set(this_->values, index, &value);
}
int32_t IntArrayStore_indexOf(const IntArrayStore* this_, int64_t value);  // -1 none
inline bool IntArrayStore_contains(const IntArrayStore* this_, int64_t value) {
    return IntArrayStore_indexOf(this_, value) >= 0;
}
bool IntArrayStore_remove(IntArrayStore* this_, int64_t value);  // its first occurrence; false if missing
inline void IntArrayStore_delete(IntArrayStore* this_, int32_t index) {  // closes the gap
    ArrayList_removeAt(this_->values, index);
}

#endif
