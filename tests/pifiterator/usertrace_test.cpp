// What the author of a schema reads of a parse: each message in its place, with its inserts.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;
using Lines = std::vector<std::string>;
using Enums = PIF::MPIFEnums;

std::string narrow(const DFDLChar* text, int32_t length) { return {text, text + length}; }

// Key and text of each message; errors begin with "!".
class Listener {
  public:
    Listener() {
        DFDLUserTraceHandler_setContextObject(handler_.get(), this);
        DFDLUserTraceHandler_setUserInfoCallback(
            handler_.get(),
            [](DFDLUserTraceHandler* handler, const DFDLTrace* trace) { add(handler, "", trace); });
        DFDLUserTraceHandler_setUserErrorCallback(
            handler_.get(),
            [](DFDLUserTraceHandler* handler, const DFDLTrace* trace) { add(handler, "!", trace); });
    }
    DFDLUserTraceHandler* handler() const { return handler_.get(); }
    Lines lines;

  private:
    static void add(DFDLUserTraceHandler* handler, const char* mark, const DFDLTrace* trace) {
        const DFDLChar* text = nullptr;
        int32_t length = 0;
        DFDLTrace_getStatement(trace, &text, &length);
        static_cast<Listener*>(DFDLUserTraceHandler_getContextObject(handler))
            ->lines.push_back(mark + narrow(DFDLTrace_getMessageKey(trace), 8) + ' ' + narrow(text, length));
    }

    std::unique_ptr<DFDLUserTraceHandler, decltype(&delete_DFDLUserTraceHandler)> handler_{
        new_DFDLUserTraceHandler(), delete_DFDLUserTraceHandler};
};

struct Case {
    const char* what;
    std::function<void(GrammarBuilder&, GrammarHandle)> describe;
    std::string data;
    Lines lines;
};

GrammarHandle framed(GrammarHandle group, const char* name) {
    return group.text(name).delimited().initiator("<").terminator(">");
}

const Case CASES[] = {
    {"delimiters",
     [](GrammarBuilder&, GrammarHandle r) {
         auto group = r.sequence().separator(",");
         framed(group, "a");
         group.text("b").bytes(1);
     },
     "<x>,y",
     {"CTDP5020 Element r starts at byte 0; path /r[1].",
      "CTDP5020 Element a starts at byte 0; path /r[1]/a[1].", "CTDP5039 a at byte 0: initiator '<' found.",
      "CTDP5007 a at byte 2: delimiters gave its extent; its text is 'x'.",
      "CTDP5017 a at byte 2: terminator '>' found.", "CTDP5022 Element a ends at byte 3; path /r[1]/a[1].",
      "CTDP5016 sequence at byte 3: separator ',' found.",
      "CTDP5020 Element b starts at byte 4; path /r[1]/b[1].",
      "CTDP5008 b at byte 5: its length was known; its text is 'y'.",
      "CTDP5022 Element b ends at byte 5; path /r[1]/b[1].",
      "CTDP5022 Element r ends at byte 5; path /r[1]."}},
    {"nil and empty",
     [](GrammarBuilder&, GrammarHandle r) {
         auto group = r.sequence().separator(",");
         for (const char* name : {"a", "b"}) group.text(name).delimited().nilLiteral("-");
         group.text("c").delimited().nilLogical({"no"});
         group.text("d").delimited().nilLiteral("%ES;");
         group.text("e").delimited().useNilForDefault();
         group.text("f").delimited().occurs(0, 1).occursImplicit();
         group.text("g").delimited();
     },
     "-,x,no,,,,y",
     {"CTDP5020 Element r starts at byte 0; path /r[1].",
      "CTDP5020 Element a starts at byte 0; path /r[1]/a[1].",
      "CTDP5028 a at byte 1: its literal nil value was found.",
      "CTDP5007 a at byte 1: delimiters gave its extent; its text is '-'.",
      "CTDP5022 Element a ends at byte 1; path /r[1]/a[1].",
      "CTDP5016 sequence at byte 1: separator ',' found.",
      "CTDP5020 Element b starts at byte 2; path /r[1]/b[1].",
      "CTDP5029 b at byte 3: its content is not the literal nil value.",
      "CTDP5007 b at byte 3: delimiters gave its extent; its text is 'x'.",
      "CTDP5022 Element b ends at byte 3; path /r[1]/b[1].",
      "CTDP5016 sequence at byte 3: separator ',' found.",
      "CTDP5020 Element c starts at byte 4; path /r[1]/c[1].",
      "CTDP5007 c at byte 6: delimiters gave its extent; its text is 'no'.",
      "CTDP5030 c at byte 6: its value is the logical nil value.",
      "CTDP5022 Element c ends at byte 6; path /r[1]/c[1].",
      "CTDP5016 sequence at byte 6: separator ',' found.",
      "CTDP5020 Element d starts at byte 7; path /r[1]/d[1].",
      "CTDP5028 d at byte 7: its literal nil value was found.",
      "CTDP5022 Element d ends at byte 7; path /r[1]/d[1].",
      "CTDP5016 sequence at byte 7: separator ',' found.",
      "CTDP5020 Element e starts at byte 8; path /r[1]/e[1].",
      "CTDP5024 e is missing at byte 8: its content is empty.",
      "CTDP5032 e at byte 8: nil is taken as its default.",
      "CTDP5022 Element e ends at byte 8; path /r[1]/e[1].",
      "CTDP5012 f at byte 8: trying occurrence 1, which may be absent.",
      "CTDP5016 sequence at byte 8: separator ',' found.",
      "CTDP5020 Element f starts at byte 9; path /r[1]/f[1].",
      "CTDP5024 f is missing at byte 9: its content is empty.",
      "CTDP5026 f is absent at byte 9, as it may be.",
      "CTDP5022 Element f ends at byte 9; path /r[1]/f[1].",
      "CTDP5016 sequence at byte 9: separator ',' found.",
      "CTDP5020 Element g starts at byte 10; path /r[1]/g[1].",
      "CTDP5007 g at byte 11: delimiters gave its extent; its text is 'y'.",
      "CTDP5022 Element g ends at byte 11; path /r[1]/g[1].",
      "CTDP5022 Element r ends at byte 11; path /r[1]."}},
    {"lengths",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.sequence().explicitBytes(2).boolean("a", "y", "n").bytes(1);
         r.text("b").prefixed(b.number("one", "UNSIGNEDBYTE").bytes(1));
         r.text("c").endOfParent();
     },
     "y.\1zrest",
     {"CTDP5020 Element r starts at byte 0; path /r[1].",
      "CTDP5014 sequence at byte 0: its length is 2 bytes.",
      "CTDP5020 Element a starts at byte 0; path /r[1]/a[1].",
      "CTDP5008 a at byte 1: its length was known; its text is 'y'.",
      "CTDP5041 a: its value, which ends at byte 1, is 'true'.",
      "CTDP5022 Element a ends at byte 1; path /r[1]/a[1].",
      "CTDP5020 Element b starts at byte 2; path /r[1]/b[1].",
      "CTDP5010 one at byte 3: its length was known; its bytes are X'01'.",
      "CTDP5015 b at byte 3: its prefix gives a length of 1 bytes.",
      "CTDP5008 b at byte 4: its length was known; its text is 'z'.",
      "CTDP5022 Element b ends at byte 4; path /r[1]/b[1].",
      "CTDP5020 Element c starts at byte 4; path /r[1]/c[1].",
      "CTDP5084 c at byte 8: its pattern or its parent gave its extent; its text is 'rest'.",
      "CTDP5022 Element c ends at byte 8; path /r[1]/c[1].",
      "CTDP5022 Element r ends at byte 8; path /r[1]."}},
    {"what is missing",
     [](GrammarBuilder&, GrammarHandle r) {
         auto g = r.complexElement("g").initiator("(").occurs(0, 1).occursImplicit();
         g.text("x").bytes(1);
         framed(r, "a").occurs(0, 1).occursImplicit();
         auto h = r.complexElement("h").occurs(0, 1).occursImplicit();
         h.text("y").bytes(1).terminator(";");
         r.complexElement("e").occurs(0, 1).occursImplicit();
         r.text("b").bytes(1).terminator("%NL;").finalTerminatorCanBeMissing();
     },
     "z",
     {"CTDP5020 Element r starts at byte 0; path /r[1].",
      "CTDP5012 g at byte 0: trying occurrence 1, which may be absent.",
      "CTDP5020 Element g starts at byte 0; path /r[1]/g[1].",
      "CTDP5027 g at byte 0: its initiator was not found.",
      "CTDP5023 g is missing at byte 0: its initiator is not there.",
      "!CTDP3041 Element /r[1]/g[1]: its initiator was expected at byte 0 and not found; it is one of: (",
      "CTDP5013 sequence: going back to byte 0.",
      "CTDP5040 g at byte 0: occurrence 1 was not found in the data; the number of occurrences is implicit.",
      "CTDP5012 a at byte 0: trying occurrence 1, which may be absent.",
      "CTDP5020 Element a starts at byte 0; path /r[1]/a[1].",
      "CTDP5027 a at byte 0: its initiator was not found.",
      "CTDP5023 a is missing at byte 0: its initiator is not there.",
      "CTDP5027 a at byte 0: its initiator was not found.",
      "!CTDP3041 Element /r[1]/a[1]: its initiator was expected at byte 0 and not found; it is one of: <",
      "CTDP5013 sequence: going back to byte 0.",
      "CTDP5040 a at byte 0: occurrence 1 was not found in the data; the number of occurrences is implicit.",
      "CTDP5012 h at byte 0: trying occurrence 1, which may be absent.",
      "CTDP5020 Element h starts at byte 0; path /r[1]/h[1].",
      "CTDP5020 Element y starts at byte 0; path /r[1]/h[1]/y[1].",
      "CTDP5008 y at byte 1: its length was known; its text is 'z'.",
      "CTDP5018 y at byte 1: its terminator was not found.",
      "!CTDP3042 Element /r[1]/h[1]/y[1]: its terminator was expected at byte 1 and not found; it is one of: "
      ";",
      "CTDP5013 sequence: going back to byte 0.",
      "CTDP5040 h at byte 0: occurrence 1 was not found in the data; the number of occurrences is implicit.",
      "CTDP5012 e at byte 0: trying occurrence 1, which may be absent.",
      "CTDP5020 Element e starts at byte 0; path /r[1]/e[1].",
      "CTDP5022 Element e ends at byte 0; path /r[1]/e[1].",
      "CTDP5026 e is absent at byte 0, as it may be.",
      "CTDP5053 e at byte 0: no further occurrences are tried since the last one took no data.",
      "CTDP5020 Element b starts at byte 0; path /r[1]/b[1].",
      "CTDP5008 b at byte 1: its length was known; its text is 'z'.",
      "CTDP5018 b at byte 1: its terminator was not found.",
      "CTDP5068 b: the data ends at byte 1 without the terminator, which may be missing there.",
      "CTDP5022 Element b ends at byte 1; path /r[1]/b[1].",
      "CTDP5022 Element r ends at byte 1; path /r[1]."}},
};

TEST(UserTrace, TellsTheStory) {
    for (const Case& entry : CASES) {
        GrammarBuilder builder;
        entry.describe(builder, builder.complexElement("r"));
        const Grammar grammar(builder.load(), delete_DFDLGrammar);
        Listener listener;
        ParserOptions options;
        options.prepare = [&listener](DFDLParser* parser) {
            EXPECT_EQ(DFDLParser_setUserTraceHandler(parser, listener.handler()), 0);
        };
        const ParserRun run = runParser(grammar.get(), u"r", entry.data, options);
        EXPECT_TRUE(run.parsed) << entry.what << '\n' << run;
        EXPECT_EQ(listener.lines, entry.lines) << entry.what;
    }
}

}  // namespace
