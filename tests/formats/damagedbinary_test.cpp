// Binary messages that end too early or tell lies about themselves: what is said of them, and where.
#include <gtest/gtest.h>

#include "support/examples.h"
#include "support/parserrun.h"

namespace {

using namespace std::string_literals;

// With members that must be there a fault is told where it is; otherwise it is one member less.
std::function<void(PIF::MPIF*)> required(int32_t count) {
    return [count](PIF::MPIF* pif) {
        for (auto& row : *pif->mutable_group_member_table()->mutable_row()) {
            if (row.max_occurs() != -1) continue;
            row.set_min_occurs(count);
            row.set_max_occurs(count);
        }
        pif->mutable_occurs_scheme_table()->mutable_row(0)->set_ioccurscountkind(PIF::MPIFEnums::OCK_FIXED);
    };
}

struct Whole {
    const char* example;
    const char16_t* root;
    const char* file;
    size_t bytes;     // of the file that the grammar describes
    int32_t members;  // records of the file; 0 if it has no such
    int32_t parsed;   // of its beginnings, how many are messages of their own
};

constexpr Whole MESSAGES[] = {
    {"pcap", u"file", "loopback.pcap", 114, 1, 1},
    {"png", u"picture", "dot.png", 33, 0, 0},
    {"payroll", u"file", "payroll.dat", 146, 2, 2},
    {"prefixed", u"file", "prefixed.dat", 89, 2, 2},
};

TEST(DamagedBinary, EndsInAnErrorWhereverItIsCut) {
    for (const Whole& message : MESSAGES) {
        SCOPED_TRACE(message.example);
        const Grammar any = exampleGrammar(message.example);
        const Grammar exact =
            exampleGrammar(message.example, message.members == 0 ? std::function<void(PIF::MPIF*)>()
                                                                 : required(message.members));
        ASSERT_TRUE(any != nullptr && exact != nullptr);
        const std::string whole = exampleFile(message.file).substr(0, message.bytes);
        EXPECT_TRUE(runParser(exact.get(), message.root, whole).parsed);
        int32_t parsed = 0;
        for (size_t bytes = 0; bytes < message.bytes; ++bytes) {
            const std::string data = whole.substr(0, bytes);
            const ParserRun run = runParser(exact.get(), message.root, data, {}, {bytes % 7, bytes % 2 == 1});
            EXPECT_FALSE(run.parsed) << bytes << '\n' << run;
            EXPECT_EQ(run.diagnostics.size(), 1U) << bytes << '\n' << run;
            parsed += runParser(any.get(), message.root, data).parsed ? 1 : 0;
        }
        EXPECT_EQ(parsed, message.parsed) << "only what ends between two records is a message";
    }
}

struct Lie {
    const char* name;
    const char* file;
    size_t at;  // in the file
    std::string bytes;
    std::string diagnostic;
};

void expectTold(const Lie& lie, const char* example, int32_t members) {
    const Grammar grammar = exampleGrammar(example, required(members));
    ASSERT_NE(grammar, nullptr);
    std::string data = exampleFile(lie.file);
    data.replace(lie.at, lie.bytes.size(), lie.bytes);
    const ParserRun run = runEverywhere(grammar.get(), u"file", data);
    EXPECT_FALSE(run.parsed) << lie.name;
    EXPECT_EQ(run.diagnostics, std::vector<std::string>{lie.diagnostic}) << lie.name;
}

// The first record of prefixed.dat has 59 bytes; the first packet's length on the wire stands at byte 36.
// What the parser takes from its heap for these lengths is watched by runParser.
TEST(DamagedBinary, LengthsThatLieAreErrorsAndNoMemory) {
    const char* const FILE = "prefixed.dat";
    const Lie lies[] = {
        {"a record of 4 GiB", FILE, 0, "\xFF\xFF\xFF\xFF"s,
         "CTDP3000E: record: the data needed at byte 89 goes beyond the end of the data or of the enclosing "
         "length."},
        {"a record shorter than its prefix", FILE, 0, "\0\0\0\3"s,
         "CTDP3123E: /file/record: the length taken from its prefix comes out as -1, which is negative."},
        {"a record that ends within its first text", FILE, 0, "\0\0\0\6"s,
         "CTDP3000E: text1: the data needed at byte 8 goes beyond the end of the data or of the enclosing "
         "length."},
        {"a text that leaves its record", FILE, 4, "\x40"s,
         "CTDP3000E: text1: the data needed at byte 69 goes beyond the end of the data or of the enclosing "
         "length."},
        {"a blob shorter than its prefix", FILE, 8, "\0"s,
         "CTDP3123E: /file/record/blob1: the length taken from its prefix comes out as -1, which is "
         "negative."},
        {"a blob of 2 GiB", FILE, 34, "\x7F\xFF\xFF\xFF"s,
         "CTDP3000E: blob4Big: the data needed at byte 89 goes beyond the end of the data or of the "
         "enclosing "
         "length."},
        {"a text of 4 GiB", FILE, 42, "\xFF\xFF\xFF\xFF"s,
         "CTDP3000E: text4Little: the data needed at byte 46 goes beyond the end of the data or of the "
         "enclosing length."},
        {"a packet of 4 GiB", "loopback.pcap", 36, "\xFF\xFF\xFF\xFF"s,
         "CTDP3000E: data: the data needed at byte 872 goes beyond the end of the data or of the enclosing "
         "length."},
        {"a packet of nothing", "loopback.pcap", 36, "\0\0\0\0"s,
         "CTDP3059E: /file/packet/data: the number of occurrences is 0, but must be at least 1."},
    };
    for (const Lie& lie : lies) {
        const bool packets = lie.file != FILE;
        expectTold(lie, packets ? "pcap" : "prefixed", packets ? 10 : 2);
    }
}

// Of the first employee of payroll.dat.
TEST(DamagedBinary, HalfBytesAreToldWithTheirPlaces) {
    const char* const FILE = "payroll.dat";
    const std::string notAllowed = ", counted from 1, is not allowed there.";
    const std::string badSign =
        ": the code in the place of the sign is none of those allowed for this value.";
    const Lie lies[] = {
        {"a sign among the salary's digits", FILE, 32, "\xA0"s,
         "CTDP3083E: Element salary: X'A00612450C' is not a number in the format packed; the half byte A at "
         "position 1" +
             notAllowed},
        {"a digit as the salary's sign", FILE, 36, "\x01"s, "CTDP3031E: Element salary" + badSign},
        {"a negative zero", FILE, 37, "\x00\x00\x00\x0B"s, "CTDP3031E: Element bonus" + badSign},
        {"low values in part only", FILE, 45, "\xC0"s,
         "CTDP3083E: Element left: X'00000000C0' is not a number in the format packed; the half byte C at "
         "position 9" +
             notAllowed},
        {"a sign in what has none", FILE, 46, "\x40\x12\x34\x5F"s,
         "CTDP3083E: Element account: X'4012345F78901234' is not a number in the format bcd; the half byte F "
         "at position 8" +
             notAllowed},
        {"a filler that is none", FILE, 56, "\xE1"s,
         "CTDP3083E: Element till: X'E12345' is not a number in the format zov4690packed; the half byte E at "
         "position 1" +
             notAllowed},
        {"a sign behind a digit", FILE, 56, "\x1D"s,
         "CTDP3083E: Element till: X'1D2345' is not a number in the format zov4690packed; the half byte D at "
         "position 2" +
             notAllowed},
    };
    for (const Lie& lie : lies) expectTold(lie, "payroll", 2);
}

}  // namespace
