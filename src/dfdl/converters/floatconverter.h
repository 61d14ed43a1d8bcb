#ifndef DFDL_CONVERTERS_FLOATCONVERTER_H
#define DFDL_CONVERTERS_FLOATCONVERTER_H

#include <cstdint>

// Between bit patterns of IEEE floating point and IBM's: a sign, an exponent of 16 in excess 64, a fraction.
// Nothing is rounded: bits fall off. There is no object.
//
// Too large numbers become the largest one, without the sign; too small ones zero, with it. Of a double, a
// fraction in the low half alone counts as zero.
uint64_t FloatConverter_doubleZOVHexToIEEE(uint64_t bits);
uint32_t FloatConverter_floatZOVHexToIEEE(uint32_t bits);

// Infinities, NaNs and denormal numbers are taken like any other. Too large doubles get all bits below the
// sign, too small ones none; floats are in no need of limits.
uint64_t FloatConverter_doubleIEEEToZOVHex(uint64_t bits);
uint32_t FloatConverter_floatIEEEToZOVHex(uint32_t bits);

#endif
