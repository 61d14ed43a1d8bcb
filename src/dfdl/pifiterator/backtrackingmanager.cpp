#include "dfdl/pifiterator/backtrackingmanager.h"

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/dochandlereventbuffer.h"
#include "dfdl/processor/errorhandlereventbuffer.h"

namespace {

void* createCheckPoint(DFDLHeapAdapter* heap) { return DFDLHeapAdapter_new<BacktrackingCheckPoint>(heap); }

void destroyCheckPoint(void* record) {
    auto* checkPoint = static_cast<BacktrackingCheckPoint*>(record);
    DFDLHeapAdapter_objectDeallocate(checkPoint->heap, checkPoint);
}

constexpr PoolTraits CHECKPOINT_TRAITS = {10, 100, createCheckPoint, destroyCheckPoint, nullptr};

ObjectPool* pool(BacktrackingManager* manager) {
    return DFDLPoolingFactory_pool(manager->heap->poolingFactory, POOL_BACKTRACKING_CHECKPOINT,
                                   &CHECKPOINT_TRAITS);
}

}  // namespace

BacktrackingManager* new_BacktrackingManager(DFDLHeapAdapter* heap) {
    return DFDLHeapAdapter_new<BacktrackingManager>(heap);
}

void delete_BacktrackingManager(BacktrackingManager* this_) {
    if (this_ != nullptr) DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

BacktrackingCheckPoint* BacktrackingManager_getCheckPoint(BacktrackingManager* this_) {
    auto* checkPoint = static_cast<BacktrackingCheckPoint*>(ObjectPool_get(pool(this_)));
    checkPoint->docHandlerCheckPoint = DocHandlerEventBuffer_getCheckPoint(this_->eventBuffer);
    checkPoint->bufferCheckPoint = BufferManager_getCheckPoint(this_->bufferManager);
    PIFIteratorForParser_getCheckPoint(this_->iterator, &checkPoint->iteratorCheckPoint);
    checkPoint->errorHandlerCheckPoint = ErrorHandlerEventBuffer_getCheckPoint(this_->errorEventBuffer);
    return checkPoint;
}

void BacktrackingManager_restoreToCheckPoint(BacktrackingManager* this_, BacktrackingCheckPoint* checkPoint) {
    DHCheckPoint* events = checkPoint->docHandlerCheckPoint;
    DocHandlerEventBuffer_restoreToCheckPoint(events->buffer, events);
    BufferManager_restoreToCheckPoint(this_->bufferManager, checkPoint->bufferCheckPoint);
    PIFIteratorForParser_restoreToCheckPoint(this_->iterator, &checkPoint->iteratorCheckPoint);
    ErrorHandlerEventBuffer_restoreToCheckPoint(this_->errorEventBuffer, checkPoint->errorHandlerCheckPoint);
}

void BacktrackingManager_releaseCheckPoint(BacktrackingManager* this_, BacktrackingCheckPoint* checkPoint) {
    if (checkPoint == nullptr) return;
    DHCheckPoint* events = checkPoint->docHandlerCheckPoint;
    DocHandlerEventBuffer_releaseCheckPoint(events->buffer, events);
    BufferManager_releaseCheckPoint(this_->bufferManager, checkPoint->bufferCheckPoint);
    ErrorHandlerEventBuffer_releaseCheckPoint(this_->errorEventBuffer, checkPoint->errorHandlerCheckPoint);
    ObjectPool_release(pool(this_), checkPoint);
}

void BacktrackingManager_refreshCheckPoint(BacktrackingManager* this_, BacktrackingCheckPoint* checkPoint) {
    checkPoint->bufferCheckPoint =
        BufferManager_refreshCheckPoint(this_->bufferManager, checkPoint->bufferCheckPoint);
    DHCheckPoint* events = checkPoint->docHandlerCheckPoint;
    if (events->buffer == this_->eventBuffer) return;
    checkPoint->docHandlerCheckPoint = DocHandlerEventBuffer_getCheckPoint(this_->eventBuffer);
    DocHandlerEventBuffer_releaseCheckPoint(events->buffer, events);
}
