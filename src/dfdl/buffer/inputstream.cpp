#include "dfdl/buffer/inputstream.h"

#include <algorithm>
#include <cstring>

namespace {

ByteArrayInputStream* self(InputStream* stream) { return static_cast<ByteArrayInputStream*>(stream); }

uint32_t left(const ByteArrayInputStream* stream) { return stream->count - stream->position; }

int32_t readByte(InputStream* stream) {
    ByteArrayInputStream* array = self(stream);
    return left(array) == 0 ? -1 : array->data[array->position++];
}

int64_t read(InputStream* stream, uint8_t* buffer, int64_t offset, int64_t length) {
    ByteArrayInputStream* array = self(stream);
    if (left(array) == 0) return -1;
    const int64_t copied = std::clamp<int64_t>(length, 0, left(array));
    std::memcpy(buffer + offset, array->data + array->position, static_cast<size_t>(copied));
    array->position += static_cast<uint32_t>(copied);
    return copied;
}

int64_t skip(InputStream* stream, int64_t count) {
    ByteArrayInputStream* array = self(stream);
    const int64_t skipped = std::clamp<int64_t>(count, 0, left(array));
    array->position += static_cast<uint32_t>(skipped);
    return skipped;
}

int64_t available(InputStream* stream) { return left(self(stream)); }
void close(InputStream* stream) { static_cast<void>(stream); }
void mark(InputStream* stream, int64_t readLimit) {
    static_cast<void>(readLimit);
    self(stream)->marked = self(stream)->position;
}
void reset(InputStream* stream) { self(stream)->position = self(stream)->marked; }
int32_t markSupported(InputStream* stream) {
    static_cast<void>(stream);
    return 1;
}

}  // namespace

InputStream* new_InputStream(DFDLHeapAdapter* heap) { return DFDLHeapAdapter_new<InputStream>(heap); }

void delete_InputStream(InputStream* this_) {
    if (this_ != nullptr) DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

ByteArrayInputStream* new_ByteArrayInputStream(DFDLHeapAdapter* heap, const uint8_t* data, uint32_t count) {
    auto* this_ = DFDLHeapAdapter_new<ByteArrayInputStream>(heap);
    this_->readByte = readByte;
    this_->read = read;
    this_->skip = skip;
    this_->available = available;
    this_->close = close;
    this_->mark = mark;
    this_->reset = reset;
    this_->markSupported = markSupported;
    this_->data = data;
    this_->count = count;
    return this_;
}
