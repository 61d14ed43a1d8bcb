#include "dfdl/buffer/inputstreambufferhandler.h"

#include <algorithm>
#include <cstring>

#include "dfdl/buffer/dfdlbufferhandler.h"
#include "dfdl/buffer/inputstream.h"
#include "dfdl/foundation/dfdlbufferfactory.h"

namespace {

constexpr int64_t LARGEST_BLOCK = 0x1000000;
constexpr int64_t BLIND_READ = 4096;

DFDLBufferFactory* factoryOf(const DFDLBufferHandlerImpl* handler) { return handler->heap->bufferFactory; }

void give(DFDLBufferHandlerImpl* handler, DFDLByteBuffer* buffer, uint8_t* block, int64_t count, bool last) {
    if (count >= 0) {
        DFDLByteBuffer_setData(buffer, block, count, last ? 1 : 0);
        return;
    }
    DFDLBufferFactory_FreeBuffer(factoryOf(handler), block);
    DFDLByteBuffer_setData(buffer, nullptr, 0, 1);
}

void readAvailable(DFDLBufferHandlerImpl* handler, DFDLByteBuffer* buffer, int64_t size, bool last) {
    uint8_t* block = DFDLBufferFactory_GetBuffer(factoryOf(handler), size);
    give(handler, buffer, block, handler->stream->read(handler->stream, block, 0, size), last);
}

// The stream does not know what it has: a read tells, and a block of that size is kept.
void readBlindly(DFDLBufferHandlerImpl* handler, DFDLByteBuffer* buffer) {
    uint8_t bytes[BLIND_READ];
    const int64_t count = handler->stream->read(handler->stream, bytes, 0, BLIND_READ);
    uint8_t* block = nullptr;
    if (count >= 0) {
        block = DFDLBufferFactory_GetBuffer(factoryOf(handler), count);
        std::memcpy(block, bytes, static_cast<size_t>(count));
    }
    give(handler, buffer, block, count, false);
}

void nextFromStream(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
    const int64_t available = handler->stream->available(handler->stream) & 0xFFFFFFFFLL;
    if (available == 0) {
        readBlindly(handler, buffer);
    } else {
        readAvailable(handler, buffer, std::min(available, LARGEST_BLOCK), false);
    }
}

void wholeStream(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
    readAvailable(handler, buffer, std::max<int64_t>(handler->stream->available(handler->stream), 0), true);
}

void releaseBlock(DFDLBufferHandler* handler, DFDLByteBuffer* buffer) {
    DFDLBufferFactory_FreeBuffer(factoryOf(handler), const_cast<uint8_t*>(DFDLByteBuffer_getData(buffer)));
}

}  // namespace

DFDLBufferHandlerImpl* new_InputstreamBufferHandler(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<DFDLBufferHandlerImpl>(heap);
    this_->releaseBuffer = releaseBlock;
    return this_;
}

void delete_InputstreamBufferHandler(DFDLBufferHandlerImpl* this_) {
    if (this_ != nullptr) DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void reuse_InputstreamBufferHandler(DFDLBufferHandlerImpl* this_, InputStream* stream, bool whole) {
    this_->stream = stream;
    this_->getNextBuffer = whole ? wholeStream : nextFromStream;
}
