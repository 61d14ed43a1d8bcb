#include "dfdl/converters/floatconverter.h"

namespace {

struct DoubleFormat {
    using Word = uint64_t;
    static constexpr int WIDTH = 64;
    static constexpr int MANTISSA_BITS = 52;  // IEEE, without the hidden one
    static constexpr int FRACTION_BITS = 56;  // IBM
    static constexpr int BIAS = 1023;
    static constexpr Word LARGEST = 0x7FEFFFFFFFFFFFFF;
    static constexpr Word LOOKED_AT = 0x7FFFFFFF00000000;  // none of them set: zero
    static constexpr bool IS_LIMITED = true;
};

struct FloatFormat {
    using Word = uint32_t;
    static constexpr int WIDTH = 32;
    static constexpr int MANTISSA_BITS = 23;
    static constexpr int FRACTION_BITS = 24;
    static constexpr int BIAS = 127;
    static constexpr Word LARGEST = 0x7FBFFFFF;
    static constexpr Word LOOKED_AT = 0x7FFFFFFF;
    static constexpr bool IS_LIMITED = false;
};

constexpr int HEX_BIAS = 64;

template <class Format>
struct Bits {
    using Word = typename Format::Word;
    static constexpr Word SIGN = Word{1} << (Format::WIDTH - 1);
    static constexpr Word HIDDEN = Word{1} << Format::MANTISSA_BITS;
    static constexpr Word FRACTION = (Word{1} << Format::FRACTION_BITS) - 1;
    static constexpr int SPARE = Format::FRACTION_BITS - Format::MANTISSA_BITS;
    static constexpr int EXPONENT_END = 2 * Format::BIAS;  // the largest of a finite number
};

template <class Format>
typename Format::Word toIEEE(typename Format::Word bits) {
    using B = Bits<Format>;
    if ((bits & Format::LOOKED_AT) == 0) return bits;
    auto mantissa = (bits & B::FRACTION) >> B::SPARE;
    int exponent = (static_cast<int>((bits & ~B::SIGN) >> Format::FRACTION_BITS) - HEX_BIAS) * 4;
    if (mantissa != 0) {
        for (; (mantissa & B::HIDDEN) == 0; --exponent) mantissa <<= 1;
    }
    const int biased = exponent + Format::BIAS;
    if (biased > B::EXPONENT_END) return Format::LARGEST;
    const auto sign = bits & B::SIGN;
    if (biased < 1) return sign;
    return sign | static_cast<typename B::Word>(biased) << Format::MANTISSA_BITS |
           (mantissa & (B::HIDDEN - 1));
}

template <class Format>
typename Format::Word toHex(typename Format::Word bits) {
    using B = Bits<Format>;
    if ((bits & Format::LOOKED_AT) == 0) return bits;
    const auto sign = bits & B::SIGN;
    auto fraction = ((bits & (B::HIDDEN - 1)) | B::HIDDEN) << B::SPARE;
    const int exponent = static_cast<int>((bits & ~B::SIGN) >> Format::MANTISSA_BITS) - Format::BIAS;
    const int steps = exponent < 0 ? (-exponent) & 3 : exponent & 3;
    fraction = exponent < 0 ? fraction >> steps : fraction << steps;
    int characteristic = (exponent < 0 ? -((-exponent) >> 2) : exponent >> 2) + HEX_BIAS;
    if ((fraction & ~B::FRACTION) != 0) {
        fraction >>= 4;
        ++characteristic;
    }
    if (Format::IS_LIMITED && characteristic > 126) return sign | ~B::SIGN;
    if (Format::IS_LIMITED && characteristic < 1) return sign;
    return sign | static_cast<typename B::Word>(characteristic) << Format::FRACTION_BITS | fraction;
}

}  // namespace

uint64_t FloatConverter_doubleZOVHexToIEEE(uint64_t bits) { return toIEEE<DoubleFormat>(bits); }

uint32_t FloatConverter_floatZOVHexToIEEE(uint32_t bits) { return toIEEE<FloatFormat>(bits); }

uint64_t FloatConverter_doubleIEEEToZOVHex(uint64_t bits) { return toHex<DoubleFormat>(bits); }

uint32_t FloatConverter_floatIEEEToZOVHex(uint32_t bits) { return toHex<FloatFormat>(bits); }
