#ifndef DFDL_FOUNDATION_DFDLTRACEHANDLERS_H
#define DFDL_FOUNDATION_DFDLTRACEHANDLERS_H

#include <dfdl/dfdl.h>

#include "dfdl/foundation/dfdlheapadapter.h"

// The caller's callbacks for trace. Made and deleted by the caller; parsers and grammars only refer to them.
struct DFDLServiceTraceHandlerImpl {
    DFDLHeapAdapter* heap;  // its own
    DFDLServiceTraceCallback serviceInfo;
    DFDLServiceTraceCallback serviceWarning;
    DFDLServiceTraceCallback serviceError;
    DFDLServiceTraceCallback serviceFatal;
    DFDLServiceTraceCallback serviceEntry;
    DFDLServiceTraceCallback serviceExit;
    DFDLServiceTraceCallback serviceDetail;
    void* contextObject;
};

struct DFDLUserTraceHandlerImpl {
    DFDLHeapAdapter* heap;  // its own
    DFDLUserTraceCallback userInfo;
    DFDLUserTraceCallback userWarning;
    DFDLUserTraceCallback userError;
    DFDLUserTraceCallback userFatal;
    void* contextObject;
};

#endif
