#include <limits>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/rowtrace.h"

namespace {

constexpr int64_t FARTHEST = std::numeric_limits<int64_t>::max();

// A length that reaches beyond what positions can say is as good as endless.
int64_t limitAfter(int64_t position, int64_t length, int64_t unit) {
    if (length <= 0) return position;
    return length > (FARTHEST - position) / unit ? FARTHEST : position + length * unit;
}

LengthTracker* trackerAt(const BufferManager* manager, int32_t index) {
    return static_cast<LengthTracker*>(ArrayList_get(manager->lengthTrackers, index));
}

LengthTracker* topTracker(const BufferManager* manager) {
    const int32_t count = manager->lengthTrackers->count;
    return count == 0 ? nullptr : trackerAt(manager, count - 1);
}

int64_t cutToDocument(const BufferManager* manager, int64_t limit) {
    return manager->documentBitLength >= 0 && manager->documentBitLength < limit ? manager->documentBitLength
                                                                                 : limit;
}

void tighten(BufferManager* manager, int64_t newLimit, const GroupMemberTableRow* element) {
    if (manager->bitLimit != -1 && manager->bitLimit < newLimit) return;
    manager->bitLimit = cutToDocument(manager, newLimit);
    manager->limitingElement = element;
}

void push(BufferManager* manager, int32_t units, int64_t bitLimit, const GroupMemberTableRow* element) {
    const LengthTracker tracker{units, bitLimit, manager->charLimit, element, 0};
    ArrayList_add(manager->lengthTrackers, &tracker);
}

void restoreLimits(BufferManager* manager) {
    const LengthTracker* top = topTracker(manager);
    if (top == nullptr) {
        manager->bitLimit = manager->documentBitLength;
        manager->charLimit = -1;
        manager->limitingElement = nullptr;
        manager->charTrackerCount = 0;
        return;
    }
    manager->bitLimit = cutToDocument(manager, top->bitLimit);
    manager->charLimit = top->charLimit;
    manager->limitingElement = top->element;
}

// Where the scope of so many characters ends; false with an error if they are not there.
bool measureCharacters(BufferManager* manager, int64_t length, const GroupMemberTableRow* element,
                       int64_t* limit) {
    DFDLBufferMarker* marker = BufferManager_mark(manager);
    manager->malformedSeen = 0;
    int64_t charsRead = 0;
    delete_DFDLUString(BufferManager_readCharacterData(manager, manager->currentEncodingIndex, length,
                                                       &charsRead, element, false));
    *limit = manager->bitPosition;
    BufferManager_reset(manager, marker);
    BufferManager_release(manager, marker);
    if (!ProcessingError_isSet(manager->context->currentError) && charsRead < length) {
        BufferManager_raise(manager, DFDLParser_bufferOverflow, element);
    }
    return !ProcessingError_isSet(manager->context->currentError);
}

bool imposeCharacters(BufferManager* manager, int64_t length, const GroupMemberTableRow* element) {
    int64_t newLimit = 0;
    if (!measureCharacters(manager, length, element, &newLimit)) return false;
    const int64_t newCharLimit = limitAfter(manager->charPosition, length, 1);
    if (manager->charLimit == -1 || manager->charLimit > newCharLimit) {
        manager->charLimit = newCharLimit;
        manager->limitingElement = element;
    }
    tighten(manager, newLimit, element);
    push(manager, CHARACTERS, newLimit, element);
    ++manager->charTrackerCount;
    return true;
}

// What is left of a scope, in its units. Inside a byte only bits can tell, and the tracker counts bits from
// then on.
int64_t remainder(BufferManager* manager, LengthTracker* tracker) {
    const int64_t bits = tracker->bitLimit - manager->bitPosition;
    if (tracker->units == CHARACTERS) return tracker->charLimit - manager->charPosition;
    if (tracker->units == BYTES && (manager->bitPosition & 7) == 0) return bits / 8;
    tracker->units = BITS;
    return bits;
}

void traceSkippedChoice(BufferManager* manager, const GroupMemberTableRow* element) {
    if (manager->context->userTraceOn == 0 || element->iPhysicalType != GROUP_CHOICE) return;
    TraceHandlerAdapter_userTraceInfo(manager->trace, element, nullptr,
                                      ut_DFDLParser_SkippedDataFixedLengthChoice, "%lld%Z",
                                      static_cast<long long>(BufferManager_bytePosition(manager)),
                                      GroupMemberTableRow_getElementName(element));
}

bool consumeRest(BufferManager* manager, LengthTracker* tracker, const GroupMemberTableRow* element) {
    const int64_t rest = remainder(manager, tracker);
    if (rest <= 0) return true;
    if (manager->mode != BUFFER_PARSER) return false;
    traceSkippedChoice(manager, element);
    return BufferManager_skipData(manager, element, tracker->units, rest) == rest;
}

}  // namespace

bool BufferManager_imposeScopedBufferLength(BufferManager* this_, int64_t length, int32_t units,
                                            const GroupMemberTableRow* element) {
    int64_t unit = units == BYTES ? 8 : 1;
    if (units == CHARACTERS) {
        const int32_t encoding = element == nullptr ? -1 : element->iTextEncodingIndex;
        if (!BufferManager_initializeEncoderDecoders(this_, encoding, element)) return false;
        if (this_->encodingFixedWidth == 0) return imposeCharacters(this_, length, element);
        units = BYTES;
        unit = 8 * static_cast<int64_t>(this_->maxBytesPerChar);
    }
    const int64_t newLimit = limitAfter(this_->bitPosition, length, unit);
    tighten(this_, newLimit, element);
    push(this_, units, newLimit, element);
    return true;
}

bool BufferManager_removeScopedBufferLengthUnparser(BufferManager* this_, const GroupMemberTableRow* element,
                                                    bool consume, int32_t scratch) {
    static_cast<void>(scratch);
    LengthTracker* top = topTracker(this_);
    if (top == nullptr) return true;
    const bool consumed = !consume || top->element != element || consumeRest(this_, top, element);
    BufferManager_popTracker(this_);
    return consumed;
}

int64_t BufferManager_getRemainingLengthInContainingStructure(BufferManager* this_,
                                                              const GroupMemberTableRow* element) {
    LengthTracker* top = topTracker(this_);
    return top == nullptr || top->element != element ? 0 : remainder(this_, top);
}

void BufferManager_popTracker(BufferManager* this_) {
    const LengthTracker* top = topTracker(this_);
    if (top->units == CHARACTERS) --this_->charTrackerCount;
    --this_->lengthTrackers->count;
    restoreLimits(this_);
}
