#ifndef DFDL_BUFFER_DFDLBYTEBUFFER_H
#define DFDL_BUFFER_DFDLBYTEBUFFER_H

#include <dfdl/dfdl.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

// One piece of the data stream. The record belongs to the buffer manager, the bytes to whoever filled it.
struct DFDLByteBufferImpl {
    DFDLHeapAdapter* heap;
    int64_t position;     // next byte to read, relative to data
    int64_t size;         // valid bytes
    int64_t streamStart;  // offset of data[0] in the stream; -1 until the buffer is in the chain
    int64_t streamEnd;    // offset of the last byte
    int64_t sequence;     // its place among all buffers that have entered the chain
    uint32_t refCount;    // the current-buffer slot and every mark
    uint32_t isLast;
    const uint8_t* data;
};

DFDLByteBufferImpl* new_DFDLByteBufferImpl(DFDLHeapAdapter* heap);
void DFDLByteBufferImpl_reset(DFDLByteBufferImpl* this_);  // as new
void delete_DFDLByteBufferImpl(DFDLByteBufferImpl* this_);

inline int64_t DFDLByteBufferImpl_remaining(const DFDLByteBufferImpl* this_) {
    return this_->size - this_->position;
}
inline void DFDLByteBufferImpl_setStreamOffsets(DFDLByteBufferImpl* this_, int64_t start, int64_t end) {
    this_->streamStart = start;
    this_->streamEnd = end;
}
// Moves by `count` bytes or to the end; the bytes moved over.
int64_t DFDLByteBufferImpl_skip(DFDLByteBufferImpl* this_, int64_t count);
// Copies from an offset in the buffer, at most to its end; the bytes copied. `advance` moves the position.
int64_t DFDLByteBufferImpl_getBytes(DFDLByteBufferImpl* this_, uint8_t* target, int64_t bufferOffset,
                                    int64_t count, bool advance);

#endif
