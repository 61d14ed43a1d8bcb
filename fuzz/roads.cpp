#include "roads.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <vector>

#include "eventwriter.h"
#include "inputs.h"

namespace {

std::string wanted(const char* variable) {
    const char* value = std::getenv(variable);
    if (value != nullptr) return value;
    std::fprintf(stderr, "%s is not set: run ./dev fuzz\n", variable);
    std::exit(2);
}

// How the bytes get to the parser, and how the parse is driven.
struct Road {
    size_t piece;  // bytes in a buffer; 0: in place
    bool step;
};

// The same for the same data, so that a find can be repeated.
Road roadOf(const uint8_t* data, size_t size) {
    size_t sum = size;
    for (size_t i = 0; i < size; ++i) sum = sum * 31 + data[i];
    return {sum % 9 + 1, sum / 9 % 2 == 1};
}

// What the parser answered.
std::string drive(DFDLParser* parser, bool step) {
    int result = -1;
    bool good = true;
    if (step) {
        while (good && DFDLParser_hasNext(parser, &result) == 1) {
            good = DFDLParser_parseNext(parser, &result) == 1;
        }
        good = good && result == 0;
        DFDLParser_resetParser(parser);
    } else {
        good = DFDLParser_parseAll(parser, &result) == 1;
    }
    return (good ? "parsed, result " : "not parsed, result ") + std::to_string(result) + '\n';
}

// The events of one parse, one to a line, and what the parser answered.
std::string eventsOf(DFDLGrammar* grammar, const std::u16string& root, const uint8_t* data, size_t size,
                     Road road) {
    // A block of its own, so that a read behind the end is seen.
    const std::vector<uint8_t> bytes(data, data + size);
    const uint8_t nothing = 0;
    Output out;
    Input input;
    EventWriter* writer = new_EventWriter(&out);
    DFDLParser* parser = new_DFDLParser(nullptr);
    DFDLParser_setErrorHandler(parser, writer->errors);
    DFDLParser_setDocumentHandler(parser, writer->document);
    DFDLParser_setGrammar(parser, grammar);
    DFDLParser_setRootElement(parser, root.c_str(), nullptr);
    Input_set(&input, bytes.empty() ? &nothing : bytes.data(), size, road.piece);
    Input_attach(&input, parser);
    out.text += drive(parser, road.step);
    delete_DFDLParser(parser);
    Input_close(&input);
    delete_EventWriter(writer);
    return out.text;
}

}  // namespace

std::string fuzzedFormat() { return wanted("DFDL_FUZZ_FORMAT"); }

std::u16string fuzzedRoot() {
    const std::string root = wanted("DFDL_FUZZ_ROOT");
    return {root.begin(), root.end()};
}

std::string fuzzedPif() {
    std::ifstream stream(DFDL_FUZZ_GRAMMARS "/" + fuzzedFormat() + ".pif", std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

DFDLGrammar* loadGrammar(const uint8_t* bytes, size_t size) {
    int code = -1;
    return new_DFDLGrammarFromByteArray(nullptr, reinterpret_cast<const char*>(bytes), size, nullptr, &code);
}

void compareRoads(DFDLGrammar* grammar, const std::u16string& root, const uint8_t* data, size_t size) {
    const Road road = roadOf(data, size);
    const std::string whole = eventsOf(grammar, root, data, size, {0, false});
    const std::string pieces = eventsOf(grammar, root, data, size, road);
    if (whole == pieces) return;
    std::fprintf(stderr, "in place:\n%s\n%s in buffers of %zu:\n%s\n", whole.c_str(),
                 road.step ? "step by step" : "at once", road.piece, pieces.c_str());
    std::abort();
}
