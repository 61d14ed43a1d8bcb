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

// One count of characters: what is wanted, what has been read.
struct Count {
    BufferManager* manager;
    const GroupMemberTableRow* element;
    int64_t wanted;  // code points still to come
    bool strict;
    int64_t read = 0;  // code points
    UChar* units = nullptr;
    int64_t length = 0;
    int64_t capacity = 0;
    bool converterUsed = false;
    bool done = false;  // nothing more can come
    bool failed = false;
};

// Room behind the text for so many units and a terminator. Doubling keeps a text that comes in small pieces
// from being copied over and over.
UChar* roomFor(Count* count, int64_t units) {
    const int64_t needed = count->length + units + 1;
    if (needed > count->capacity) {
        DFDLBufferFactory* factory = count->manager->heap->bufferFactory;
        const int64_t capacity = std::max(needed, 2 * count->capacity);
        UChar* larger = DFDLBufferFactory_GetUBuffer(factory, capacity);
        std::copy_n(count->units, count->length, larger);
        DFDLBufferFactory_FreeUBuffer(factory, count->units);
        count->units = larger;
        count->capacity = capacity;
    }
    return count->units + count->length;
}

void add(Count* count, int64_t units, int64_t characters) {
    count->length += units;
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

// Bytes that are characters by themselves, while the converter is between characters.
bool takeDirectly(Count* count, const DFDLByteBufferImpl* buffer) {
    DFDLCharset* charset = count->manager->currentCharset;
    if (count->wanted < 1 || !DFDLCharset_hasDirectRoad(charset)) return false;
    const int64_t bytes = std::min(count->wanted, DFDLByteBufferImpl_remaining(buffer));
    UChar* target = roomFor(count, bytes);
    if (!DFDLCharset_decodeDirectly(charset, buffer->data + buffer->position, bytes, target)) return false;
    consume(count, bytes);
    add(count, bytes, bytes);
    return true;
}

void raiseCoding(Count* count) {
    Context* context = count->manager->context;
    ProcessingError_reset(context->currentError);
    ProcessingError_setValues(context->currentError, __FILE__, __LINE__, DFDLParser_characterCodingException,
                              ERROR_PROCESSING, SUBKIND_LACK_OF_DATA, "%lld%Z",
                              static_cast<long long>(BufferManager_bytePosition(count->manager)),
                              count->manager->currentCharset->name);
    count->failed = true;
}

// Bad data, and a character cut off by the end of the data, end the text: with an error, or quietly. The
// position is where they begin.
void judge(Count* count, UErrorCode status) {
    if (U_SUCCESS(status) || status == U_BUFFER_OVERFLOW_ERROR) return;
    count->done = true;
    if (count->strict) {
        raiseCoding(count);
    } else {
        count->manager->malformedSeen = 1;
    }
}

// Whether the text ends with half of a character whose other half has yet to come.
bool isInsidePair(const Count* count) {
    return count->length > 0 && U16_IS_LEAD(count->units[count->length - 1]);
}

// Code points that so many units behind the text add to it.
int64_t countAdded(const Count* count, int64_t units) {
    const UChar* added = count->units + count->length;
    const int32_t characters = u_countChar32(added, static_cast<int32_t>(units));
    return isInsidePair(count) && units > 0 && U16_IS_TRAIL(added[0]) ? characters - 1 : characters;
}

// One decode of the unread bytes of a buffer.
struct Pass {
    const char* at;
    const char* end;
    UChar* target;
    UErrorCode status;
};

void decode(Count* count, Pass* pass, const UChar* limit, bool flush) {
    pass->status = U_ZERO_ERROR;
    ucnv_toUnicode(count->manager->decoder, &pass->target, limit, &pass->at, pass->end, nullptr, flush,
                   &pass->status);
}

// At most as many units as characters are wanted, so that no byte of a later character is consumed; and one
// more where that would cut a pair. Returns whether the converter is between characters afterwards.
bool takeThroughICU(Count* count, const DFDLByteBufferImpl* buffer) {
    BufferManager* manager = count->manager;
    const int64_t available = DFDLByteBufferImpl_remaining(buffer);
    // A byte is at most two units; a few more may come from bytes that the converter holds.
    const int64_t most = std::clamp<int64_t>(count->wanted, 1, 2 * available + 8);
    UChar* units = roomFor(count, most + 1);
    const char* bytes = reinterpret_cast<const char*>(buffer->data + buffer->position);
    Pass pass{bytes, bytes + available, units, U_ZERO_ERROR};
    manager->charsetManager->badByteCount = 0;
    count->converterUsed = true;
    decode(count, &pass, units + most, buffer->isLast != 0);
    if (pass.target == units + most && U16_IS_LEAD(pass.target[-1])) {
        decode(count, &pass, units + most + 1, buffer->isLast != 0);
    }
    consume(count, pass.at - bytes - manager->charsetManager->badByteCount);
    add(count, pass.target - units, countAdded(count, pass.target - units));
    judge(count, pass.status);
    UErrorCode status = U_ZERO_ERROR;
    return pass.status == U_ZERO_ERROR && ucnv_toUCountPending(manager->decoder, &status) == 0;
}

// The data ended behind a buffer that was not the last when it was read: a character may have been cut off.
void flush(Count* count) {
    char nothing = 0;
    UChar* units = roomFor(count, 1);
    Pass pass{&nothing, &nothing, units, U_ZERO_ERROR};
    count->manager->charsetManager->badByteCount = 0;
    decode(count, &pass, units + 1, true);
    consume(count, -count->manager->charsetManager->badByteCount);
    judge(count, pass.status);
}

// Every read begins and ends between characters and in the converter's first state, so that going back to a
// mark, and where buffers end, make no difference.
void readCharacters(Count* count) {
    bool betweenCharacters = true;
    while (!count->done && (count->wanted > 0 || isInsidePair(count))) {
        const DFDLByteBufferImpl* buffer = BufferManager_unreadBuffer(count->manager);
        if (buffer == nullptr) break;
        if (betweenCharacters && takeDirectly(count, buffer)) continue;
        betweenCharacters = takeThroughICU(count, buffer);
    }
    if (!count->converterUsed) return;
    if (!count->done && count->wanted > 0) flush(count);
    ucnv_resetToUnicode(count->manager->decoder);
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
    *roomFor(count, 1) = 0xFEFF;
    add(count, 1, 1);
}

// The text read, the caller's; null if there is none, or none may be given.
DFDLUString* takeText(Count* count) {
    DFDLHeapAdapter* heap = count->manager->heap;
    if (count->failed || count->length == 0) {
        DFDLBufferFactory_FreeUBuffer(heap->bufferFactory, count->units);
        return nullptr;
    }
    count->units[count->length] = 0;
    return DFDLUStringPooler_getDFDLUStringUseUChars(heap, count->units, static_cast<int32_t>(count->length));
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
    Count count{this_, element, charCount, strict};
    takeMark(&count);
    readCharacters(&count);
    checkLimits(&count);
    *charsRead = count.read;
    return takeText(&count);
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
