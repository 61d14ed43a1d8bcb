#include <cstring>
#include <limits>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/buffer/bytearrayutils.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

// The buffer that holds a byte offset, or the last one before it; null if there is none at all.
DFDLByteBufferImpl* bufferAt(BufferManager* manager, int64_t byteOffset, bool move) {
    DFDLByteBufferImpl* buffer = manager->currentBuffer;
    if (buffer == nullptr) buffer = BufferManager_nextBuffer(manager, nullptr, move);
    while (buffer != nullptr && byteOffset > buffer->streamEnd && buffer->isLast == 0) {
        DFDLByteBufferImpl* next = BufferManager_nextBuffer(manager, buffer, move);
        if (next == nullptr) break;
        buffer = next;
    }
    return buffer;
}

// Copies from a byte offset, which lies in `buffer`, on through the buffers behind it; the bytes copied.
int64_t copyFrom(BufferManager* manager, DFDLByteBufferImpl* buffer, uint8_t* target, int64_t count,
                 int64_t byteOffset, bool advance) {
    int64_t copied = 0;
    while (buffer != nullptr) {
        copied += DFDLByteBufferImpl_getBytes(
            buffer, target + copied, byteOffset + copied - buffer->streamStart, count - copied, advance);
        if (copied == count) break;
        buffer = BufferManager_nextBuffer(manager, buffer, advance);
    }
    return copied;
}

// Moves over bytes in the buffers; the bytes there were.
int64_t skipInBuffers(BufferManager* manager, int64_t count) {
    DFDLByteBufferImpl* buffer = manager->currentBuffer;
    if (buffer == nullptr) buffer = BufferManager_nextBuffer(manager, nullptr, true);
    int64_t skipped = 0;
    while (buffer != nullptr) {
        skipped += DFDLByteBufferImpl_skip(buffer, count - skipped);
        if (skipped == count) break;
        buffer = BufferManager_nextBuffer(manager, buffer, true);
    }
    return skipped;
}

void raiseShortage(BufferManager* manager, int64_t bytePosition, int32_t units, int64_t amount,
                   const GroupMemberTableRow* element) {
    ProcessingError_reset(manager->context->currentError);
    BufferManager_throwInsufficientDataException(manager, bytePosition, units, amount, element);
}

bool isGroupRow(const GroupMemberTableRow* element) {
    return element != nullptr &&
           (element->iPhysicalType == GROUP_SEQUENCE || element->iPhysicalType == GROUP_CHOICE);
}

void raiseShortGroup(BufferManager* manager, const GroupMemberTableRow* element) {
    const DFDLUString* name = GroupMemberTableRow_getElementName(element);
    if (name == nullptr) name = GroupMemberTableRow_getGroupName(element);
    ProcessingError_setValues(
        manager->context->currentError, __FILE__, __LINE__, DFDLParser_bufferOverflowSequenceGroup,
        ERROR_PROCESSING, SUBKIND_LACK_OF_DATA, "%lld%Z%S",
        static_cast<long long>(BufferManager_bytePosition(manager)), name,
        TracehandlerAdapter_getPhysicalTypeAsString(manager->trace, element->iPhysicalType));
}

int64_t skipByUnits(BufferManager* manager, const GroupMemberTableRow* element, int32_t units,
                    int64_t amount) {
    switch (units) {
        case BYTES:
            return BufferManager_skipBytes(manager, amount, element);
        case BITS:
            return BufferManager_skipBits(manager, amount, element);
        default: {
            const int32_t encoding = element == nullptr ? -1 : element->iTextEncodingIndex;
            return BufferManager_skipCharacters(manager, encoding, amount, element);
        }
    }
}

}  // namespace

int64_t BufferManager_read(BufferManager* this_, uint8_t* target, int64_t count, int64_t byteOffset,
                           bool advance) {
    if (count <= 0) return 0;
    DFDLByteBufferImpl* buffer = bufferAt(this_, byteOffset, advance);
    if (buffer == nullptr || byteOffset > buffer->streamEnd || byteOffset < buffer->streamStart) return 0;
    const int64_t copied = copyFrom(this_, buffer, target, count, byteOffset, advance);
    if (advance) this_->bitPosition += 8 * copied;
    return copied;
}

int64_t BufferManager_getBytes(BufferManager* this_, uint8_t* target, int64_t count, int64_t byteOffset,
                               bool advance, const GroupMemberTableRow* element) {
    const int64_t copied = BufferManager_read(this_, target, count, byteOffset, advance);
    if (!BufferManager_crossesLimit(this_)) return copied;
    BufferManager_raise(this_, DFDLParser_bufferOverflow, element);
    return 0;
}

int64_t BufferManager_readBits(BufferManager* this_, uint8_t* target, int64_t bits,
                               const GroupMemberTableRow* element) {
    const int64_t old = this_->bitPosition;
    const auto offset = static_cast<int32_t>(old & 7);
    const int64_t bytes = (bits + offset + 7) / 8;
    if (BufferManager_read(this_, target, bytes, old >> 3, true) < bytes) return -1;
    this_->bitPosition = old + bits;
    if ((this_->bitPosition & 7) != 0) --this_->currentBuffer->position;
    if (BufferManager_crossesLimit(this_)) {
        BufferManager_raise(this_, DFDLParser_bufferOverflow, element);
        return -1;
    }
    ByteArrayUtils_shiftLeft(target, bytes, offset);
    return bits;
}

int32_t BufferManager_readByte(BufferManager* this_, const GroupMemberTableRow* element) {
    uint8_t byte = 0;
    if (BufferManager_getBytes(this_, &byte, 1, BufferManager_bytePosition(this_), true, element) == 1)
        return byte;
    ProcessingError_reset(this_->context->currentError);
    BufferManager_raise(this_, DFDLParser_bufferOverflow, element);
    return -1;
}

int32_t BufferManager_peekByte(BufferManager* this_, int64_t byteOffset, const GroupMemberTableRow* element) {
    const DFDLByteBufferImpl* current = this_->currentBuffer;
    if (current != nullptr && byteOffset <= current->streamEnd && byteOffset >= current->streamStart) {
        return static_cast<int8_t>(current->data[byteOffset - current->streamStart]);
    }
    uint8_t byte = 0;
    if (BufferManager_read(this_, &byte, 1, byteOffset, false) == 1) return static_cast<int8_t>(byte);
    ProcessingError_reset(this_->context->currentError);
    BufferManager_raise(this_, DFDLParser_bufferOverflow, element);
    return -1;
}

int64_t BufferManager_skipBytes(BufferManager* this_, int64_t bytes, const GroupMemberTableRow* element) {
    if (bytes <= 0) return 0;
    const int64_t start = BufferManager_bytePosition(this_);
    const int64_t skipped = skipInBuffers(this_, bytes);
    this_->bitPosition += 8 * skipped;
    if (skipped == bytes && !BufferManager_crossesLimit(this_)) return bytes;
    raiseShortage(this_, skipped == bytes ? BufferManager_bytePosition(this_) : start, BYTES, bytes, element);
    return -1;
}

int64_t BufferManager_skipBits(BufferManager* this_, int64_t bits, const GroupMemberTableRow* element) {
    if (bits <= 0) return 0;
    if (bits > std::numeric_limits<int64_t>::max() - 8) bits = std::numeric_limits<int64_t>::max() - 8;
    const int64_t start = BufferManager_bytePosition(this_);
    const int64_t offset = this_->bitPosition & 7;
    const int64_t bytes = (offset + bits) >> 3;
    const int64_t skipped = bytes == 0 ? 0 : skipInBuffers(this_, bytes);
    this_->bitPosition += skipped == bytes ? bits : skipped * 8;
    // A byte that is entered only must be there too.
    const bool there = skipped == bytes && BufferManager_loadBytes(this_, (this_->bitPosition + 7) >> 3);
    if (there && !BufferManager_crossesLimit(this_)) return bits;
    raiseShortage(this_, skipped == bytes ? BufferManager_bytePosition(this_) : start, BITS, bits, element);
    return -1;
}

int64_t BufferManager_skipData(BufferManager* this_, const GroupMemberTableRow* element, int32_t units,
                               int64_t amount) {
    const int64_t skipped = skipByUnits(this_, element, units, amount);
    if (skipped == amount || amount <= 0) return amount;
    ProcessingError_reset(this_->context->currentError);
    if (isGroupRow(element)) {
        raiseShortGroup(this_, element);
    } else {
        BufferManager_raise(this_, DFDLParser_bufferOverflow, element);
    }
    return 0;
}

void BufferManager_throwInsufficientDataException(BufferManager* this_, int64_t bytePosition, int32_t units,
                                                  int64_t amount, const GroupMemberTableRow* element) {
    ProcessingError* error = this_->context->currentError;
    const DFDLUString* name = GroupMemberTableRow_getElementName(element);
    if (this_->mode == BUFFER_PARSER) {
        ProcessingError_setValues(error, __FILE__, __LINE__, DFDLParser_bufferOverflow, ERROR_PROCESSING,
                                  SUBKIND_LACK_OF_DATA, "%lld%Z", static_cast<long long>(bytePosition), name);
        return;
    }
    const UChar* word = BufferManager_getLengthUnitsString(this_, units);
    if (ArrayList_isEmpty(this_->lengthTrackers)) {
        ProcessingError_setValues(error, __FILE__, __LINE__, DFDLUnParser_bufferOverflow, ERROR_PROCESSING,
                                  SUBKIND_NONE, "%Z%lld%S", name, static_cast<long long>(amount), word);
        return;
    }
    const auto* top =
        static_cast<LengthTracker*>(ArrayList_get(this_->lengthTrackers, this_->lengthTrackers->count - 1));
    ProcessingError_setValues(error, __FILE__, __LINE__, DFDLUnParser_dataExceedsParentStructure,
                              ERROR_PROCESSING, SUBKIND_NONE, "%Z%lld%lld%S%Z", name,
                              static_cast<long long>(bytePosition), static_cast<long long>(amount), word,
                              GroupMemberTableRow_getElementName(top->element));
}
