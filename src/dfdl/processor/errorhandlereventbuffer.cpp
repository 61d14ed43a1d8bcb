#include "dfdl/processor/errorhandlereventbuffer.h"

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"

namespace {

constexpr int32_t ERROR_CAPACITY = 5;

constexpr PoolTraits TRAITS = PoolTraits_ofRecord<EHCheckPoint>(10, 100);

ObjectPool* checkPoints(const ErrorHandlerEventBuffer* buffer) {
    return DFDLPoolingFactory_pool(buffer->heap->poolingFactory, POOL_ERROR_HANDLER_CHECKPOINT, &TRAITS);
}

struct Road {
    int32_t kind;
    ErrorSlot slot;
    DiagnosticType type;
};

constexpr Road ROADS[] = {
    {ERROR_PROCESSING, &DFDLErrorHandlerImpl::processingError, DIAGNOSTIC_PROCESSING_ERROR},
    {ERROR_SCHEMA_DEFINITION, &DFDLErrorHandlerImpl::schemaDefinitionError,
     DIAGNOSTIC_SCHEMA_DEFINITION_ERROR},
    {ERROR_VALIDATION, &DFDLErrorHandlerImpl::validationError, DIAGNOSTIC_VALIDATION_ERROR}};

void processError(ErrorHandlerEventBuffer* buffer, const ProcessingError* error) {
    for (const Road& road : ROADS) {
        if (road.kind != error->kind) continue;
        DFDLErrorHandlerImpl_deliver(buffer->errorHandler, road.slot, road.type, error, buffer->messageHeap,
                                     buffer->resourceCatalog, buffer->scratch);
    }
}

void discardAfter(ErrorHandlerEventBuffer* buffer, int32_t count) {
    while (buffer->errors->count > count) {
        delete_ProcessingError(ArrayList_popPointer<ProcessingError>(buffer->errors));
    }
}

}  // namespace

ErrorHandlerEventBuffer* new_ErrorHandlerEventBuffer(DFDLHeapAdapter* heap, Context* context,
                                                     ResourceCatalog* catalog) {
    auto* this_ = DFDLHeapAdapter_new<ErrorHandlerEventBuffer>(heap);
    this_->messageHeap = heap;
    this_->context = context;
    this_->resourceCatalog = catalog;
    this_->errors = new_ArrayListOfPointers(heap, ERROR_CAPACITY);
    return this_;
}

void delete_ErrorHandlerEventBuffer(ErrorHandlerEventBuffer* this_) {
    if (this_ == nullptr) return;
    discardAfter(this_, 0);
    delete_ArrayList(this_->errors);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void ErrorHandlerEventBuffer_handleError(ErrorHandlerEventBuffer* this_, const ProcessingError* error) {
    if (this_->holdLevel < 1) return processError(this_, error);
    ArrayList_addPointer(this_->errors, ProcessingError_clone(error, this_->heap));
}

EHCheckPoint* ErrorHandlerEventBuffer_getCheckPoint(ErrorHandlerEventBuffer* this_) {
    auto* checkPoint = static_cast<EHCheckPoint*>(ObjectPool_get(checkPoints(this_)));
    checkPoint->errorCount = this_->errors->count;
    ++this_->holdLevel;
    return checkPoint;
}

void ErrorHandlerEventBuffer_restoreToCheckPoint(ErrorHandlerEventBuffer* this_,
                                                 const EHCheckPoint* checkPoint) {
    discardAfter(this_, checkPoint->errorCount);
}

void ErrorHandlerEventBuffer_releaseCheckPoint(ErrorHandlerEventBuffer* this_, EHCheckPoint* checkPoint) {
    ObjectPool_release(checkPoints(this_), checkPoint);
    if (this_->holdLevel > 0) --this_->holdLevel;
    if (this_->holdLevel == 0) ErrorHandlerEventBuffer_flushErrorBuffer(this_);
}

void ErrorHandlerEventBuffer_flushErrorBuffer(ErrorHandlerEventBuffer* this_) {
    this_->holdLevel = 0;
    const ScopeExit empty([this_] { discardAfter(this_, 0); });
    for (int32_t index = 0; index < this_->errors->count; ++index) {
        processError(this_, ArrayList_getPointer<ProcessingError>(this_->errors, index));
    }
}

void ErrorHandlerEventBuffer_discard(ErrorHandlerEventBuffer* this_) {
    this_->holdLevel = 0;
    discardAfter(this_, 0);
}
