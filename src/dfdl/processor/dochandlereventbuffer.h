#ifndef DFDL_PROCESSOR_DOCHANDLEREVENTBUFFER_H
#define DFDL_PROCESSOR_DOCHANDLEREVENTBUFFER_H

#include "dfdl/processor/cachedevent.h"
#include "dfdl/processor/dochandleradapter.h"

struct ArrayList;
struct DocHandlerEventBuffer;

struct DHCheckPoint {
    DFDLHeapAdapter* heap;
    DocHandlerEventBuffer* buffer;  // where it was taken, which need not be the present one
    int32_t eventCount;
};

// Every event of a parse passes here: straight on to the handlers, or into the list while a checkpoint is
// open, for nothing may be shown that may yet be undone.
// The root buffer belongs to the parser and has an adapter. A proxy stands before it while an unordered group
// is parsed, belongs to that group, and hands its events to the next buffer instead.
struct DocHandlerEventBuffer {
    DFDLHeapAdapter* heap;
    ArrayList* events;                     // CachedEvent pointers, owned
    int32_t holdLevel;                     // open checkpoints
    DocHandlerAdapter* adapter;            // root only
    DocHandlerEventBuffer* chainedBuffer;  // proxy only
    // Plain elements that wait. A run of them is one event of the list; it ends where a check point is taken.
    HeldPlainElement* plainElements;
    int64_t plainElementCount;
    int64_t plainElementCapacity;
    UChar* texts;  // one behind the other, each with a zero
    int64_t textUnits;
    int64_t textCapacity;
    uint32_t runIsOpen;      // the last event is a run that may grow
    uint32_t recordIsAlone;  // all that waits is one record, the open run, for which no event stands
};

DocHandlerEventBuffer* new_DocHandlerEventBuffer(DFDLHeapAdapter* heap);
void delete_DocHandlerEventBuffer(DocHandlerEventBuffer* this_);  // null is ignored
// Makes it a proxy before `next`. It delivers nothing until its first level is released or it is flushed.
void DocHandlerEventBuffer_chainTo(DocHandlerEventBuffer* this_, DocHandlerEventBuffer* next);

int32_t DocHandlerEventBuffer_eventCount(const DocHandlerEventBuffer* this_);  // held events

// The slow roads of the events below: into the list, or on to the next buffer if a proxy holds nothing.
void DocHandlerEventBuffer_deferStartElement(DocHandlerEventBuffer* this_, int32_t elementId,
                                             const DFDLUString* name, int32_t namespaceId,
                                             const DFDLUString* namespaceUri, const DFDLUString* designator,
                                             int64_t startBit);
void DocHandlerEventBuffer_defer(DocHandlerEventBuffer* this_, CachedEventKind kind, DFDLValue* value,
                                 int64_t position);

inline bool DocHandlerEventBuffer_isDirect(const DocHandlerEventBuffer* this_) {
    return this_->holdLevel < 1 && this_->adapter != nullptr;
}

void DocHandlerEventBuffer_startDocument(DocHandlerEventBuffer* this_);

// Positions of document events are bits.
inline void DocHandlerEventBuffer_startElement(DocHandlerEventBuffer* this_, int32_t elementId,
                                               const DFDLUString* name, int32_t namespaceId,
                                               const DFDLUString* namespaceUri, const DFDLUString* designator,
                                               int64_t startBit) {
    if (DocHandlerEventBuffer_isDirect(this_)) {
        DocHandlerAdapter_startElement(this_->adapter, elementId, name, namespaceId, namespaceUri, designator,
                                       startBit);
    } else {
        DocHandlerEventBuffer_deferStartElement(this_, elementId, name, namespaceId, namespaceUri, designator,
                                                startBit);
    }
}
inline void DocHandlerEventBuffer_endElement(DocHandlerEventBuffer* this_, int64_t endBit) {
    if (DocHandlerEventBuffer_isDirect(this_)) {
        DocHandlerAdapter_endElement(this_->adapter, endBit);
    } else {
        DocHandlerEventBuffer_defer(this_, EVENT_END_ELEMENT, nullptr, endBit);
    }
}
// Takes the value over.
inline void DocHandlerEventBuffer_elementValue(DocHandlerEventBuffer* this_, DFDLValue* value) {
    if (DocHandlerEventBuffer_isDirect(this_)) {
        DocHandlerAdapter_elementValue(this_->adapter, value);
    } else {
        DocHandlerEventBuffer_defer(this_, EVENT_VALUE, value, 0);
    }
}
// A simple text element at once, for the short roads. Root buffers only; the plan outlives the document.
// While the buffer holds, the characters must stand where roomForText has said; a nil element has none.
void DocHandlerEventBuffer_growTexts(DocHandlerEventBuffer* this_, int64_t units);
inline UChar* DocHandlerEventBuffer_roomForText(DocHandlerEventBuffer* this_, int64_t units) {
    if (this_->textCapacity - this_->textUnits < units) DocHandlerEventBuffer_growTexts(this_, units);
    return this_->texts + this_->textUnits;
}
void DocHandlerEventBuffer_openRun(DocHandlerEventBuffer* this_);  // or lets the open one grow
// Filled by the caller, in place.
inline HeldPlainElement* DocHandlerEventBuffer_newPlain(DocHandlerEventBuffer* this_) {
    if (this_->runIsOpen == 0 || this_->plainElementCount == this_->plainElementCapacity)
        DocHandlerEventBuffer_openRun(this_);
    return &this_->plainElements[this_->plainElementCount++];
}
inline bool DocHandlerEventBuffer_holds(const DocHandlerEventBuffer* this_) { return this_->holdLevel > 0; }
inline void DocHandlerEventBuffer_holdPlainText(DocHandlerEventBuffer* this_, const PlainElement* plan,
                                                const UChar* chars, int32_t length, int64_t startBit,
                                                int64_t endBit) {
    int64_t textStart = this_->textUnits;
    if (length != NIL_ELEMENT) {
        textStart = chars - this_->texts;
        this_->textUnits = textStart + length + 1;
    }
    *DocHandlerEventBuffer_newPlain(this_) = {plan, startBit, endBit, textStart, 0, length, 0};
}
inline void DocHandlerEventBuffer_plainText(DocHandlerEventBuffer* this_, const PlainElement* plan,
                                            const UChar* chars, int32_t length, int64_t startBit,
                                            int64_t endBit) {
    if (DocHandlerEventBuffer_holds(this_)) {
        DocHandlerEventBuffer_holdPlainText(this_, plan, chars, length, startBit, endBit);
    } else {
        DocHandlerAdapter_plainText(this_->adapter, plan, chars, length, startBit, endBit);
    }
}
// A simple element whose value is in a word, at once.
inline void DocHandlerEventBuffer_plainWord(DocHandlerEventBuffer* this_, const PlainElement* plan,
                                            PlainValue value, int64_t startBit, int64_t endBit) {
    if (!DocHandlerEventBuffer_holds(this_))
        return DocHandlerAdapter_plainWord(this_->adapter, plan, value, startBit, endBit);
    *DocHandlerEventBuffer_newPlain(this_) = {plan,       startBit,     endBit,      this_->textUnits,
                                              value.word, WORD_ELEMENT, value.places};
}

// A record is a complex element with nothing but plain elements in it, which waits until the whole of it has
// been found. It takes no check point: where nothing else waits, it goes from the run to the handler without
// an event of the list. Root buffers only; one at a time.
struct DHRecordMark {
    int64_t elements;
    int64_t textUnits;
    int32_t events;
};
DHRecordMark DocHandlerEventBuffer_startRecord(DocHandlerEventBuffer* this_, const PlainElement* plan,
                                               int64_t startBit);
void DocHandlerEventBuffer_endRecord(DocHandlerEventBuffer* this_, const PlainElement* plan, int64_t endBit);
// As if it had not been started.
void DocHandlerEventBuffer_dropRecord(DocHandlerEventBuffer* this_, const DHRecordMark& mark);

inline void DocHandlerEventBuffer_elementNilValue(DocHandlerEventBuffer* this_) {
    if (DocHandlerEventBuffer_isDirect(this_)) {
        DocHandlerAdapter_elementNilValue(this_->adapter);
    } else {
        DocHandlerEventBuffer_defer(this_, EVENT_NIL, nullptr, 0);
    }
}
// The record stays the caller's.
void DocHandlerEventBuffer_recoverableError(DocHandlerEventBuffer* this_, const ProcessingError* record);

// Region events; positions and lengths are bytes. Without a region handler they do nothing. `encoding` may be
// null.
void DocHandlerEventBuffer_elementStart(DocHandlerEventBuffer* this_, int32_t elementId,
                                        const DFDLUString* name, int32_t namespaceId,
                                        const DFDLUString* namespaceUri, const DFDLUString* designator,
                                        int64_t position, const char* encoding);
void DocHandlerEventBuffer_elementEnd(DocHandlerEventBuffer* this_, const DFDLUString* designator,
                                      int64_t position);
void DocHandlerEventBuffer_groupStart(DocHandlerEventBuffer* this_, const DFDLUString* designator,
                                      int64_t position);
void DocHandlerEventBuffer_groupEnd(DocHandlerEventBuffer* this_, const DFDLUString* designator,
                                    int64_t position);

// One region of a kind from EVENT_LEADING_ALIGNMENT to EVENT_TERMINATOR. An empty one is not reported.
void DocHandlerEventBuffer_parsedRegion(DocHandlerEventBuffer* this_, CachedEventKind kind,
                                        const DFDLUString* designator, int64_t start, int64_t length);
template <CachedEventKind Kind>
void DocHandlerEventBuffer_parsed(DocHandlerEventBuffer* this_, const DFDLUString* designator, int64_t start,
                                  int64_t length) {
    DocHandlerEventBuffer_parsedRegion(this_, Kind, designator, start, length);
}
inline constexpr auto& DocHandlerEventBuffer_parsedLeadingAlignmentRegion =
    DocHandlerEventBuffer_parsed<EVENT_LEADING_ALIGNMENT>;
inline constexpr auto& DocHandlerEventBuffer_parsedInitiatorRegion =
    DocHandlerEventBuffer_parsed<EVENT_INITIATOR>;
inline constexpr auto& DocHandlerEventBuffer_parsedSimpleContentRegion =
    DocHandlerEventBuffer_parsed<EVENT_SIMPLE_CONTENT>;
inline constexpr auto& DocHandlerEventBuffer_parsedTerminatorRegion =
    DocHandlerEventBuffer_parsed<EVENT_TERMINATOR>;
inline constexpr auto& DocHandlerEventBuffer_parsedTrailingAlignmentRegion =
    DocHandlerEventBuffer_parsed<EVENT_TRAILING_ALIGNMENT>;
inline constexpr auto& DocHandlerEventBuffer_parsedPrefixSeparatorRegion =
    DocHandlerEventBuffer_parsed<EVENT_PREFIX_SEPARATOR>;
inline constexpr auto& DocHandlerEventBuffer_parsedInfixSeparatorRegion =
    DocHandlerEventBuffer_parsed<EVENT_INFIX_SEPARATOR>;
inline constexpr auto& DocHandlerEventBuffer_parsedPostfixSeparatorRegion =
    DocHandlerEventBuffer_parsed<EVENT_POSTFIX_SEPARATOR>;

DHCheckPoint* DocHandlerEventBuffer_getCheckPoint(DocHandlerEventBuffer* this_);
// Holds once more and gives the old checkpoint back.
void DocHandlerEventBuffer_refreshCheckPoint(DocHandlerEventBuffer* this_, DHCheckPoint* old);
// Forgets the events since; the checkpoint stays open.
void DocHandlerEventBuffer_restoreToCheckPoint(DocHandlerEventBuffer* this_, const DHCheckPoint* checkPoint);
// The last release delivers what is held.
void DocHandlerEventBuffer_releaseCheckPoint(DocHandlerEventBuffer* this_, DHCheckPoint* checkPoint);

// Delivers what is held, whatever checkpoints are open, and holds nothing any more.
void DocHandlerEventBuffer_flush(DocHandlerEventBuffer* this_);
// Keeps the first `index` events.
void DocHandlerEventBuffer_discardEventsAfterIndex(DocHandlerEventBuffer* this_, int32_t index);
// Takes back the newest element if nothing came between its start and its end. Only held events can be taken
// back: with no checkpoint open the element stays.
void DocHandlerEventBuffer_discardEmptyComplexElement(DocHandlerEventBuffer* this_);

#endif
