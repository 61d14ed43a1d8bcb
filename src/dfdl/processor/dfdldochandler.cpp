#include "dfdl/processor/dfdldochandler.h"

#include "dfdl/foundation/handlerobject.h"

using Handler = DFDLDocHandlerImpl;

// All slots are empty, which costs an event nothing but a test.
DFDLDocHandlerImpl* new_DoNothingDocHandler(DFDLHeapAdapter* heap) {
    return DFDLHeapAdapter_new<Handler>(heap);
}

void delete_DoNothingDocHandler(DFDLDocHandlerImpl* this_) {
    if (this_ != nullptr) DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

DFDLDocHandler* new_DFDLDocHandler() { return HandlerObject_new<Handler>(); }
void delete_DFDLDocHandler(DFDLDocHandler* handler) { HandlerObject_delete(handler); }

void DFDLDocHandler_setStartDocumentCallback(DFDLDocHandler* handler, DFDLStartDocumentCallback callback) {
    HandlerObject_set(handler, &Handler::startDocument, callback);
}
void DFDLDocHandler_setEndDocumentCallback(DFDLDocHandler* handler, DFDLEndDocumentCallback callback) {
    HandlerObject_set(handler, &Handler::endDocument, callback);
}
void DFDLDocHandler_setStartElementCallback(DFDLDocHandler* handler, DFDLStartElementCallback callback) {
    HandlerObject_set(handler, &Handler::startElement, callback);
}
void DFDLDocHandler_setEndElementCallback(DFDLDocHandler* handler, DFDLEndElementCallback callback) {
    HandlerObject_set(handler, &Handler::endElement, callback);
}
void DFDLDocHandler_setElementStringValueCallback(DFDLDocHandler* handler,
                                                  DFDLElementStringValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementStringValue, callback);
}
void DFDLDocHandler_setElementIntValueCallback(DFDLDocHandler* handler,
                                               DFDLElementIntValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementIntValue, callback);
}
void DFDLDocHandler_setElementLongValueCallback(DFDLDocHandler* handler,
                                                DFDLElementLongValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementLongValue, callback);
}
void DFDLDocHandler_setElementShortValueCallback(DFDLDocHandler* handler,
                                                 DFDLElementShortValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementShortValue, callback);
}
void DFDLDocHandler_setElementFloatValueCallback(DFDLDocHandler* handler,
                                                 DFDLElementFloatValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementFloatValue, callback);
}
void DFDLDocHandler_setElementDoubleValueCallback(DFDLDocHandler* handler,
                                                  DFDLElementDoubleValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementDoubleValue, callback);
}
void DFDLDocHandler_setElementDecimalValueCallback(DFDLDocHandler* handler,
                                                   DFDLElementDecimalValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementDecimalValue, callback);
}
void DFDLDocHandler_setElementBooleanValueCallback(DFDLDocHandler* handler,
                                                   DFDLElementBooleanValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementBooleanValue, callback);
}
void DFDLDocHandler_setElementByteValueCallback(DFDLDocHandler* handler,
                                                DFDLElementByteValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementByteValue, callback);
}
void DFDLDocHandler_setElementCalendarValueCallback(DFDLDocHandler* handler,
                                                    DFDLElementCalendarValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementCalendarValue, callback);
}
void DFDLDocHandler_setElementUShortValueCallback(DFDLDocHandler* handler,
                                                  DFDLElementUShortValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementUShortValue, callback);
}
void DFDLDocHandler_setElementUIntValueCallback(DFDLDocHandler* handler,
                                                DFDLElementUIntValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementUIntValue, callback);
}
void DFDLDocHandler_setElementUByteValueCallback(DFDLDocHandler* handler,
                                                 DFDLElementUByteValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementUByteValue, callback);
}
void DFDLDocHandler_setElementULongValueCallback(DFDLDocHandler* handler,
                                                 DFDLElementULongValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementULongValue, callback);
}
void DFDLDocHandler_setElementBinaryValueCallback(DFDLDocHandler* handler,
                                                  DFDLElementBinaryValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementBinaryValue, callback);
}
void DFDLDocHandler_setElementNilValueCallback(DFDLDocHandler* handler,
                                               DFDLElementNilValueCallback callback) {
    HandlerObject_set(handler, &Handler::elementNilValue, callback);
}
void DFDLDocHandler_setContextObject(DFDLDocHandler* handler, void* contextObject) {
    HandlerObject_set(handler, &Handler::contextObject, contextObject);
}
void* DFDLDocHandler_getContextObject(const DFDLDocHandler* handler) {
    return HandlerObject_getContextObject(handler);
}
