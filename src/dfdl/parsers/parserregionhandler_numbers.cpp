// Values of numbers, whatever they have been read from.
#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

using Text = Owned<DFDLUString, delete_DFDLUString>;

bool isUnsigned(int32_t simpleType) { return simpleType >= SIMPLE_UNSIGNED_LONG; }

DFDLValue* wordValue(ParserRegionHandler* handler, int32_t simpleType, int64_t word) {
    DFDLPoolingFactory* pools = handler->heap->poolingFactory;
    const auto kind = static_cast<DFDLType>(DFDLType_getTypeFromDFDLSimpleType(simpleType));
    return isUnsigned(simpleType)
               ? DFDLPoolingFactory_getUnsignedValue(pools, kind, static_cast<uint64_t>(word))
               : DFDLPoolingFactory_getSignedValue(pools, kind, word);
}

void raiseWordOutOfRange(ParserRegionHandler* handler, const GroupMemberTableRow* row, int64_t word) {
    ProcessingError_setValues(handler->context->currentError, __FILE__, __LINE__,
                              DFDLParser_numValueOutOfRange, ERROR_PROCESSING, SUBKIND_NONE, "%lld%Z%S",
                              static_cast<long long>(word), GroupMemberTableRow_getElementName(row),
                              TracehandlerAdapter_returnRangeAsString(handler->trace, row->simpleTypeKind));
}

DFDLValue* floatValue(ParserRegionHandler* handler, const ParsedNumber& number, DFDLType type) {
    DFDLPoolingFactory* pools = handler->heap->poolingFactory;
    double real = number.real;
    if (number.form == PARSED_WORD) real = static_cast<double>(number.word);
    if (number.form == PARSED_DECIMAL) real = DFDLDecimal_getDouble(number.decimal, handler->heap);
    return type == TYPE_FLOAT ? DFDLPoolingFactory_getFloatDFDLValue(pools, static_cast<float>(real))
                              : DFDLPoolingFactory_getDoubleDFDLValue(pools, real);
}

// Whether a computed value is of the kind that the type takes.
bool isOfFamily(const DFDLValue* value, int32_t simpleType) {
    switch (simpleType) {
        case SIMPLE_STRING:
            return DFDLValue_IsStringValue(value);
        case SIMPLE_BOOLEAN:
            return DFDLValue_IsBooleanValue(value);
        case SIMPLE_HEXBINARY:
            return DFDLValue_IsBinaryValue(value);
        case SIMPLE_DATE:
        case SIMPLE_TIME:
        case SIMPLE_DATETIME:
            return DFDLValue_IsCalendarValue(value);
        case SIMPLE_FLOAT:
            return DFDLValue_IsFloatValue(value);
        case SIMPLE_DOUBLE:
            return DFDLValue_IsDoubleValue(value);
        case SIMPLE_DECIMAL:
            return DFDLValue_IsDecimalValue(value);
        default:
            return isUnsigned(simpleType) ? DFDLValue_IsUnsignedQValue(value)
                                          : DFDLValue_IsSignedQValue(value);
    }
}

}  // namespace

DFDLValue* ParserRegionHandler_integerFromWord(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                               int64_t word) {
    if (BinaryNumberConverter_checkIntegerRange(word, row->simpleTypeKind))
        return wordValue(this_, row->simpleTypeKind, word);
    raiseWordOutOfRange(this_, row, word);
    return nullptr;
}

DFDLValue* ParserRegionHandler_decimalValue(ParserRegionHandler* this_, const GroupMemberTableRow* row) {
    DFDLDecimal* copy = DFDLDecimal_copy(this_->scratchDecimal, this_->heap);
    DFDLValue* value = DecimalDV_createDFDLValue(this_->heap, copy);
    DecimalDV_setModelSchemaType(value, static_cast<uint32_t>(row->simpleTypeKind));
    return value;
}

// A word again where the number fits one.
DFDLValue* ParserRegionHandler_integerFromDecimal(ParserRegionHandler* this_,
                                                  const GroupMemberTableRow* row) {
    DFDLDecimal* number = this_->scratchDecimal;
    const int32_t type = row->simpleTypeKind;
    if (!BinaryNumberConverter_checkDecimalRange(number, type)) {
        UErrorCode status = U_ZERO_ERROR;
        const Text text(DFDLDecimal_getDecimalInUString(number, &status, this_->heap));
        ParserRegionHandler_raiseOutOfRange(this_, row, text.get());
        return nullptr;
    }
    if (isUnsigned(type) && DFDLDecimal_fitsInUnsignedQValue(number))
        return wordValue(this_, type, static_cast<int64_t>(DFDLDecimal_getUnsignedQValue(number)));
    if (!isUnsigned(type) && DFDLDecimal_fitsInSignedQValue(number))
        return wordValue(this_, type, DFDLDecimal_getSignedQValue(number));
    return ParserRegionHandler_decimalValue(this_, row);
}

void ParserRegionHandler_raiseOutOfRange(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                         const DFDLUString* number) {
    ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__, DFDLParser_numValueOutOfRange,
                              ERROR_PROCESSING, SUBKIND_NONE, "%Z%Z%S", number,
                              GroupMemberTableRow_getElementName(row),
                              TracehandlerAdapter_returnRangeAsString(this_->trace, row->simpleTypeKind));
}

DFDLValue* ParserRegionHandler_buildDFDLValueFromNumber(ParserRegionHandler* this_,
                                                        const ParsedNumber& number, const DFDLUString* text,
                                                        const GroupMemberTableRow* row) {
    const int32_t type = row->simpleTypeKind;
    if (type < SIMPLE_FLOAT || type > SIMPLE_NON_NEGATIVE_INTEGER) return nullptr;
    if (type == SIMPLE_FLOAT) return floatValue(this_, number, TYPE_FLOAT);
    if (type == SIMPLE_DOUBLE) return floatValue(this_, number, TYPE_DOUBLE);
    if (number.form == PARSED_DOUBLE) {
        ParserRegionHandler_raiseOutOfRange(this_, row, text);
        return nullptr;
    }
    if (type == SIMPLE_DECIMAL) {
        if (number.form == PARSED_WORD) DFDLDecimal_setSignedQValue(this_->scratchDecimal, number.word);
        return ParserRegionHandler_decimalValue(this_, row);
    }
    if (number.form == PARSED_DECIMAL) return ParserRegionHandler_integerFromDecimal(this_, row);
    if (!isUnsigned(type) || number.word >= 0)
        return ParserRegionHandler_integerFromWord(this_, row, number.word);
    raiseWordOutOfRange(this_, row, number.word);
    return nullptr;
}

DFDLValue* ParserRegionHandler_setSchemaType(ParserRegionHandler* this_, DFDLValue* value,
                                             const GroupMemberTableRow* row) {
    const int32_t type = row->simpleTypeKind;
    if (value == nullptr || !isOfFamily(value, type)) {
        ParserRegionHandler_raise(this_, row, DFDLParser_invalidInputValueCalc);
        return nullptr;
    }
    const bool keepsKind = type <= SIMPLE_HEXBINARY || (type >= SIMPLE_FLOAT && type <= SIMPLE_INTEGER);
    if (!keepsKind)
        DFDLValue_setDFDLSchemaType(value, static_cast<DFDLType>(DFDLType_getTypeFromDFDLSimpleType(type)));
    return value;
}
