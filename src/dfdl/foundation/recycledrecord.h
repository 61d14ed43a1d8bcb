#ifndef DFDL_FOUNDATION_RECYCLEDRECORD_H
#define DFDL_FOUNDATION_RECYCLEDRECORD_H

#include <cstring>

#include "dfdl/foundation/dfdlpoolingfactory.h"

// Memory for objects that are made and deleted for nearly every value, so that a steady parse does not ask
// the caller's heap for them. Whoever has such an object cannot tell: it is zeroed when it is taken, belongs
// to its heap and ends with its `delete_X`. T has its `heap` as first field.

inline constexpr int32_t MOST_RECYCLED_RECORDS = 5000;

// Null for a heap that has no records of its own: one under construction, or one that lives for one message.
template <class T>
ObjectPool* RecycledRecord_poolOf(DFDLHeapAdapter* heap, PoolId id) {
    static constexpr PoolTraits TRAITS = PoolTraits_ofRecord<T>(20, MOST_RECYCLED_RECORDS);
    DFDLPoolingFactory* factory = heap->poolingFactory;
    const bool own = factory != nullptr && factory->heap == heap;
    return own ? DFDLPoolingFactory_pool(factory, id, &TRAITS) : nullptr;
}

template <class T>
T* RecycledRecord_take(DFDLHeapAdapter* heap, PoolId id) {
    ObjectPool* pool = RecycledRecord_poolOf<T>(heap, id);
    if (pool == nullptr) return DFDLHeapAdapter_new<T>(heap);
    auto* record = static_cast<T*>(ObjectPool_get(pool));
    std::memset(record, 0, sizeof(T));
    record->heap = heap;
    return record;
}

template <class T>
void RecycledRecord_giveBack(T* record, PoolId id) {
    ObjectPool* pool = RecycledRecord_poolOf<T>(record->heap, id);
    if (pool == nullptr) return DFDLHeapAdapter_objectDeallocate(record->heap, record);
    ObjectPool_release(pool, record);
}

#endif
