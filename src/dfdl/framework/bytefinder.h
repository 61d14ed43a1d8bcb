#ifndef DFDL_FRAMEWORK_BYTEFINDER_H
#define DFDL_FRAMEWORK_BYTEFINDER_H

#include <algorithm>
#include <cstdint>

// More distinct bytes than this are looked for through the table alone.
inline constexpr int32_t MOST_VECTOR_BYTES = 8;
// Bytes that are looked at one by one before a vector is set up: most fields are shorter.
inline constexpr int64_t BYTES_BEFORE_VECTORS = 8;

struct ByteFinder;
using ByteFinderKernel = int64_t (*)(const ByteFinder* finder, const uint8_t* bytes, int64_t count);

// Finds the first of a set of bytes. Refers to the table that it was made from, which outlives it.
struct ByteFinder {
    const uint8_t* flags;  // 256; not 0: looked for
    ByteFinderKernel kernel;
    int32_t distinct;                   // how many bytes are looked for
    uint8_t wanted[MOST_VECTOR_BYTES];  // which, as far as there is room; the last one repeated
};

// Once the table is complete; again when it has changed.
void ByteFinder_init(ByteFinder* this_, const uint8_t* flags);

// The offset of the first byte looked for, or `count`.
inline int64_t ByteFinder_find(const ByteFinder* this_, const uint8_t* bytes, int64_t count) {
    const int64_t few = std::min(count, BYTES_BEFORE_VECTORS);
    for (int64_t i = 0; i < few; ++i) {
        if (this_->flags[bytes[i]] != 0) return i;
    }
    return few == count ? count : few + this_->kernel(this_, bytes + few, count - few);
}

#endif
