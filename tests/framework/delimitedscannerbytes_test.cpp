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

TEST(DelimitedScanner, classesAreGreedyAndGiveNothingBack) {
    const ScanCase cases[] = {
        {"CR LF before CR", {{.terminator = u"%NL;"}}, "a\r\nb", "1,2,terminator0"},
        {"CR alone", {{.terminator = u"%NL;"}}, "a\rb", "1,1,terminator0"},
        {"CR at the end of the data", {{.terminator = u"%NL;"}}, "a\r", "1,1,terminator0"},
        {"NEL", {{.terminator = u"%NL;"}}, "a\xC2\x85", "1,2,terminator0"},
        {"LS", {{.terminator = u"%NL;"}}, "a\xE2\x80\xA8", "1,3,terminator0"},
        {"only the start of LS", {{.terminator = u"%NL;"}}, "a\xE2\x80\xA7", "4,0,end0"},
        {"one blank", {{.separator = u"%WSP;"}}, "a  b", "1,1,separator0"},
        {"all blanks", {{.separator = u"a%WSP+;"}}, "xa \t b", "1,4,separator0"},
        {"at least one", {{.separator = u"a%WSP+;"}}, "xab", "3,0,end0"},
        {"blanks around", {{.separator = u"%WSP*;=%WSP*;"}}, "k  = \xE3\x80\x80v", "1,7,separator0"},
        {"no blanks around", {{.separator = u"%WSP*;=%WSP*;"}}, "k=v", "1,1,separator0"},
        {"blanks that take the line end", {{.terminator = u"%WSP*;%NL;"}}, "k \n", "3,0,end0"},
        {"a longer find of a shorter literal",
         {{.separator = u"a%WSP+; bbbbb"}},
         "a      bbbbb",
         "0,7,separator0"},
        {"all candidates are tried", {{.separator = u"ab%NL; a%WSP+;"}}, "a      b", "0,7,separator0"},
        {"blanks alone, in the data", {{.terminator = u"%WSP*;"}}, "ab  c", "2,2,terminator0"},
        {"blanks alone, no data", {{.terminator = u"%WSP*;"}}, "", "0,0,terminator0"},
        {"blanks alone, at the end", {{.terminator = u"%WSP*;"}}, "ab", "2,0,end0"},
        {"a raw byte", {{.separator = u"%#r2C;%#rFF;"}}, "a,\xFF", "1,2,separator0"},
        {"an empty string is never found", {{.separator = u"%ES; ;"}}, "a;", "1,1,separator0"},
        {"entities", {{.separator = u"%SP;%#x7C;"}}, "a |b", "1,2,separator0"},
    };
    for (const ScanCase& c : cases) expectFind(c, "UTF-8");
}

TEST(DelimitedScanner, ignoresCaseWhereItIsToldTo) {
    const ScanCase cases[] = {
        {"both forms", {{.separator = u"End", .ignoreCase = true}}, "xeNDy", "1,3,separator0"},
        {"with classes", {{.separator = u"b%WSP;c", .ignoreCase = true}}, "xB C", "1,3,separator0"},
        {"not otherwise", {{.separator = u"End"}}, "xeND", "4,0,end0"},
        {"of each set",
         {{.separator = u"A", .ignoreCase = true}, {.separator = u"B"}},
         "b|a",
         "2,1,separator1"},
        // Four bytes in lower case, five in upper: neither form can be laid over the other.
        {"forms of unequal length",
         {{.separator = u"a\u0149", .ignoreCase = true}},
         "xa\xC5\x89",
         "1,3,separator0"},
    };
    for (const ScanCase& c : cases) expectFind(c, "UTF-8");
}

MarkupWords escaped(std::u16string_view escape, std::u16string_view escapeEscape = {}) {
    return {.separator = u",", .escape = escape, .escapeEscape = escapeEscape};
}

TEST(DelimitedScanner, anEscapeCharacterHidesTheNextCharacter) {
    const ScanCase cases[] = {
        {"a delimiter", {escaped(u"\\")}, "a\\,b,c", "4,1,separator0"},
        {"itself", {escaped(u"\\")}, "a\\\\,b", "3,1,separator0"},
        {"a character of three bytes", {escaped(u"\\")}, "\\\xE2\x82\xAC,", "4,1,separator0"},
        {"the last character", {escaped(u"\\")}, "a\\,", "3,0,end0"},
        {"nothing", {escaped(u"\\")}, "a\\", "2,0,end0"},
        {"bytes that are no character", {escaped(u"\\")}, "\\\xFF,b", "2,1,separator0"},
        {"same escape-escape", {escaped(u"\\", u"\\")}, "a\\\\,b", "3,1,separator0"},
        {"same escape-escape, delimiter", {escaped(u"\\", u"\\")}, "a\\,b,", "4,1,separator0"},
        {"same escape-escape, three", {escaped(u"\\", u"\\")}, "\\\\\\,,", "4,1,separator0"},
        {"same escape-escape, last", {escaped(u"\\", u"\\")}, "a\\,", "3,0,end0"},
        {"other escape-escape before an escape", {escaped(u"?", u"!")}, "!?,b", "2,1,separator0"},
        {"other escape-escape before a delimiter", {escaped(u"?", u"!")}, "!,b", "1,1,separator0"},
        {"other escape-escape escaped", {escaped(u"?", u"!")}, "?!,b", "2,1,separator0"},
        {"long escapes", {escaped(u"<<", u"<<")}, "<<,<<<<,", "7,1,separator0"},
        {"half of an escape", {escaped(u"<<")}, "<,", "1,1,separator0"},
        {"an escape that is a delimiter's start",
         {{.separator = u"?,", .escape = u"?"}},
         "a?,?,",
         "5,0,end0"},
        {"an outer scheme is none", {escaped(u"\\"), {.separator = u";"}}, "\\,;", "1,1,separator1"},
    };
    for (const ScanCase& c : cases) expectFind(c, "UTF-8");
}

MarkupWords quoted(std::u16string_view escapeEscape = {}, std::u16string_view start = u"\"",
                   std::u16string_view end = u"\"") {
    return {.separator = u",", .blockStart = start, .blockEnd = end, .escapeEscape = escapeEscape};
}

TEST(DelimitedScanner, anEscapeBlockHidesDelimitersFromTheStartOfTheField) {
    const ScanCase cases[] = {
        {"a delimiter", {quoted()}, "\"a,b\",c", "5,1,separator0"},
        {"text behind the block", {quoted()}, "\"a,b\"cd,e", "7,1,separator0"},
        {"to the end", {quoted()}, "\"a,b\"", "5,0,end0"},
        {"a block later is text", {quoted()}, "a\"b,c\"", "3,1,separator0"},
        {"an empty block", {quoted()}, "\"\",", "2,1,separator0"},
        {"doubled ends", {quoted(u"\"")}, "\"a\"\",\"\"\",b", "8,1,separator0"},
        {"another escape of the end", {quoted(u"\\")}, "\"a\\\",b\",c", "7,1,separator0"},
        {"an escape of something else", {quoted(u"\\")}, "\"a\\b\",c", "5,1,separator0"},
        {"long block strings", {quoted(u"!", u"<<", u">>")}, "<<a>,!>>,>>,", "11,1,separator0"},
        {"an escape right before the end of the data", {quoted(u"\\")}, "\"a\\\"", "CTDP3146E scheme item"},
        {"no end", {quoted()}, "\"a,b", "CTDP3146E scheme item"},
        {"only a start", {quoted()}, "\"", "CTDP3146E scheme item"},
        {"no end string", {quoted({}, u"\"", {})}, "\"a,b", "CTDP3146E scheme item"},
    };
    for (const ScanCase& c : cases) expectFind(c, "UTF-8");
}

TEST(DelimitedScanner, atThePositionOnlyWhatBeginsThereIsFound) {
    const ScanCase cases[] = {
        {"there", {{.separator = u","}}, ",a", "0,1,separator0"},
        {"later", {{.separator = u","}}, "a,", "none"},
        {"begun in vain", {{.separator = u",,"}}, ",a,,", "none"},
        {"blanks that are not there", {{.terminator = u"%WSP*;"}}, "a", "0,0,terminator0"},
        {"blanks that are there", {{.terminator = u"%WSP*;"}}, "  a", "0,2,terminator0"},
        {"blanks at the end", {{.terminator = u"%WSP*;"}}, "", "0,0,terminator0"},
        {"the end of the data", {{.separator = u","}}, "", "0,0,end0"},
        {"an enclosing one", {{.separator = u";"}, {.separator = u","}}, ";", "0,1,separator1"},
    };
    for (const ScanCase& c : cases) {
        expectFind(c, "UTF-8", true, true);
        expectFind(c, "UTF-8", false, true);
    }
    expectFind({"an escape is not passed over", {escaped(u"\\")}, "\\,,", "none"}, "UTF-8", true, true);
    expectFind({"nor is a block", {quoted()}, "\"a\",", "none"}, "UTF-8", true, true);
}

// Text as the bytes of an encoding, by ICU's own hand.
std::string encoded(const char* encoding, std::u16string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    UConverter* converter = ucnv_open(encoding, &status);
    char bytes[256];
    const int32_t count = ucnv_fromUChars(converter, bytes, sizeof bytes, text.data(),
                                          static_cast<int32_t>(text.size()), &status);
    ucnv_close(converter);
    EXPECT_TRUE(U_SUCCESS(status)) << encoding;
    return {bytes, static_cast<size_t>(count)};
}

TEST(DelimitedScanner, readsTheBytesOfEveryEncoding) {
    for (const char* encoding : {"UTF-16BE", "UTF-16LE", "Shift_JIS", "IBM-037", "UTF-32BE", "ISO-8859-1"}) {
        const auto bytes = [encoding](std::u16string_view text) { return encoded(encoding, text); };
        const auto expected = [&](std::u16string_view before, std::u16string_view delimiter) {
            return std::to_string(bytes(before).size()) + "," + std::to_string(bytes(delimiter).size()) +
                   ",separator0";
        };
        expectFind({encoding, {{.separator = u";:"}}, bytes(u"ab;c;:d"), expected(u"ab;c", u";:")}, encoding);
        expectFind({encoding, {escaped(u"?")}, bytes(u"?,b,c"), expected(u"?,b", u",")}, encoding);
        expectFind({encoding, {quoted(u"\"")}, bytes(u"\"a\"\",\",c"), expected(u"\"a\"\",\"", u",")},
                   encoding);
        expectFind({encoding, {{.separator = u"b%WSP+;"}}, bytes(u"ab  c"), expected(u"a", u"b  ")},
                   encoding);
        expectFind({encoding, {{.separator = u"x", .ignoreCase = true}}, bytes(u"aXb"), expected(u"a", u"X")},
                   encoding);
    }
    const std::string data = encoded("Shift_JIS", u"?\u8868,\u65E5\u672C,");
    expectFind({"two bytes escaped", {escaped(u"?")}, data, "3,1,separator0"}, "Shift_JIS");
}

TEST(DelimitedScanner, looksNoFurtherThanTheLimit) {
    const std::string data = "ab,,cd\"e,\"";
    ScanRig rig;
    const int32_t id = rig.within({.separator = u",,", .blockStart = u"\"", .blockEnd = u"\""});
    rig.rig.document(data);
    rig.use(id);
    const auto within = [&rig](int64_t bytes) {
        BufferManager_imposeScopedBufferLength(rig.rig.buffer, bytes, BYTES, &rig.rig.item);
        const std::string found = rig.find();
        BufferManager_removeScopedBufferLengthUnparser(rig.rig.buffer, &rig.rig.item, false, 0);
        return found;
    };
    EXPECT_EQ(within(2), "2,0,end0");
    EXPECT_EQ(within(3), "3,0,end0");
    EXPECT_EQ(rig.iterator.scannedMarkup->row, &rig.rig.item) << "the end belongs to who set it";
    EXPECT_EQ(within(4), "2,2,separator0");
    BufferManager_skipBytes(rig.rig.buffer, 6, &rig.rig.item);
    EXPECT_EQ(within(3), "CTDP3146E scheme item");
    EXPECT_EQ(within(4), "4,0,end0");
}

TEST(DelimitedScanner, reportsTheFindWithItsOwner) {
    ScanRig rig;
    rig.within({.terminator = u"!"});
    rig.withinPlain();
    const int32_t id = rig.within({.separator = u","});
    rig.rig.document("a!b");
    ASSERT_NE(rig.use(id), nullptr);
    EXPECT_EQ(rig.find(false), "1,1,terminator2");
    EXPECT_EQ(rig.iterator.scannedMarkup, nullptr);
    EXPECT_EQ(rig.find(), "1,1,terminator2");
    ASSERT_NE(rig.iterator.scannedMarkup, nullptr);
    EXPECT_EQ(rig.iterator.scannedMarkup->row, &rig.rows[2]);
    EXPECT_EQ(rig.iterator.scannedMarkup->length, 1);
    EXPECT_EQ(rig.iterator.scannedMarkup->literal, rig.scanner->matchedLiteral);
}

TEST(DelimitedScanner, withoutAnElementNothingIsEscaped) {
    for (const auto scan :
         {DelimitedScannerBytes_scanTerminatingMarkup, DelimitedScannerBytes_scanToNextTerminatingMarkup}) {
        ScanRig rig;
        const int32_t id = rig.within({.separator = u",", .escape = u"?"});
        rig.rig.document("a?,b,");
        ASSERT_NE(rig.use(id), nullptr);
        EXPECT_EQ(rig.find(), "4,1,separator0");
        ASSERT_NE(scan(rig.scanner, id), nullptr);
        EXPECT_EQ(rig.find(), "2,1,separator0");
        EXPECT_EQ(scan(rig.scanner, id + 1), nullptr);
        EXPECT_EQ(rig.find(), "5,0,end0") << "no set is current";
    }
}

TEST(DelimitedScanner, anEnclosingLevelOffersTheSameDelimiter) {
    ScanRig rig;
    rig.within({.separator = u", ;"});
    rig.within({.separator = u","});
    const int32_t id = rig.within({.separator = u", ;;"});
    rig.rig.document("a,b;;");
    rig.use(id);
    EXPECT_EQ(rig.find(), "1,1,separator0");
    EXPECT_TRUE(DelimitedScannerBytes_getAlternativeScannedMarkup(rig.scanner, rig.scanner->matchedLiteral));
    EXPECT_EQ(rig.iterator.scannedMarkup->literal->level, 1);
    EXPECT_EQ(rig.iterator.scannedMarkup->row, &rig.rows[1]);
    BufferManager_skipBytes(rig.rig.buffer, 2, &rig.rig.item);
    EXPECT_EQ(rig.find(), "1,2,separator0");
    EXPECT_FALSE(DelimitedScannerBytes_getAlternativeScannedMarkup(rig.scanner, rig.scanner->matchedLiteral));
}

}  // namespace
