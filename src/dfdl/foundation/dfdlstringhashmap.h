#ifndef DFDL_FOUNDATION_DFDLSTRINGHASHMAP_H
#define DFDL_FOUNDATION_DFDLSTRINGHASHMAP_H

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/hashchain.h"

struct DFDLStringHashMapEntry {
    DFDLUString* key;
    void* value;
    DFDLStringHashMapEntry* next;
    DFDLStringHashMapEntry* previous;
    uint32_t ownsKey;
    uint32_t hash;  // of the key, whole
};

// From texts to values. The values belong to the map if there is a function that deletes them. The last
// bucket is never used, so there are at least two of them; their number doubles when there are as many
// entries.
struct DFDLStringHashMap {
    DFDLHeapAdapter* heap;
    HashChains<DFDLStringHashMapEntry> chains;
    HashMapValueDelete deleteValue;  // may be null
};

// Fewer than two buckets are taken as two.
DFDLStringHashMap* new_DFDLStringHashMap(DFDLHeapAdapter* heap, int32_t bucketCount,
                                         HashMapValueDelete deleteValue = nullptr);
void delete_DFDLStringHashMap(DFDLStringHashMap* this_);  // null is ignored

// With an equal key, replaces the value. `adoptKey`: the entry refers to the key, which outlives the map and
// stays the caller's; otherwise it gets a copy.
DFDLStringHashMapEntry* DFDLStringHashMap_put(DFDLStringHashMap* this_, DFDLUString* key, void* value,
                                              bool adoptKey);
DFDLStringHashMapEntry* DFDLStringHashMap_find(const DFDLStringHashMap* this_, const DFDLUString* key);
void* DFDLStringHashMap_get(const DFDLStringHashMap* this_, const DFDLUString* key);  // null if missing
bool DFDLStringHashMap_containsKey(const DFDLStringHashMap* this_, const DFDLUString* key);
bool DFDLStringHashMap_remove(DFDLStringHashMap* this_, const DFDLUString* key);  // false if missing
void DFDLStringHashMap_removeDirect(DFDLStringHashMap* this_, DFDLStringHashMapEntry* entry);
void DFDLStringHashMap_resize(DFDLStringHashMap* this_, int32_t bucketCount);
// Drops the values and keeps entries and keys, for a next document of the same shape.
void DFDLStringHashMap_reset(DFDLStringHashMap* this_);
void DFDLStringHashMap_clear(DFDLStringHashMap* this_);  // no entries
uint32_t DFDLStringHashMap_hash(std::u16string_view key);

inline int32_t DFDLStringHashMap_size(const DFDLStringHashMap* this_) { return this_->chains.count; }

#endif
