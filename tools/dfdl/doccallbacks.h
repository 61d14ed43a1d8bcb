#ifndef DFDL_TOOLS_DOCCALLBACKS_H
#define DFDL_TOOLS_DOCCALLBACKS_H

#include <dfdl/dfdl.h>

// Fills every slot of a document handler from the static functions of `Callbacks`, whose `number<N>` serves
// all kinds of numbers.
template <class Callbacks>
void setDocCallbacks(DFDLDocHandler* h) {
    DFDLDocHandler_setStartDocumentCallback(h, Callbacks::startDocument);
    DFDLDocHandler_setEndDocumentCallback(h, Callbacks::endDocument);
    DFDLDocHandler_setStartElementCallback(h, Callbacks::startElement);
    DFDLDocHandler_setEndElementCallback(h, Callbacks::endElement);
    DFDLDocHandler_setElementNilValueCallback(h, Callbacks::nil);
    DFDLDocHandler_setElementStringValueCallback(h, Callbacks::string);
    DFDLDocHandler_setElementDecimalValueCallback(h, Callbacks::decimal);
    DFDLDocHandler_setElementBooleanValueCallback(h, Callbacks::boolean);
    DFDLDocHandler_setElementBinaryValueCallback(h, Callbacks::binary);
    DFDLDocHandler_setElementCalendarValueCallback(h, Callbacks::calendar);
    DFDLDocHandler_setElementIntValueCallback(h, Callbacks::template number<int32_t>);
    DFDLDocHandler_setElementLongValueCallback(h, Callbacks::template number<int64_t>);
    DFDLDocHandler_setElementShortValueCallback(h, Callbacks::template number<int16_t>);
    DFDLDocHandler_setElementByteValueCallback(h, Callbacks::template number<int8_t>);
    DFDLDocHandler_setElementUIntValueCallback(h, Callbacks::template number<uint32_t>);
    DFDLDocHandler_setElementULongValueCallback(h, Callbacks::template number<uint64_t>);
    DFDLDocHandler_setElementUShortValueCallback(h, Callbacks::template number<uint16_t>);
    DFDLDocHandler_setElementUByteValueCallback(h, Callbacks::template number<uint8_t>);
    DFDLDocHandler_setElementFloatValueCallback(h, Callbacks::template number<float>);
    DFDLDocHandler_setElementDoubleValueCallback(h, Callbacks::template number<double>);
}

#endif
