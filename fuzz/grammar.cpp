// Any bytes as a grammar, and some as data for it: the library refuses them or parses by them, and ends. The
// input is the number of data, in one byte, the data, and the grammar.
#include <algorithm>

#include "roads.h"
#include "varints.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t most);

namespace {

// In three of four cases the message stays one, with a few other numbers in it. What libFuzzer does by itself
// seldom is a message at all.
constexpr unsigned OF_NUMBERS = 3;
constexpr unsigned CASES = 4;
constexpr unsigned MOST_CHANGES = 3;

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* input, size_t size, size_t most, unsigned seed) {
    std::minstd_rand random(seed);
    const size_t count = size == 0 ? 0 : std::min<size_t>(input[0], size - 1);
    uint8_t* message = input + 1 + count;
    if (size < 2 || random() % CASES >= OF_NUMBERS) return LLVMFuzzerMutate(input, size, most);
    const std::vector<Varint> numbers = findVarints(message, size - 1 - count);
    if (numbers.empty()) return LLVMFuzzerMutate(input, size, most);
    for (auto changes = 1 + random() % MOST_CHANGES; changes > 0; --changes)
        replaceVarint(message, numbers[random() % numbers.size()], random);
    return size;
}

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
