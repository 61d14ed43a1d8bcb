#include "dfdl/converters/plainnumber.h"

#include <bit>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/converters/simpletypeconverter.h"
#include "dfdl/pif/binarynumbertable.h"
#include "dfdl/pif/booleanreptable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/processor/plainelement.h"

namespace {

constexpr int64_t MOST_BYTES = 8;

bool isUnsigned(int32_t simpleType) { return simpleType >= SIMPLE_UNSIGNED_LONG; }

bool isInteger(int32_t simpleType) {
    return simpleType >= SIMPLE_INTEGER && simpleType <= SIMPLE_NON_NEGATIVE_INTEGER;
}

PlainNumberForm binaryForm(const BinaryNumberTableRow& row, int32_t simpleType, int64_t bytes) {
    if (simpleType == SIMPLE_FLOAT || simpleType == SIMPLE_DOUBLE) {
        const bool natural = bytes == (simpleType == SIMPLE_FLOAT ? 4 : 8);
        if (!natural || row.iBinaryFloatRepExprIndex != -1) return PLAIN_FORM_NONE;
        return row.iBinaryFloatRepresentation == IEEE ? PLAIN_FORM_UNSIGNED : PLAIN_FORM_FLOATING;
    }
    if (!DFDLType_isValidByteLength(simpleType, bytes)) return PLAIN_FORM_NONE;
    if (simpleType == SIMPLE_DECIMAL) {
        if (row.iDecimalSigned) return PLAIN_FORM_SIGNED;
        return bytes < 8 ? PLAIN_FORM_UNSIGNED : PLAIN_FORM_NONE;
    }
    if (!isInteger(simpleType)) return PLAIN_FORM_NONE;
    return isUnsigned(simpleType) ? PLAIN_FORM_UNSIGNED : PLAIN_FORM_SIGNED;
}

PlainNumberForm formOf(const BinaryNumberTableRow& row, int32_t simpleType, int64_t bytes) {
    const bool isDecimal = simpleType == SIMPLE_DECIMAL;
    const int32_t places = row.iBinaryDecimalVirtualPoint;
    if (isDecimal && (places < 0 || places > MOST_PLACES)) return PLAIN_FORM_NONE;
    switch (row.iBinaryNumberRepresentation) {
        case BINARY:
            return binaryForm(row, simpleType, bytes);
        case BCD:
        case PACKED:
            return isDecimal || isInteger(simpleType) ? PLAIN_FORM_PACKED : PLAIN_FORM_NONE;
        default:
            return PLAIN_FORM_NONE;
    }
}

PlainNumber numberOf(const GroupMemberTableRow* row, int64_t bytes) {
    const BinaryNumberTableRow* number = GroupMemberTableRow_getBinaryNumberRow(row);
    if (number == nullptr || number->iByteOrderExprIndex != -1) return {};
    const int32_t simpleType = row->simpleTypeKind;
    const auto type = static_cast<DFDLType>(DFDLType_getTypeFromDFDLSimpleType(simpleType));
    return {formOf(*number, simpleType, bytes),
            static_cast<uint8_t>(bytes),
            number->iByteOrder,
            type,
            number->iBinaryDecimalVirtualPoint,
            simpleType,
            number,
            nullptr};
}

PlainNumber truthOf(const GroupMemberTableRow* row, int64_t bytes) {
    const BooleanRepTableRow* truth = GroupMemberTableRow_getBooleanRepRow(row);
    if (truth == nullptr || truth->iByteOrderExprIndex != -1 || (bytes != 1 && bytes != 2 && bytes != 4))
        return {};
    return {PLAIN_FORM_TRUTH,
            static_cast<uint8_t>(bytes),
            truth->iByteOrder,
            TYPE_BOOLEAN,
            0,
            row->simpleTypeKind,
            nullptr,
            truth};
}

bool readFloating(const PlainNumber& number, const BinaryField& field, int64_t* word) {
    const BinaryFloatRepresentationEnum representation = number.row->iBinaryFloatRepresentation;
    if (number.simpleType == SIMPLE_FLOAT) {
        float value = 0;
        if (!BinaryNumberConverter_createFloatFromBinary(representation, &field, &value)) return false;
        *word = std::bit_cast<int32_t>(value);
        return true;
    }
    double value = 0;
    if (!BinaryNumberConverter_createDoubleFromBinary(representation, &field, &value)) return false;
    *word = std::bit_cast<int64_t>(value);
    return true;
}

// Fields of 2 bytes are taken without a sign and all others with it.
bool readTruth(const PlainNumber& number, const uint8_t* bytes, int64_t* word) {
    const int64_t value = number.bytes == 2
                              ? BinaryNumberConverter_getShort(bytes, number.order)
                              : BinaryNumberConverter_getBinaryInteger(bytes, number.order, number.bytes);
    if (value == number.truth->iIntegerBooleanTrueRep) {
        *word = 1;
        return true;
    }
    *word = 0;
    return value == number.truth->iIntegerBooleanFalseRep;
}

bool readPacked(const PlainNumber& number, const BinaryField& field, int64_t* word) {
    if (!SimpleTypeConverter_packedWord(&field, word)) return false;
    if (number.simpleType == SIMPLE_DECIMAL) return true;
    return (*word >= 0 || !isUnsigned(number.simpleType)) &&
           BinaryNumberConverter_checkIntegerRange(*word, number.simpleType);
}

}  // namespace

PlainNumber PlainNumber_of(const GroupMemberTableRow* row, int64_t bytes) {
    if (bytes < 1 || bytes > MOST_BYTES) return {};
    switch (row->iPhysicalType) {
        case BINARY_NUMBER:
            return numberOf(row, bytes);
        case BINARY_BOOLEAN:
            return truthOf(row, bytes);
        default:
            return {};
    }
}

bool PlainNumber_readSlowly(const PlainNumber* this_, const uint8_t* bytes, int64_t* word) {
    const BinaryField field{bytes, this_->bytes, this_->order, this_->simpleType, this_->row, nullptr};
    switch (this_->form) {
        case PLAIN_FORM_SIGNED:
            *word = BinaryNumberConverter_getBinaryInteger(bytes, this_->order, this_->bytes);
            return true;
        case PLAIN_FORM_UNSIGNED:
            *word = static_cast<int64_t>(
                BinaryNumberConverter_getBinaryUnsignedInteger(bytes, this_->order, this_->bytes));
            return true;
        case PLAIN_FORM_FLOATING:
            return readFloating(*this_, field, word);
        case PLAIN_FORM_TRUTH:
            return readTruth(*this_, bytes, word);
        case PLAIN_FORM_PACKED:
            return readPacked(*this_, field, word);
        default:
            return false;
    }
}
