#include <cmath>
#include <limits>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/xsvalue.h"

namespace {

constexpr double TWO_63 = 9223372036854775808.0;
constexpr double TWO_64 = 18446744073709551616.0;
constexpr double LARGEST_FLOAT = 3.4028234663852886e38;

struct IntegerRange {
    int64_t lowest;
    uint64_t highest;
};

// The 32-, 16- and 8-bit types; null for the others.
const IntegerRange* rangeOf(int32_t simpleType) {
    static constexpr IntegerRange RANGES[] = {{-2147483648LL, 2147483647},
                                              {-32768, 32767},
                                              {-128, 127},
                                              {0, 0},
                                              {0, 4294967295},
                                              {0, 65535},
                                              {0, 255}};
    if (simpleType < SIMPLE_INT || simpleType > SIMPLE_UNSIGNED_BYTE || simpleType == SIMPLE_UNSIGNED_LONG) {
        return nullptr;
    }
    return &RANGES[simpleType - SIMPLE_INT];
}

bool isUnsigned(int32_t simpleType) { return simpleType >= SIMPLE_UNSIGNED_LONG; }

bool checkSigned(int64_t value, int32_t simpleType) {
    if (simpleType == SIMPLE_UNSIGNED_LONG || simpleType == SIMPLE_NON_NEGATIVE_INTEGER) return value >= 0;
    return BinaryNumberConverter_checkIntegerRange(value, simpleType);
}

bool checkUnsigned(uint64_t value, int32_t simpleType) {
    if (simpleType == SIMPLE_LONG) return value <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
    const IntegerRange* range = rangeOf(simpleType);
    return range == nullptr || value <= range->highest;
}

// Bounds are those of the type, both included; a float cannot tell 2^31 - 1 from 2^31, so it may reach that.
bool checkFloating(double value, int32_t simpleType, bool isFloat) {
    switch (simpleType) {
        case SIMPLE_FLOAT:
            return isFloat || std::isnan(value) || (value >= -LARGEST_FLOAT && value <= LARGEST_FLOAT);
        case SIMPLE_INTEGER:
        case SIMPLE_NON_NEGATIVE_INTEGER:
            return std::isfinite(value);
        case SIMPLE_LONG:
            return std::isfinite(value) && value >= -TWO_63 && value <= TWO_63;
        case SIMPLE_UNSIGNED_LONG:
            return std::isfinite(value) && value >= 0 && value <= TWO_64;
        default:
            break;
    }
    const IntegerRange* range = rangeOf(simpleType);
    if (range == nullptr) return true;
    const bool rounds = isFloat && (simpleType == SIMPLE_INT || simpleType == SIMPLE_UNSIGNED_INT);
    const double highest = static_cast<double>(range->highest) + (rounds ? 1.0 : 0.0);
    return std::isfinite(value) && value >= static_cast<double>(range->lowest) && value <= highest;
}

}  // namespace

bool BinaryNumberConverter_checkIntegerRange(int64_t value, int32_t simpleType) {
    const IntegerRange* range = rangeOf(simpleType);
    if (range == nullptr) return true;
    if (isUnsigned(simpleType)) return static_cast<uint64_t>(value) <= range->highest;
    return value >= range->lowest && value <= static_cast<int64_t>(range->highest);
}

bool BinaryNumberConverter_checkDecimalRange(DFDLDecimal* value, int32_t simpleType) {
    if (simpleType < SIMPLE_INTEGER || simpleType > SIMPLE_NON_NEGATIVE_INTEGER) return true;
    if (!DFDLDecimal_isFinite(value)) return false;
    switch (simpleType) {
        case SIMPLE_INTEGER:
            return true;
        case SIMPLE_LONG:
            return DFDLDecimal_fitsInSignedQValue(value);
        case SIMPLE_UNSIGNED_LONG:
            return DFDLDecimal_fitsInUnsignedQValue(value);
        case SIMPLE_NON_NEGATIVE_INTEGER:
            return DFDLDecimal_signum(value) >= 0;
        default:
            break;
    }
    if (isUnsigned(simpleType)) {
        return DFDLDecimal_fitsInUnsignedQValue(value) &&
               checkUnsigned(DFDLDecimal_getUnsignedQValue(value), simpleType);
    }
    return DFDLDecimal_fitsInSignedQValue(value) &&
           BinaryNumberConverter_checkIntegerRange(DFDLDecimal_getSignedQValue(value), simpleType);
}

bool BinaryNumberConverter_checkNumericRange(const DFDLValue* value, int32_t simpleType) {
    if (simpleType < SIMPLE_FLOAT || simpleType > SIMPLE_NON_NEGATIVE_INTEGER) return true;
    switch (value->schemaType) {
        case TYPE_DECIMAL:
            return BinaryNumberConverter_checkDecimalRange(value->u.decimal.number, simpleType);
        case TYPE_FLOAT:
            return checkFloating(static_cast<double>(value->u.floatValue), simpleType, true);
        case TYPE_DOUBLE:
            return checkFloating(value->u.doubleValue, simpleType, false);
        default:
            break;
    }
    if (value->schemaType >= TYPE_INTEGER && value->schemaType <= TYPE_BYTE) {
        return checkSigned(value->u.signedQ, simpleType);
    }
    if (value->schemaType >= TYPE_UNSIGNED_LONG && value->schemaType <= TYPE_NON_NEGATIVE_INTEGER) {
        return checkUnsigned(value->u.unsignedQ, simpleType);
    }
    return true;
}
