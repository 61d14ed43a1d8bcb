#ifndef DFDL_FOUNDATION_CONTEXT_H
#define DFDL_FOUNDATION_CONTEXT_H

#include <unicode/ucnv.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct ProcessingError;
struct TraceHandlerAdapter;

// State that nearly every object of one engine shares: the error records, the trace flags, the default
// converter. Made and deleted with the engine's heap adapter.
struct Context {
    DFDLHeapAdapter* heap;
    ProcessingError* activeError;
    ProcessingError* standbyError;
    ProcessingError* currentError;  // always the active one; what failures are written to
    uint32_t serviceTraceOn;
    uint32_t userTraceOn;
    TraceHandlerAdapter* trace;
    int32_t jumpState;  // -1 until an entry function has run; then how the last one was left: 0, or an
                        // AllocationFailure's origin
    uint32_t allocationFailures;  // seen by this engine
    UConverter* defaultConverter;
};

Context* new_Context(DFDLHeapAdapter* heap);
void delete_Context(Context* this_);

// Puts the failed record aside and makes the other one current.
void Context_swapErrors(Context* this_);

#endif
