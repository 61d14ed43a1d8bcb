#ifndef DFDL_FOUNDATION_INTEGERHASHMAP_H
#define DFDL_FOUNDATION_INTEGERHASHMAP_H

#include "dfdl/foundation/hashchain.h"

struct IntegerHashMapEntry {
    int32_t key;
    void* value;
    IntegerHashMapEntry* next;
    IntegerHashMapEntry* previous;
};

// From numbers to values. The values belong to the map if there is a function that deletes them. The number
// of buckets, at least two, stays: the last one is never used.
struct IntegerHashMap {
    DFDLHeapAdapter* heap;
    HashChains<IntegerHashMapEntry> chains;
    HashMapValueDelete deleteValue;  // may be null
};

// Fewer than two buckets are taken as two.
IntegerHashMap* new_IntegerHashMap(DFDLHeapAdapter* heap, int32_t bucketCount,
                                   HashMapValueDelete deleteValue = nullptr);
void delete_IntegerHashMap(IntegerHashMap* this_);  // null is ignored

IntegerHashMapEntry* IntegerHashMap_put(IntegerHashMap* this_, int32_t key, void* value);
IntegerHashMapEntry* IntegerHashMap_find(const IntegerHashMap* this_, int32_t key);
void* IntegerHashMap_get(const IntegerHashMap* this_, int32_t key);  // null if missing
bool IntegerHashMap_containsKey(const IntegerHashMap* this_, int32_t key);
bool IntegerHashMap_remove(IntegerHashMap* this_, int32_t key);  // false if missing
void IntegerHashMap_removeDirect(IntegerHashMap* this_, IntegerHashMapEntry* entry);
void IntegerHashMap_reset(IntegerHashMap* this_);  // drops the values and keeps the entries
void IntegerHashMap_clear(IntegerHashMap* this_);  // no entries

inline int32_t IntegerHashMap_size(const IntegerHashMap* this_) { return this_->chains.count; }

#endif
