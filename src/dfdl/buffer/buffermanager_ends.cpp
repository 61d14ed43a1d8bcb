#include "dfdl/buffer/buffermanager.h"

void BufferManager_loadAhead(BufferManager* this_) {
    while (this_->lastBufferSeen == 0 && this_->bufferHandler != nullptr &&
           this_->bitPosition >= this_->totalBitsLoaded) {
        DFDLByteBufferImpl* current = this_->currentBuffer;
        if (BufferManager_nextBuffer(this_, current, true) == nullptr) return;
    }
}

bool BufferManager_hasNoRemainingBits(BufferManager* this_) {
    if (this_->documentBitLength >= 0) return this_->documentBitLength == this_->bitPosition;
    if (this_->totalBitsLoaded >= this_->bitPosition) return false;
    DFDLByteBufferImpl* buffer = this_->currentBuffer;
    while (buffer != nullptr && buffer->isLast == 0) {
        buffer = BufferManager_nextBuffer(this_, buffer, true);
        if (buffer != nullptr && DFDLByteBufferImpl_remaining(buffer) > 0) return false;
    }
    return true;
}

bool BufferManager_endOfScopedDataStream(BufferManager* this_) {
    if (this_->bitLimit >= 1) {
        if (this_->bitLimit <= this_->bitPosition) return true;
    } else if (BufferManager_hasNoRemainingBits(this_)) {
        return true;
    }
    return this_->charTrackerCount >= 1 && this_->charPosition >= this_->charLimit;
}

bool BufferManager_endOfDataStream(BufferManager* this_) {
    if (this_->documentBitLength >= 0) return this_->documentBitLength - this_->bitPosition < 8;
    DFDLByteBufferImpl* buffer = BufferManager_unreadBuffer(this_);
    if ((this_->bitPosition & 7) == 0) return buffer == nullptr;
    this_->bitPosition = (this_->bitPosition | 7) + 1;
    if (buffer != nullptr) ++buffer->position;
    return BufferManager_unreadBuffer(this_) == nullptr;
}
