// Binary elements on the walk: bit fields, bytes of every kind, nil, and lengths that stand before the
// content.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

using namespace std::string_literals;
using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;
using Values = std::vector<std::string>;

struct Case {
    const char* fault;
    std::function<void(GrammarBuilder&, GrammarHandle)> describe;
    std::string data;
    Values values;
    const char* code = nullptr;  // null: parsed
    const char* inText = "";     // of the diagnostic
};

const Case CASES[] = {
    {"fields of bits are cut out wrongly",
     [](GrammarBuilder&, GrammarHandle r) {
         r.number("version", "UNSIGNEDBYTE").bits(4).alignBits(1);
         r.number("length", "UNSIGNEDBYTE").bits(4).alignBits(1);
         r.number("offset", "SHORT").bits(13).alignBits(1);
         r.number("flags", "UNSIGNEDBYTE").bits(3).alignBits(1);
     },
     "\x45\xFF\xFA"s,
     {"version=4", "length=5", "offset=-1", "flags=2"}},
    {"the byte order is that of the machine",
     [](GrammarBuilder&, GrammarHandle r) {
         r.number("a", "UNSIGNEDSHORT").bytes(2);
         r.number("b", "UNSIGNEDSHORT").bytes(2).littleEndian();
         r.number("c", "INT").bytes(4);
         r.number("d", "LONG").bytes(8).littleEndian();
     },
     "\x01\x02\x01\x02\xFF\xFF\xFF\xFE\x00\x00\x00\x00\x00\x00\x00\x80"s,
     {"a=258", "b=513", "c=-2", "d=-9223372036854775808"}},
    {"a number may be longer than its type",
     [](GrammarBuilder&, GrammarHandle r) { r.number("a", "SHORT").bytes(3); },
     "\0\0\1"s,
     {},
     "CTDP3162E"},
    {"bytes that are missing are made up",
     [](GrammarBuilder&, GrammarHandle r) { r.number("a", "INT").bytes(4); },
     "\0\0\1"s,
     {},
     "CTDP3000E"},
    {"truth values and opaque bytes are numbers",
     [](GrammarBuilder&, GrammarHandle r) {
         r.truth("t", 1, 0).bytes(2);
         r.truth("f", 1, 0).bytes(1);
         r.opaque("o").bytes(3);
     },
     "\0\1\0\xAB\xCD\xEF"s,
     {"t=true", "f=false", "o=ABCDEF"}},
    {"a nil byte is a value",
     [](GrammarBuilder&, GrammarHandle r) {
         r.number("a", "INT").bytes(2).encoding("ISO-8859-1").nilCharacter("%#rFF;");
         r.opaque("b").bytes(3).encoding("US-ASCII").nilLiteral("nil");
         r.opaque("c").bytes(3).encoding("US-ASCII").nilLiteral("nil");
     },
     "\xFF\xFFnilNIL"s,
     {"a=nil", "b=nil", "c=4E494C"}},
    {"seconds are not counted from the epoch",
     [](GrammarBuilder&, GrammarHandle r) {
         r.seconds("unix", "DATETIME", "1970-01-01T00:00:00");
         r.seconds("own", "DATETIME", "2000-01-01T12:00:00");
         r.seconds("other", "DATETIME", "1582-10-14T23:59:59-01:00");
         r.seconds("again", "DATETIME", "2000-01-01T12:00:00");
     },
     "\x7F\xFF\xFF\xFF\0\0\0\1\xFF\xFF\xFF\xFF\0\0\0\2"s,
     {"unix=2038-01-19T03:14:07+00:00", "own=2000-01-01T12:00:01+00:00", "other=1582-10-24T23:59:58-01:00",
      "again=2000-01-01T12:00:02+00:00"}},
    {"a number of a type that is none stops the parse",
     [](GrammarBuilder&, GrammarHandle r) {
         r.number("a", "STRING").bytes(2);
         r.number("b", "SHORT").bytes(2);
     },
     "\1\2\0\3"s,
     {"b=3"}},
    {"packed digits that end inside a byte are in their order",
     [](GrammarBuilder&, GrammarHandle r) {
         r.number("a", "UNSIGNEDINT").bits(12).packed();
         r.number("b", "INT").bits(12).packed().alignBits(1);
     },
     "\x98\xC1\x2D"s,
     {"a=98", "b=-12"}},
    {"opaque bytes do not end at a delimiter",
     [](GrammarBuilder&, GrammarHandle r) {
         auto group = r.sequence().separator(",");
         group.opaque("a").delimited();
         group.opaque("b").delimited();
     },
     "\x01\x02,\x03"s,
     {"a=0102", "b=03"}},
};

const Case NILS[] = {
    {"bytes of nil characters are compared as if there were but one in a field",
     [](GrammarBuilder&, GrammarHandle r) {
         r.opaque("a").bytes(4).encoding("UTF-16BE").nilCharacter("%SP;");
         r.opaque("b").bytes(4).encoding("UTF-16BE").nilCharacter("%SP;");
         r.opaque("c").bytes(3).encoding("UTF-16BE").nilCharacter("%SP;");
     },
     "\0 \0 \0 \0\1\0 \0"s,
     {"a=nil", "b=00200001", "c=nil"}},
    {"padding that a text of the row's kind would have is trimmed off bytes",
     [](GrammarBuilder&, GrammarHandle r) { r.opaque("a").bytes(2).trimRight("%SP;").nilLiteral("%ES;"); },
     "xy",
     {"a=7879"}},
};

const Case PREFIXES[] = {
    {"a prefix is not the length",
     [](GrammarBuilder& b, GrammarHandle r) {
         const GrammarHandle one = b.number("one", "UNSIGNEDBYTE").bytes(1);
         const GrammarHandle two = b.number("two", "UNSIGNEDSHORT").bytes(2).littleEndian();
         r.text("a").prefixed(one);
         r.opaque("b").prefixed(two, true);
         auto group = r.complexElement("g");
         group.prefixed(one);
         group.text("c").endOfParent();
     },
     "\3xyz\4\0\xAA\xBB\2zz"s,
     {"a=xyz", "b=AABB", "c=zz"}},
    {"a prefix may be longer than itself",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.opaque("b").prefixed(b.number("two", "UNSIGNEDSHORT").bytes(2), true);
     },
     "\0\1"s,
     {},
     "CTDP3123E"},
    {"a prefix is believed before the data are there",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.opaque("b").prefixed(b.number("four", "UNSIGNEDINT").bytes(4));
     },
     "\xFF\xFF\xFF\xFF\1\2"s,
     {},
     "CTDP3000E"},
    {"a negative prefix is a length",
     [](GrammarBuilder& b, GrammarHandle r) { r.opaque("b").prefixed(b.number("one", "BYTE").bytes(1)); },
     "\xFF\1\2"s,
     {},
     "CTDP3123E"},
    {"the least number wraps round where a prefix counts itself",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.opaque("b").prefixed(b.number("eight", "LONG").bytes(8), true);
     },
     "\x80\0\0\0\0\0\0\1xyz"s,
     {},
     "CTDP3123E"},
    {"a length beyond 64 bits is none",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.opaque("b").prefixed(b.number("nine", "NONNEGATIVEINTEGER").bytes(9));
     },
     "\1\0\0\0\0\0\0\0\0xyz"s,
     {},
     "CTDP3000E"},
    {"an initiator of a prefix may be missing",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.text("d").prefixed(b.number("marked", "UNSIGNEDBYTE").bytes(1).initiator("L"));
     },
     "X\1d"s,
     {},
     "CTDP3041E"},
    {"a prefix is read as bytes whatever it is",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.opaque("b").prefixed(b.number("digits", "INT").bytes(2).packed());
         r.text("c").prefixed(b.number("bits", "UNSIGNEDSHORT").bits(16).alignBits(1));
         r.text("d").prefixed(b.number("marked", "UNSIGNEDBYTE").bytes(1).initiator("L"));
     },
     "\x00\x2C\xAA\xBB\0\3xyzL\1d"s,
     {"b=AABB", "c=xyz", "d=d"}},
    {"characters are counted as bytes",
     [](GrammarBuilder& b, GrammarHandle r) {
         const GrammarHandle one = b.number("one", "UNSIGNEDBYTE").bytes(1);
         r.text("a").prefixedCharacters(one);
         r.text("b").prefixedCharacters(one).encoding("UTF-16BE");
     },
     "\3\xC3\xA4\xE2\x82\xACx\2\0y\0z"s,
     {"a=\xC3\xA4\xE2\x82\xACx", "b=yz"}},
    {"bits are counted as bytes",
     [](GrammarBuilder& b, GrammarHandle r) {
         const GrammarHandle four = b.number("four", "UNSIGNEDBYTE").bits(4).alignBits(1);
         r.number("a", "UNSIGNEDSHORT").prefixedBits(four);
         r.number("b", "SHORT").prefixedBits(four).alignBits(1);
     },
     "\xCF\xFF\x3A"s,
     {"a=4095", "b=-3"}},
    {"a number of prefixed length may be longer than its type",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.number("a", "SHORT").prefixed(b.number("one", "UNSIGNEDBYTE").bytes(1));
     },
     "\3\0\0\1"s,
     {},
     "CTDP3162E"},
    {"content that is damaged is taken for a prefix that is",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.opaque("b").prefixed(b.number("digits", "INT").bytes(2).packed());
     },
     "\x0A\x2C\xAA\xBB"s,
     {},
     "CTDP3124E"},
    {"the implied length of a complex element's prefix is not its type's",
     [](GrammarBuilder& b, GrammarHandle r) {
         auto group = r.complexElement("g");
         group.prefixed(b.number("two", "UNSIGNEDSHORT").implicitBytes(2), true);
         group.text("c").endOfParent();
         r.text("d").bytes(1);
     },
     "\0\4xyz"s,
     {"c=xy", "d=z"}},
    {"a prefix without its initiator does not say which it wants",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.text("d").prefixed(b.number("marked", "UNSIGNEDBYTE").bytes(1).initiator("Length"));
     },
     "\1d"s,
     {},
     "CTDP3041E",
     "Length"},
    {"an element whose prefix has a terminator is tried again and again",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.text("c").prefixed(b.number("marked", "UNSIGNEDBYTE").bytes(1).terminator(";"));
         r.text("d").bytes(2);
     },
     "\1;\1"s,
     {"d=;\1"}},
    {"half a prefix is one",
     [](GrammarBuilder& b, GrammarHandle r) {
         r.text("b").prefixed(b.number("four", "UNSIGNEDINT").bytes(4));
     },
     "\0\0\0"s,
     {},
     "CTDP3000E"},
};

void expectCase(const Case& entry) {
    GrammarBuilder builder;
    entry.describe(builder, builder.complexElement("r"));
    const Grammar grammar(builder.load(), delete_DFDLGrammar);
    ASSERT_NE(nullptr, grammar) << entry.fault;
    const ParserRun run = runEverywhere(grammar.get(), u"r", entry.data);
    EXPECT_EQ(entry.values, run.values()) << entry.fault << "\n" << run;
    EXPECT_EQ(entry.code == nullptr, run.parsed) << entry.fault << "\n" << run;
    EXPECT_EQ(entry.code == nullptr ? Values{} : Values{entry.code}, run.codes()) << entry.fault << "\n"
                                                                                  << run;
    if (run.diagnostics.empty()) return;
    EXPECT_NE(std::string::npos, run.diagnostics[0].find(entry.inText)) << entry.fault << "\n" << run;
}

TEST(Binary, ContentIsReadAsItsTypeSays) {
    for (const Case& entry : CASES) expectCase(entry);
}

TEST(Binary, MessagesNameWhatIsWrong) {
    struct Message {
        std::function<void(GrammarHandle)> describe;
        std::string data, text;
    };
    const Message messages[] = {
        {[](GrammarHandle r) { r.number("a", "UNSIGNEDBYTE").bytes(2).packed(); }, "\x99\x9C"s,
         "CTDP3038E: Element a: the value 999 is outside the range of its type: 0 to 255."},
        {[](GrammarHandle r) { r.number("a", "NONNEGATIVEINTEGER").bytes(2).packed(); }, "\x12\x3D"s,
         "CTDP3038E: Element a: the value -123 is outside the range of its type: 0 and above."},
        {[](GrammarHandle r) { r.number("a", "INTEGER").bytes(11).packed(); },
         "\x12\x34\x56\x78\x90\x12\x34\x56\xB8\x90\x1C"s,
         "CTDP3083E: Element a: X'1234567890123456B8901C' is not a number in the format packed; the half "
         "byte B "
         "at position 17, counted from 1, is not allowed there."},
        {[](GrammarHandle r) { r.number("a", "DECIMAL").bytes(18).packed(); }, "012345678901234567"s,
         "CTDP3150E: Element a: its field has room for 36 digits, but a binary number can have at most 34."},
        {[](GrammarHandle r) { r.truth("a", 1, 0).bytes(2); }, "\1\2"s,
         "CTDP3030E: Element a: the number 258 stands neither for true nor for false."},
        {[](GrammarHandle r) { r.seconds("a", "DATETIME", "today"); }, "\1\2\1\2"s,
         "CTDP3143E: Element a: its epoch 'today' is not a dateTime."},
    };
    for (const Message& entry : messages) {
        GrammarBuilder builder;
        entry.describe(builder.complexElement("r"));
        const Grammar grammar(builder.load(), delete_DFDLGrammar);
        ASSERT_NE(nullptr, grammar) << entry.text;
        const ParserRun run = runEverywhere(grammar.get(), u"r", entry.data);
        EXPECT_EQ(Values{entry.text}, run.diagnostics);
    }
}

TEST(Binary, NilIsToldFromValues) {
    for (const Case& entry : NILS) expectCase(entry);
}

TEST(Binary, PrefixesGiveLengths) {
    for (const Case& entry : PREFIXES) expectCase(entry);
}

}  // namespace
