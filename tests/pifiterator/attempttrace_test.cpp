// What a support engineer and the author of a schema see of attempts: the walk's words for its check points
// in service trace, and between them the messages of user trace.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;
using Words = std::vector<std::string>;
using Describe = std::function<void(GrammarHandle)>;
using Enums = PIF::MPIFEnums;

std::string narrow(const DFDLChar* text) {
    std::string narrowed;
    for (; text != nullptr && *text != 0; ++text) narrowed.push_back(static_cast<char>(*text));
    return narrowed;
}

// What was traced, in order: of service details their text, of messages key, designator's last step and path.
class Listener {
  public:
    Listener() {
        DFDLServiceTraceHandler_setContextObject(handler_.get(), this);
        DFDLServiceTraceHandler_setServiceDetailCallback(handler_.get(), onDetail);
        DFDLServiceTraceHandler_setServiceInfoCallback(handler_.get(), onMessage);
    }

    DFDLServiceTraceHandler* handler() const { return handler_.get(); }
    Words words;
    Words methods;
    Words places;  // of the messages among the words

  private:
    static Listener* self(DFDLServiceTraceHandler* handler) {
        return static_cast<Listener*>(DFDLServiceTraceHandler_getContextObject(handler));
    }
    static void onDetail(DFDLServiceTraceHandler* handler, const DFDLTrace* trace) {
        const DFDLChar* text = nullptr;
        int32_t length = 0;
        DFDLTrace_getStatement(trace, &text, &length);
        self(handler)->words.push_back(narrow(text));
        self(handler)->methods.push_back(narrow(DFDLTrace_getMethodName(trace)));
    }
    static void onMessage(DFDLServiceTraceHandler* handler, const DFDLTrace* trace) {
        // Attempts, what they lead to, and separators.
        static const std::set<std::string> KEYS = {"CTDP5012", "CTDP5013", "CTDP5016",
                                                   "CTDP5040", "CTDP5051", "CTDP5053"};
        const std::string key = narrow(DFDLTrace_getMessageKey(trace));
        if (!KEYS.contains(key)) return;
        self(handler)->words.push_back(key);
        self(handler)->places.push_back(narrow(DFDLTrace_getSCD(trace)) + ' ' +
                                        narrow(DFDLTrace_getXPath(trace)));
    }

    std::unique_ptr<DFDLServiceTraceHandler, decltype(&delete_DFDLServiceTraceHandler)> handler_{
        new_DFDLServiceTraceHandler(), delete_DFDLServiceTraceHandler};
};

void listen(Listener* listener, const Describe& describe, const std::string& data) {
    GrammarBuilder builder;
    describe(builder.complexElement("r"));
    const Grammar grammar(builder.load(), delete_DFDLGrammar);
    ParserOptions options;
    options.prepare = [listener](DFDLParser* parser) {
        EXPECT_EQ(DFDLParser_setServiceTraceHandler(parser, listener->handler()), 0);
    };
    const ParserRun run = runParser(grammar.get(), u"r", data, options);
    EXPECT_TRUE(run.parsed) << run;
}

GrammarHandle initiated(GrammarHandle group, const std::string& name) {
    return group.text(name).bytes(1).initiator(name + ":");
}
GrammarHandle optional(GrammarHandle group, const std::string& name) {
    return initiated(group, name).occurs(0, 1).occursImplicit();
}
void optionalFields(GrammarHandle group) {
    for (const char* name : {"a", "b"}) group.text(name).delimited().occurs(0, 1).occursImplicit();
}

struct Case {
    const char* fault;
    Describe describe;
    std::string data;
    Words words;
};

const Case CASES[] = {
    {"required members are attempts",
     [](GrammarHandle r) { r.text("a").bytes(1).occurs(2, 2).occursFixed(); },
     "xy",
     {}},
    {"an attempt that succeeds is not committed",
     [](GrammarHandle r) {
         optional(r, "a");
         initiated(r, "b");
     },
     "a:xb:y",
     {"CTDP5012", "PS_TAKE_CHECKPOINT", "PS_RELEASE_CHECKPOINT"}},
    {"an attempt that fails is committed as well",
     [](GrammarHandle r) {
         optional(r, "a").emptyValueDelimiterPolicy(Enums::DP_BOTH);
         initiated(r, "b");
     },
     "b:y",
     {"CTDP5012", "PS_TAKE_CHECKPOINT", "PS_BACKTRACK_TO_CHECKPOINT", "CTDP5013", "CTDP5040"}},
    {"members beyond the end of the data are tried",
     [](GrammarHandle r) {
         initiated(r, "a");
         optional(r, "b");
     },
     "a:x",
     {}},
    {"a separator that may be suppressed is taken before the attempt",
     [](GrammarHandle r) { optionalFields(r.sequence().separator(",", Enums::PREFIX, Enums::SUPPRESS)); },
     ",x,y",
     {"CTDP5012", "PS_TAKE_CHECKPOINT", "CTDP5016", "PS_RELEASE_CHECKPOINT",  //
      "CTDP5012", "PS_TAKE_CHECKPOINT", "CTDP5016", "PS_RELEASE_CHECKPOINT"}},
    {"a separator that stands belongs to the attempt",
     [](GrammarHandle r) { optionalFields(r.sequence().separator(",", Enums::PREFIX, Enums::REQUIRE)); },
     ",x,y",
     {"CTDP5012", "CTDP5016", "PS_TAKE_CHECKPOINT", "PS_RELEASE_CHECKPOINT",  //
      "CTDP5012", "CTDP5016", "PS_TAKE_CHECKPOINT", "PS_RELEASE_CHECKPOINT"}},
    {"branches of an unordered group are not told, or tried when the data have ended",
     [](GrammarHandle r) {
         auto group = r.unordered();
         for (const char* name : {"a", "b"}) initiated(group, name).emptyValueDelimiterPolicy(Enums::DP_BOTH);
     },
     "b:xa:y",
     {"CTDP5051", "PS_TAKE_CHECKPOINT", "PS_BACKTRACK_TO_CHECKPOINT", "CTDP5013",  //
      "CTDP5051", "PS_TAKE_CHECKPOINT", "PS_RELEASE_CHECKPOINT",                   //
      "CTDP5051", "PS_TAKE_CHECKPOINT", "PS_RELEASE_CHECKPOINT"}},
};

TEST(AttemptTrace, TellsWhatBecomesOfEachAttempt) {
    for (const Case& entry : CASES) {
        SCOPED_TRACE(entry.fault);
        Listener listener;
        listen(&listener, entry.describe, entry.data);
        EXPECT_EQ(listener.words, entry.words);
    }
}

TEST(AttemptTrace, NamesTheFunctionAndTheMember) {
    Listener listener;
    listen(&listener, CASES[2].describe, CASES[2].data);
    EXPECT_EQ(listener.methods, (Words{"PIFIteratorForParser_STATE_TAKE_CHECKPOINT",
                                       "PIFIteratorForParser_STATE_BACKTRACK_TO_CHECKPOINT"}));
    ASSERT_EQ(listener.places.size(), 3U);
    for (const size_t ofMember : {size_t{0}, size_t{2}}) {
        EXPECT_TRUE(listener.places[ofMember].ends_with(" /r[1]/a[1]")) << listener.places[ofMember];
        EXPECT_FALSE(listener.places[ofMember].starts_with(" ")) << "no designator";
    }
    EXPECT_TRUE(listener.places[1].ends_with(" /r[1]")) << listener.places[1];
}

}  // namespace
