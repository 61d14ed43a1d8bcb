#include "dfdl/foundation/dfdlpoolingfactory.h"

#include <utility>

#include "dfdl/foundation/dfdlustring.h"

namespace {

constexpr int32_t VALUE_LIMIT = 5000;

template <DFDLType Kind>
void* createValue(DFDLHeapAdapter* heap) {
    DFDLValue* value = DFDLValue_createValue(heap);
    value->schemaType = Kind;
    return value;
}

void destroyValue(void* record) { delete_DFDLValue(static_cast<DFDLValue*>(record)); }

void dropString(void* record) {
    auto* value = static_cast<DFDLValue*>(record);
    delete_DFDLUString(std::exchange(value->u.string, nullptr));
}

constexpr PoolTraits SIGNED_TRAITS = {20, VALUE_LIMIT, createValue<TYPE_INTEGER>, destroyValue};
constexpr PoolTraits UNSIGNED_TRAITS = {20, VALUE_LIMIT, createValue<TYPE_NON_NEGATIVE_INTEGER>,
                                        destroyValue};
constexpr PoolTraits STRING_TRAITS = {20, VALUE_LIMIT, createValue<TYPE_STRING>, destroyValue, dropString};
constexpr PoolTraits DOUBLE_TRAITS = {10, VALUE_LIMIT, createValue<TYPE_DOUBLE>, destroyValue};
constexpr PoolTraits FLOAT_TRAITS = {10, VALUE_LIMIT, createValue<TYPE_FLOAT>, destroyValue};

}  // namespace

DFDLPoolingFactory* new_DFDLPoolingFactory(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<DFDLPoolingFactory>(heap);
    for (ObjectPool& pool : this_->pools) pool.heap = heap;
    DFDLPoolingFactory_pool(this_, POOL_LONG_LONG_VALUE, &SIGNED_TRAITS);
    DFDLPoolingFactory_pool(this_, POOL_ULONG_LONG_VALUE, &UNSIGNED_TRAITS);
    DFDLPoolingFactory_pool(this_, POOL_STRING_VALUE, &STRING_TRAITS);
    DFDLPoolingFactory_pool(this_, POOL_DOUBLE_VALUE, &DOUBLE_TRAITS);
    DFDLPoolingFactory_pool(this_, POOL_FLOAT_VALUE, &FLOAT_TRAITS);
    return this_;
}

// A record that is destroyed may give others back, to pools that are closed by then or still to be closed.
void delete_DFDLPoolingFactory(DFDLPoolingFactory* this_) {
    if (this_ == nullptr) return;
    DFDLPoolingFactory_setDestructing(this_);
    for (ObjectPool& pool : this_->pools) ObjectPool_close(&pool);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void DFDLPoolingFactory_setOriginatingComponent(DFDLPoolingFactory* this_, int32_t component) {
    this_->originatingComponent = component;
}

void DFDLPoolingFactory_setDestructing(DFDLPoolingFactory* this_) { this_->destructing = 1; }

void DFDLPoolingFactory_reset(DFDLPoolingFactory* this_) {
    for (ObjectPool& pool : this_->pools) ObjectPool_reset(&pool);
    ObjectPool_clear(&this_->pools[POOL_BUFFER_MARKER]);
}

void DFDLPoolingFactory_releaseDFDLUString(DFDLPoolingFactory* this_, DFDLUString* string) {
    if (string == nullptr) return;
    if (this_->destructing != 0) string->pooled = 0;
    if (string->pooled == 0) return delete_DFDLUString(string);
    DFDLUStringPooler_releaseDFDLUString(string);
}
