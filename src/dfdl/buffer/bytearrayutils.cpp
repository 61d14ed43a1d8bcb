#include "dfdl/buffer/bytearrayutils.h"

#include <algorithm>

void ByteArrayUtils_shiftLeft(uint8_t* bytes, int64_t count, int32_t places) {
    if (places == 0) return;
    for (int64_t i = 0; i < count; ++i) {
        const int32_t next = i + 1 < count ? bytes[i + 1] : 0;
        bytes[i] = static_cast<uint8_t>((bytes[i] << places) | (next >> (8 - places)));
    }
}

void ByteArrayUtils_shiftRight(uint8_t* bytes, int64_t count, int32_t places) {
    if (places == 0) return;
    for (int64_t i = count - 1; i >= 0; --i) {
        const int32_t previous = i > 0 ? bytes[i - 1] : 0;
        bytes[i] = static_cast<uint8_t>((bytes[i] >> places) | (previous << (8 - places)));
    }
}

void ByteArrayUtils_reverseBytes(uint8_t* bytes, int64_t count) { std::reverse(bytes, bytes + count); }
