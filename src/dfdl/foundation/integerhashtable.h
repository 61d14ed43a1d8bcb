#ifndef DFDL_FOUNDATION_INTEGERHASHTABLE_H
#define DFDL_FOUNDATION_INTEGERHASHTABLE_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct IntegerHashtableEntry {
    int32_t key;
    int32_t value;
};

struct IntegerHashtableBucket {
    IntegerHashtableEntry* entries;  // null until the first
    int32_t count;
    int32_t capacity;
};

// From numbers to numbers. The buckets, a power of two, double when entries exceed three quarters of the
// mask.
struct IntegerHashtable {
    DFDLHeapAdapter* heap;
    IntegerHashtableBucket* buckets;
    int32_t mask;  // number of buckets less one
    int32_t count;
};

IntegerHashtable* new_IntegerHashtable(DFDLHeapAdapter* heap);
void delete_IntegerHashtable(IntegerHashtable* this_);  // null is ignored
void IntegerHashtable_put(IntegerHashtable* this_, int32_t key, int32_t value);
int32_t IntegerHashtable_get(const IntegerHashtable* this_, int32_t key);  // -1 if missing
bool IntegerHashtable_containsKey(const IntegerHashtable* this_, int32_t key);
// A key that has this value; -1 if none has.
int32_t IntegerHashtable_getKey(const IntegerHashtable* this_, int32_t value);
// Writes IntegerHashtable_size keys, in no order.
void IntegerHashtable_getKeys(const IntegerHashtable* this_, int32_t* keys);
void IntegerHashtable_clear(IntegerHashtable* this_);

inline int32_t IntegerHashtable_size(const IntegerHashtable* this_) { return this_->count; }

#endif
