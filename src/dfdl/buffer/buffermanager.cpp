#include "dfdl/buffer/buffermanager.h"

#include <limits>

#include "dfdl/buffer/dfdlbufferhandler.h"
#include "dfdl/buffer/inputstreambufferhandler.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/resourcecatalog.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

// Positions are bits in 64 bits: what lies beyond cannot be addressed and ends the stream.
constexpr int64_t MOST_BYTES = std::numeric_limits<int64_t>::max() >> 4;

int32_t chainLength(const BufferManager* manager) {
    return manager->buffers->count - manager->releasedBuffers;
}

DFDLByteBufferImpl* chainAt(const BufferManager* manager, int32_t index) {
    return ArrayList_getPointer<DFDLByteBufferImpl>(manager->buffers, manager->releasedBuffers + index);
}

// The list is moved together when most of it is released, so that a buffer is moved once or twice in its
// life, however many there are.
void dropReleased(BufferManager* manager, int32_t count) {
    manager->releasedBuffers += count;
    if (manager->releasedBuffers <= manager->buffers->count / 2) return;
    ArrayList_removeFirst(manager->buffers, manager->releasedBuffers);
    manager->releasedBuffers = 0;
}

DFDLByteBufferImpl* takeRecord(BufferManager* manager) {
    if (ArrayList_isEmpty(manager->spareBuffers)) return new_DFDLByteBufferImpl(manager->heap);
    auto* buffer = ArrayList_popPointer<DFDLByteBufferImpl>(manager->spareBuffers);
    DFDLByteBufferImpl_reset(buffer);
    return buffer;
}

// Room for the record was made when it entered the chain.
void putRecordBack(BufferManager* manager, DFDLByteBufferImpl* buffer) {
    ArrayList_addPointer(manager->spareBuffers, buffer);
}

void appendToChain(BufferManager* manager, DFDLByteBufferImpl* buffer) {
    ArrayList_makeRoomAfter(manager->spareBuffers, manager->spareBuffers->count + manager->buffers->count);
    ArrayList_addPointer(manager->buffers, buffer);
    buffer->sequence = manager->nextSequence++;
}

// The buffers of the chain follow each other without gaps. -1 for one that is not in it.
int32_t indexInChain(const BufferManager* manager, const DFDLByteBufferImpl* buffer) {
    if (chainLength(manager) == 0) return -1;
    const int64_t index = buffer->sequence - chainAt(manager, 0)->sequence;
    const bool inside = index >= 0 && index < chainLength(manager);
    return inside && chainAt(manager, static_cast<int32_t>(index)) == buffer ? static_cast<int32_t>(index)
                                                                             : -1;
}

void seeLastBuffer(BufferManager* manager) {
    manager->lastBufferSeen = 1;
    manager->documentBitLength = manager->totalBitsLoaded;
    if (ArrayList_isEmpty(manager->lengthTrackers) || manager->totalBitsLoaded < manager->bitLimit) {
        manager->bitLimit = manager->totalBitsLoaded;
    }
}

void account(BufferManager* manager, DFDLByteBufferImpl* buffer) {
    if (buffer->size > MOST_BYTES - manager->totalBytesLoaded) {
        buffer->size = MOST_BYTES - manager->totalBytesLoaded;
        buffer->isLast = 1;
    }
    const int64_t start = manager->totalBytesLoaded;
    manager->totalBytesLoaded += buffer->size;
    manager->totalBitsLoaded = manager->totalBytesLoaded * 8;
    DFDLByteBufferImpl_setStreamOffsets(buffer, start, manager->totalBytesLoaded - 1);
    if (buffer->isLast != 0) seeLastBuffer(manager);
}

// The newest buffer of the stream; null once the last one has been seen.
DFDLByteBufferImpl* fetchBuffer(BufferManager* manager) {
    DFDLBufferHandlerImpl* handler = manager->bufferHandler;
    if (manager->lastBufferSeen != 0 || handler == nullptr || handler->getNextBuffer == nullptr)
        return nullptr;
    DFDLByteBufferImpl* buffer = takeRecord(manager);
    appendToChain(manager, buffer);
    handler->getNextBuffer(handler, buffer);
    buffer->position = 0;
    account(manager, buffer);
    if (manager->firstBuffer == nullptr) manager->firstBuffer = buffer;
    return buffer;
}

void releaseToHandler(BufferManager* manager, DFDLByteBufferImpl* buffer) {
    DFDLBufferHandlerImpl* handler = manager->bufferHandler;
    if (handler != nullptr && handler->releaseBuffer != nullptr) handler->releaseBuffer(handler, buffer);
}

bool isUnused(const DFDLByteBufferImpl* buffer) {
    return buffer->refCount == 0 && buffer->position >= buffer->size;
}

void dropBuffers(BufferManager* manager) {
    bool behindCurrent = false;
    for (int32_t i = 0; i < chainLength(manager); ++i) {
        DFDLByteBufferImpl* buffer = chainAt(manager, i);
        if (behindCurrent) buffer->position = 0;
        if (buffer == manager->currentBuffer) behindCurrent = true;
        releaseToHandler(manager, buffer);
        putRecordBack(manager, buffer);
    }
    ArrayList_clear(manager->buffers);
    manager->releasedBuffers = 0;
    manager->currentBuffer = nullptr;
    manager->firstBuffer = nullptr;
}

void dropMarkers(BufferManager* manager) {
    while (!ArrayList_isEmpty(manager->markers)) {
        auto* marker = ArrayList_getPointer<DFDLBufferMarker>(manager->markers, manager->markers->count - 1);
        marker->buffer = nullptr;
        BufferManager_release(manager, marker);
    }
}

void clearPositions(BufferManager* manager) {
    manager->totalBitsLoaded = 0;
    manager->totalBytesLoaded = 0;
    manager->documentBitLength = -1;
    manager->bitPosition = 0;
    manager->bitLimit = -1;
    manager->charLimit = -1;
    manager->charTrackerCount = 0;
    manager->limitingElement = nullptr;
    manager->lastBufferSeen = 0;
    ArrayList_clear(manager->lengthTrackers);
}

void clearEncoding(BufferManager* manager) {
    manager->encoder = nullptr;
    manager->decoder = nullptr;
    manager->currentCharset = nullptr;
    manager->currentEncodingIndex = -1;
}

void deleteSpares(BufferManager* manager) {
    while (!ArrayList_isEmpty(manager->spareBuffers)) {
        delete_DFDLByteBufferImpl(ArrayList_popPointer<DFDLByteBufferImpl>(manager->spareBuffers));
    }
}

}  // namespace

BufferManager* new_BufferManager(DFDLHeapAdapter* heap, DFDLConstants* constants, Context* context,
                                 DFDLBufferHandlerImpl* handler, CharsetManager* charsetManager,
                                 ResourceCatalog* resources) {
    auto* this_ = DFDLHeapAdapter_new<BufferManager>(heap);
    this_->constants = constants;
    this_->context = context;
    this_->bufferHandler = handler;
    this_->charsetManager = charsetManager;
    this_->resources = resources;
    this_->maxBytesPerChar = -1;
    this_->buffers = new_ArrayListOfPointers(heap, 8);
    this_->spareBuffers = new_ArrayListOfPointers(heap, 8);
    this_->markers = new_ArrayListOfPointers(heap, 8);
    this_->lengthTrackers = new_ArrayList(heap, 10, static_cast<int32_t>(sizeof(LengthTracker)));
    clearPositions(this_);
    clearEncoding(this_);
    return this_;
}

void delete_BufferManager(BufferManager* this_) {
    if (this_ == nullptr) return;
    if (this_->lengthTrackers != nullptr) BufferManager_clear(this_);
    if (this_->spareBuffers != nullptr) deleteSpares(this_);
    delete_ArrayList(this_->buffers);
    delete_ArrayList(this_->spareBuffers);
    delete_ArrayList(this_->markers);
    delete_ArrayList(this_->lengthTrackers);
    delete_InputstreamBufferHandler(this_->inputStreamHandler);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void BufferManager_clear(BufferManager* this_) {
    dropMarkers(this_);
    dropBuffers(this_);
    clearPositions(this_);
    clearEncoding(this_);
}

void BufferManager_setBufferHandler(BufferManager* this_, DFDLBufferHandlerImpl* handler) {
    BufferManager_clear(this_);
    this_->bufferHandler = handler;
}

void BufferManager_setInputDocument(BufferManager* this_, const uint8_t* data, int64_t size) {
    BufferManager_setBufferHandler(this_, nullptr);
    DFDLByteBufferImpl* buffer = takeRecord(this_);
    appendToChain(this_, buffer);
    DFDLByteBuffer_setData(buffer, data, size, 1);
    account(this_, buffer);
    buffer->refCount = 1;
    this_->currentBuffer = buffer;
}

void BufferManager_setInputStream(BufferManager* this_, InputStream* stream, bool whole) {
    BufferManager_clear(this_);
    if (this_->inputStreamHandler == nullptr) {
        this_->inputStreamHandler = new_InputstreamBufferHandler(this_->heap);
    }
    reuse_InputstreamBufferHandler(this_->inputStreamHandler, stream, whole);
    this_->bufferHandler = this_->inputStreamHandler;
    if (whole) BufferManager_loadFirstBuffer(this_);
}

void BufferManager_loadFirstBuffer(BufferManager* this_) {
    if (this_->currentBuffer == nullptr) BufferManager_nextBuffer(this_, nullptr, true);
}

DFDLByteBufferImpl* BufferManager_nextBuffer(BufferManager* this_, DFDLByteBufferImpl* current, bool move) {
    int32_t next = 0;
    if (current != nullptr) {
        if (current->isLast != 0) return nullptr;
        next = indexInChain(this_, current) + 1;
    }
    DFDLByteBufferImpl* buffer = nullptr;
    if (next < chainLength(this_)) {
        buffer = chainAt(this_, next);
        buffer->position = 0;
    } else {
        buffer = fetchBuffer(this_);
    }
    if (buffer != nullptr && move) BufferManager_setCurrentBuffer(this_, buffer);
    return buffer;
}

void BufferManager_setCurrentBuffer(BufferManager* this_, DFDLByteBufferImpl* buffer) {
    DFDLByteBufferImpl* old = this_->currentBuffer;
    if (old == buffer) return;
    this_->currentBuffer = buffer;
    if (buffer != nullptr) ++buffer->refCount;
    if (old == nullptr) return;
    if (old->refCount > 0) --old->refCount;
    BufferManager_releaseUnusedBuffers(this_);
}

void BufferManager_releaseUnusedBuffers(BufferManager* this_) {
    int32_t unused = 0;
    while (unused < chainLength(this_) && isUnused(chainAt(this_, unused))) {
        releaseToHandler(this_, chainAt(this_, unused));
        ++unused;
    }
    for (int32_t i = unused - 1; i >= 0; --i) {
        DFDLByteBufferImpl* buffer = chainAt(this_, i);
        if (this_->firstBuffer == buffer) this_->firstBuffer = nullptr;
        putRecordBack(this_, buffer);
    }
    dropReleased(this_, unused);
    if (chainLength(this_) == 0) this_->currentBuffer = nullptr;
}

DFDLByteBufferImpl* BufferManager_unreadBuffer(BufferManager* this_) {
    DFDLByteBufferImpl* buffer = this_->currentBuffer;
    if (buffer == nullptr) buffer = BufferManager_nextBuffer(this_, nullptr, true);
    while (buffer != nullptr && DFDLByteBufferImpl_remaining(buffer) <= 0) {
        buffer = BufferManager_nextBuffer(this_, buffer, true);
    }
    return buffer;
}

bool BufferManager_loadBytes(BufferManager* this_, int64_t bytes) {
    while (this_->totalBytesLoaded < bytes) {
        const int32_t count = chainLength(this_);
        DFDLByteBufferImpl* newest = count == 0 ? nullptr : chainAt(this_, count - 1);
        if (BufferManager_nextBuffer(this_, newest, false) == nullptr) return false;
    }
    return true;
}

void BufferManager_raise(BufferManager* this_, const char* key, const GroupMemberTableRow* element) {
    BufferManager_raiseAt(this_, key, BufferManager_bytePosition(this_), element);
}

void BufferManager_raiseAt(BufferManager* this_, const char* key, int64_t bytePosition,
                           const GroupMemberTableRow* element) {
    const DFDLUString* name = GroupMemberTableRow_getElementName(element);
    ProcessingError* error = this_->context->currentError;
    if (key == DFDLParser_endOfDataForParentStructure) {
        ProcessingError_setValues(error, __FILE__, __LINE__, key, ERROR_PROCESSING, SUBKIND_LACK_OF_DATA,
                                  "%Z", name);
        return;
    }
    ProcessingError_setValues(error, __FILE__, __LINE__, key, ERROR_PROCESSING, SUBKIND_LACK_OF_DATA,
                              "%lld%Z", static_cast<long long>(bytePosition), name);
}

uint8_t* BufferManager_allocateBytes(BufferManager* this_, int64_t count) {
    return DFDLBufferFactory_GetBuffer(this_->heap->bufferFactory, count);
}

void BufferManager_deAllocateBytes(BufferManager* this_, uint8_t* bytes) {
    DFDLBufferFactory_FreeBuffer(this_->heap->bufferFactory, bytes);
}

const UChar* BufferManager_getLengthUnitsString(BufferManager* this_, int32_t units) {
    constexpr const char* KEYS[] = {LengthUnits_Bits, LengthUnits_Bytes, LengthUnits_Characters};
    if (units < BITS || units > CHARACTERS) return u"";
    int32_t length = 0;
    const UChar* word = ResourceCatalog_GetStringFromResource(this_->resources, KEYS[units], &length);
    return word == nullptr ? u"" : word;
}
