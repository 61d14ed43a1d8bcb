#ifndef DFDL_BUFFER_BUFFERMANAGER_H
#define DFDL_BUFFER_BUFFERMANAGER_H

#include <unicode/ucnv.h>

#include <cstdint>

#include "dfdl/buffer/dfdlbytebuffer.h"
#include "dfdl/buffer/lengthtracker.h"
#include "dfdl/foundation/dfdlheapadapter.h"

struct ArrayList;
struct CharsetManager;
struct Context;
struct DFDLBufferHandlerImpl;
struct DFDLCharset;
struct DFDLConstants;
struct DFDLUString;
struct GroupMemberTableRow;
struct InputStream;
struct ResourceCatalog;
struct TraceHandlerAdapter;

enum BufferManagerMode : int32_t { BUFFER_PARSER = 0, BUFFER_SERIALIZER = 1 };

// A place to come back to. Pooled; live ones stand in the manager's list and pin their buffer.
struct DFDLBufferMarker {
    DFDLHeapAdapter* heap;
    DFDLByteBufferImpl* buffer;
    int64_t bufferPosition;
    int64_t bitPosition;
    int64_t charPosition;
};

// A marker with the scoped lengths that were open. Pooled.
struct BufferManagerCheckPoint {
    DFDLHeapAdapter* heap;
    DFDLBufferMarker* marker;
    int32_t trackerDepth;  // scoped lengths
};

// The data stream as one run of bits, fed in pieces: position, chain of buffers, marks, scoped lengths, ends.
// Bit 0 is the most significant bit of byte 0. Positions and limits are bits from the start of the stream; a
// limit of zero or less is none. No operation moves back after a failure: who may fail takes a mark first.
// `element` is on whose behalf data are read, for messages; it may be null. Belongs to its engine.
struct BufferManager {
    DFDLHeapAdapter* heap;
    Context* context;
    DFDLConstants* constants;
    int64_t totalBitsLoaded;
    int64_t totalBytesLoaded;
    int64_t documentBitLength;  // -1 until the last buffer has been seen
    int64_t bitPosition;
    int64_t charPosition;  // characters consumed; survives a clear
    uint32_t bomChecked;   // a byte order mark has been looked for; survives a clear
    uint32_t canHaveBOM;   // the current encoding may start with one
    int32_t encodingByteOrder;
    uint32_t malformedSeen;  // a lenient read stopped at bad data
    int64_t bitLimit;        // innermost; -1 none
    int64_t charLimit;       // innermost; -1 none
    int32_t charTrackerCount;
    const GroupMemberTableRow* limitingElement;
    uint32_t lastBufferSeen;
    DFDLBufferHandlerImpl* bufferHandler;  // null: a document in memory
    DFDLByteBufferImpl* currentBuffer;
    UConverter* encoder;  // the current charset's converter, as is the decoder
    UConverter* decoder;
    int32_t currentEncodingIndex;  // -1 none
    uint32_t encodingFixedWidth;
    int32_t maxBytesPerChar;
    DFDLCharset* currentCharset;
    DFDLByteBufferImpl* firstBuffer;  // first ever fetched since the last clear
    ArrayList* buffers;               // the chain, oldest first
    int32_t releasedBuffers;          // at the front of the list, no longer in the chain
    int64_t nextSequence;             // of the buffer that enters the chain next
    ArrayList* spareBuffers;          // records to be used again
    ArrayList* markers;
    ArrayList* lengthTrackers;  // LengthTracker by value
    CharsetManager* charsetManager;
    int32_t mode;  // BufferManagerMode
    TraceHandlerAdapter* trace;
    ResourceCatalog* resources;
    DFDLBufferHandlerImpl* inputStreamHandler;  // made at need, owned
};

BufferManager* new_BufferManager(DFDLHeapAdapter* heap, DFDLConstants* constants, Context* context,
                                 DFDLBufferHandlerImpl* handler, CharsetManager* charsetManager,
                                 ResourceCatalog* resources);
void delete_BufferManager(BufferManager* this_);  // null is ignored

// Input.
void BufferManager_setInputDocument(BufferManager* this_, const uint8_t* data, int64_t size);  // in place
void BufferManager_setBufferHandler(BufferManager* this_, DFDLBufferHandlerImpl* handler);
void BufferManager_setInputStream(BufferManager* this_, InputStream* stream, bool whole);
void BufferManager_loadFirstBuffer(BufferManager* this_);
// Drops buffers, marks, scopes and positions; every buffer goes back to the handler.
void BufferManager_clear(BufferManager* this_);

inline int64_t BufferManager_bitPosition(const BufferManager* this_) { return this_->bitPosition; }
inline int64_t BufferManager_bytePosition(const BufferManager* this_) { return this_->bitPosition >> 3; }

// Bytes and bits.
// Copies from a byte offset; the bytes delivered, which are fewer at the end of the data.
int64_t BufferManager_read(BufferManager* this_, uint8_t* target, int64_t count, int64_t byteOffset,
                           bool advance);
// The same, 0 with an error if the limit is crossed.
int64_t BufferManager_getBytes(BufferManager* this_, uint8_t* target, int64_t count, int64_t byteOffset,
                               bool advance, const GroupMemberTableRow* element);
// Left-aligned in target; the count, or -1. Nothing is raised where the data end.
int64_t BufferManager_readBits(BufferManager* this_, uint8_t* target, int64_t bits,
                               const GroupMemberTableRow* element);
int32_t BufferManager_readByte(BufferManager* this_, const GroupMemberTableRow* element);  // -1 with an error
// The byte as a signed value, so that 0xFF is -1 as a failure is; only a failure leaves an error.
int32_t BufferManager_peekByte(BufferManager* this_, int64_t byteOffset, const GroupMemberTableRow* element);
// The next bytes where they lie, without moving; null unless they all lie in the current buffer and the
// position is on a byte boundary.
inline const uint8_t* BufferManager_peekBytes(const BufferManager* this_, int64_t count) {
    const DFDLByteBufferImpl* buffer = this_->currentBuffer;
    if (buffer == nullptr || (this_->bitPosition & 7) != 0) return nullptr;
    return DFDLByteBufferImpl_remaining(buffer) < count ? nullptr : buffer->data + buffer->position;
}
// The count skipped; -1 with an error if data or limit end first.
int64_t BufferManager_skipBits(BufferManager* this_, int64_t bits, const GroupMemberTableRow* element);
int64_t BufferManager_skipBytes(BufferManager* this_, int64_t bytes, const GroupMemberTableRow* element);
// 0 with an error if fewer characters are there.
int64_t BufferManager_skipCharacters(BufferManager* this_, int32_t encodingIndex, int64_t count,
                                     const GroupMemberTableRow* element);
int64_t BufferManager_skipMinWidthCharacters(BufferManager* this_, int32_t encodingIndex, int64_t count,
                                             const GroupMemberTableRow* element);
int64_t BufferManager_skipData(BufferManager* this_, const GroupMemberTableRow* element, int32_t units,
                               int64_t amount);

// Text, pooled and the caller's; null with an error.
DFDLUString* BufferManager_readBytesAsString(BufferManager* this_, int32_t encodingIndex, int64_t byteCount,
                                             const GroupMemberTableRow* element);
// Counts code points. Fewer than wanted are no error here; null if there are none. Not strict: stops quietly
// at malformed data.
DFDLUString* BufferManager_readCharacterData(BufferManager* this_, int32_t encodingIndex, int64_t charCount,
                                             int64_t* charsRead, const GroupMemberTableRow* element,
                                             bool strict);
// Makes the encoding's converter current; false with an error if there is none.
bool BufferManager_initializeEncoderDecoders(BufferManager* this_, int32_t encodingIndex,
                                             const GroupMemberTableRow* element);
// Moves over a byte order mark, once in the manager's life; the bytes of the mark, -1 where none can be.
int32_t BufferManager_decodeBOM(BufferManager* this_, const GroupMemberTableRow* element);

// Marks and check points. A marker stays live until it is released.
DFDLBufferMarker* BufferManager_mark(BufferManager* this_);
void BufferManager_reset(BufferManager* this_, DFDLBufferMarker* marker);
void BufferManager_release(BufferManager* this_, DFDLBufferMarker* marker);
BufferManagerCheckPoint* BufferManager_getCheckPoint(BufferManager* this_);
void BufferManager_restoreToCheckPoint(BufferManager* this_, BufferManagerCheckPoint* checkPoint);
void BufferManager_releaseCheckPoint(BufferManager* this_, BufferManagerCheckPoint* checkPoint);
BufferManagerCheckPoint* BufferManager_refreshCheckPoint(BufferManager* this_,
                                                         BufferManagerCheckPoint* checkPoint);

// Scoped lengths. A scope can only narrow what stands.
bool BufferManager_imposeScopedBufferLength(BufferManager* this_, int64_t length, int32_t units,
                                            const GroupMemberTableRow* element);
// Ends the innermost scope; `consume` first moves past what is left of it, if it is the element's.
bool BufferManager_removeScopedBufferLengthUnparser(BufferManager* this_, const GroupMemberTableRow* element,
                                                    bool consume, int32_t scratch);
int64_t BufferManager_getRemainingLengthInContainingStructure(BufferManager* this_,
                                                              const GroupMemberTableRow* element);

// Ends.
// If all that is loaded has been read and more may come, loads it, so that the questions below are answered
// alike for input in pieces and for input in one piece.
void BufferManager_loadAhead(BufferManager* this_);
bool BufferManager_endOfDataStream(BufferManager* this_);  // fewer than 8 bits left
bool BufferManager_endOfScopedDataStream(BufferManager* this_);
bool BufferManager_hasNoRemainingBits(BufferManager* this_);

// Temporary bytes.
uint8_t* BufferManager_allocateBytes(BufferManager* this_, int64_t count);
void BufferManager_deAllocateBytes(BufferManager* this_, uint8_t* bytes);

const UChar* BufferManager_getLengthUnitsString(BufferManager* this_, int32_t units);

// Shared by the manager's own files.
// So many characters of one width, with the test of the limits.
int64_t BufferManager_skipWideCharacters(BufferManager* this_, int64_t count, int64_t width,
                                         const GroupMemberTableRow* element);
void BufferManager_raise(BufferManager* this_, const char* key, const GroupMemberTableRow* element);
void BufferManager_raiseAt(BufferManager* this_, const char* key, int64_t bytePosition,
                           const GroupMemberTableRow* element);
void BufferManager_throwInsufficientDataException(BufferManager* this_, int64_t bytePosition, int32_t units,
                                                  int64_t amount, const GroupMemberTableRow* element);
// The next buffer of the chain, fetched if need be; null at the end. `move` makes it current.
DFDLByteBufferImpl* BufferManager_nextBuffer(BufferManager* this_, DFDLByteBufferImpl* current, bool move);
// Moves to the buffer with the next unread byte; null at the end of the data.
DFDLByteBufferImpl* BufferManager_unreadBuffer(BufferManager* this_);
// Loads, without moving, until so many bytes of the stream have been; false if there are fewer.
bool BufferManager_loadBytes(BufferManager* this_, int64_t bytes);
void BufferManager_setCurrentBuffer(BufferManager* this_, DFDLByteBufferImpl* buffer);
void BufferManager_releaseUnusedBuffers(BufferManager* this_);
inline bool BufferManager_crossesLimit(const BufferManager* this_) {
    return this_->bitLimit >= 1 && this_->bitPosition > this_->bitLimit;
}
void BufferManager_popTracker(BufferManager* this_);  // and the limits of the scope below are back

#endif
