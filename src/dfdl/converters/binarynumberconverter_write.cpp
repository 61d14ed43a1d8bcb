// Numbers, bits and hexadecimal digits as bytes to be written.
#include <cstring>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlustring.h"

namespace {

// The byte that has so many of less weight.
uint8_t byteOf(uint64_t word, int64_t rank) {
    return rank < static_cast<int64_t>(sizeof word) ? static_cast<uint8_t>(word >> (8 * rank)) : uint8_t{0};
}

void moveBytesToEnd(uint8_t* bytes, int64_t count, int64_t places) {
    if (places <= 0 || places >= count) return;
    std::memmove(bytes + places, bytes, static_cast<size_t>(count - places));
    std::memset(bytes, 0, static_cast<size_t>(places));
}

// The last byte, that of most weight, has `bits` bits, to which those in front of it close up.
void closeUp(uint8_t* bytes, int64_t count, int32_t bits) {
    for (int64_t i = count - 1; i > 0; --i) {
        bytes[i] = static_cast<uint8_t>(bytes[i] | bytes[i - 1] << bits);
    }
    bytes[0] = static_cast<uint8_t>(bytes[0] >> (8 - bits));
}

constexpr uint8_t NO_DIGIT = 0xFF;

uint8_t digitOf(UChar unit) {
    if (unit >= u'0' && unit <= u'9') return static_cast<uint8_t>(unit - u'0');
    if (unit >= u'a' && unit <= u'f') return static_cast<uint8_t>(unit - u'a' + 10);
    if (unit >= u'A' && unit <= u'F') return static_cast<uint8_t>(unit - u'A' + 10);
    return NO_DIGIT;
}

}  // namespace

void BinaryNumberConverter_putOddLengthInteger(uint8_t* bytes, uint64_t word, int64_t length,
                                               ByteOrderEnum order) {
    for (int64_t i = 0; i < length; ++i) {
        bytes[i] = byteOf(word, order == BYTEOR_BIG_ENDIAN ? length - 1 - i : i);
    }
}

uint8_t* BinaryNumberConverter_transformToBinaryRep(uint8_t* bytes, int64_t byteCount, int64_t bits,
                                                    ByteOrderEnum order) {
    if (order == BYTEOR_UNDEFINED) return nullptr;
    if (order == BYTEOR_BIG_ENDIAN || byteCount < 1) return bytes;
    if (bits <= 8) {
        moveBytesToEnd(bytes, byteCount, byteCount - 1);
    } else if (bits % 8 == 0) {
        moveBytesToEnd(bytes, byteCount, byteCount - bits / 8);
    } else {
        closeUp(bytes, byteCount, static_cast<int32_t>(bits % 8));
    }
    return bytes;
}

uint8_t* BinaryNumberConverter_hexToBytes(const DFDLUString* text, int64_t* byteCount,
                                          DFDLHeapAdapter* heap) {
    if (text == nullptr) return nullptr;
    const std::u16string_view digits = DFDLUString_view(text);
    if (digits.size() % 2 != 0) return nullptr;
    const size_t count = digits.size() / 2;
    uint8_t* bytes = DFDLBufferFactory_GetBuffer(heap->bufferFactory, static_cast<int64_t>(count));
    for (size_t i = 0; i < count; ++i) {
        const uint8_t high = digitOf(digits[2 * i]);
        const uint8_t low = digitOf(digits[2 * i + 1]);
        if (high == NO_DIGIT || low == NO_DIGIT) {
            DFDLBufferFactory_FreeBuffer(heap->bufferFactory, bytes);
            *byteCount = 0;
            return nullptr;
        }
        bytes[i] = static_cast<uint8_t>(high << 4 | low);
    }
    *byteCount = static_cast<int64_t>(count);
    return bytes;
}
