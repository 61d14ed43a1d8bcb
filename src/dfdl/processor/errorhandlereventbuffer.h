#ifndef DFDL_PROCESSOR_ERRORHANDLEREVENTBUFFER_H
#define DFDL_PROCESSOR_ERRORHANDLEREVENTBUFFER_H

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdldiagnostic.h"
#include "dfdl/processor/dfdlerrorhandler.h"

struct ArrayList;

struct EHCheckPoint {
    DFDLHeapAdapter* heap;
    int32_t errorCount;
};

// Holds back validation errors while a point of uncertainty is open, and delivers them at once otherwise. The
// errors that end a parse never come here. One per parser, which owns it.
struct ErrorHandlerEventBuffer {
    DFDLHeapAdapter* heap;
    DFDLHeapAdapter* messageHeap;  // of diagnostics; the parser sets it at setup
    Context* context;
    ArrayList* errors;                   // ProcessingError clones, owned
    int32_t holdLevel;                   // open checkpoints
    DFDLErrorHandlerImpl* errorHandler;  // may be null; set at setup
    ResourceCatalog* resourceCatalog;
    UChar scratch[DIAGNOSTIC_CAPACITY];
};

ErrorHandlerEventBuffer* new_ErrorHandlerEventBuffer(DFDLHeapAdapter* heap, Context* context,
                                                     ResourceCatalog* catalog);
void delete_ErrorHandlerEventBuffer(ErrorHandlerEventBuffer* this_);  // null is ignored

// The record stays the caller's.
void ErrorHandlerEventBuffer_handleError(ErrorHandlerEventBuffer* this_, const ProcessingError* error);

EHCheckPoint* ErrorHandlerEventBuffer_getCheckPoint(ErrorHandlerEventBuffer* this_);
void ErrorHandlerEventBuffer_restoreToCheckPoint(ErrorHandlerEventBuffer* this_,
                                                 const EHCheckPoint* checkPoint);
void ErrorHandlerEventBuffer_releaseCheckPoint(ErrorHandlerEventBuffer* this_, EHCheckPoint* checkPoint);
// Delivers what is held, whatever checkpoints are open, and holds nothing any more.
void ErrorHandlerEventBuffer_flushErrorBuffer(ErrorHandlerEventBuffer* this_);
// Drops what is held: the parse has been given up.
void ErrorHandlerEventBuffer_discard(ErrorHandlerEventBuffer* this_);

#endif
