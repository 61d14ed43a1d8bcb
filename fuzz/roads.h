#ifndef DFDL_FUZZ_ROADS_H
#define DFDL_FUZZ_ROADS_H

#include <dfdl/dfdl.h>

#include <cstddef>
#include <cstdint>
#include <string>

// What the fuzzers share. Which example they are about stands in the environment: DFDL_FUZZ_FORMAT names it,
// DFDL_FUZZ_ROOT its root element.

// Ends the process, with what is to be told, if the environment lacks one of them.
std::string fuzzedFormat();
std::u16string fuzzedRoot();

// The compiled grammar of the example.
std::string fuzzedPif();

// Null if the library refuses the bytes.
DFDLGrammar* loadGrammar(const uint8_t* bytes, size_t size);

// Parses the data in place, and by a road that follows from the data: in buffers of a few bytes, at once or
// step by step. Aborts if the two tell different things.
void compareRoads(DFDLGrammar* grammar, const std::u16string& root, const uint8_t* data, size_t size);

#endif
