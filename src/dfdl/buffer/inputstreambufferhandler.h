#ifndef DFDL_BUFFER_INPUTSTREAMBUFFERHANDLER_H
#define DFDL_BUFFER_INPUTSTREAMBUFFERHANDLER_H

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLBufferHandlerImpl;
struct InputStream;

// A buffer handler that reads a stream. It lives on the heap given, as do its buffers; the stream is its
// user's.
DFDLBufferHandlerImpl* new_InputstreamBufferHandler(DFDLHeapAdapter* heap);
void delete_InputstreamBufferHandler(DFDLBufferHandlerImpl* this_);  // null is ignored
// Reads another stream from now on; with `whole`, what it has available is one last buffer.
void reuse_InputstreamBufferHandler(DFDLBufferHandlerImpl* this_, InputStream* stream, bool whole);

#endif
