// Real messages with bytes changed, lost and doubled: whatever comes of them is the same by every road.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string_view>

#include "support/examples.h"
#include "support/parserrun.h"

namespace {

using namespace std::string_view_literals;

struct Sample {
    const char* example;
    const char16_t* root;
    const char* file;
    std::string_view signs;  // what the format's delimiters, lengths and signs are made of
};

constexpr Sample SAMPLES[] = {
    {"csv", u"file", "parts.csv", "\",\r\n a\xC3"},
    {"order", u"order", "order.edi", "'+:? \nLIN+END+\xE2"},
    {"settings", u"file", "settings.conf", "=#\r\n\t a\xC2"},
    {"pcap", u"file", "loopback.pcap", "\0\1\x4A\x80\xFF"sv},
    {"payroll", u"file", "payroll.dat", "\0\xC\xD\xF0\xD1\xFD\x40\x99\xA0"sv},
    {"prefixed", u"file", "prefixed.dat", "\0\1\2\4\5\x7F\x80\xFF"sv},
    {"pricelist", u"file", "prices.csv", ";,.%+-()EeN 019\n"},
    {"zoned", u"file", "zoned.dat", "\xF0\xF9\xC0\xD9\xB1\xA1\x40"},
    {"accesslog", u"file", "access.log", "-[]\"/:+ \nZ0\xC2"},
    {"listing", u"listing", "folder.lst", "->:. +0\n"},
    {"stamps", u"file", "stamps.log", "-:TZ+. ,09\n"},
    {"dump", u"file", "bits.dump", "012: \n"},
};

constexpr size_t MOST_BYTES = 200;  // of a sample, since each variety is read in many ways

std::string damaged(std::string bytes, std::string_view signs, std::mt19937& random) {
    for (auto changes = random() % 4 + 1; changes > 0; --changes) {
        const size_t at = random() % bytes.size();
        const size_t count = std::min<size_t>(random() % 4 + 1, bytes.size() - at);
        switch (random() % 4) {
            case 0:
                bytes[at] = signs[random() % signs.size()];
                break;
            case 1:
                bytes.insert(at, 1, signs[random() % signs.size()]);
                break;
            case 2:
                bytes.insert(at, bytes.substr(at, count));
                break;
            default:
                if (bytes.size() > count) bytes.erase(at, count);
        }
    }
    return bytes;
}

// With regions the walk takes each step by itself; what it tells of elements must not change.
void expectTheSameByEveryRoad(DFDLGrammar* grammar, const Sample& sample, const std::string& bytes) {
    const ParserRun run = runEverywhere(grammar, sample.root, bytes);
    ParserOptions options;
    options.regions = true;
    const ParserRun slow = runParser(grammar, sample.root, bytes, options);
    EXPECT_EQ(run.values(), slow.values()) << sample.example << ": " << bytes;
    EXPECT_EQ(run.diagnostics, slow.diagnostics) << sample.example << ": " << bytes;
    EXPECT_EQ(run.parsed, run.diagnostics.empty()) << sample.example << ": " << bytes << '\n' << run;
    EXPECT_LE(run.diagnostics.size(), 1U) << sample.example << ": " << bytes << '\n' << run;
}

TEST(DamagedFormats, EndAlikeByEveryRoad) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    // More rounds than a run of all tests has time for, when asked.
    const char* const more = std::getenv("DFDL_TEST_ROUNDS");
    const int rounds = more == nullptr ? 25 : std::atoi(more);
    for (const Sample& sample : SAMPLES) {
        const Grammar grammar = exampleGrammar(sample.example);
        ASSERT_NE(grammar, nullptr);
        const std::string whole = exampleFile(sample.file).substr(0, MOST_BYTES);
        for (int round = 0; round < rounds; ++round) {
            expectTheSameByEveryRoad(grammar.get(), sample, damaged(whole, sample.signs, random));
        }
    }
}

}  // namespace
