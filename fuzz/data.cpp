// Any bytes as data of an example's format: no read behind them, no undefined behaviour, and every road tells
// the same.
#include <cstdio>
#include <cstdlib>

#include "roads.h"

namespace {

DFDLGrammar* grammar;
std::u16string root;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    const std::string pif = fuzzedPif();
    root = fuzzedRoot();
    grammar = loadGrammar(reinterpret_cast<const uint8_t*>(pif.data()), pif.size());
    if (grammar != nullptr) return 0;
    std::fprintf(stderr, "there is no grammar of %s\n", fuzzedFormat().c_str());
    std::exit(2);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    compareRoads(grammar, root, data, size);
    return 0;
}
