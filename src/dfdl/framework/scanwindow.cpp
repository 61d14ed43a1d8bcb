#include "dfdl/framework/scanwindow.h"

#include "dfdl/buffer/buffermanager.h"

namespace {

void look(ScanWindow* window, DFDLByteBufferImpl* at) {
    window->at = at;
    window->data = at == nullptr ? nullptr : at->data;
    window->start = at == nullptr ? 0 : at->streamStart;
    window->size = at == nullptr ? 0 : at->size;
}

}  // namespace

ScanWindow ScanWindow_open(BufferManager* buffer) {
    ScanWindow window{};
    window.buffer = buffer;
    look(&window, buffer->currentBuffer);
    return window;
}

bool ScanWindow_moveTo(ScanWindow* this_, int64_t position) {
    DFDLByteBufferImpl* at = this_->at;
    // A failed attempt at a delimiter goes back, at most to the buffer manager's own position.
    if (at == nullptr || position < at->streamStart) at = this_->buffer->currentBuffer;
    if (at == nullptr) at = BufferManager_nextBuffer(this_->buffer, nullptr, false);
    while (at != nullptr && position > at->streamEnd) {
        at = BufferManager_nextBuffer(this_->buffer, at, false);
    }
    if (at == nullptr || position < at->streamStart) return false;
    look(this_, at);
    return true;
}
