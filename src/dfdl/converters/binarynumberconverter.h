#ifndef DFDL_CONVERTERS_BINARYNUMBERCONVERTER_H
#define DFDL_CONVERTERS_BINARYNUMBERCONVERTER_H

#include <bit>
#include <cstdint>
#include <cstring>

#include "dfdl/buffer/bytearrayutils.h"
#include "dfdl/converters/binaryfield.h"
#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLDecimal;
struct DFDLUString;
struct DFDLValue;

// Turns bytes into numbers. There is no object; errors go to the context of the heap that the decimal given
// belongs to.

// ---- Words ---------------------------------------------------------------------------------------------

constexpr uint8_t BinaryNumberConverter_swapByte(uint8_t word) { return word; }  // one byte has no order
constexpr uint16_t BinaryNumberConverter_swapShort(uint16_t word) { return __builtin_bswap16(word); }
constexpr uint32_t BinaryNumberConverter_swapInt(uint32_t word) { return __builtin_bswap32(word); }
constexpr uint64_t BinaryNumberConverter_swapLong(uint64_t word) { return __builtin_bswap64(word); }

// Of eight bytes, that with the most weight first.
constexpr uint64_t BinaryNumberConverter_makeLong(uint8_t b7, uint8_t b6, uint8_t b5, uint8_t b4, uint8_t b3,
                                                  uint8_t b2, uint8_t b1, uint8_t b0) {
    const auto high = static_cast<uint32_t>(b7 << 24 | b6 << 16 | b5 << 8 | b4);
    const auto low = static_cast<uint32_t>(b3 << 24 | b2 << 16 | b1 << 8 | b0);
    return uint64_t{high} << 32 | low;
}

// Whether words in this order lie the other way round in this machine. All but BYTEOR_BIG_ENDIAN is
// little-endian.
inline bool BinaryNumberConverter_isSwapped(ByteOrderEnum order) {
    return (order == BYTEOR_BIG_ENDIAN) != (std::endian::native == std::endian::big);
}

// Words from and to bytes that lie anywhere. Those of `B` are big-endian, those of `L` little-endian.
template <class Word, auto Swap>
Word BinaryNumberConverter_getWord(const uint8_t* bytes, ByteOrderEnum order) {
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return BinaryNumberConverter_isSwapped(order) ? Swap(word) : word;
}
template <class Word, auto Swap>
void BinaryNumberConverter_putWord(uint8_t* bytes, Word word, ByteOrderEnum order) {
    if (BinaryNumberConverter_isSwapped(order)) word = Swap(word);
    std::memcpy(bytes, &word, sizeof word);
}

inline uint16_t BinaryNumberConverter_getShort(const uint8_t* bytes, ByteOrderEnum order) {
    return BinaryNumberConverter_getWord<uint16_t, BinaryNumberConverter_swapShort>(bytes, order);
}
inline uint16_t BinaryNumberConverter_getShortB(const uint8_t* bytes) {
    return BinaryNumberConverter_getShort(bytes, BYTEOR_BIG_ENDIAN);
}
inline uint16_t BinaryNumberConverter_getShortL(const uint8_t* bytes) {
    return BinaryNumberConverter_getShort(bytes, BYTEOR_LITTLE_ENDIAN);
}
inline uint32_t BinaryNumberConverter_getInt(const uint8_t* bytes, ByteOrderEnum order) {
    return BinaryNumberConverter_getWord<uint32_t, BinaryNumberConverter_swapInt>(bytes, order);
}
inline uint32_t BinaryNumberConverter_getIntB(const uint8_t* bytes) {
    return BinaryNumberConverter_getInt(bytes, BYTEOR_BIG_ENDIAN);
}
inline uint32_t BinaryNumberConverter_getIntL(const uint8_t* bytes) {
    return BinaryNumberConverter_getInt(bytes, BYTEOR_LITTLE_ENDIAN);
}
inline uint64_t BinaryNumberConverter_getLong(const uint8_t* bytes, ByteOrderEnum order) {
    return BinaryNumberConverter_getWord<uint64_t, BinaryNumberConverter_swapLong>(bytes, order);
}
inline uint64_t BinaryNumberConverter_getLongB(const uint8_t* bytes) {
    return BinaryNumberConverter_getLong(bytes, BYTEOR_BIG_ENDIAN);
}
inline uint64_t BinaryNumberConverter_getLongL(const uint8_t* bytes) {
    return BinaryNumberConverter_getLong(bytes, BYTEOR_LITTLE_ENDIAN);
}
inline float BinaryNumberConverter_getFloat(const uint8_t* bytes, ByteOrderEnum order) {
    return std::bit_cast<float>(BinaryNumberConverter_getInt(bytes, order));
}
inline float BinaryNumberConverter_getFloatB(const uint8_t* bytes) {
    return BinaryNumberConverter_getFloat(bytes, BYTEOR_BIG_ENDIAN);
}
inline float BinaryNumberConverter_getFloatL(const uint8_t* bytes) {
    return BinaryNumberConverter_getFloat(bytes, BYTEOR_LITTLE_ENDIAN);
}
inline double BinaryNumberConverter_getDouble(const uint8_t* bytes, ByteOrderEnum order) {
    return std::bit_cast<double>(BinaryNumberConverter_getLong(bytes, order));
}
inline double BinaryNumberConverter_getDoubleB(const uint8_t* bytes) {
    return BinaryNumberConverter_getDouble(bytes, BYTEOR_BIG_ENDIAN);
}
inline double BinaryNumberConverter_getDoubleL(const uint8_t* bytes) {
    return BinaryNumberConverter_getDouble(bytes, BYTEOR_LITTLE_ENDIAN);
}
// Three bytes, without sign.
inline uint32_t BinaryNumberConverter_getInt3ByteB(const uint8_t* bytes) {
    return uint32_t{bytes[0]} << 16 | uint32_t{bytes[1]} << 8 | bytes[2];
}
inline uint32_t BinaryNumberConverter_getInt3ByteL(const uint8_t* bytes) {
    return uint32_t{bytes[2]} << 16 | uint32_t{bytes[1]} << 8 | bytes[0];
}
inline uint32_t BinaryNumberConverter_getInt3Byte(const uint8_t* bytes, ByteOrderEnum order) {
    return order == BYTEOR_BIG_ENDIAN ? BinaryNumberConverter_getInt3ByteB(bytes)
                                      : BinaryNumberConverter_getInt3ByteL(bytes);
}

inline void BinaryNumberConverter_putShort(uint8_t* bytes, uint16_t word, ByteOrderEnum order) {
    BinaryNumberConverter_putWord<uint16_t, BinaryNumberConverter_swapShort>(bytes, word, order);
}
inline void BinaryNumberConverter_putInt(uint8_t* bytes, uint32_t word, ByteOrderEnum order) {
    BinaryNumberConverter_putWord<uint32_t, BinaryNumberConverter_swapInt>(bytes, word, order);
}
inline void BinaryNumberConverter_putLong(uint8_t* bytes, uint64_t word, ByteOrderEnum order) {
    BinaryNumberConverter_putWord<uint64_t, BinaryNumberConverter_swapLong>(bytes, word, order);
}
inline void BinaryNumberConverter_putFloat(uint8_t* bytes, float number, ByteOrderEnum order) {
    BinaryNumberConverter_putInt(bytes, std::bit_cast<uint32_t>(number), order);
}
inline void BinaryNumberConverter_putDouble(uint8_t* bytes, double number, ByteOrderEnum order) {
    BinaryNumberConverter_putLong(bytes, std::bit_cast<uint64_t>(number), order);
}
// The bytes of least weight, `length` of them; those that a word does not have are 0.
void BinaryNumberConverter_putOddLengthInteger(uint8_t* bytes, uint64_t word, int64_t length,
                                               ByteOrderEnum order);

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

// The way back, in place: moves the bits of a little-endian number, whose last byte has the most weight, to
// the end of the array, where bits are written from. Big-endian ones stand there already. Null for
// BYTEOR_UNDEFINED. Of more than 16 bits that are no whole bytes, a byte in between keeps its own high bits
// and is joined with those that move into it: such a number comes back whole if its bytes in between are
// zero.
uint8_t* BinaryNumberConverter_transformToBinaryRep(uint8_t* bytes, int64_t byteCount, int64_t bits,
                                                    ByteOrderEnum order);

// Moves the bits of an array by 0 to 7 places towards its first byte, zeros coming in.
inline void BinaryNumberConverter_alignByteArrayToBitOffset(uint8_t* bytes, int64_t byteCount,
                                                            int32_t bitOffset) {
    ByteArrayUtils_shiftLeft(bytes, byteCount, bitOffset);
}

// The bytes that hexadecimal digits of either case write: a block of heap->bufferFactory. Null for no text
// and for an odd number of digits, with the count left alone, and for other characters, with a count of 0.
uint8_t* BinaryNumberConverter_hexToBytes(const DFDLUString* text, int64_t* byteCount, DFDLHeapAdapter* heap);

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
// The same for a BINARY field that fits a signed word, without the virtual point. Of types other than decimal
// false, with an error, for a number outside the type's range.
bool BinaryNumberConverter_createLongFromBinaryBinary(const BinaryField* field, DFDLDecimal* target);
inline constexpr int64_t BINARY_DECIMAL_DIGITS = 34;  // two to a byte, whatever the representation

// Of 4 and of 8 bytes; false without an error if there are fewer, or if the type is another. The value is
// left alone for a representation that is none of the two. An IBM zero of 4 bytes reads as 2^-127.
bool BinaryNumberConverter_createFloatFromBinary(BinaryFloatRepresentationEnum representation,
                                                 const BinaryField* field, float* value);
bool BinaryNumberConverter_createDoubleFromBinary(BinaryFloatRepresentationEnum representation,
                                                  const BinaryField* field, double* value);
// What patterns say that come from IBM's, worked out in doubles. The hidden bit of a float counts whatever
// the exponent, so that no pattern is zero; that of a double does not count for an exponent of 0.
float IntBitsToFloat(uint32_t bits);
double LongBitsToDouble(uint64_t bits);

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
