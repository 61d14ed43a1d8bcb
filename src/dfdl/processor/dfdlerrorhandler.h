#ifndef DFDL_PROCESSOR_DFDLERRORHANDLER_H
#define DFDL_PROCESSOR_DFDLERRORHANDLER_H

#include <dfdl/dfdl.h>
#include <unicode/utypes.h>

#include "dfdl/foundation/dfdldiagnostic.h"
#include "dfdl/foundation/dfdlheapadapter.h"

struct Context;

// The caller's callbacks for diagnostics. Made and deleted by the caller.
struct DFDLErrorHandlerImpl {
    DFDLHeapAdapter* heap;  // its own
    DFDLErrorCallback processingError;
    DFDLErrorCallback warning;
    DFDLErrorCallback validationError;
    DFDLErrorCallback schemaDefinitionError;
    void* contextObject;
};

using ErrorSlot = DFDLErrorCallback DFDLErrorHandlerImpl::*;

// Makes the diagnostic of a record on `heap` and gives it to one callback. Nothing is made where nobody
// listens: a null handler or an empty slot. `scratch` holds DIAGNOSTIC_CAPACITY units.
void DFDLErrorHandlerImpl_deliver(DFDLErrorHandlerImpl* this_, ErrorSlot slot, DiagnosticType type,
                                  const ProcessingError* record, DFDLHeapAdapter* heap,
                                  ResourceCatalog* catalog, UChar* scratch);
// The same for a failure that no message text can be found for.
void DFDLErrorHandlerImpl_deliverText(DFDLErrorHandlerImpl* this_, ErrorSlot slot, DFDLHeapAdapter* heap,
                                      const char* text);

#endif
