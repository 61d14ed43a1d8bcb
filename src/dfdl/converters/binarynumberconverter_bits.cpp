// Bits that are no whole bytes, made so.
#include <cstring>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/foundation/dfdlbufferfactory.h"

namespace {

// The sign, if there is one, fills what becomes free.
uint8_t shiftTop(uint8_t byte, int32_t places, bool isSigned) {
    return isSigned ? static_cast<uint8_t>(static_cast<int8_t>(byte) >> places)
                    : static_cast<uint8_t>(byte >> places);
}

void moveToEnd(const uint8_t* bytes, uint8_t* target, int64_t count, int32_t places, bool isSigned) {
    for (int64_t i = count - 1; i > 0; --i) {
        target[i] = static_cast<uint8_t>((bytes[i] >> places) | (bytes[i - 1] << (8 - places)));
    }
    target[0] = shiftTop(bytes[0], places, isSigned);
}

void moveLastByte(const uint8_t* bytes, uint8_t* target, int64_t count, int32_t places, bool isSigned) {
    std::memcpy(target, bytes, static_cast<size_t>(count - 1));
    target[count - 1] = shiftTop(bytes[count - 1], places, isSigned);
}

}  // namespace

uint8_t* BinaryNumberConverter_transformBinaryRepToByteArray(DFDLHeapAdapter* heap, uint8_t* bytes,
                                                             int64_t bits, ByteOrderEnum order,
                                                             int64_t* byteCount, bool isSigned) {
    *byteCount = 0;
    if (bits == 0) return bytes;
    if (order == BYTEOR_UNDEFINED) return nullptr;
    const int64_t count = (bits - 1) / 8 + 1;
    const auto unused = static_cast<int32_t>(7 - (bits - 1) % 8);
    uint8_t* whole = DFDLBufferFactory_GetBuffer(heap->bufferFactory, count);
    const auto move = order == BYTEOR_BIG_ENDIAN ? moveToEnd : moveLastByte;
    move(bytes, whole, count, unused, isSigned);
    *byteCount = count;
    return whole;
}
