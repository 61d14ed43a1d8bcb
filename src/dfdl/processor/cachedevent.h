#ifndef DFDL_PROCESSOR_CACHEDEVENT_H
#define DFDL_PROCESSOR_CACHEDEVENT_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLPoolingFactory;
struct DFDLUString;
struct DFDLValue;
struct ProcessingError;

enum CachedEventKind : int32_t {
    EVENT_START_ELEMENT = 1,
    EVENT_VALUE = 2,
    EVENT_END_ELEMENT = 3,
    EVENT_ELEMENT_START = 5,
    EVENT_ELEMENT_END = 6,
    EVENT_GROUP_START = 7,
    EVENT_GROUP_END = 8,
    EVENT_LEADING_ALIGNMENT = 9,
    EVENT_INITIATOR = 10,
    EVENT_SIMPLE_CONTENT = 11,
    EVENT_TRAILING_ALIGNMENT = 12,
    EVENT_PREFIX_SEPARATOR = 13,
    EVENT_POSTFIX_SEPARATOR = 14,
    EVENT_INFIX_SEPARATOR = 15,
    EVENT_TERMINATOR = 16,
    EVENT_NIL = 17,
    EVENT_RECOVERABLE_ERROR = 18,
    EVENT_PLAIN_ELEMENTS = 19  // a run of simple elements; in a root buffer only
};

// An event that waits for the decision of a point of uncertainty. It owns value and error; its strings are
// the grammar's. Comes from a pool of the engine and belongs to the buffer that holds it.
struct CachedEvent {
    DFDLHeapAdapter* heap;
    int32_t elementId;
    const DFDLUString* name;
    int32_t namespaceId;
    const DFDLUString* namespaceUri;
    const DFDLUString* designator;
    DFDLValue* value;
    ProcessingError* error;
    int32_t kind;    // CachedEventKind
    int64_t first;   // position: bits for document events, bytes for regions
    int64_t second;  // length of a region, bytes
};

// Gives value and error back.
void CachedEvent_giveBack(CachedEvent* this_, DFDLPoolingFactory* factory);
inline void CachedEvent_clear(CachedEvent* this_, DFDLPoolingFactory* factory) {
    if (this_->value != nullptr || this_->error != nullptr) CachedEvent_giveBack(this_, factory);
}

CachedEvent* CachedEventPooler_get(DFDLPoolingFactory* factory);
// Value and error, if the event still has them, go with it.
void CachedEventPooler_release(DFDLPoolingFactory* factory, CachedEvent* event);

#endif
