#include "dfdl/processor/dfdlregionhandler.h"

#include "dfdl/foundation/handlerobject.h"

using Handler = DFDLRegionHandlerImpl;

DFDLRegionHandler* new_DFDLRegionHandler() { return HandlerObject_new<Handler>(); }
void delete_DFDLRegionHandler(DFDLRegionHandler* handler) { HandlerObject_delete(handler); }

void DFDLRegionHandler_setElementStartCallback(DFDLRegionHandler* handler,
                                               DFDLElementStartCallback callback) {
    HandlerObject_set(handler, &Handler::elementStart, callback);
}
void DFDLRegionHandler_setElementEndCallback(DFDLRegionHandler* handler, DFDLElementEndCallback callback) {
    HandlerObject_set(handler, &Handler::elementEnd, callback);
}
void DFDLRegionHandler_setGroupStartCallback(DFDLRegionHandler* handler, DFDLGroupStartCallback callback) {
    HandlerObject_set(handler, &Handler::groupStart, callback);
}
void DFDLRegionHandler_setGroupEndCallback(DFDLRegionHandler* handler, DFDLGroupEndCallback callback) {
    HandlerObject_set(handler, &Handler::groupEnd, callback);
}
void DFDLRegionHandler_setLeadingAlignmentRegionCallback(DFDLRegionHandler* handler,
                                                         DFDLRegionCallback callback) {
    HandlerObject_set(handler, &Handler::leadingAlignmentRegion, callback);
}
void DFDLRegionHandler_setInitiatorRegionCallback(DFDLRegionHandler* handler, DFDLRegionCallback callback) {
    HandlerObject_set(handler, &Handler::initiatorRegion, callback);
}
void DFDLRegionHandler_setSimpleContentRegionCallback(DFDLRegionHandler* handler,
                                                      DFDLRegionCallback callback) {
    HandlerObject_set(handler, &Handler::simpleContentRegion, callback);
}
void DFDLRegionHandler_setTerminatorRegionCallback(DFDLRegionHandler* handler, DFDLRegionCallback callback) {
    HandlerObject_set(handler, &Handler::terminatorRegion, callback);
}
void DFDLRegionHandler_setTrailingAlignmentRegionCallback(DFDLRegionHandler* handler,
                                                          DFDLRegionCallback callback) {
    HandlerObject_set(handler, &Handler::trailingAlignmentRegion, callback);
}
void DFDLRegionHandler_setPrefixSeparatorRegionCallback(DFDLRegionHandler* handler,
                                                        DFDLRegionCallback callback) {
    HandlerObject_set(handler, &Handler::prefixSeparatorRegion, callback);
}
void DFDLRegionHandler_setInfixSeparatorRegionCallback(DFDLRegionHandler* handler,
                                                       DFDLRegionCallback callback) {
    HandlerObject_set(handler, &Handler::infixSeparatorRegion, callback);
}
void DFDLRegionHandler_setPostfixSeparatorRegionCallback(DFDLRegionHandler* handler,
                                                         DFDLRegionCallback callback) {
    HandlerObject_set(handler, &Handler::postfixSeparatorRegion, callback);
}
void DFDLRegionHandler_setContextObject(DFDLRegionHandler* handler, void* contextObject) {
    HandlerObject_set(handler, &Handler::contextObject, contextObject);
}
void* DFDLRegionHandler_getContextObject(const DFDLRegionHandler* handler) {
    return HandlerObject_getContextObject(handler);
}
