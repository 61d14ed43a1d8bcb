#ifndef DFDL_FOUNDATION_DFDLPOOLINGFACTORY_H
#define DFDL_FOUNDATION_DFDLPOOLINGFACTORY_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct ArrayList;
struct DFDLUString;
struct DFDLValue;

// What a pool has to know of its records. `destroy` deletes a record for good.
struct PoolTraits {
    int32_t listCapacity;  // of the list of free records, when it is made
    int32_t limit;         // free records kept
    void* (*create)(DFDLHeapAdapter* heap);
    void (*destroy)(void* record);
};

// Free records of one kind. The list is made at the first use.
struct ObjectPool {
    DFDLHeapAdapter* heap;
    const PoolTraits* traits;
    ArrayList* freeRecords;
};

void* ObjectPool_get(ObjectPool* this_);
void ObjectPool_release(ObjectPool* this_, void* record);
void ObjectPool_clear(ObjectPool* this_);  // destroys the free records

enum PoolId : int32_t {
    POOL_CONTEXT_ITEM,
    POOL_LONG_LONG_VALUE,
    POOL_ULONG_LONG_VALUE,
    POOL_STRING_VALUE,
    POOL_DOUBLE_VALUE,
    POOL_FLOAT_VALUE,
    POOL_CACHED_EVENT,
    POOL_BACKTRACKING_CHECKPOINT,
    POOL_USTRING,
    POOL_BUFFER_MARKER,
    POOL_BUFFER_MANAGER_CHECKPOINT,
    POOL_DOC_HANDLER_CHECKPOINT,
    POOL_ERROR_HANDLER_CHECKPOINT,
    POOL_PATH_EXPRESSION_CHECKPOINT,
    POOL_ITERATOR_CHECKPOINT,
    POOL_VARIABLE_MANAGER_CHECKPOINT,
    POOL_PATH_EXPRESSION_INFOSET,
    POOL_COUNT
};

// The recycled records of one engine. It belongs to the engine's main heap adapter, whose message adapter
// shares it. Layers above the foundation bring the traits of their own records.
struct DFDLPoolingFactory {
    DFDLHeapAdapter* heap;
    int32_t originatingComponent;  // 0 parser, 1 serializer
    ObjectPool pools[POOL_COUNT];
    uint32_t destructing;  // pooled strings are deleted, not kept: the engine is going away
};

DFDLPoolingFactory* new_DFDLPoolingFactory(DFDLHeapAdapter* heap);
void delete_DFDLPoolingFactory(DFDLPoolingFactory* this_);
void DFDLPoolingFactory_setOriginatingComponent(DFDLPoolingFactory* this_, int32_t component);
void DFDLPoolingFactory_setDestructing(DFDLPoolingFactory* this_);
// Drops what free records still hold of the message that has ended.
void DFDLPoolingFactory_reset(DFDLPoolingFactory* this_);

// The pool with this id. The traits are the same at every call for one id.
inline ObjectPool* DFDLPoolingFactory_pool(DFDLPoolingFactory* this_, PoolId id, const PoolTraits* traits) {
    ObjectPool* pool = &this_->pools[id];
    pool->traits = traits;
    return pool;
}

// Pooled values: kind, pooled mark and payload are set, nil is cleared.
DFDLValue* DFDLPoolingFactory_getStringDFDLValue(DFDLPoolingFactory* this_, DFDLUString* adopted);
DFDLValue* DFDLPoolingFactory_getFloatDFDLValue(DFDLPoolingFactory* this_, float value);
DFDLValue* DFDLPoolingFactory_getDoubleDFDLValue(DFDLPoolingFactory* this_, double value);
DFDLValue* DFDLPoolingFactory_getLongLongDFDLValue(DFDLPoolingFactory* this_, int64_t value);
DFDLValue* DFDLPoolingFactory_getLongDFDLValue(DFDLPoolingFactory* this_, int64_t value);
DFDLValue* DFDLPoolingFactory_getIntDFDLValue(DFDLPoolingFactory* this_, int64_t value);
DFDLValue* DFDLPoolingFactory_getShortDFDLValue(DFDLPoolingFactory* this_, int64_t value);
DFDLValue* DFDLPoolingFactory_getByteDFDLValue(DFDLPoolingFactory* this_, int64_t value);
DFDLValue* DFDLPoolingFactory_getNonNegativeIntDFDLValue(DFDLPoolingFactory* this_, uint64_t value);
DFDLValue* DFDLPoolingFactory_getUnsignedLongDFDLValue(DFDLPoolingFactory* this_, uint64_t value);
DFDLValue* DFDLPoolingFactory_getUnsignedIntDFDLValue(DFDLPoolingFactory* this_, uint64_t value);
DFDLValue* DFDLPoolingFactory_getUnsignedShortDFDLValue(DFDLPoolingFactory* this_, uint64_t value);
DFDLValue* DFDLPoolingFactory_getUnsignedByteDFDLValue(DFDLPoolingFactory* this_, uint64_t value);
// To its pool, or deleted where it came from none. Null is ignored.
void DFDLPoolingFactory_releaseDFDLValue(DFDLPoolingFactory* this_, DFDLValue* value);

// Any string, pooled or not; null is ignored.
void DFDLPoolingFactory_releaseDFDLUString(DFDLPoolingFactory* this_, DFDLUString* string);

#endif
