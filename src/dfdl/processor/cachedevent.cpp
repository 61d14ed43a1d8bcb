#include "dfdl/processor/cachedevent.h"

#include <utility>

#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/processingerror.h"

namespace {

constexpr PoolTraits TRAITS = PoolTraits_ofRecord<CachedEvent>(20, 10000);

}  // namespace

CachedEvent* CachedEventPooler_get(DFDLPoolingFactory* factory) {
    return static_cast<CachedEvent*>(
        ObjectPool_get(DFDLPoolingFactory_pool(factory, POOL_CACHED_EVENT, &TRAITS)));
}

void CachedEventPooler_release(DFDLPoolingFactory* factory, CachedEvent* event) {
    CachedEvent_clear(event, factory);
    ObjectPool_release(DFDLPoolingFactory_pool(factory, POOL_CACHED_EVENT, &TRAITS), event);
}

void CachedEvent_giveBack(CachedEvent* this_, DFDLPoolingFactory* factory) {
    DFDLPoolingFactory_releaseDFDLValue(factory, std::exchange(this_->value, nullptr));
    delete_ProcessingError(std::exchange(this_->error, nullptr));
}
