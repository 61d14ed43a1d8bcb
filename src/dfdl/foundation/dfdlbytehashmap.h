#ifndef DFDL_FOUNDATION_DFDLBYTEHASHMAP_H
#define DFDL_FOUNDATION_DFDLBYTEHASHMAP_H

#include "dfdl/foundation/hashchain.h"

struct DFDLByteHashMapEntry {
    uint8_t key;
    void* value;
    DFDLByteHashMapEntry* next;
};

// From bytes to values, which stay their owner's. The number of buckets stays.
struct DFDLByteHashMap {
    DFDLHeapAdapter* heap;
    HashChains<DFDLByteHashMapEntry> chains;
};

inline constexpr int32_t BYTE_HASH_MAP_KEYS = 256;

DFDLByteHashMap* new_DFDLByteHashMap(DFDLHeapAdapter* heap, int32_t bucketCount);  // none is taken as one
void delete_DFDLByteHashMap(DFDLByteHashMap* this_);                               // null is ignored
void DFDLByteHashMap_put(DFDLByteHashMap* this_, uint8_t key, void* value);
void* DFDLByteHashMap_get(const DFDLByteHashMap* this_, uint8_t key);  // null if missing
bool DFDLByteHashMap_containsKey(const DFDLByteHashMap* this_, uint8_t key);
// The keys, in no order; returns how many there are.
int32_t DFDLByteHashMap_getKeys(const DFDLByteHashMap* this_, uint8_t (&keys)[BYTE_HASH_MAP_KEYS]);
void DFDLByteHashMap_clear(DFDLByteHashMap* this_);

inline int32_t DFDLByteHashMap_size(const DFDLByteHashMap* this_) { return this_->chains.count; }

#endif
