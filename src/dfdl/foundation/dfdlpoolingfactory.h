#ifndef DFDL_FOUNDATION_DFDLPOOLINGFACTORY_H
#define DFDL_FOUNDATION_DFDLPOOLINGFACTORY_H

#include <cstdint>

#include "dfdl/foundation/objectpool.h"
#include "dfdl/foundation/xsvalue.h"

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
    // Bare records of objects that are deleted, not given back to a pool.
    POOL_VALUE_RECORD,
    POOL_DECIMAL_RECORD,
    POOL_CALENDAR_RECORD,
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

// Pooled values: kind, pooled mark and payload are set, nil is cleared. The signed kinds share one pool, the
// unsigned ones another.
inline DFDLValue* DFDLPoolingFactory_getValue(DFDLPoolingFactory* this_, PoolId id, DFDLType kind) {
    auto* value = static_cast<DFDLValue*>(ObjectPool_get(&this_->pools[id]));
    value->heap = this_->heap;
    value->schemaType = kind;
    value->nil = 0;
    value->pooled = 1;
    return value;
}
inline DFDLValue* DFDLPoolingFactory_getSignedValue(DFDLPoolingFactory* this_, DFDLType kind,
                                                    int64_t payload) {
    DFDLValue* value = DFDLPoolingFactory_getValue(this_, POOL_LONG_LONG_VALUE, kind);
    value->u.signedQ = payload;
    return value;
}
inline DFDLValue* DFDLPoolingFactory_getUnsignedValue(DFDLPoolingFactory* this_, DFDLType kind,
                                                      uint64_t payload) {
    DFDLValue* value = DFDLPoolingFactory_getValue(this_, POOL_ULONG_LONG_VALUE, kind);
    value->u.unsignedQ = payload;
    return value;
}

inline DFDLValue* DFDLPoolingFactory_getStringDFDLValue(DFDLPoolingFactory* this_, DFDLUString* adopted) {
    DFDLValue* value = DFDLPoolingFactory_getValue(this_, POOL_STRING_VALUE, TYPE_STRING);
    value->u.string = adopted;
    return value;
}
inline DFDLValue* DFDLPoolingFactory_getFloatDFDLValue(DFDLPoolingFactory* this_, float payload) {
    DFDLValue* value = DFDLPoolingFactory_getValue(this_, POOL_FLOAT_VALUE, TYPE_FLOAT);
    value->u.floatValue = payload;
    return value;
}
inline DFDLValue* DFDLPoolingFactory_getDoubleDFDLValue(DFDLPoolingFactory* this_, double payload) {
    DFDLValue* value = DFDLPoolingFactory_getValue(this_, POOL_DOUBLE_VALUE, TYPE_DOUBLE);
    value->u.doubleValue = payload;
    return value;
}
inline DFDLValue* DFDLPoolingFactory_getLongLongDFDLValue(DFDLPoolingFactory* this_, int64_t payload) {
    return DFDLPoolingFactory_getSignedValue(this_, TYPE_INTEGER, payload);
}
inline DFDLValue* DFDLPoolingFactory_getLongDFDLValue(DFDLPoolingFactory* this_, int64_t payload) {
    return DFDLPoolingFactory_getSignedValue(this_, TYPE_LONG, payload);
}
inline DFDLValue* DFDLPoolingFactory_getIntDFDLValue(DFDLPoolingFactory* this_, int64_t payload) {
    return DFDLPoolingFactory_getSignedValue(this_, TYPE_INT, payload);
}
inline DFDLValue* DFDLPoolingFactory_getShortDFDLValue(DFDLPoolingFactory* this_, int64_t payload) {
    return DFDLPoolingFactory_getSignedValue(this_, TYPE_SHORT, payload);
}
inline DFDLValue* DFDLPoolingFactory_getByteDFDLValue(DFDLPoolingFactory* this_, int64_t payload) {
    return DFDLPoolingFactory_getSignedValue(this_, TYPE_BYTE, payload);
}
inline DFDLValue* DFDLPoolingFactory_getNonNegativeIntDFDLValue(DFDLPoolingFactory* this_, uint64_t payload) {
    return DFDLPoolingFactory_getUnsignedValue(this_, TYPE_NON_NEGATIVE_INTEGER, payload);
}
inline DFDLValue* DFDLPoolingFactory_getUnsignedLongDFDLValue(DFDLPoolingFactory* this_, uint64_t payload) {
    return DFDLPoolingFactory_getUnsignedValue(this_, TYPE_UNSIGNED_LONG, payload);
}
inline DFDLValue* DFDLPoolingFactory_getUnsignedIntDFDLValue(DFDLPoolingFactory* this_, uint64_t payload) {
    return DFDLPoolingFactory_getUnsignedValue(this_, TYPE_UNSIGNED_INT, payload);
}
inline DFDLValue* DFDLPoolingFactory_getUnsignedShortDFDLValue(DFDLPoolingFactory* this_, uint64_t payload) {
    return DFDLPoolingFactory_getUnsignedValue(this_, TYPE_UNSIGNED_SHORT, payload);
}
inline DFDLValue* DFDLPoolingFactory_getUnsignedByteDFDLValue(DFDLPoolingFactory* this_, uint64_t payload) {
    return DFDLPoolingFactory_getUnsignedValue(this_, TYPE_UNSIGNED_BYTE, payload);
}

// The pool of a kind; POOL_COUNT for those that have none.
constexpr PoolId DFDLPoolingFactory_poolOfKind(uint32_t kind) {
    if (kind >= TYPE_UNSIGNED_LONG && kind <= TYPE_NON_NEGATIVE_INTEGER) return POOL_ULONG_LONG_VALUE;
    if (kind >= TYPE_INTEGER && kind <= TYPE_BYTE) return POOL_LONG_LONG_VALUE;
    if (kind == TYPE_STRING) return POOL_STRING_VALUE;
    if (kind == TYPE_DOUBLE) return POOL_DOUBLE_VALUE;
    return kind == TYPE_FLOAT ? POOL_FLOAT_VALUE : POOL_COUNT;
}

// Any string, pooled or not; null is ignored.
void DFDLPoolingFactory_releaseDFDLUString(DFDLPoolingFactory* this_, DFDLUString* string);

// To its pool, or deleted where it came from none. Null is ignored.
inline void DFDLPoolingFactory_releaseDFDLValue(DFDLPoolingFactory* this_, DFDLValue* value) {
    if (value == nullptr || value->pooled == 0) return delete_DFDLValue(value);
    const PoolId id = DFDLPoolingFactory_poolOfKind(value->schemaType);
    if (id == POOL_COUNT) return delete_DFDLValue(value);
    if (id == POOL_STRING_VALUE) {
        DFDLPoolingFactory_releaseDFDLUString(this_, value->u.string);
        value->u.string = nullptr;
    }
    ObjectPool_release(&this_->pools[id], value);
}

#endif
