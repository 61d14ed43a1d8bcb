#include <dfdl/dfdl.h>

#include <cstring>
#include <string>

#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/processor/dfdlparserimpl.h"

namespace {

constexpr int FAILED = 1;
constexpr int REFUSED = 2;

// `make` builds the value, or gives null after it has told the error itself.
// Returns 1 if the variable was set, 0 if not, REFUSED.
template <class Make>
int setVariable(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri, Make make) {
    if (!DFDLParserImpl_canSetVariables(parser)) return REFUSED;
    try {
        return DFDLParserImpl_setVariable(parser, name == nullptr ? u"" : name, namespaceUri,
                                          make(parser->heap));
    } catch (const AllocationFailure&) {
        return 0;
    }
}

// The result as all the setters but one give it.
int negated(int outcome) { return outcome == REFUSED ? REFUSED : (outcome == 1 ? 0 : FAILED); }

template <auto Create, class T>
int setScalar(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri, T value) {
    return setVariable(parser, name, namespaceUri,
                       [&](DFDLHeapAdapter* heap) { return Create(heap, value); });
}

DFDLValue* newBinary(DFDLHeapAdapter* heap, const uint8_t* bytes, int64_t length) {
    const int64_t count = bytes == nullptr || length < 0 ? 0 : length;
    uint8_t* copy = DFDLBufferFactory_GetBuffer(heap->bufferFactory, count);
    if (count > 0) std::memcpy(copy, bytes, static_cast<size_t>(count));
    return HexBinaryDV_createDFDLValue(heap, copy, count, true);
}

void reportBadDecimal(DFDLParser* parser, const char* digits) {
    ProcessingError_setValues(parser->context->currentError, __FILE__, __LINE__,
                              DFDLParser_invalidDecimalValue, ERROR_PROCESSING, SUBKIND_NONE, "%s", digits);
    DFDLParserImpl_processError(parser);
    ProcessingError_reset(parser->context->currentError);
}

int setDecimal(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri, const char* digits,
               int32_t length) {
    DFDLDecimal* number = new_DFDLDecimalFromChar(parser->heap, parser->constants, digits, length);
    if (number == nullptr) {
        reportBadDecimal(parser, digits);
        return 0;
    }
    return negated(setScalar<DecimalDV_createDFDLValue>(parser, name, namespaceUri, number));
}

}  // namespace

int DFDLParser_setVariableBoolean(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                  DFDLBoolean value) {
    return negated(setScalar<BooleanDV_createDFDLValue>(parser, name, namespaceUri, value != 0 ? 1 : 0));
}

int DFDLParser_setVariableByte(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                               int8_t value) {
    return negated(setScalar<ByteDV_createDFDLValue>(parser, name, namespaceUri, value));
}

int DFDLParser_setVariableUByte(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                uint8_t value) {
    return setScalar<UnsignedByteDV_createDFDLValue>(parser, name, namespaceUri, value);
}

int DFDLParser_setVariableShort(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                int16_t value) {
    return negated(setScalar<ShortDV_createDFDLValue>(parser, name, namespaceUri, value));
}

int DFDLParser_setVariableUShort(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                 uint16_t value) {
    return negated(setScalar<UnsignedShortDV_createDFDLValue>(parser, name, namespaceUri, value));
}

int DFDLParser_setVariableInt(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                              int32_t value) {
    return negated(setScalar<IntDV_createDFDLValue>(parser, name, namespaceUri, value));
}

int DFDLParser_setVariableUInt(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                               uint32_t value) {
    return negated(setScalar<UnsignedIntDV_createDFDLValue>(parser, name, namespaceUri, value));
}

int DFDLParser_setVariableLong(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                               int64_t value) {
    return negated(setScalar<LongDV_createDFDLValue>(parser, name, namespaceUri, value));
}

int DFDLParser_setVariableULong(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                uint64_t value) {
    return negated(setScalar<UnsignedLongDV_createDFDLValue>(parser, name, namespaceUri, value));
}

int DFDLParser_setVariableFloat(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                float value) {
    return negated(setScalar<FloatDV_createDFDLValue>(parser, name, namespaceUri, value));
}

int DFDLParser_setVariableDouble(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                 double value) {
    return negated(setScalar<DoubleDV_createDFDLValue>(parser, name, namespaceUri, value));
}

int DFDLParser_setVariableString(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                 const DFDLChar* value, int32_t length) {
    const int32_t units = value == nullptr || length < 0 ? 0 : length;
    return negated(setVariable(parser, name, namespaceUri, [&](DFDLHeapAdapter* heap) {
        return StringDV_createDFDLValue(
            heap, DFDLUStringPooler_getDFDLUStringFromUChars(heap, value == nullptr ? u"" : value, units));
    }));
}

int DFDLParser_setVariableBinary(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                 const uint8_t* value, DFDLWORD length) {
    return negated(setVariable(parser, name, namespaceUri,
                               [&](DFDLHeapAdapter* heap) { return newBinary(heap, value, length); }));
}

int DFDLParser_setVariableDecimal(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                  const char* digits, int32_t length) {
    if (!DFDLParserImpl_canSetVariables(parser)) return REFUSED;
    try {
        return setDecimal(parser, name, namespaceUri, digits == nullptr ? "" : digits, length);
    } catch (const AllocationFailure&) {
        return FAILED;
    }
}

int DFDLParser_setVariableCalendar(DFDLParser* parser, const DFDLChar* name, const DFDLChar* namespaceUri,
                                   const DFDLCalendar* value) {
    return negated(setVariable(parser, name, namespaceUri, [&](DFDLHeapAdapter* heap) {
        return DateTimeDV_createDFDLValue(
            heap, value == nullptr ? nullptr : DfdlCalendarImpl_clone(heap, value), true, true);
    }));
}
