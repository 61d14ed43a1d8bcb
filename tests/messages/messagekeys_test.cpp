// The keys, the formats declared behind them and the texts of every language must agree: a text that names an
// insert which nobody supplies would show "<MISSING INSERT n>" to a user.
#include "dfdl/foundation/messagekeys.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Key {
    std::string symbol;
    std::string format;  // without the @
    std::string inserts;
    int fixed = 0;  // inserts that come before those of the format
};

using Keys = std::map<std::string, Key>;           // by id
using Texts = std::map<std::string, std::string>;  // by id

const fs::path sourceRoot = DFDL_SOURCE_DIR;

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file);
    std::stringstream text;
    text << stream.rdbuf();
    return text.str();
}

Keys readKeys() {
    static const std::regex declaration(
        R"re(constexpr char (\w+)\[\] = "(\w+)";(?:  // (@?)((?:%\w+)*)(?:: (.*))?)?)re");
    Keys keys;
    std::ifstream header(sourceRoot / "src/dfdl/foundation/messagekeys.h");
    for (std::string line; std::getline(header, line);) {
        if (line.find("constexpr") == std::string::npos) continue;
        std::smatch match;
        EXPECT_TRUE(std::regex_search(line, match, declaration)) << line;
        const bool added =
            keys.emplace(match[2], Key{match[1], match[4], match[5], match[3].length() > 0 ? 4 : 0}).second;
        EXPECT_TRUE(added) << "two constants have the id " << match[2];
    }
    return keys;
}

Texts readTexts(const fs::path& file) {
    static const std::regex entry(R"re(^ *(\w+) *\{ *"((?:[^"\\]|\\.)*)" *\}$)re");
    Texts texts;
    std::ifstream source(file);
    for (std::string line; std::getline(source, line);) {
        std::smatch match;
        if (!std::regex_match(line, match, entry)) continue;
        EXPECT_TRUE(texts.emplace(match[1], match[2]).second) << file << " has two texts for " << match[1];
    }
    return texts;
}

std::vector<fs::path> languages() {
    std::vector<fs::path> files;
    for (const fs::directory_entry& file : fs::directory_iterator(sourceRoot / "messages"))
        if (file.path().extension() == ".txt" && file.path().filename() != "CMakeLists.txt")
            files.push_back(file.path());
    return files;
}

int countOf(const std::string& text, char character) {
    return static_cast<int>(std::count(text.begin(), text.end(), character));
}

int suppliedBy(const Key& key) { return key.fixed + countOf(key.format, '%'); }

// One more than the highest insert that the text names.
int neededBy(const std::string& text) {
    static const std::regex insert(R"(\{(\d+)\})");
    int needed = 0;
    for (std::sregex_iterator match(text.begin(), text.end(), insert), end; match != end; ++match)
        needed = std::max(needed, std::stoi((*match)[1]) + 1);
    return needed;
}

// Calls and table rows in C++ code that hand over a key with a format too short for its text. What stands
// before a format and belongs to the same call is at most a few lines, and holds no text of its own.
std::vector<std::string> shortFormats(const std::string& code, const Keys& keys, const Texts& texts) {
    static const std::regex handedOver(R"(\b(\w+)\s*[,:])");
    std::map<std::string, std::string> idOf;
    for (const auto& [id, key] : keys)
        if (key.fixed == 0) idOf[key.symbol] = id;
    std::vector<std::string> found;
    for (size_t at = code.find("\"%"); at != std::string::npos; at = code.find("\"%", at + 1)) {
        const std::string before = code.substr(at < 400 ? 0 : at - 400, std::min<size_t>(at, 400));
        const std::string call = before.substr(before.find_last_of(";\"{}") + 1);
        const int supplied = countOf(code.substr(at + 1, code.find('"', at + 1) - at - 1), '%');
        for (std::sregex_iterator name(call.begin(), call.end(), handedOver), end; name != end; ++name) {
            const auto id = idOf.find((*name)[1]);
            if (id != idOf.end() && supplied < neededBy(texts.at(id->second))) found.push_back(id->first);
        }
    }
    return found;
}

TEST(MessageKeys, ConstantsAndEnglishTextsAreTheSameSet) {
    const Keys keys = readKeys();
    const Texts texts = readTexts(sourceRoot / "messages/root.txt");
    ASSERT_GT(keys.size(), 400u);
    for (const auto& [id, key] : keys) {
        const auto text = texts.find(id);
        EXPECT_TRUE(text != texts.end() && !text->second.empty())
            << "no text for " << key.symbol << ' ' << id;
    }
    for (const auto& [id, text] : texts) EXPECT_TRUE(keys.contains(id)) << "no constant for the text " << id;
    EXPECT_EQ(keys.at(DFDLParser_unknownData).symbol, "DFDLParser_unknownData");
}

TEST(MessageKeys, IdsHaveTheFormOfTheirFamily) {
    static const std::regex words("CTDP00\\d\\d"), trace("CTD[PU]5\\d{3}"), errors("CTD[DMNPSUVX]\\d{4}[EW]");
    for (const auto& [id, key] : readKeys()) {
        const bool isTrace = key.symbol.starts_with("ut_");
        const bool isError = std::regex_match(id, errors);
        EXPECT_TRUE(isTrace ? std::regex_match(id, trace) : isError || std::regex_match(id, words)) << id;
    }
}

TEST(MessageKeys, EveryInsertIsNamedAndItsLetterKnown) {
    static const std::regex pieces("(%(ll|l|02h)?[BbSZCszcdiouxXeEfgGDV])*"), remark(R"( \([^)]*\))");
    for (const auto& [id, key] : readKeys()) {
        EXPECT_TRUE(std::regex_match(key.format, pieces)) << id << ' ' << key.format;
        const std::string names = std::regex_replace(key.inserts, remark, "");
        EXPECT_EQ(names.empty() ? 0 : countOf(names, ',') + 1, countOf(key.format, '%')) << id;
    }
}

TEST(MessageKeys, NoTextOfAnyLanguageNeedsAnInsertThatIsNotSupplied) {
    const Keys keys = readKeys();
    for (const fs::path& language : languages()) {
        for (const auto& [id, text] : readTexts(language)) {
            ASSERT_TRUE(keys.contains(id)) << language << ' ' << id;
            EXPECT_LE(neededBy(text), suppliedBy(keys.at(id))) << language << ' ' << id << ": " << text;
        }
    }
}

// What is between braces other than digits is dropped by the formatter, so that text there would vanish.
TEST(MessageKeys, BracesHoldNothingButAnInsertNumber) {
    static const std::regex insert(R"(\{\d+\})");
    for (const fs::path& language : languages())
        for (const auto& [id, text] : readTexts(language))
            EXPECT_EQ(std::regex_replace(text, insert, "").find_first_of("{}"), std::string::npos) << id;
}

TEST(MessageKeys, ShortFormatsAreSeenInCode) {
    const Keys keys = readKeys();
    const Texts texts = readTexts(sourceRoot / "messages/root.txt");
    const std::string call = "ProcessingError_setValues(e, __FILE__, 1, DFDLParser_unknownData, 0, -1, ";
    EXPECT_EQ(shortFormats(call + "\"%lld\", at);", keys, texts).size(), 1u);
    EXPECT_TRUE(shortFormats(call + "\"%lld%02hX\", at, byte);", keys, texts).empty());
    EXPECT_TRUE(shortFormats(call + "nullptr); f(\"%Z\");", keys, texts).empty());
    const std::string choice =
        "raise(group ? DFDLParser_missingSeparator : DFDLParser_invalidSign, \"%Z\", x);";
    EXPECT_EQ(shortFormats(choice, keys, texts), std::vector<std::string>{"DFDLParser_missingSeparator"});
}

TEST(MessageKeys, CodeSuppliesTheInsertsThatTheTextsName) {
    const Keys keys = readKeys();
    const Texts texts = readTexts(sourceRoot / "messages/root.txt");
    for (const fs::directory_entry& file : fs::recursive_directory_iterator(sourceRoot / "src")) {
        if (file.path().extension() != ".cpp") continue;
        for (const std::string& fault : shortFormats(contentOf(file.path()), keys, texts))
            ADD_FAILURE() << file.path() << " gives too few inserts to " << fault;
    }
}

}  // namespace
