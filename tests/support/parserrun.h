#ifndef DFDL_TESTS_SUPPORT_PARSERRUN_H
#define DFDL_TESTS_SUPPORT_PARSERRUN_H

#include <dfdl/dfdl.h>

#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

// How a message is to be parsed.
struct ParserOptions {
    std::u16string namespaceUri;
    bool validate = false;
    bool ignoreTrailingData = false;
    bool fastSmallIntegers = false;
    bool regions = false;
    std::function<void(DFDLParser*)> prepare;  // called with grammar and handlers set, before the parse
};

// What came of it.
struct ParserRun {
    bool parsed = false;
    int result = -1;                       // the out parameter
    std::vector<std::string> events;       // lines of `dfdl parse -f events`, errors among them
    std::vector<std::string> diagnostics;  // "code: summary"

    bool operator==(const ParserRun&) const = default;

    std::string text() const;                 // the events, each with a line feed
    std::vector<std::string> values() const;  // "name=value" for each simple element, "name=nil" for nil ones
    std::string outline() const;              // as fromPython tells it, of values of any type
    std::vector<std::string> codes() const;   // of the diagnostics
};
std::ostream& operator<<(std::ostream& out, const ParserRun& run);

// How the bytes get to the parser, and how the parse is driven.
struct ParserRoad {
    size_t piece = 0;  // bytes in a buffer; 0: in place
    bool step = false;
};

// One parse by one road; afterwards nothing may be left of the parser's memory, and no block may have been
// much larger than the data are.
ParserRun runParser(DFDLGrammar* grammar, std::u16string_view root, std::string_view bytes,
                    const ParserOptions& options = {}, ParserRoad road = {});

// The parse by every road: in place, in buffers of 1 to 5 bytes and as one buffer, each at once and step by
// step. Expects that all deliver the same, and returns what the first did.
ParserRun runEverywhere(DFDLGrammar* grammar, std::u16string_view root, std::string_view bytes,
                        const ParserOptions& options = {});

#endif
