#ifndef DFDL_FOUNDATION_OBJECTPOOL_H
#define DFDL_FOUNDATION_OBJECTPOOL_H

#include <cstdint>

#include "dfdl/foundation/arraylist.h"

// What a pool has to know of its records. `destroy` deletes a record for good.
struct PoolTraits {
    int32_t listCapacity;  // of the list of free records, when it is made
    int32_t limit;         // free records kept
    void* (*create)(DFDLHeapAdapter* heap);
    void (*destroy)(void* record);
    void (*reset)(void* record) = nullptr;  // what ends with a message; runs on free records, may be null
};

// Traits of a record that holds nothing but itself, T with its `heap` as first field.
template <class T>
constexpr PoolTraits PoolTraits_ofRecord(int32_t listCapacity, int32_t limit) {
    return {listCapacity, limit, [](DFDLHeapAdapter* heap) -> void* { return DFDLHeapAdapter_new<T>(heap); },
            [](void* record) { DFDLHeapAdapter_objectDeallocate(static_cast<T*>(record)->heap, record); }};
}

// Free records of one kind. The list is made at the first use.
//
// The list always has room for every record that the pool has made, up to its limit. So giving a record back
// never allocates and never fails, and may be done while an allocation failure is on its way.
struct ObjectPool {
    DFDLHeapAdapter* heap;
    const PoolTraits* traits;
    ArrayList* freeRecords;
    int32_t made;  // records that came from `create` and have not been destroyed here
};

void* ObjectPool_create(ObjectPool* this_);
void ObjectPool_destroy(ObjectPool* this_, void* record);
void ObjectPool_clear(ObjectPool* this_);  // destroys the free records
void ObjectPool_close(ObjectPool* this_);  // the list too; what comes back from now on is destroyed
void ObjectPool_reset(ObjectPool* this_);  // runs the traits' `reset`

inline void* ObjectPool_get(ObjectPool* this_) {
    ArrayList* list = this_->freeRecords;
    if (list == nullptr || list->count == 0) return ObjectPool_create(this_);
    return ArrayList_popPointer<void>(list);
}

inline void ObjectPool_release(ObjectPool* this_, void* record) {
    ArrayList* list = this_->freeRecords;
    if (list == nullptr || list->count >= this_->traits->limit || list->count >= list->capacity) {
        return ObjectPool_destroy(this_, record);
    }
    ArrayList_addPointer(list, record);
}

#endif
