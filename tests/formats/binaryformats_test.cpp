// Binary formats by the grammars under examples/, against what Python reads in the same bytes.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "support/examples.h"
#include "support/parserrun.h"

namespace {

const ExampleFormat PCAP = {"pcap", u"file", "loopback.pcap"};
const ExampleFormat PNG = {"png", u"picture", "dot.png", true};
const ExampleFormat TCP = {"tcp", u"packet"};
const ExampleFormat TZIF = {"tzif", u"header", nullptr, true};
const ExampleFormat PAYROLL = {"payroll", u"file", "payroll.dat"};
const ExampleFormat PREFIXED = {"prefixed", u"file", "prefixed.dat"};

TEST(BinaryFormats, TheSamplesReadAsPythonReadsThem) {
    for (const ExampleFormat& format : {PCAP, PNG, PAYROLL, PREFIXED}) expectSampleAsPython(format);
}

// The reverse of what the example's own grammar says of byte order.
void turnBytesRound(PIF::MPIF* pif) {
    for (auto& row : *pif->mutable_binary_number_table()->mutable_row())
        row.set_ibyteorder(PIF::MPIFEnums::BYTEOR_BIG_ENDIAN);
    for (auto& row : *pif->mutable_calendar_rep_table()->mutable_row())
        row.set_ibyteorder(PIF::MPIFEnums::BYTEOR_BIG_ENDIAN);
    pif->mutable_string_part_table()->mutable_row(0)->set_istringpart("%#rA1;%#rB2;%#rC3;%#rD4;");
}

TEST(BinaryFormats, RandomDataReadAsPythonReadsThem) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    for (const ExampleFormat& format : {PNG, TCP, PAYROLL, PREFIXED}) expectRandomAsPython(format, seed, 10);
    const Grammar little = exampleGrammar(PCAP.example);
    const Grammar big = exampleGrammar(PCAP.example, turnBytesRound);
    ASSERT_NE(little, nullptr);
    ASSERT_NE(big, nullptr);
    for (unsigned round = 0; round < 10; ++round) {
        const std::string bytes = sampleFromPython(PCAP.example, seed + round);
        expectAsPython(PCAP, (bytes[0] == '\xA1' ? big : little).get(), bytes);
    }
}

// Of the loopback interface's frames, what is behind the 14 bytes of Ethernet.
TEST(BinaryFormats, CapturedPacketsReadAsPythonReadsThem) {
    const Grammar capture = exampleGrammar(PCAP.example);
    const Grammar packet = exampleGrammar(TCP.example);
    const ParserRun run = runParser(capture.get(), PCAP.root, exampleFile(PCAP.file));
    int packets = 0;
    for (const std::string& value : run.values()) {
        if (!value.starts_with("data=")) continue;
        std::string bytes;
        for (size_t at = std::size("data=") - 1 + 2 * 14; at < value.size(); at += 2)
            bytes += static_cast<char>(std::stoi(value.substr(at, 2), nullptr, 16));
        expectAsPython(TCP, packet.get(), bytes);
        ++packets;
    }
    EXPECT_EQ(packets, 10);
}

TEST(BinaryFormats, TimeZonesReadAsPythonReadsThem) {
    const Grammar grammar = exampleGrammar(TZIF.example);
    ASSERT_NE(grammar, nullptr);
    std::string paths;
    std::string outlines;
    ParserOptions options;
    options.ignoreTrailingData = true;
    for (const auto& entry : std::filesystem::recursive_directory_iterator("/usr/share/zoneinfo")) {
        if (!entry.is_regular_file() || entry.path().string().find(' ') != std::string::npos) continue;
        const std::string bytes = exampleFile(entry.path());
        if (!bytes.starts_with("TZif")) continue;
        paths += entry.path().string() + '\n';
        outlines += runParser(grammar.get(), TZIF.root, bytes, options).outline();
    }
    EXPECT_GT(std::count(paths.begin(), paths.end(), '\n'), 200) << "the files are there";
    EXPECT_EQ(outlines, fromPython("zones", paths));
    expectAsPython(TZIF, grammar.get(), exampleFile("/usr/share/zoneinfo/Europe/Berlin"));
}

}  // namespace
