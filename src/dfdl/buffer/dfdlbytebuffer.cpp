#include "dfdl/buffer/dfdlbytebuffer.h"

#include <algorithm>
#include <cstring>

DFDLByteBufferImpl* new_DFDLByteBufferImpl(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<DFDLByteBufferImpl>(heap);
    DFDLByteBufferImpl_reset(this_);
    return this_;
}

void DFDLByteBufferImpl_reset(DFDLByteBufferImpl* this_) {
    this_->position = 0;
    this_->size = 0;
    this_->streamStart = -1;
    this_->streamEnd = -1;
    this_->refCount = 0;
    this_->isLast = 0;
    this_->data = nullptr;
}

void delete_DFDLByteBufferImpl(DFDLByteBufferImpl* this_) {
    if (this_ != nullptr) DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

int64_t DFDLByteBufferImpl_skip(DFDLByteBufferImpl* this_, int64_t count) {
    const int64_t moved = std::min(count, DFDLByteBufferImpl_remaining(this_));
    this_->position += moved;
    return moved;
}

int64_t DFDLByteBufferImpl_getBytes(DFDLByteBufferImpl* this_, uint8_t* target, int64_t bufferOffset,
                                    int64_t count, bool advance) {
    if (bufferOffset < 0 || bufferOffset >= this_->size) return 0;
    const int64_t copied = std::min(count, this_->size - bufferOffset);
    if (copied > 0) std::memcpy(target, this_->data + bufferOffset, static_cast<size_t>(copied));
    if (advance) this_->position = bufferOffset + copied;
    return copied;
}

void DFDLByteBuffer_setData(DFDLByteBuffer* buffer, const uint8_t* data, DFDLWORD size, int32_t isLast) {
    buffer->data = data;
    buffer->isLast = isLast != 0 ? 1U : 0U;
    buffer->position = 0;
    buffer->size = data == nullptr || size < 0 ? 0 : size;
}

const uint8_t* DFDLByteBuffer_getData(const DFDLByteBuffer* buffer) { return buffer->data; }

DFDLWORD DFDLByteBuffer_getSize(const DFDLByteBuffer* buffer) { return buffer->size; }

DFDLWORD DFDLByteBuffer_getPosition(const DFDLByteBuffer* buffer) { return buffer->position; }
