// Any bytes as a grammar, and some as data for it: the library refuses them or parses by them, and ends. The
// input is the number of data, in one byte, the data, and the grammar.
#include <algorithm>

#include "roads.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* input, size_t size) {
    static const std::u16string root = fuzzedRoot();
    if (size == 0) return 0;
    const size_t count = std::min<size_t>(input[0], size - 1);
    DFDLGrammar* grammar = loadGrammar(input + 1 + count, size - 1 - count);
    if (grammar == nullptr) return 0;
    compareRoads(grammar, root, input + 1, count);
    delete_DFDLGrammar(grammar);
    return 0;
}
