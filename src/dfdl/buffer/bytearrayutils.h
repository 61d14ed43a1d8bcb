#ifndef DFDL_BUFFER_BYTEARRAYUTILS_H
#define DFDL_BUFFER_BYTEARRAYUTILS_H

#include <cstdint>

// Move the bits of an array by 0 to 7 places across byte borders, zeros coming in.
void ByteArrayUtils_shiftLeft(uint8_t* bytes, int64_t count, int32_t places);   // towards index 0
void ByteArrayUtils_shiftRight(uint8_t* bytes, int64_t count, int32_t places);  // towards the end
void ByteArrayUtils_reverseBytes(uint8_t* bytes, int64_t count);

#endif
