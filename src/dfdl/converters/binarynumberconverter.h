#ifndef DFDL_CONVERTERS_BINARYNUMBERCONVERTER_H
#define DFDL_CONVERTERS_BINARYNUMBERCONVERTER_H

#include <bit>
#include <cstdint>
#include <cstring>

#include "dfdl/converters/binaryfield.h"
#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLDecimal;
struct DFDLUString;
struct DFDLValue;

// Turns bytes into numbers. There is no object; errors go to the context of the heap that the decimal given
// belongs to.

// ---- Words ---------------------------------------------------------------------------------------------

constexpr uint16_t BinaryNumberConverter_swapShort(uint16_t word) { return __builtin_bswap16(word); }
constexpr uint32_t BinaryNumberConverter_swapInt(uint32_t word) { return __builtin_bswap32(word); }
constexpr uint64_t BinaryNumberConverter_swapLong(uint64_t word) { return __builtin_bswap64(word); }

// Of bytes that lie anywhere.
inline bool BinaryNumberConverter_isSwapped(ByteOrderEnum order) {
    return (order == BYTEOR_BIG_ENDIAN) != (std::endian::native == std::endian::big);
}
inline uint16_t BinaryNumberConverter_getShort(const uint8_t* bytes, ByteOrderEnum order) {
    uint16_t word;
    std::memcpy(&word, bytes, sizeof word);
    return BinaryNumberConverter_isSwapped(order) ? BinaryNumberConverter_swapShort(word) : word;
}
inline uint32_t BinaryNumberConverter_getInt(const uint8_t* bytes, ByteOrderEnum order) {
    uint32_t word;
    std::memcpy(&word, bytes, sizeof word);
    return BinaryNumberConverter_isSwapped(order) ? BinaryNumberConverter_swapInt(word) : word;
}
inline uint64_t BinaryNumberConverter_getLong(const uint8_t* bytes, ByteOrderEnum order) {
    uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return BinaryNumberConverter_isSwapped(order) ? BinaryNumberConverter_swapLong(word) : word;
}
inline float BinaryNumberConverter_getFloat(const uint8_t* bytes, ByteOrderEnum order) {
    return std::bit_cast<float>(BinaryNumberConverter_getInt(bytes, order));
}
inline double BinaryNumberConverter_getDouble(const uint8_t* bytes, ByteOrderEnum order) {
    return std::bit_cast<double>(BinaryNumberConverter_getLong(bytes, order));
}

// Two's complement, and without sign, of up to 8 bytes.
int64_t BinaryNumberConverter_getBinaryInteger(const uint8_t* bytes, ByteOrderEnum order, int64_t length);
uint64_t BinaryNumberConverter_getBinaryUnsignedInteger(const uint8_t* bytes, ByteOrderEnum order,
                                                        int64_t length);

// ---- Bits ----------------------------------------------------------------------------------------------

// Makes whole bytes of bits that begin with the first bit of `bytes`, in a new block of heap->bufferFactory:
// big-endian ones are moved to the end of the last byte, little-endian ones end in the last byte, whose bits
// are moved to its end. The byte with the sign is filled up with it if there is one, else with zeros. No
// bits give the input back. Null, and no bytes, for BYTEOR_UNDEFINED.
uint8_t* BinaryNumberConverter_transformBinaryRepToByteArray(DFDLHeapAdapter* heap, uint8_t* bytes,
                                                             int64_t bits, ByteOrderEnum order,
                                                             int64_t* byteCount, bool isSigned);

// ---- Numbers by their representation -------------------------------------------------------------------

// The scratch decimal is cleared first. False with an error in the context. The value is left alone where the
// representation is not one of numbers.
bool BinaryNumberConverter_createLongFromBinary(const BinaryField* field, DFDLDecimal* scratch,
                                                int64_t* value);
// For any length. `inDecimal` tells whether the scratch decimal holds the number. A binary field of more than
// 8 bytes counts without its zero bytes of most weight, but a big-endian one that goes to the decimal is then
// still read from its first byte.
bool BinaryNumberConverter_createBigIntegerFromBinary(const BinaryField* field, DFDLDecimal* scratch,
                                                      int64_t* value, bool* inDecimal);
// With the virtual point. False with an error, or without one where the representation is not one of numbers.
bool BinaryNumberConverter_createDecimalFromBinary(const BinaryField* field, DFDLDecimal* target);
inline constexpr int64_t BINARY_DECIMAL_DIGITS = 34;  // two to a byte, whatever the representation

// Of 4 and of 8 bytes; false without an error if there are fewer, or if the type is another. The value is
// left alone for a representation that is none of the two. An IBM zero of 4 bytes reads as 2^-127.
bool BinaryNumberConverter_createFloatFromBinary(BinaryFloatRepresentationEnum representation,
                                                 const BinaryField* field, float* value);
bool BinaryNumberConverter_createDoubleFromBinary(BinaryFloatRepresentationEnum representation,
                                                  const BinaryField* field, double* value);

// The digits of a packed field as text, in front of them "-" if it has a negative sign there. A text of the
// heap's pool; null with an error, or without one where the representation has no text, as IBM's packed
// decimals have none.
DFDLUString* BinaryNumberConverter_createStringIntegerFromBinary(const BinaryField* field,
                                                                 DFDLHeapAdapter* heap);

// ---- Ranges --------------------------------------------------------------------------------------------

// Whether a number lies in the range of a simple type (DFDLSimpleTypeEnum). Types without bounds of their own
// take everything. 64-bit words are taken as signed or unsigned by the type.
bool BinaryNumberConverter_checkIntegerRange(int64_t value, int32_t simpleType);
bool BinaryNumberConverter_checkDecimalRange(DFDLDecimal* value, int32_t simpleType);
// Values that are no numbers pass.
bool BinaryNumberConverter_checkNumericRange(const DFDLValue* value, int32_t simpleType);

#endif
