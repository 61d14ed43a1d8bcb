#ifndef DFDL_FOUNDATION_HASHTABLE_H
#define DFDL_FOUNDATION_HASHTABLE_H

#include "dfdl/foundation/hashchain.h"

struct HashtableEntry {
    const void* key;
    void* value;
    HashtableEntry* next;
};

using HashtableHash = uint32_t (*)(const void* key);
using HashtableEquals = bool (*)(const void* a, const void* b);

// From keys of any kind, which stay their owner's, to values, which belong to the table if there is a
// function that deletes them. The number of buckets stays.
struct Hashtable {
    DFDLHeapAdapter* heap;
    HashChains<HashtableEntry> chains;
    HashtableHash hash;
    HashtableEquals equals;
    HashMapValueDelete deleteValue;  // may be null
};

// None is taken as one bucket.
Hashtable* new_Hashtable(DFDLHeapAdapter* heap, int32_t bucketCount, HashtableHash hash,
                         HashtableEquals equals, HashMapValueDelete deleteValue = nullptr);
void delete_Hashtable(Hashtable* this_);  // null is ignored
void Hashtable_put(Hashtable* this_, const void* key, void* value);
void* Hashtable_get(const Hashtable* this_, const void* key);  // null if missing
bool Hashtable_containsKey(const Hashtable* this_, const void* key);
void Hashtable_clear(Hashtable* this_);

inline int32_t Hashtable_size(const Hashtable* this_) { return this_->chains.count; }

#endif
