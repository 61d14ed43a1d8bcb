#ifndef DFDL_PROCESSOR_DFDLDOCHANDLER_H
#define DFDL_PROCESSOR_DFDLDOCHANDLER_H

#include <dfdl/dfdl.h>

#include "dfdl/foundation/dfdlheapadapter.h"

// The caller's callbacks for the events of a document. Made and deleted by the caller, who keeps it alive
// while a parser refers to it. An empty slot is skipped.
struct DFDLDocHandlerImpl {
    DFDLHeapAdapter* heap;  // its own, or the parser's for the built-in handler
    DFDLStartDocumentCallback startDocument;
    DFDLEndDocumentCallback endDocument;
    DFDLStartElementCallback startElement;
    DFDLEndElementCallback endElement;
    DFDLElementStringValueCallback elementStringValue;
    DFDLElementIntValueCallback elementIntValue;
    DFDLElementLongValueCallback elementLongValue;
    DFDLElementShortValueCallback elementShortValue;
    DFDLElementFloatValueCallback elementFloatValue;
    DFDLElementDoubleValueCallback elementDoubleValue;
    DFDLElementDecimalValueCallback elementDecimalValue;
    DFDLElementBooleanValueCallback elementBooleanValue;
    DFDLElementByteValueCallback elementByteValue;
    DFDLElementCalendarValueCallback elementCalendarValue;
    DFDLElementUShortValueCallback elementUShortValue;
    DFDLElementUIntValueCallback elementUIntValue;
    DFDLElementUByteValueCallback elementUByteValue;
    DFDLElementULongValueCallback elementULongValue;
    DFDLElementBinaryValueCallback elementBinaryValue;
    DFDLElementNilValueCallback elementNilValue;
    void* contextObject;
};

// The handler of a parser that was given none. It lives on the parser's heap and does nothing with any event.
DFDLDocHandlerImpl* new_DoNothingDocHandler(DFDLHeapAdapter* heap);
void delete_DoNothingDocHandler(DFDLDocHandlerImpl* this_);  // null is ignored

#endif
