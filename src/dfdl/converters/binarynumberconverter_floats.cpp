#include <cmath>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/converters/floatconverter.h"
#include "dfdl/foundation/dfdltype.h"

namespace {

bool holds(const BinaryField* field, DFDLSimpleTypeEnum type, size_t bytes) {
    return field->simpleType == type && field->length >= static_cast<int64_t>(bytes);
}

}  // namespace

float IntBitsToFloat(uint32_t bits) {
    const uint32_t mantissa = (bits & 0x7FFFFF) | 0x800000;
    const auto exponent = static_cast<int>(bits >> 23 & 0xFF) - 150;
    const double size = static_cast<double>(mantissa) * std::pow(2.0, exponent);
    return static_cast<float>((bits >> 31) != 0 ? -size : size);
}

// Without the hidden bit the power of two is too small for a double, and the number so zero.
double LongBitsToDouble(uint64_t bits) {
    constexpr uint64_t HIDDEN = uint64_t{1} << 52;
    const auto exponent = static_cast<int>(bits >> 52 & 0x7FF);
    const uint64_t low = bits & (HIDDEN - 1);
    const uint64_t mantissa = exponent == 0 ? low << 1 : low | HIDDEN;
    const double size = static_cast<double>(mantissa) * std::pow(2.0, exponent - 1075);
    return (bits >> 63) != 0 ? -size : size;
}

bool BinaryNumberConverter_createFloatFromBinary(BinaryFloatRepresentationEnum representation,
                                                 const BinaryField* field, float* value) {
    if (!holds(field, SIMPLE_FLOAT, sizeof(float))) return false;
    if (representation == IEEE) {
        *value = BinaryNumberConverter_getFloat(field->bytes, field->byteOrder);
    } else if (representation == ZOV390_HEX) {
        const uint32_t bits = BinaryNumberConverter_getInt(field->bytes, field->byteOrder);
        *value = IntBitsToFloat(FloatConverter_floatZOVHexToIEEE(bits));
    }
    return true;
}

bool BinaryNumberConverter_createDoubleFromBinary(BinaryFloatRepresentationEnum representation,
                                                  const BinaryField* field, double* value) {
    if (!holds(field, SIMPLE_DOUBLE, sizeof(double))) return false;
    if (representation == IEEE) {
        *value = BinaryNumberConverter_getDouble(field->bytes, field->byteOrder);
    } else if (representation == ZOV390_HEX) {
        const uint64_t bits = BinaryNumberConverter_getLong(field->bytes, field->byteOrder);
        *value = LongBitsToDouble(FloatConverter_doubleZOVHexToIEEE(bits));
    }
    return true;
}
