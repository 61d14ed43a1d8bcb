#include "dfdl/processor/dfdlerrorhandler.h"

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/handlerobject.h"

using Handler = DFDLErrorHandlerImpl;

namespace {

void deliver(Handler* handler, ErrorSlot slot, DFDLDiagnosticImpl* diagnostic) {
    (handler->*slot)(handler, diagnostic);
    delete_DFDLDiagnosticImpl(diagnostic);
}

bool listens(const Handler* handler, ErrorSlot slot) {
    return handler != nullptr && handler->*slot != nullptr;
}

}  // namespace

void DFDLErrorHandlerImpl_deliver(DFDLErrorHandlerImpl* this_, ErrorSlot slot, DiagnosticType type,
                                  const ProcessingError* record, DFDLHeapAdapter* heap,
                                  ResourceCatalog* catalog, UChar* scratch) {
    if (!listens(this_, slot)) return;
    UConverter* converter = heap->context->defaultConverter;
    deliver(this_, slot,
            new_DFDLDiagnosticImplFromProsError(heap, converter, record, catalog, scratch, type));
}

void DFDLErrorHandlerImpl_deliverText(DFDLErrorHandlerImpl* this_, ErrorSlot slot, DFDLHeapAdapter* heap,
                                      const char* text) {
    if (!listens(this_, slot)) return;
    deliver(this_, slot, new_DFDLDiagnosticImplFromString(heap, heap->context->defaultConverter, text));
}

DFDLErrorHandler* new_DFDLErrorHandler() { return HandlerObject_new<Handler>(); }
void delete_DFDLErrorHandler(DFDLErrorHandler* handler) { HandlerObject_delete(handler); }

void DFDLErrorHandler_setProcessingErrorCallback(DFDLErrorHandler* handler, DFDLErrorCallback callback) {
    HandlerObject_set(handler, &Handler::processingError, callback);
}
void DFDLErrorHandler_setWarningCallback(DFDLErrorHandler* handler, DFDLErrorCallback callback) {
    HandlerObject_set(handler, &Handler::warning, callback);
}
void DFDLErrorHandler_setValidationErrorCallback(DFDLErrorHandler* handler, DFDLErrorCallback callback) {
    HandlerObject_set(handler, &Handler::validationError, callback);
}
void DFDLErrorHandler_setSchemaDefinitionErrorCallback(DFDLErrorHandler* handler,
                                                       DFDLErrorCallback callback) {
    HandlerObject_set(handler, &Handler::schemaDefinitionError, callback);
}
void DFDLErrorHandler_setContextObject(DFDLErrorHandler* handler, void* contextObject) {
    HandlerObject_set(handler, &Handler::contextObject, contextObject);
}
void* DFDLErrorHandler_getContextObject(const DFDLErrorHandler* handler) {
    return HandlerObject_getContextObject(handler);
}
