#ifndef DFDL_FUZZ_VARINTS_H
#define DFDL_FUZZ_VARINTS_H

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

// The numbers in a Protocol Buffers message, where they lie in its bytes: ids, indices and enumerations of a
// grammar. Each is replaced in place, so that the message stays one.
struct Varint {
    size_t at;
    size_t length;  // bytes, 1 to 10
};

// Those of the message and of what looks like a message in it.
std::vector<Varint> findVarints(const uint8_t* bytes, size_t size);

// Writes another number into as many bytes, padded where it is shorter.
void replaceVarint(uint8_t* bytes, Varint varint, std::minstd_rand& random);

#endif
