#include "dfdl/foundation/dfdltracehandlers.h"

#include "dfdl/foundation/handlerobject.h"

using Service = DFDLServiceTraceHandlerImpl;
using User = DFDLUserTraceHandlerImpl;

DFDLServiceTraceHandler* new_DFDLServiceTraceHandler() { return HandlerObject_new<Service>(); }
void delete_DFDLServiceTraceHandler(DFDLServiceTraceHandler* handler) { HandlerObject_delete(handler); }

void DFDLServiceTraceHandler_setServiceInfoCallback(DFDLServiceTraceHandler* handler,
                                                    DFDLServiceTraceCallback callback) {
    HandlerObject_set(handler, &Service::serviceInfo, callback);
}
void DFDLServiceTraceHandler_setServiceWarningCallback(DFDLServiceTraceHandler* handler,
                                                       DFDLServiceTraceCallback callback) {
    HandlerObject_set(handler, &Service::serviceWarning, callback);
}
void DFDLServiceTraceHandler_setServiceErrorCallback(DFDLServiceTraceHandler* handler,
                                                     DFDLServiceTraceCallback callback) {
    HandlerObject_set(handler, &Service::serviceError, callback);
}
void DFDLServiceTraceHandler_setServiceFatalCallback(DFDLServiceTraceHandler* handler,
                                                     DFDLServiceTraceCallback callback) {
    HandlerObject_set(handler, &Service::serviceFatal, callback);
}
void DFDLServiceTraceHandler_setServiceEntryCallback(DFDLServiceTraceHandler* handler,
                                                     DFDLServiceTraceCallback callback) {
    HandlerObject_set(handler, &Service::serviceEntry, callback);
}
void DFDLServiceTraceHandler_setServiceExitCallback(DFDLServiceTraceHandler* handler,
                                                    DFDLServiceTraceCallback callback) {
    HandlerObject_set(handler, &Service::serviceExit, callback);
}
void DFDLServiceTraceHandler_setServiceDetailCallback(DFDLServiceTraceHandler* handler,
                                                      DFDLServiceTraceCallback callback) {
    HandlerObject_set(handler, &Service::serviceDetail, callback);
}
void DFDLServiceTraceHandler_setContextObject(DFDLServiceTraceHandler* handler, void* contextObject) {
    HandlerObject_set(handler, &Service::contextObject, contextObject);
}
void* DFDLServiceTraceHandler_getContextObject(const DFDLServiceTraceHandler* handler) {
    return HandlerObject_getContextObject(handler);
}

DFDLUserTraceHandler* new_DFDLUserTraceHandler() { return HandlerObject_new<User>(); }
void delete_DFDLUserTraceHandler(DFDLUserTraceHandler* handler) { HandlerObject_delete(handler); }

void DFDLUserTraceHandler_setUserInfoCallback(DFDLUserTraceHandler* handler, DFDLUserTraceCallback callback) {
    HandlerObject_set(handler, &User::userInfo, callback);
}
void DFDLUserTraceHandler_setUserWarningCallback(DFDLUserTraceHandler* handler,
                                                 DFDLUserTraceCallback callback) {
    HandlerObject_set(handler, &User::userWarning, callback);
}
void DFDLUserTraceHandler_setUserErrorCallback(DFDLUserTraceHandler* handler,
                                               DFDLUserTraceCallback callback) {
    HandlerObject_set(handler, &User::userError, callback);
}
void DFDLUserTraceHandler_setUserFatalCallback(DFDLUserTraceHandler* handler,
                                               DFDLUserTraceCallback callback) {
    HandlerObject_set(handler, &User::userFatal, callback);
}
void DFDLUserTraceHandler_setContextObject(DFDLUserTraceHandler* handler, void* contextObject) {
    HandlerObject_set(handler, &User::contextObject, contextObject);
}
void* DFDLUserTraceHandler_getContextObject(const DFDLUserTraceHandler* handler) {
    return HandlerObject_getContextObject(handler);
}
