#include "dfdl/processor/dochandlereventbuffer.h"

#include <algorithm>
#include <utility>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"

namespace {

using Buffer = DocHandlerEventBuffer;

constexpr int32_t EVENT_CAPACITY = 10;

CachedEvent* eventAt(const Buffer* buffer, int32_t index) {
    return ArrayList_getPointer<CachedEvent>(buffer->events, index);
}

DFDLPoolingFactory* pools(const Buffer* buffer) { return buffer->heap->poolingFactory; }

// The root, at the end of the proxies.
DocHandlerAdapter* adapterOf(const Buffer* buffer) {
    while (buffer->chainedBuffer != nullptr) buffer = buffer->chainedBuffer;
    return buffer->adapter;
}

bool holds(const Buffer* buffer) { return buffer->holdLevel > 0; }

void giveBack(DFDLValue* value) { DFDLPoolingFactory_releaseDFDLValue(value->heap->poolingFactory, value); }
using Value = Owned<DFDLValue, giveBack>;
using Error = Owned<ProcessingError, delete_ProcessingError>;

void forgetLoneRecord(Buffer* buffer) {
    buffer->recordIsAlone = 0;
    buffer->plainElementCount = 0;
    buffer->textUnits = 0;
}

// How many texts an open run has is written down when it ends. A record that is alone is forgotten: it has
// been given, or a parse was given up.
void closeRun(Buffer* buffer) {
    if (buffer->runIsOpen == 0) return;
    buffer->runIsOpen = 0;
    if (buffer->recordIsAlone != 0) return forgetLoneRecord(buffer);
    CachedEvent* run = eventAt(buffer, buffer->events->count - 1);
    run->second = buffer->plainElementCount - run->first;
}

// An empty event at the end of the list.
CachedEvent* append(Buffer* buffer) {
    CachedEvent* event = CachedEventPooler_get(pools(buffer));
    closeRun(buffer);
    ArrayList_addPointer(buffer->events, event);
    return event;
}

// Stores only grow.
template <class T>
void grow(DFDLHeapAdapter* heap, T** store, int64_t used, int64_t* capacity, int64_t wanted) {
    constexpr int64_t LEAST = 256;
    if (wanted <= *capacity) return;
    const int64_t larger = LEAST + 2 * wanted;
    T* moved = DFDLHeapAdapter_newArray<T>(heap, static_cast<size_t>(larger));
    std::copy_n(*store, used, moved);
    if (*store != nullptr) DFDLHeapAdapter_arrayDeallocate(heap, *store);
    *store = moved;
    *capacity = larger;
}

// Its texts are the last that wait.
void forgetRun(Buffer* buffer, const CachedEvent& run) {
    if (run.second > 0) buffer->textUnits = buffer->plainElements[run.first].textStart;
    buffer->plainElementCount = run.first;
}

CachedEvent eventOf(CachedEventKind kind, const DFDLUString* designator, int64_t first, int64_t second) {
    return {nullptr, 0, nullptr, 0, nullptr, designator, nullptr, nullptr, kind, first, second};
}

// For the start of an element, in the document or in the representation.
CachedEvent namedEventOf(CachedEventKind kind, int32_t elementId, const DFDLUString* name,
                         int32_t namespaceId, const DFDLUString* namespaceUri, const DFDLUString* designator,
                         int64_t first) {
    return {nullptr, elementId, name, namespaceId, namespaceUri, designator, nullptr, nullptr,
            kind,    first,     0};
}

void deliverRegion(DocHandlerAdapter* adapter, const CachedEvent& event) {
    using Slot = DFDLRegionCallback DFDLRegionHandlerImpl::*;
    using Handler = DFDLRegionHandlerImpl;
    static constexpr Slot SLOTS[] = {&Handler::leadingAlignmentRegion, &Handler::initiatorRegion,
                                     &Handler::simpleContentRegion,    &Handler::trailingAlignmentRegion,
                                     &Handler::prefixSeparatorRegion,  &Handler::postfixSeparatorRegion,
                                     &Handler::infixSeparatorRegion,   &Handler::terminatorRegion};
    Handler* handler = adapter->regionHandler;
    const DFDLRegionCallback callback = handler->*SLOTS[event.kind - EVENT_LEADING_ALIGNMENT];
    if (callback == nullptr) return;
    callback(handler, DocHandlerAdapter_chars(event.designator), event.first, event.second);
}

void deliverBoundary(DocHandlerAdapter* adapter, const CachedEvent& event, const char* encoding) {
    DFDLRegionHandlerImpl* handler = adapter->regionHandler;
    const UChar* designator = DocHandlerAdapter_chars(event.designator);
    if (event.kind == EVENT_ELEMENT_START) {
        if (handler->elementStart == nullptr) return;
        handler->elementStart(handler, DocHandlerAdapter_chars(event.name),
                              DocHandlerAdapter_chars(event.namespaceUri), designator, event.first, encoding);
    } else if (event.kind == EVENT_ELEMENT_END) {
        if (handler->elementEnd != nullptr) handler->elementEnd(handler, designator, event.first);
    } else if (event.kind == EVENT_GROUP_START) {
        if (handler->groupStart != nullptr) handler->groupStart(handler, designator, event.first);
    } else {
        if (handler->groupEnd != nullptr) handler->groupEnd(handler, designator, event.first);
    }
}

void deliverToRegionHandler(DocHandlerAdapter* adapter, const CachedEvent& event, const char* encoding) {
    if (adapter == nullptr || adapter->regionHandler == nullptr) return;
    if (event.kind >= EVENT_LEADING_ALIGNMENT) return deliverRegion(adapter, event);
    deliverBoundary(adapter, event, encoding);
}

void deliverPlainElement(const Buffer* buffer, const HeldPlainElement& held) {
    DocHandlerAdapter* adapter = buffer->adapter;
    if (held.length >= NIL_ELEMENT) {
        DocHandlerAdapter_plainText(adapter, held.plan, buffer->texts + held.textStart, held.length,
                                    held.startBit, held.endBit);
    } else if (held.length == WORD_ELEMENT) {
        DocHandlerAdapter_plainWord(adapter, held.plan, {held.word, held.places}, held.startBit, held.endBit);
    } else if (held.length == RECORD_START) {
        DocHandlerAdapter_startPlain(adapter, held.plan, held.startBit);
    } else {
        DocHandlerAdapter_endElement(adapter, held.endBit);
    }
}

void deliverPlainElements(const Buffer* buffer, int64_t first, int64_t count) {
    const HeldPlainElement* const start = buffer->plainElements + first;
    for (const HeldPlainElement* held = start; held < start + count; ++held)
        deliverPlainElement(buffer, *held);
}

void deliverError(DocHandlerAdapter* adapter, ProcessingError* error) {
    DocHandlerAdapter_recoverableError(adapter, error);
    delete_ProcessingError(error);
}

// Value and error leave the event first: whatever happens in a callback, they are not given out twice.
void deliver(DocHandlerAdapter* adapter, CachedEvent* event) {
    switch (event->kind) {
        case EVENT_START_ELEMENT:
            return DocHandlerAdapter_startElement(adapter, event->elementId, event->name, event->namespaceId,
                                                  event->namespaceUri, event->designator, event->first);
        case EVENT_VALUE:
            return DocHandlerAdapter_elementValue(adapter, std::exchange(event->value, nullptr));
        case EVENT_END_ELEMENT:
            return DocHandlerAdapter_endElement(adapter, event->first);
        case EVENT_NIL:
            return DocHandlerAdapter_elementNilValue(adapter);
        case EVENT_RECOVERABLE_ERROR:
            return deliverError(adapter, std::exchange(event->error, nullptr));
        default:
            return deliverToRegionHandler(adapter, *event, nullptr);
    }
}

void pass(Buffer* buffer, CachedEvent* event);

// What a proxy gives on, the next buffer holds or delivers as its own level says.
void handOn(Buffer* next, CachedEvent* event) {
    if (event->kind == EVENT_START_ELEMENT) event->elementId = event->namespaceId = 0;
    if (!holds(next)) return pass(next, event);
    CachedEvent* held = append(next);
    event->heap = held->heap;
    *held = *event;
    event->value = nullptr;
    event->error = nullptr;
}

// One event out of a buffer that need not hold it any more.
void pass(Buffer* buffer, CachedEvent* event) {
    if (event->kind == EVENT_PLAIN_ELEMENTS) {
        deliverPlainElements(buffer, event->first, event->second);
    } else if (buffer->adapter != nullptr) {
        deliver(buffer->adapter, event);
    } else if (buffer->chainedBuffer != nullptr) {
        handOn(buffer->chainedBuffer, event);
    }
}

// A new event on its way in. `make` gives it, and with it value and error; so a held one is written straight
// to its place, once there is one.
template <class Make>
void enter(Buffer* buffer, const Make& make) {
    if (holds(buffer)) {
        CachedEvent* held = append(buffer);
        DFDLHeapAdapter* heap = held->heap;
        *held = make();
        held->heap = heap;
        return;
    }
    CachedEvent event = make();
    const ScopeExit clear([buffer, &event] { CachedEvent_clear(&event, pools(buffer)); });
    pass(buffer, &event);
}

// Region events are not even held where nobody wants them: they would count as content of an element that has
// none.
void enterRegion(Buffer* buffer, const CachedEvent& event) {
    const DocHandlerAdapter* adapter = adapterOf(buffer);
    if (adapter != nullptr && adapter->regionHandler != nullptr) enter(buffer, [&event] { return event; });
}

void discardRange(Buffer* buffer, int32_t first, int32_t end) {
    for (int32_t index = end - 1; index >= first; --index) {
        CachedEventPooler_release(pools(buffer), eventAt(buffer, index));
        ArrayList_removeAt(buffer->events, index);
    }
}

int32_t lastEndElement(const Buffer* buffer) {
    int32_t index = buffer->events->count - 1;
    while (index >= 0 && eventAt(buffer, index)->kind != EVENT_END_ELEMENT) --index;
    return index;
}

// The start of the element that ends at `end`, with nothing but empty elements and boundaries of groups
// between the two; -1 if it has content.
int32_t startOfEmptyElement(const Buffer* buffer, int32_t end) {
    int32_t open = 0;
    for (int32_t index = end - 1; index >= 0; --index) {
        const int32_t kind = eventAt(buffer, index)->kind;
        if (kind == EVENT_END_ELEMENT) {
            ++open;
        } else if (kind == EVENT_START_ELEMENT) {
            if (open == 0) return index;
            --open;
        } else if (kind < EVENT_ELEMENT_START || kind > EVENT_GROUP_END) {
            return -1;
        }
    }
    return 0;
}

constexpr PoolTraits TRAITS = PoolTraits_ofRecord<DHCheckPoint>(10, 100);

ObjectPool* checkPoints(const Buffer* buffer) {
    return DFDLPoolingFactory_pool(pools(buffer), POOL_DOC_HANDLER_CHECKPOINT, &TRAITS);
}

}  // namespace

DocHandlerEventBuffer* new_DocHandlerEventBuffer(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<DocHandlerEventBuffer>(heap);
    this_->events = new_ArrayListOfPointers(heap, EVENT_CAPACITY);
    return this_;
}

void delete_DocHandlerEventBuffer(DocHandlerEventBuffer* this_) {
    if (this_ == nullptr) return;
    DocHandlerEventBuffer_discardEventsAfterIndex(this_, 0);
    delete_ArrayList(this_->events);
    if (this_->plainElements != nullptr) DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->plainElements);
    if (this_->texts != nullptr) DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->texts);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void DocHandlerEventBuffer_chainTo(DocHandlerEventBuffer* this_, DocHandlerEventBuffer* next) {
    this_->adapter = nullptr;
    this_->chainedBuffer = next;
    this_->holdLevel = 1;
}

int32_t DocHandlerEventBuffer_eventCount(const DocHandlerEventBuffer* this_) { return this_->events->count; }

void DocHandlerEventBuffer_startDocument(DocHandlerEventBuffer* this_) {
    DocHandlerAdapter_startDocument(adapterOf(this_));
}

void DocHandlerEventBuffer_deferStartElement(DocHandlerEventBuffer* this_, int32_t elementId,
                                             const DFDLUString* name, int32_t namespaceId,
                                             const DFDLUString* namespaceUri, const DFDLUString* designator,
                                             int64_t startBit) {
    enter(this_, [=] {
        return namedEventOf(EVENT_START_ELEMENT, elementId, name, namespaceId, namespaceUri, designator,
                            startBit);
    });
}

void DocHandlerEventBuffer_defer(DocHandlerEventBuffer* this_, CachedEventKind kind, DFDLValue* value,
                                 int64_t position) {
    Value owned(value);
    enter(this_, [&owned, kind, position]() -> CachedEvent {
        return {nullptr, 0, nullptr, 0, nullptr, nullptr, owned.release(), nullptr, kind, position, 0};
    });
}

void DocHandlerEventBuffer_growTexts(DocHandlerEventBuffer* this_, int64_t units) {
    grow(this_->heap, &this_->texts, this_->textUnits, &this_->textCapacity, this_->textUnits + units);
}

void DocHandlerEventBuffer_openRun(DocHandlerEventBuffer* this_) {
    grow(this_->heap, &this_->plainElements, this_->plainElementCount, &this_->plainElementCapacity,
         this_->plainElementCount + 1);
    if (this_->runIsOpen != 0) return;
    CachedEvent* run = append(this_);
    run->kind = EVENT_PLAIN_ELEMENTS;
    run->first = this_->plainElementCount;
    run->second = -1;
    this_->runIsOpen = 1;
}

DHRecordMark DocHandlerEventBuffer_startRecord(DocHandlerEventBuffer* this_, const PlainElement* plan,
                                               int64_t startBit) {
    const DHRecordMark mark{this_->plainElementCount, this_->textUnits, this_->events->count};
    if (!holds(this_)) this_->runIsOpen = this_->recordIsAlone = 1;
    ++this_->holdLevel;
    *DocHandlerEventBuffer_newPlain(this_) = {plan, startBit, startBit, this_->textUnits, 0, RECORD_START, 0};
    return mark;
}

void DocHandlerEventBuffer_endRecord(DocHandlerEventBuffer* this_, const PlainElement* plan, int64_t endBit) {
    *DocHandlerEventBuffer_newPlain(this_) = {plan, endBit, endBit, this_->textUnits, 0, RECORD_END, 0};
    --this_->holdLevel;
    if (this_->recordIsAlone == 0) return;
    const ScopeExit forget([this_] { closeRun(this_); });
    deliverPlainElements(this_, 0, this_->plainElementCount);
}

void DocHandlerEventBuffer_dropRecord(DocHandlerEventBuffer* this_, const DHRecordMark& mark) {
    --this_->holdLevel;
    if (this_->recordIsAlone != 0) return closeRun(this_);
    // The run may have begun with the record.
    if (this_->events->count > mark.events) DocHandlerEventBuffer_discardEventsAfterIndex(this_, mark.events);
    this_->plainElementCount = mark.elements;
    this_->textUnits = mark.textUnits;
}

void DocHandlerEventBuffer_recoverableError(DocHandlerEventBuffer* this_, const ProcessingError* record) {
    if (DocHandlerEventBuffer_isDirect(this_))
        return DocHandlerAdapter_recoverableError(this_->adapter, record);
    Error owned(ProcessingError_clone(record, this_->heap));
    enter(this_, [&owned]() -> CachedEvent {
        return {nullptr, 0, nullptr, 0, nullptr, nullptr, nullptr, owned.release(), EVENT_RECOVERABLE_ERROR,
                0,       0};
    });
}

void DocHandlerEventBuffer_elementStart(DocHandlerEventBuffer* this_, int32_t elementId,
                                        const DFDLUString* name, int32_t namespaceId,
                                        const DFDLUString* namespaceUri, const DFDLUString* designator,
                                        int64_t position, const char* encoding) {
    const CachedEvent event =
        namedEventOf(EVENT_ELEMENT_START, elementId, name, namespaceId, namespaceUri, designator, position);
    // Only an event that goes straight on keeps its encoding.
    if (DocHandlerEventBuffer_isDirect(this_)) return deliverToRegionHandler(this_->adapter, event, encoding);
    enterRegion(this_, event);
}

void DocHandlerEventBuffer_elementEnd(DocHandlerEventBuffer* this_, const DFDLUString* designator,
                                      int64_t position) {
    enterRegion(this_, eventOf(EVENT_ELEMENT_END, designator, position, 0));
}

void DocHandlerEventBuffer_groupStart(DocHandlerEventBuffer* this_, const DFDLUString* designator,
                                      int64_t position) {
    enterRegion(this_, eventOf(EVENT_GROUP_START, designator, position, 0));
}

void DocHandlerEventBuffer_groupEnd(DocHandlerEventBuffer* this_, const DFDLUString* designator,
                                    int64_t position) {
    enterRegion(this_, eventOf(EVENT_GROUP_END, designator, position, 0));
}

void DocHandlerEventBuffer_parsedRegion(DocHandlerEventBuffer* this_, CachedEventKind kind,
                                        const DFDLUString* designator, int64_t start, int64_t length) {
    if (length != 0) enterRegion(this_, eventOf(kind, designator, start, length));
}

DHCheckPoint* DocHandlerEventBuffer_getCheckPoint(DocHandlerEventBuffer* this_) {
    auto* checkPoint = static_cast<DHCheckPoint*>(ObjectPool_get(checkPoints(this_)));
    checkPoint->buffer = this_;
    checkPoint->eventCount = this_->events->count;
    ++this_->holdLevel;
    closeRun(this_);
    return checkPoint;
}

void DocHandlerEventBuffer_refreshCheckPoint(DocHandlerEventBuffer* this_, DHCheckPoint* old) {
    ++this_->holdLevel;
    ObjectPool_release(checkPoints(this_), old);
}

void DocHandlerEventBuffer_restoreToCheckPoint(DocHandlerEventBuffer* this_, const DHCheckPoint* checkPoint) {
    DocHandlerEventBuffer_discardEventsAfterIndex(this_, checkPoint->eventCount);
}

void DocHandlerEventBuffer_releaseCheckPoint(DocHandlerEventBuffer* this_, DHCheckPoint* checkPoint) {
    ObjectPool_release(checkPoints(this_), checkPoint);
    if (this_->holdLevel > 0) --this_->holdLevel;
    if (this_->holdLevel == 0) DocHandlerEventBuffer_flush(this_);
}

void DocHandlerEventBuffer_flush(DocHandlerEventBuffer* this_) {
    this_->holdLevel = 0;
    closeRun(this_);
    const ScopeExit empty([this_] { DocHandlerEventBuffer_discardEventsAfterIndex(this_, 0); });
    for (int32_t index = 0; index < this_->events->count; ++index) pass(this_, eventAt(this_, index));
}

void DocHandlerEventBuffer_discardEventsAfterIndex(DocHandlerEventBuffer* this_, int32_t index) {
    closeRun(this_);
    while (this_->events->count > index) {
        auto* event = ArrayList_popPointer<CachedEvent>(this_->events);
        if (event->kind == EVENT_PLAIN_ELEMENTS) forgetRun(this_, *event);
        CachedEventPooler_release(pools(this_), event);
    }
    if (this_->events->count == 0) this_->textUnits = 0;
}

void DocHandlerEventBuffer_discardEmptyComplexElement(DocHandlerEventBuffer* this_) {
    const int32_t end = lastEndElement(this_);
    if (end < 1) return;
    int32_t start = startOfEmptyElement(this_, end);
    if (start < 0) return;
    if (start > 0 && eventAt(this_, start - 1)->kind == EVENT_ELEMENT_START) --start;
    discardRange(this_, start, end + 1);
}
