#include "dfdl/buffer/dfdlbufferhandler.h"

#include "dfdl/foundation/guard.h"

DFDLBufferHandler* new_DFDLBufferHandler(void) {
    try {
        Owned<DFDLHeapAdapter, delete_DFDLHeapAdapter> heap(new_DFDLHeapAdapterFromHeap(nullptr));
        auto* handler = DFDLHeapAdapter_new<DFDLBufferHandlerImpl>(heap.get());
        heap.release();
        return handler;
    } catch (const AllocationFailure&) {
        return nullptr;
    }
}

void delete_DFDLBufferHandler(DFDLBufferHandler* handler) {
    if (handler == nullptr) return;
    DFDLHeapAdapter* heap = handler->heap;
    DFDLHeapAdapter_objectDeallocate(heap, handler);
    delete_DFDLHeapAdapter(heap);
}

void DFDLBufferHandler_setGetNextBufferHandlerCallback(DFDLBufferHandler* handler,
                                                       DFDLGetNextBufferCallback callback) {
    handler->getNextBuffer = callback;
}

void DFDLBufferHandler_setReleaseBufferHandlerCallback(DFDLBufferHandler* handler,
                                                       DFDLReleaseBufferCallback callback) {
    handler->releaseBuffer = callback;
}

void DFDLBufferHandler_setContextObject(DFDLBufferHandler* handler, void* contextObject) {
    handler->contextObject = contextObject;
}

void* DFDLBufferHandler_getContextObject(const DFDLBufferHandler* handler) { return handler->contextObject; }
