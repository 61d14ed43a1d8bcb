// Delimited formats by the grammars under examples/, against what Python reads in the same bytes.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/examples.h"
#include "support/parserrun.h"

namespace {

// One outline by every road: whole and in pieces, at once and step by step.
void expectAsPython(const char* format, DFDLGrammar* grammar, std::u16string_view root,
                    const std::string& bytes, const std::string& expected) {
    const ParserRun run = runEverywhere(grammar, root, bytes);
    EXPECT_TRUE(run.parsed) << format << ": " << bytes << '\n' << run;
    EXPECT_EQ(outlineOf(grammar, root, bytes), expected) << format << ": " << bytes;
}

struct Sample {
    const char* example;
    const char* root;
    const char* file;
};

TEST(DelimitedFormats, TheSamplesReadAsPythonReadsThem) {
    const Sample samples[] = {
        {"csv", "file", "parts.csv"},
        {"order", "order", "order.edi"},
        {"settings", "file", "settings.conf"},
    };
    for (const Sample& s : samples) {
        const Grammar grammar = exampleGrammar(s.example);
        ASSERT_NE(grammar, nullptr);
        const std::string root = s.root;
        const std::string bytes = exampleFile(s.file);
        expectAsPython(s.example, grammar.get(), std::u16string(root.begin(), root.end()), bytes,
                       fromPython(s.example, bytes));
    }
}

TEST(DelimitedFormats, TheUnicodeDatabaseReadsAsPythonReadsIt) {
    const Grammar grammar = exampleGrammar("unicodedata");
    ASSERT_NE(grammar, nullptr);
    const std::string bytes = exampleFile("/usr/share/unicode/UnicodeData.txt");
    const std::string expected = fromPython("unicodedata", bytes);
    EXPECT_GT(std::count(expected.begin(), expected.end(), '='), 15 * 30000)
        << "the file is there, and whole";
    EXPECT_TRUE(outlineOf(grammar.get(), u"file", bytes) == expected);
    EXPECT_TRUE(outlineOf(grammar.get(), u"file", bytes, 509) == expected) << "in small pieces";
    const std::string lines = bytes.substr(0, bytes.find('\n', 5000) + 1);
    expectAsPython("unicodedata", grammar.get(), u"file", lines, fromPython("unicodedata", lines));
}

TEST(DelimitedFormats, CsvReadsAsPythonReadsIt) {
    const Grammar grammar = exampleGrammar("csv");
    ASSERT_NE(grammar, nullptr);
    const char* cases[] = {
        "",                                   // no record
        "a",                                  // no line end
        "a,b\r\nc,d\r\n",                     // CRLF
        "a,b\nc,d\n",                         // LF
        "a\r\nb\nc",                          // both, and a missing last one
        ",\n,,\n",                            // nothing but empty fields
        "a,",                                 // an empty last field that the data end
        "\n\na\n\n",                          // empty lines
        "\"\"\n\"\",\"\"",                    // quoted nothing
        "\"a,b\",\"c\r\nd\"\r\n\"e\"",        // separators and line ends in quotes
        "\"a\"\"b\",\"\"\"\",\"\"\"c\"\"\"",  // doubled quotes: within, alone, at both ends
        "a\"b,c\"\"d\n",                      // quotes that open nothing
        " \"a\",\"b\" \n",                    // blanks about quotes
        "\"ab\"cd,\"e\"f\n",                  // text behind the end of a quoted part
        "\xC3\xA4,\"\xE2\x82\xAC\",\xF0\x9F\x99\x82\n",
    };
    for (const std::string bytes : cases) {
        expectAsPython("csv", grammar.get(), u"file", bytes, fromPython("csv", bytes));
    }
}

std::string randomField(std::mt19937& random) {
    static const char* const PARTS[] = {"a", "bc", " ", ",", "\"", "\n", "\r\n", "\r", ";", "\xC3\xBC", "7"};
    std::string field;
    for (auto count = random() % 5; count > 0; --count) field += PARTS[random() % std::size(PARTS)];
    if (field.find_first_of(",\"\r\n") == field.npos && random() % 4 != 0) return field;
    for (size_t at = 0; (at = field.find('"', at)) != field.npos; at += 2) field.insert(at, 1, '"');
    return '"' + field + '"';
}

std::string randomCsv(std::mt19937& random, int rows) {
    std::string text;
    for (int row = 0; row < rows; ++row) {
        for (auto left = random() % 6; left > 0; --left) text += randomField(random) + ',';
        text += randomField(random) + (random() % 2 == 0 ? "\n" : "\r\n");
    }
    if (random() % 2 == 0) text.erase(text.find_last_not_of("\r\n") + 1);
    return text;
}

// A text of the given parts, at least one of them.
template <size_t COUNT>
std::string randomText(std::mt19937& random, const char* const (&parts)[COUNT]) {
    std::string text;
    for (auto count = random() % 4 + 1; count > 0; --count) text += parts[random() % COUNT];
    return text;
}

std::string randomElement(std::mt19937& random) {
    static const char* const PARTS[] = {"a",  "B7", " ",         "?+",           "?:", "?'",
                                        "??", "?x", "?\xC3\xA4", "\xE2\x82\xAC", "\n"};
    return randomText(random, PARTS);
}

std::string randomOrder(std::mt19937& random, int lines) {
    static const char* const PRICES[] = {"", "+5", "+5:E", "+5::1", "+5:E:1+m", "+5+m", "++m"};
    std::string order = "ORD+1+2+3'";
    for (int line = 0; line < lines; ++line) {
        order += "LIN+" + randomElement(random) + '+' + randomElement(random) + '+';
        if (random() % 2 == 0) order += randomElement(random);
        order += random() % 2 == 0 ? "+22:pc" : "+1";
        order += PRICES[random() % std::size(PRICES)];
        order += random() % 2 == 0 ? "'" : "'\r\n  ";
    }
    return order + "END+1'";
}

std::string randomSettings(std::mt19937& random, int lines) {
    static const char* const WORDS[] = {"a", "key", "\xC3\xA4", "9", "x y", "#", "a.b"};
    static const char* const BLANKS[] = {"", "", " ", "\t", "  \xE3\x80\x80"};
    static const char* const ENDS[] = {"\n", "\r\n", "\n\n", "\n   ", "\r\n \n\t"};
    std::string text;
    for (int line = 0; line < lines; ++line) {
        if (random() % 3 == 0) {
            text += "# " + randomText(random, WORDS) + " = " + randomText(random, WORDS);
        } else {
            text += 'k' + randomText(random, WORDS) + randomText(random, BLANKS) + '=' +
                    randomText(random, BLANKS) + randomText(random, WORDS);
        }
        text += ENDS[random() % std::size(ENDS)];
    }
    if (random() % 2 == 0) text.erase(text.find_last_not_of(" \t\r\n") + 1);
    return text;
}

struct RandomFormat {
    const char* example;
    const char16_t* root;
    std::string (*make)(std::mt19937& random, int lines);
};

TEST(DelimitedFormats, RandomDataReadAsPythonReadsThem) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const RandomFormat formats[] = {
        {"csv", u"file", randomCsv}, {"order", u"order", randomOrder}, {"settings", u"file", randomSettings}};
    for (const RandomFormat& format : formats) {
        const Grammar grammar = exampleGrammar(format.example);
        ASSERT_NE(grammar, nullptr);
        for (int round = 0; round < 20; ++round) {
            const std::string bytes = format.make(random, 20);
            expectAsPython(format.example, grammar.get(), format.root, bytes,
                           fromPython(format.example, bytes));
        }
    }
}

struct Encoding {
    const char* name;
    const char* pythonName;
    bool ascii;
    bool ebcdic;
    const char* text;
};

TEST(DelimitedFormats, CsvReadsTheSameInEveryEncoding) {
    const char* const everywhere = "a,\"b,\"\"c\"\"\r\nd\"\r\ne,\r\n,\"\"";
    const char* const wide = "\xC3\xA4,\"\xE2\x82\xAC,\",\xF0\x9F\x99\x82\n\xE8\xA1\xA8,\xE3\x82\xBD\"\n";
    const char* const japanese = "\xE8\xA1\xA8,\"\xE3\x82\xBD,\xE8\x83\xBD\"\r\n\xEF\xBD\xB1,x\xE4\xBA\x88\n";
    const char* const western = "\xC3\xA4,\"\xE2\x82\xAC,\xC3\x9F\",[x]\n\xC3\xA9";
    const Encoding encodings[] = {
        {"UTF-16BE", "utf-16-be", false, false, wide},
        {"UTF-16LE", "utf-16-le", false, false, wide},
        {"IBM-1140", "cp1140", false, true, western},
        {"Shift_JIS", "shift_jis", true, false, japanese},
    };
    for (const Encoding& e : encodings) {
        SCOPED_TRACE(e.name);
        const Grammar grammar = exampleGrammar("csv", [&e](PIF::MPIF* pif) {
            PIF::MTextEncodingTableRow* row = pif->mutable_text_encoding_table()->mutable_row(0);
            row->set_iencoding(e.name);
            row->set_iencodingasciicompatible(e.ascii);
            row->set_iencodingebcdic(e.ebcdic);
        });
        ASSERT_NE(grammar, nullptr);
        for (const std::string text : {everywhere, e.text}) {
            const std::string bytes = fromPython("to " + std::string(e.pythonName), text);
            expectAsPython("csv", grammar.get(), u"file", bytes, fromPython("csv", text));
        }
    }
}

TEST(DelimitedFormats, MessagesOfSegmentsReadAsPythonReadsThem) {
    const Grammar grammar = exampleGrammar("order");
    ASSERT_NE(grammar, nullptr);
    const char* cases[] = {
        "ORD+1+2+3'END+0'",                                     // all that may be left off is
        "ORD+1+2+3:n+r'LIN+1+a+d+1:k+2:E:3+m'END+1+m'",         // nothing is
        "ORD+1+2+3++n'LIN+1+a++1++m'END+1'",                    // members left empty in the middle
        "ORD+1+2+3'LIN+1+a++1:+2::5'END+1'",                    // components left empty
        "ORD+?++??+?:?''LIN+1+?'?+?:???a++1'END+1'",            // released delimiters, and a plain character
        "ORD+1+2+3'\r\n LIN+1+a++1'\n\n\tLIN+2+b++2'END+2'\n",  // white space between segments
        "ORD+1+\xE2\x82\xAC+3'END+?\xC3\xA4'",                  // a released character of more than one byte
    };
    for (const std::string bytes : cases) {
        expectAsPython("order", grammar.get(), u"order", bytes, fromPython("order", bytes));
    }
}

TEST(DelimitedFormats, SettingsReadAsPythonReadsThem) {
    const Grammar grammar = exampleGrammar("settings");
    ASSERT_NE(grammar, nullptr);
    const char* cases[] = {
        "a=b",                           // no line end
        "a = b\n\t c\t=\td e \n",        // blanks about everything
        "#\n# x\na=1\n#y\nb=2\n# z",     // comments about settings, and one of nothing
        "#only\n\n\n",                   // no setting at all
        "a=#b\nc\xC2\xA0=\xC2\xA0 d\n",  // a comment's sign in a value; a blank of two bytes is white space
        "a=1\r\n\r\n  b=2\r\n",
    };
    for (const std::string bytes : cases) {
        expectAsPython("settings", grammar.get(), u"file", bytes, fromPython("settings", bytes));
    }
}

}  // namespace
