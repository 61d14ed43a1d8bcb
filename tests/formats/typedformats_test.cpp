// Formats whose texts are numbers and calendars by the grammars under examples/, against what Python reads in
// the same bytes.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <random>

#include "support/examples.h"
#include "support/grammarbuilder.h"
#include "support/parserrun.h"

namespace {

// The encoding of the example is EBCDIC, where the style does not count.
std::function<void(PIF::MPIF*)> inAscii(PIF::MPIFEnums::MNumberZonedSignStyleEnum style) {
    return [style](PIF::MPIF* pif) {
        PIF::MTextEncodingTableRow* encoding = pif->mutable_text_encoding_table()->mutable_row(0);
        encoding->set_iencoding("US-ASCII");
        encoding->set_iencodingebcdic(false);
        encoding->set_iencodingasciicompatible(true);
        for (auto& row : *pif->mutable_text_number_table()->mutable_row())
            row.set_inumberzonedsignstyle(style);
    };
}

ExampleFormat zoned(const char* command, PIF::MPIFEnums::MNumberZonedSignStyleEnum style) {
    return {"zoned", u"file", nullptr, false, command, inAscii(style)};
}

const ExampleFormat ACCESS_LOG = {"accesslog", u"file", "access.log"};
const ExampleFormat LISTING = {"listing", u"listing", "folder.lst"};
const ExampleFormat STAMPS = {"stamps", u"file", "stamps.log"};
const ExampleFormat PRICE_LIST = {"pricelist", u"file", "prices.csv"};
const ExampleFormat ZONED = {"zoned", u"file", "zoned.dat"};
const ExampleFormat DUMP = {"dump", u"file", "bits.dump"};
const ExampleFormat MAPS = {"maps", u"file"};
const ExampleFormat USTAR = {"ustar", u"header", nullptr, true};

// What a program writes when it is run.
std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, decltype(&pclose)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    char piece[4096];
    for (size_t count = 1; pipe != nullptr && count > 0; output.append(piece, count))
        count = fread(piece, 1, sizeof piece, pipe.get());
    EXPECT_FALSE(output.empty()) << command;
    return output;
}

TEST(TypedFormats, TheSamplesReadAsPythonReadsThem) {
    for (const ExampleFormat& format : {ACCESS_LOG, PRICE_LIST, ZONED, LISTING, STAMPS, DUMP})
        expectSampleAsPython(format);
}

TEST(TypedFormats, RandomDataReadAsPythonReadsThem) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    for (const ExampleFormat& format : {
             ACCESS_LOG,
             PRICE_LIST,
             LISTING,
             STAMPS,
             ZONED,
             zoned("zonedstandard", PIF::MPIFEnums::ASCII_STANDARD),
             zoned("zonedtranslated", PIF::MPIFEnums::ASCII_TRANSLATED_EBCDIC),
             zoned("zonedrealia", PIF::MPIFEnums::ASCII_CA_REALIA_MODIFIED),
             DUMP,
         })
        expectRandomAsPython(format, seed, 10);
}

TEST(TypedFormats, ThisMachinesDataReadAsPythonReadsThem) {
    const struct {
        ExampleFormat format;
        const char* command;
    } cases[] = {
        {LISTING, "LC_ALL=C TZ=Asia/Kolkata ls -l --full-time " DFDL_SOURCE_DIR "/examples"},
        {MAPS, "cat /proc/self/maps"},
        {USTAR, "tar --format=ustar -C " DFDL_SOURCE_DIR "/examples -cf - ustar.txt"},
        {USTAR, "tar --format=ustar --numeric-owner -C / -cf - bin"},
    };
    for (const auto& c : cases) {
        const Grammar grammar = exampleGrammar(c.format.example);
        ASSERT_NE(grammar, nullptr);
        const std::string bytes = outputOf(c.command);
        expectAsPython(c.format, grammar.get(), c.format.onlyTheBeginning ? bytes.substr(0, 1024) : bytes);
    }
}

// Zeros may be padding, but a number has a digit, and one before its point.
TEST(TypedFormats, NumbersPaddedWithZerosKeepOneThatTheyNeed) {
    const struct {
        GrammarHandle (*trim)(GrammarHandle number);
        const char* text;
        const char* number;
    } cases[] = {
        {[](GrammarHandle number) { return number.trimLeft("0"); }, "0000", "n=0"},
        {[](GrammarHandle number) { return number.trimLeft("0"); }, "00.5", "n=0.5"},
        {[](GrammarHandle number) { return number.trimLeft("0"); }, "0120", "n=120"},
        {[](GrammarHandle number) { return number.trimRight("0"); }, "0000", "n=0"},
        {[](GrammarHandle number) { return number.trimRight("0"); }, "1.50", "n=1.5"},
        {[](GrammarHandle number) { return number.trimBoth("0"); }, "0000", "n=0"},
        {[](GrammarHandle number) { return number.trimLeft("%#r30;"); }, "0000", "n=0"},
    };
    for (const auto& c : cases) {
        GrammarBuilder builder;
        c.trim(builder.complexElement("file").textNumber("n", "DECIMAL", "#0.###").characters(4))
            .encoding("US-ASCII");
        const Grammar grammar(builder.load(), delete_DFDLGrammar);
        const ParserRun run = runEverywhere(grammar.get(), u"file", c.text);
        EXPECT_EQ(run.values(), std::vector<std::string>{c.number}) << c.text << '\n' << run;
    }
}

}  // namespace
