// Fields that are no text.
#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/binarynumbertable.h"
#include "dfdl/pif/booleanreptable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"

namespace {

// ---- Numbers -------------------------------------------------------------------------------------------

// Whether the number is read to a word. Of types that may be larger than one those are that a word must hold
// for certain, and of which none could be negative and yet have no sign.
bool isWord(const BinaryField& field) {
    if (field.length > static_cast<int64_t>(sizeof(int64_t))) return false;
    if (field.simpleType != SIMPLE_UNSIGNED_LONG && field.simpleType != SIMPLE_NON_NEGATIVE_INTEGER) {
        return true;
    }
    return field.row->iBinaryNumberRepresentation == BINARY;
}

DFDLValue* readInteger(ParserRegionHandler* handler, const BinaryField& field) {
    int64_t word = 0;
    bool inDecimal = false;
    const bool good = isWord(field)
                          ? BinaryNumberConverter_createLongFromBinary(&field, handler->scratchDecimal, &word)
                          : BinaryNumberConverter_createBigIntegerFromBinary(&field, handler->scratchDecimal,
                                                                             &word, &inDecimal);
    if (!good) return nullptr;
    return inDecimal ? ParserRegionHandler_integerFromDecimal(handler, field.element)
                     : ParserRegionHandler_integerFromWord(handler, field.element, word);
}

DFDLValue* readDecimal(ParserRegionHandler* handler, const BinaryField& field) {
    DFDLDecimal_clear(handler->scratchDecimal);
    if (!BinaryNumberConverter_createDecimalFromBinary(&field, handler->scratchDecimal)) return nullptr;
    return ParserRegionHandler_decimalValue(handler, field.element);
}

template <class Number, auto Read, auto Wrap>
DFDLValue* readFloating(ParserRegionHandler* handler, const BinaryField& field) {
    if (field.row->iBinaryFloatRepExprIndex != -1) {
        PIFIteratorForParser_raiseUnsupported(handler->pifIterator, field.element,
                                              "binary float representations given by an expression");
        return nullptr;
    }
    Number number = 0;
    if (!Read(field.row->iBinaryFloatRepresentation, &field, &number)) {
        ParserRegionHandler_raise(handler, field.element, DFDLParser_invalidFloatingPointType);
        return nullptr;
    }
    return Wrap(handler->heap->poolingFactory, number);
}

DFDLValue* readNumber(ParserRegionHandler* handler, const BinaryField& field) {
    switch (field.simpleType) {
        case SIMPLE_FLOAT:
            return readFloating<float, BinaryNumberConverter_createFloatFromBinary,
                                DFDLPoolingFactory_getFloatDFDLValue>(handler, field);
        case SIMPLE_DOUBLE:
            return readFloating<double, BinaryNumberConverter_createDoubleFromBinary,
                                DFDLPoolingFactory_getDoubleDFDLValue>(handler, field);
        case SIMPLE_DECIMAL:
            return readDecimal(handler, field);
        default:
            break;
    }
    const bool isInteger =
        field.simpleType >= SIMPLE_INTEGER && field.simpleType <= SIMPLE_NON_NEGATIVE_INTEGER;
    return isInteger ? readInteger(handler, field) : nullptr;
}

// ---- Booleans ------------------------------------------------------------------------------------------

// A length that no machine word has reads as 0, and of 8 bytes the low half counts.
int32_t readTruth(const uint8_t* bytes, int64_t count, ByteOrderEnum order) {
    switch (count) {
        case 1:
            return static_cast<int8_t>(*bytes);
        case 2:
            return BinaryNumberConverter_getShort(bytes, order);
        case 4:
            return static_cast<int32_t>(BinaryNumberConverter_getInt(bytes, order));
        case 8:
            return static_cast<int32_t>(BinaryNumberConverter_getLong(bytes, order) & 0xFFFFFFFF);
        default:
            return 0;
    }
}

}  // namespace

DFDLValue* ParserRegionHandler_convertBinaryNumber(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                                   const uint8_t* bytes, int64_t count) {
    ByteOrderEnum order = BYTEOR_LITTLE_ENDIAN;
    if (!ParserRegionHandler_findNumberOrder(this_, row, &order)) return nullptr;
    const BinaryNumberTableRow* numberRow = GroupMemberTableRow_getBinaryNumberRow(row);
    const BinaryField field{bytes, count, order, row->simpleTypeKind, numberRow, row};
    return readNumber(this_, field);
}

DFDLValue* ParserRegionHandler_convertBinaryBoolean(ParserRegionHandler* this_,
                                                    const GroupMemberTableRow* row, const uint8_t* bytes,
                                                    int64_t count) {
    ByteOrderEnum order = BYTEOR_LITTLE_ENDIAN;
    if (!ParserRegionHandler_findBooleanOrder(this_, row, &order)) return nullptr;
    const BooleanRepTableRow* rep = GroupMemberTableRow_getBooleanRepRow(row);
    const int32_t truth = readTruth(bytes, count, order);
    if (truth == rep->iIntegerBooleanTrueRep) return BooleanDV_createDFDLValue(this_->heap, 1);
    if (truth == rep->iIntegerBooleanFalseRep) return BooleanDV_createDFDLValue(this_->heap, 0);
    ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__,
                              DFDLParser_incorrectBinaryBoolValue, ERROR_PROCESSING, SUBKIND_NONE, "%u%Z",
                              static_cast<uint32_t>(truth), GroupMemberTableRow_getElementName(row));
    return nullptr;
}

DFDLValue* ParserRegionHandler_handleSimpleContent_BinaryNumber(ParserRegionHandler* this_,
                                                                const GroupMemberTableRow* row,
                                                                uint8_t* block, int64_t count) {
    const ScopeExit end([&] { BufferManager_deAllocateBytes(this_->bufferManager, block); });
    DFDLValue* value = ParserRegionHandler_convertBinaryNumber(this_, row, block, count);
    return ParserRegionHandler_keepIfValid(this_, value, row);
}

DFDLValue* ParserRegionHandler_handleSimpleContent_BinaryBoolean(ParserRegionHandler* this_,
                                                                 const GroupMemberTableRow* row,
                                                                 uint8_t* block, int64_t count) {
    const ScopeExit end([&] { BufferManager_deAllocateBytes(this_->bufferManager, block); });
    DFDLValue* value = ParserRegionHandler_convertBinaryBoolean(this_, row, block, count);
    return ParserRegionHandler_keepIfValid(this_, value, row);
}

DFDLValue* ParserRegionHandler_handleSimpleContent_BinaryOpaque(ParserRegionHandler* this_,
                                                                const GroupMemberTableRow* row,
                                                                uint8_t* block, int64_t count) {
    return ParserRegionHandler_keepIfValid(this_,
                                           HexBinaryDV_createDFDLValue(this_->heap, block, count, true), row);
}
