#ifndef DFDL_PARSERS_TRUSTEDLENGTH_H
#define DFDL_PARSERS_TRUSTEDLENGTH_H

#include <cstdint>

#include "dfdl/buffer/buffermanager.h"

// A length that comes from the data may be any: a block for a field that nobody has seen yet is only taken up
// to this size. For a larger one the data are loaded first.
inline constexpr int64_t TRUSTED_BYTES = 65536;

// Whether a block for so many of the next bytes may be taken; false if the data, which have been loaded then,
// have fewer.
inline bool ParserRegionHandler_mayTakeBlock(BufferManager* buffer, int64_t count) {
    if (count <= TRUSTED_BYTES) return true;
    const int64_t start = BufferManager_bytePosition(buffer);
    return BufferManager_loadBytes(buffer, count <= INT64_MAX - start ? start + count : INT64_MAX);
}

#endif
