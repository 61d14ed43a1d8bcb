#ifndef DFDL_PROCESSOR_DOCHANDLERADAPTER_H
#define DFDL_PROCESSOR_DOCHANDLERADAPTER_H

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdldiagnostic.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/processor/dfdldochandler.h"
#include "dfdl/processor/dfdlerrorhandler.h"
#include "dfdl/processor/dfdlregionhandler.h"
#include "dfdl/processor/plainelement.h"

struct DFDLValue;

// The last step of an event: calls the caller's callbacks. One per parser, which owns it and gives it the
// handlers at each setup.
struct DocHandlerAdapter {
    DFDLHeapAdapter* heap;
    DFDLHeapAdapter* messageHeap;  // for what lives for one call: digits, diagnostics
    Context* context;
    ResourceCatalog* resourceCatalog;
    DFDLDocHandlerImpl* docHandler;        // never null while a parse runs
    DFDLRegionHandlerImpl* regionHandler;  // may be null
    DFDLErrorHandlerImpl* errorHandler;    // may be null
    uint32_t fastSmallIntegers;            // integers that fit 64 bits come as numbers, not as digits
    UChar scratch[DIAGNOSTIC_CAPACITY];
};

DocHandlerAdapter* new_DocHandlerAdapter(DFDLHeapAdapter* heap, Context* context, ResourceCatalog* catalog,
                                         bool fastSmallIntegers);
void delete_DocHandlerAdapter(DocHandlerAdapter* this_);  // null is ignored

// What callbacks get for a string that the grammar may lack.
inline const UChar* DocHandlerAdapter_chars(const DFDLUString* string) {
    return string == nullptr ? u"" : string->chars;
}

void DocHandlerAdapter_startDocument(DocHandlerAdapter* this_);
void DocHandlerAdapter_endDocument(DocHandlerAdapter* this_, int64_t bytes);

inline void DocHandlerAdapter_startElement(DocHandlerAdapter* this_, int32_t elementId,
                                           const DFDLUString* name, int32_t namespaceId,
                                           const DFDLUString* namespaceUri, const DFDLUString* designator,
                                           int64_t startBit) {
    DFDLDocHandlerImpl* handler = this_->docHandler;
    if (handler->startElement == nullptr) return;
    handler->startElement(handler, elementId, DocHandlerAdapter_chars(name), namespaceId,
                          DocHandlerAdapter_chars(namespaceUri), DocHandlerAdapter_chars(designator),
                          startBit);
}
inline void DocHandlerAdapter_endElement(DocHandlerAdapter* this_, int64_t endBit) {
    DFDLDocHandlerImpl* handler = this_->docHandler;
    if (handler->endElement != nullptr) handler->endElement(handler, endBit);
}
inline void DocHandlerAdapter_elementNilValue(DocHandlerAdapter* this_) {
    DFDLDocHandlerImpl* handler = this_->docHandler;
    if (handler->elementNilValue != nullptr) handler->elementNilValue(handler);
}
inline void DocHandlerAdapter_startPlain(DocHandlerAdapter* this_, const PlainElement* plan,
                                         int64_t startBit) {
    DFDLDocHandlerImpl* handler = this_->docHandler;
    if (handler->startElement == nullptr) return;
    handler->startElement(handler, plan->elementId, plan->name, plan->namespaceId, plan->namespaceUri,
                          plan->designator, startBit);
}
// Start, value or nil, and end of a simple text element. The characters end with a zero.
inline void DocHandlerAdapter_plainText(DocHandlerAdapter* this_, const PlainElement* plan,
                                        const UChar* chars, int32_t length, int64_t startBit,
                                        int64_t endBit) {
    constexpr uint32_t STRING_VALUE = 0;  // type code of the value callback
    DFDLDocHandlerImpl* handler = this_->docHandler;
    DocHandlerAdapter_startPlain(this_, plan, startBit);
    if (length == NIL_ELEMENT) {
        if (handler->elementNilValue != nullptr) handler->elementNilValue(handler);
    } else if (handler->elementStringValue != nullptr) {
        handler->elementStringValue(handler, chars, length, STRING_VALUE);
    }
    if (handler->endElement != nullptr) handler->endElement(handler, endBit);
}
void DocHandlerAdapter_plainValue(const DocHandlerAdapter* this_, DFDLType type, PlainValue value);
// The same of an element whose value is in a word.
inline void DocHandlerAdapter_plainWord(DocHandlerAdapter* this_, const PlainElement* plan, PlainValue value,
                                        int64_t startBit, int64_t endBit) {
    DocHandlerAdapter_startPlain(this_, plan, startBit);
    DocHandlerAdapter_plainValue(this_, plan->valueType, value);
    DocHandlerAdapter_endElement(this_, endBit);
}
// The same of an element of opaque bytes.
void DocHandlerAdapter_plainBytes(DocHandlerAdapter* this_, const PlainElement* plan, const uint8_t* bytes,
                                  int64_t count, int64_t startBit, int64_t endBit);
// Consumes the value: it goes back to its pool, whether anybody wanted it or not.
void DocHandlerAdapter_elementValue(DocHandlerAdapter* this_, DFDLValue* value);
// Through the validation callback, as a diagnostic of its own type. The record stays the caller's.
void DocHandlerAdapter_recoverableError(DocHandlerAdapter* this_, const ProcessingError* record);

#endif
