#include "dfdl/converters/binarynumberconverter.h"

#include "dfdl/converters/simpletypeconverter.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdltype.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/pif/binarynumbertable.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

constexpr int64_t WORD_BYTES = 8;

bool hasSign(const BinaryField& field) {
    return field.simpleType == SIMPLE_DECIMAL ? field.row->iDecimalSigned
                                              : field.simpleType < SIMPLE_UNSIGNED_LONG;
}

int64_t readWord(const BinaryField& field) {
    if (hasSign(field)) {
        return BinaryNumberConverter_getBinaryInteger(field.bytes, field.byteOrder, field.length);
    }
    return static_cast<int64_t>(
        BinaryNumberConverter_getBinaryUnsignedInteger(field.bytes, field.byteOrder, field.length));
}

// Without the zero bytes of most weight of what is more than a word.
BinaryField trimmed(const BinaryField& field) {
    BinaryField rest = field;
    if (field.length <= WORD_BYTES) return rest;
    while (rest.length > 1 && rest.bytes[BinaryField_indexOf(&rest, 0)] == 0) {
        if (BinaryField_isBigEndian(&rest)) ++rest.bytes;
        --rest.length;
    }
    return rest;
}

// As many bytes as the field has, from there on.
bool readArray(const uint8_t* bytes, const BinaryField& field, DFDLDecimal* target) {
    const auto read = hasSign(field) ? SimpleTypeConverter_signedByteArrayToBigInteger
                                     : SimpleTypeConverter_unsignedByteArrayToBigInteger;
    read(bytes, field.length, field.byteOrder, target);
    return true;
}

// True if the number is in the decimal.
bool readBigBinary(const BinaryField& field, DFDLDecimal* scratch, int64_t* value) {
    const BinaryField rest = trimmed(field);
    switch (field.simpleType) {
        case SIMPLE_DECIMAL:
        case SIMPLE_INTEGER:
        case SIMPLE_UNSIGNED_LONG:
        case SIMPLE_NON_NEGATIVE_INTEGER:
            return readArray(field.bytes, rest, scratch);
        default:
            break;
    }
    if (rest.length > WORD_BYTES) {  // no word can hold it: the decimal tells what is out of range
        return readArray(rest.bytes, rest, scratch);
    }
    *value = readWord(rest);
    return false;
}

int64_t wordOf(DFDLDecimal* decimal, const BinaryField& field) {
    return hasSign(field) ? DFDLDecimal_getSignedQValue(decimal)
                          : static_cast<int64_t>(DFDLDecimal_getUnsignedQValue(decimal));
}

void applyVirtualPoint(const BinaryField& field, DFDLDecimal* target) {
    const int32_t places = field.row->iBinaryDecimalVirtualPoint;
    if (places != 0) DFDLDecimal_setDecimalAt(target, places);
}

const DFDLUString* nameOf(const BinaryField& field) {
    return field.element == nullptr ? nullptr : GroupMemberTableRow_getElementName(field.element);
}

void raiseTooLong(const BinaryField& field, const Context* context) {
    const int64_t digits = field.length > INT64_MAX / 2 ? INT64_MAX : 2 * field.length;
    ProcessingError_setValues(context->currentError, __FILE__, __LINE__, DFDLParser_binaryNumberLengthError,
                              ERROR_PROCESSING, SUBKIND_NONE, "%Z%lld%i", nameOf(field),
                              static_cast<long long>(digits), static_cast<int>(BINARY_DECIMAL_DIGITS));
}

void raiseOutOfRange(const BinaryField& field, const Context* context, int64_t value) {
    ProcessingError_setValues(context->currentError, __FILE__, __LINE__, DFDLParser_numValueOutOfRange,
                              ERROR_PROCESSING, SUBKIND_NONE, "%lld%Z%S", static_cast<long long>(value),
                              nameOf(field),
                              TracehandlerAdapter_returnRangeAsString(context->trace, field.simpleType));
}

// Words that a decimal takes as signed: so one byte less of those without a sign.
bool fitsWord(const BinaryField& field) {
    return field.length < WORD_BYTES || (field.length == WORD_BYTES && field.row->iDecimalSigned);
}

}  // namespace

int64_t BinaryNumberConverter_getBinaryInteger(const uint8_t* bytes, ByteOrderEnum order, int64_t length) {
    switch (length) {
        case 1:
            return static_cast<int8_t>(*bytes);
        case 2:
            return static_cast<int16_t>(BinaryNumberConverter_getShort(bytes, order));
        case 4:
            return static_cast<int32_t>(BinaryNumberConverter_getInt(bytes, order));
        case 8:
            return static_cast<int64_t>(BinaryNumberConverter_getLong(bytes, order));
        default:
            return SimpleTypeConverter_oddIntegerToLong(bytes, order, length);
    }
}

uint64_t BinaryNumberConverter_getBinaryUnsignedInteger(const uint8_t* bytes, ByteOrderEnum order,
                                                        int64_t length) {
    switch (length) {
        case 1:
            return SimpleTypeConverter_uByteToShort(bytes);
        case 2:
            return SimpleTypeConverter_uShortToInt(bytes, order);
        case 4:
            return SimpleTypeConverter_uIntToLong(bytes, order);
        case 8:
            return BinaryNumberConverter_getLong(bytes, order);
        default:
            return SimpleTypeConverter_uOddIntegerToLong(bytes, order, length);
    }
}

bool BinaryNumberConverter_createLongFromBinary(const BinaryField* field, DFDLDecimal* scratch,
                                                int64_t* value) {
    DFDLDecimal_clear(scratch);
    const auto representation = field->row->iBinaryNumberRepresentation;
    if (representation == BINARY) {
        const bool isInteger =
            field->simpleType >= SIMPLE_INTEGER && field->simpleType <= SIMPLE_NON_NEGATIVE_INTEGER;
        *value = isInteger ? readWord(*field) : 0;
        return true;
    }
    const PackedReader read = SimpleTypeConverter_packedReader(representation, field->length);
    if (read == nullptr) return true;
    if (!read(field, false, scratch)) return false;
    *value = DFDLDecimal_getSignedQValue(scratch);
    return true;
}

bool BinaryNumberConverter_createBigIntegerFromBinary(const BinaryField* field, DFDLDecimal* scratch,
                                                      int64_t* value, bool* inDecimal) {
    DFDLDecimal_clear(scratch);
    *inDecimal = false;
    const auto representation = field->row->iBinaryNumberRepresentation;
    if (representation == BINARY) {
        *inDecimal = readBigBinary(*field, scratch, value);
        if (*inDecimal) *value = wordOf(scratch, *field);
        return true;
    }
    const PackedReader read = SimpleTypeConverter_packedReader(representation, field->length);
    if (read == nullptr) return true;
    if (!read(field, false, scratch)) return false;
    *value = DFDLDecimal_getSignedQValue(scratch);
    *inDecimal = true;
    return true;
}

bool BinaryNumberConverter_createDecimalFromBinary(const BinaryField* field, DFDLDecimal* target) {
    if (field->length > BINARY_DECIMAL_DIGITS / 2) {
        raiseTooLong(*field, target->heap->context);
        return false;
    }
    const auto representation = field->row->iBinaryNumberRepresentation;
    if (representation == BINARY) {
        int64_t value = 0;
        if (!fitsWord(*field)) {
            readBigBinary(*field, target, &value);
        } else if (!BinaryNumberConverter_createLongFromBinaryBinary(field, target)) {
            return false;
        }
        applyVirtualPoint(*field, target);
        return true;
    }
    const PackedReader read = SimpleTypeConverter_packedReader(representation, field->length);
    return read != nullptr && read(field, true, target);
}

bool BinaryNumberConverter_createLongFromBinaryBinary(const BinaryField* field, DFDLDecimal* target) {
    const int64_t value = readWord(*field);
    if (field->simpleType != SIMPLE_DECIMAL &&
        !BinaryNumberConverter_checkIntegerRange(value, field->simpleType)) {
        raiseOutOfRange(*field, target->heap->context, value);
        return false;
    }
    if (hasSign(*field)) {
        DFDLDecimal_setSignedQValue(target, value);
    } else {
        DFDLDecimal_setUnsignedQValue(target, static_cast<uint64_t>(value));
    }
    return true;
}
