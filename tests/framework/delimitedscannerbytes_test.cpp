#include "dfdl/framework/delimitedscannerbytes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/scanrig.h"
#include "support/testheap.h"

namespace {

struct ScanCase {
    const char* what;
    std::vector<MarkupWords> sets;  // the outermost first
    std::string data;
    std::string find;
};

// Whole, and in pieces that cut every delimiter and every character at every byte.
void expectFind(const ScanCase& c, const char* encoding, bool record = true, bool atPositionOnly = false) {
    for (size_t piece = 0; piece <= 5; ++piece) {
        ScanRig rig(encoding);
        int32_t id = -1;
        for (const MarkupWords& words : c.sets) id = rig.within(words);
        Feed feed(c.data, piece == 0 ? c.data.size() + 1 : piece, piece == 3);
        if (piece == 0) {
            rig.rig.document(c.data);
        } else {
            rig.rig.feed(feed);
        }
        rig.use(id);
        EXPECT_EQ(rig.find(record, atPositionOnly), c.find) << c.what << ", in pieces of " << piece;
        EXPECT_EQ(rig.rig.buffer->bitPosition, 0) << c.what;
        BufferManager_clear(rig.rig.buffer);
    }
}

TEST(DelimitedScanner, longestThenInnermostThenTerminator) {
    const ScanCase cases[] = {
        {"one of two commas", {{.separator = u", ,,"}}, "a,b", "1,1,separator0"},
        {"two of two commas", {{.separator = u", ,,"}}, "a,,b", "1,2,separator0"},
        {"inner of the same", {{.separator = u","}, {.separator = u","}}, "a,b", "1,1,separator0"},
        {"outer where it is longer", {{.separator = u",,"}, {.separator = u","}}, "a,,b", "1,2,separator1"},
        {"terminator of the same", {{.terminator = u",", .separator = u","}}, "a,b", "1,1,terminator0"},
        {"outer terminator", {{.terminator = u"!"}, {.separator = u","}, {}}, "ab!", "2,1,terminator2"},
        {"first of two", {{.terminator = u"!", .separator = u","}}, "a,b!", "1,1,separator0"},
        {"at the start", {{.separator = u","}}, ",b", "0,1,separator0"},
        {"no delimiter", {{.separator = u","}}, "abc", "3,0,end0"},
        {"no data", {{.separator = u","}}, "", "0,0,end0"},
        {"no set", {}, "a,b", "3,0,end0"},
        {"cut off by the end", {{.separator = u"abc"}}, "xab", "3,0,end0"},
        {"begun in vain", {{.separator = u"aab"}}, "xaaab", "2,3,separator0"},
    };
    for (const ScanCase& c : cases) expectFind(c, "UTF-8");
}

}  // namespace
