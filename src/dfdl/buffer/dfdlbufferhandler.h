#ifndef DFDL_BUFFER_DFDLBUFFERHANDLER_H
#define DFDL_BUFFER_DFDLBUFFERHANDLER_H

#include <dfdl/dfdl.h>

#include "dfdl/foundation/dfdlheapadapter.h"

struct InputStream;

// Supplies the input in pieces. The caller's own lives as the caller wants and outlives the parse; the
// library's handler over a stream belongs to its buffer manager.
struct DFDLBufferHandlerImpl {
    DFDLHeapAdapter* heap;  // its own
    DFDLGetNextBufferCallback getNextBuffer;
    DFDLReleaseBufferCallback releaseBuffer;
    void* contextObject;
    InputStream* stream;  // of the library's own handlers
};

#endif
