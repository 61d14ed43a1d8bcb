// Characters counted out of data whose length in bytes is not known, across the borders of buffers.
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <limits>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

constexpr int64_t MOST_CHARACTERS = std::numeric_limits<int32_t>::max() / 4;
constexpr int32_t PIECE_UNITS = 4096;

// One count of characters: what is wanted, what has been read.
struct Count {
    BufferManager* manager;
    const GroupMemberTableRow* element;
    int64_t wanted;  // code points still to come
    int64_t read;    // code points
    bool strict;
    DFDLUString* text;  // so far; null for none
    bool done;          // nothing more can come
    bool failed;
};

void append(Count* count, const UChar* units, int32_t length) {
    DFDLHeapAdapter* heap = count->manager->heap;
    if (length == 0) return;
    if (count->text == nullptr) {
        count->text = DFDLUStringPooler_getDFDLUStringFromUChars(heap, units, length);
        return;
    }
    DFDLUString* old = count->text;
    UChar* joined =
        DFDLBufferFactory_GetUBuffer(heap->bufferFactory, static_cast<int64_t>(old->length) + length + 1);
    std::copy_n(old->chars, old->length, joined);
    std::copy_n(units, length, joined + old->length);
    joined[old->length + length] = 0;
    count->text = DFDLUStringPooler_getDFDLUStringUseUChars(heap, joined, old->length + length);
    delete_DFDLUString(old);
}

void addCharacters(Count* count, int64_t characters) {
    count->read += characters;
    count->wanted -= characters;
    count->manager->charPosition += characters;
}

// Negative where a bad sequence began in a buffer that has gone: then nothing more is read, and the position
// only tells where the sequence began.
void consume(Count* count, int64_t bytes) {
    if (bytes > 0) count->manager->currentBuffer->position += bytes;
    count->manager->bitPosition += bytes * 8;
}

// The buffer with the next unread byte; null at the end of the data.
const DFDLByteBufferImpl* unreadBuffer(BufferManager* manager) {
    DFDLByteBufferImpl* buffer = manager->currentBuffer;
    if (buffer == nullptr) buffer = BufferManager_nextBuffer(manager, nullptr, true);
    while (buffer != nullptr && DFDLByteBufferImpl_remaining(buffer) <= 0) {
        buffer = BufferManager_nextBuffer(manager, buffer, true);
    }
    return buffer;
}

// Bytes that are characters by themselves, while the converter is between characters.
bool takeDirectly(Count* count, const DFDLByteBufferImpl* buffer) {
    UChar units[PIECE_UNITS];
    const int64_t bytes =
        std::min({count->wanted, DFDLByteBufferImpl_remaining(buffer), static_cast<int64_t>(PIECE_UNITS)});
    if (!DFDLCharset_decodeDirectly(count->manager->currentCharset, buffer->data + buffer->position, bytes,
                                    units)) {
        return false;
    }
    append(count, units, static_cast<int32_t>(bytes));
    consume(count, bytes);
    addCharacters(count, bytes);
    return true;
}

void raiseCoding(Count* count, int64_t byteOffset) {
    Context* context = count->manager->context;
    ProcessingError_reset(context->currentError);
    ProcessingError_setValues(context->currentError, __FILE__, __LINE__, DFDLParser_characterCodingException,
                              ERROR_PROCESSING, SUBKIND_LACK_OF_DATA, "%lld%Z",
                              static_cast<long long>(byteOffset), count->manager->currentCharset->name);
    count->failed = true;
}

bool isBadSequence(UErrorCode status) {
    return status == U_TRUNCATED_CHAR_FOUND || status == U_ILLEGAL_CHAR_FOUND;
}

bool isByteThere(Count* count, int64_t byteOffset) {
    BufferManager_peekByte(count->manager, byteOffset, count->element);
    if (!ProcessingError_isSet(count->manager->context->currentError)) return true;
    ProcessingError_reset(count->manager->context->currentError);
    return false;
}

// A sequence so near the end of the data that it may be a character cut off by it ends the text; other bad data
// are an error, or the quiet end. Where the data end is asked of the stream, not of the buffer at hand.
void judge(Count* count, UErrorCode status, int64_t badOffset) {
    if (U_SUCCESS(status) || status == U_BUFFER_OVERFLOW_ERROR) return;
    const bool cutOff =
        isBadSequence(status) && !isByteThere(count, badOffset + count->manager->maxBytesPerChar - 1);
    count->done = true;
    if (count->strict && !cutOff) {
        raiseCoding(count, badOffset);
    } else if (!cutOff) {
        count->manager->malformedSeen = 1;
    }
}

// At most as many units as characters are wanted, so that no byte of a later character is consumed. Where the
// last unit is the first half of a pair the converter holds the other half ready.
void takeThroughICU(Count* count, const DFDLByteBufferImpl* buffer) {
    BufferManager* manager = count->manager;
    UChar units[PIECE_UNITS + 1];
    const auto most = static_cast<int32_t>(std::min<int64_t>(count->wanted, PIECE_UNITS));
    const char* bytes = reinterpret_cast<const char*>(buffer->data + buffer->position);
    const int64_t available = DFDLByteBufferImpl_remaining(buffer);
    const char* at = bytes;
    UChar* target = units;
    UErrorCode status = U_ZERO_ERROR;
    manager->charsetManager->badByteCount = 0;
    const bool flush = buffer->isLast != 0;
    ucnv_toUnicode(manager->decoder, &target, units + most, &at, bytes + available, nullptr, flush, &status);
    if (target > units && U16_IS_LEAD(target[-1]) &&
        (status == U_BUFFER_OVERFLOW_ERROR || target == units + most)) {
        const char* nothing = at;
        status = U_ZERO_ERROR;
        ucnv_toUnicode(manager->decoder, &target, units + most + 1, &nothing, at, nullptr, false, &status);
    }
    const int64_t consumed = at - bytes - manager->charsetManager->badByteCount;
    const auto length = static_cast<int32_t>(target - units);
    const int64_t badOffset = BufferManager_bytePosition(manager) + consumed;
    append(count, units, length);
    consume(count, consumed);
    addCharacters(count, u_countChar32(units, length));
    judge(count, status, badOffset);
    if (consumed <= 0 && length == 0) count->done = true;
}

bool isInsideCharacter(const UConverter* decoder) {
    UErrorCode status = U_ZERO_ERROR;
    return ucnv_toUCountPending(decoder, &status) > 0;
}

// The bytes of a character that the end of the data cut off count as unread, whatever buffers they came in.
void leaveCutOffCharacter(Count* count) {
    UErrorCode status = U_ZERO_ERROR;
    const int32_t pending = ucnv_toUCountPending(count->manager->decoder, &status);
    if (U_SUCCESS(status) && pending > 0) count->manager->bitPosition -= 8 * static_cast<int64_t>(pending);
}

void readCharacters(Count* count) {
    bool betweenCharacters = true;
    while (count->wanted > 0 && !count->done) {
        const DFDLByteBufferImpl* buffer = unreadBuffer(count->manager);
        if (buffer == nullptr) break;
        if (betweenCharacters && takeDirectly(count, buffer)) continue;
        takeThroughICU(count, buffer);
        betweenCharacters = !isInsideCharacter(count->manager->decoder);
    }
    if (count->wanted > 0 && !count->failed) leaveCutOffCharacter(count);
    if (count->wanted > 0 || count->failed) ucnv_resetToUnicode(count->manager->decoder);
}

const char* limitKey(BufferManager* manager) {
    if (BufferManager_hasNoRemainingBits(manager)) return DFDLParser_bufferOverflow;
    return BufferManager_endOfScopedDataStream(manager) ? DFDLParser_endOfDataForParentStructure
                                                        : DFDLParser_bufferOverflow;
}

void checkLimits(Count* count) {
    BufferManager* manager = count->manager;
    if (count->failed) return;
    const char* key = nullptr;
    if (manager->charTrackerCount > 0 && manager->charLimit < manager->charPosition) {
        key = DFDLParser_endOfDataForParentStructure;
    } else if (BufferManager_crossesLimit(manager)) {
        key = limitKey(manager);
    }
    if (key == nullptr) return;
    ProcessingError_reset(manager->context->currentError);
    BufferManager_raise(manager, key, count->element);
    count->failed = true;
}

void takeMark(Count* count) {
    BufferManager* manager = count->manager;
    if (manager->canHaveBOM == 0 || manager->bomChecked != 0 || count->wanted < 1) return;
    if (BufferManager_decodeBOM(manager, count->element) <= 0) return;
    const UChar mark = 0xFEFF;
    append(count, &mark, 1);
    addCharacters(count, 1);
}

}  // namespace

DFDLUString* BufferManager_readCharacterData(BufferManager* this_, int32_t encodingIndex, int64_t charCount,
                                             int64_t* charsRead, const GroupMemberTableRow* element,
                                             bool strict) {
    *charsRead = 0;
    if (!BufferManager_initializeEncoderDecoders(this_, encodingIndex, element)) return nullptr;
    if (charCount > MOST_CHARACTERS || this_->decoder == nullptr) {
        BufferManager_raise(this_, DFDLParser_bufferOverflow, element);
        return nullptr;
    }
    Count count{this_, element, charCount, 0, strict, nullptr, false, false};
    takeMark(&count);
    readCharacters(&count);
    checkLimits(&count);
    *charsRead = count.read;
    if (!count.failed) return count.text;
    delete_DFDLUString(count.text);
    return nullptr;
}

int64_t BufferManager_skipCharacters(BufferManager* this_, int32_t encodingIndex, int64_t count,
                                     const GroupMemberTableRow* element) {
    if (!BufferManager_initializeEncoderDecoders(this_, encodingIndex, element)) return 0;
    if (this_->encodingFixedWidth == 0) {
        int64_t charsRead = 0;
        delete_DFDLUString(
            BufferManager_readCharacterData(this_, encodingIndex, count, &charsRead, element, true));
        return charsRead;
    }
    return BufferManager_skipWideCharacters(this_, count, this_->maxBytesPerChar, element);
}

int64_t BufferManager_skipMinWidthCharacters(BufferManager* this_, int32_t encodingIndex, int64_t count,
                                             const GroupMemberTableRow* element) {
    if (!BufferManager_initializeEncoderDecoders(this_, encodingIndex, element)) return 0;
    DFDLCharset* charset = this_->currentCharset;
    if (charset == nullptr) return 0;
    const bool twoBytes = DFDLCharset_isUTF16Compatible(charset) || DFDLCharset_isUCS2(charset);
    return BufferManager_skipWideCharacters(this_, count, twoBytes ? 2 : DFDLCharset_minBytesPerChar(charset),
                                            element);
}

int64_t BufferManager_skipWideCharacters(BufferManager* this_, int64_t count, int64_t width,
                                         const GroupMemberTableRow* element) {
    if (count <= 0 || width <= 0) return 0;
    const int64_t bytes = count > std::numeric_limits<int64_t>::max() / 8 / width
                              ? std::numeric_limits<int64_t>::max() / 8
                              : count * width;
    if (BufferManager_skipBytes(this_, bytes, element) != bytes) return 0;
    this_->charPosition += count;
    if (this_->charTrackerCount < 1 || this_->charPosition <= this_->charLimit) return count;
    BufferManager_raise(this_, DFDLParser_endOfDataForParentStructure, element);
    return 0;
}
