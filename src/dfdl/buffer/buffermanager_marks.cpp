#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"

namespace {

constexpr PoolTraits MARKER_TRAITS = PoolTraits_ofRecord<DFDLBufferMarker>(20, 100);
constexpr PoolTraits CHECKPOINT_TRAITS = PoolTraits_ofRecord<BufferManagerCheckPoint>(10, 100);

ObjectPool* markerPool(BufferManager* manager) {
    return DFDLPoolingFactory_pool(manager->heap->poolingFactory, POOL_BUFFER_MARKER, &MARKER_TRAITS);
}

ObjectPool* checkPointPool(BufferManager* manager) {
    return DFDLPoolingFactory_pool(manager->heap->poolingFactory, POOL_BUFFER_MANAGER_CHECKPOINT,
                                   &CHECKPOINT_TRAITS);
}

DFDLByteBufferImpl* markedBuffer(const BufferManager* manager, const DFDLBufferMarker* marker) {
    return marker->buffer != nullptr ? marker->buffer : manager->firstBuffer;
}

// What lies before a place that is gone to counts as read, also where a mark has led past it: a buffer that
// is left halfway would keep all that come after it.
void passBuffersBefore(BufferManager* manager, const DFDLByteBufferImpl* target) {
    for (int32_t i = manager->releasedBuffers; i < manager->buffers->count; ++i) {
        auto* buffer = ArrayList_getPointer<DFDLByteBufferImpl>(manager->buffers, i);
        if (buffer == target) return;
        buffer->position = buffer->size;
    }
}

}  // namespace

DFDLBufferMarker* BufferManager_mark(BufferManager* this_) {
    if (this_->currentBuffer == nullptr) BufferManager_nextBuffer(this_, nullptr, true);
    ArrayList_makeRoomAfter(this_->markers, this_->markers->count);
    auto* marker = static_cast<DFDLBufferMarker*>(ObjectPool_get(markerPool(this_)));
    marker->buffer = this_->currentBuffer;
    marker->bufferPosition = marker->buffer == nullptr ? 0 : marker->buffer->position;
    marker->bitPosition = this_->bitPosition;
    marker->charPosition = this_->charPosition;
    if (marker->buffer != nullptr) ++marker->buffer->refCount;
    ArrayList_addPointer(this_->markers, marker);
    return marker;
}

void BufferManager_reset(BufferManager* this_, DFDLBufferMarker* marker) {
    DFDLByteBufferImpl* target = markedBuffer(this_, marker);
    // The place is restored first: a buffer that is left counts as read only from where it was left.
    if (target != nullptr) target->position = marker->bufferPosition;
    if (target != nullptr && target != this_->currentBuffer) passBuffersBefore(this_, target);
    BufferManager_setCurrentBuffer(this_, target);
    this_->bitPosition = target == nullptr ? 0 : marker->bitPosition;
    this_->charPosition = target == nullptr ? 0 : marker->charPosition;
}

void BufferManager_release(BufferManager* this_, DFDLBufferMarker* marker) {
    const int32_t index = ArrayList_indexOfPointer(this_->markers, marker);
    if (index >= 0) ArrayList_removeAt(this_->markers, index);
    if (marker->buffer != nullptr && marker->buffer->refCount > 0) {
        --marker->buffer->refCount;
        BufferManager_releaseUnusedBuffers(this_);
    }
    ObjectPool_release(markerPool(this_), marker);
}

BufferManagerCheckPoint* BufferManager_getCheckPoint(BufferManager* this_) {
    auto* checkPoint = static_cast<BufferManagerCheckPoint*>(ObjectPool_get(checkPointPool(this_)));
    checkPoint->marker = BufferManager_mark(this_);
    checkPoint->trackerDepth = this_->lengthTrackers->count;
    return checkPoint;
}

void BufferManager_restoreToCheckPoint(BufferManager* this_, BufferManagerCheckPoint* checkPoint) {
    BufferManager_reset(this_, checkPoint->marker);
    while (this_->lengthTrackers->count > checkPoint->trackerDepth) BufferManager_popTracker(this_);
}

void BufferManager_releaseCheckPoint(BufferManager* this_, BufferManagerCheckPoint* checkPoint) {
    BufferManager_release(this_, checkPoint->marker);
    ObjectPool_release(checkPointPool(this_), checkPoint);
}

BufferManagerCheckPoint* BufferManager_refreshCheckPoint(BufferManager* this_,
                                                         BufferManagerCheckPoint* checkPoint) {
    if (checkPoint->marker->bitPosition == this_->bitPosition) return checkPoint;
    BufferManager_releaseCheckPoint(this_, checkPoint);
    return BufferManager_getCheckPoint(this_);
}
