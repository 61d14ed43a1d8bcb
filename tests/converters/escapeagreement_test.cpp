// What the scanner passes over as escaped and what is taken out of the text afterwards have to be the same
// escapes: both are held against regular expressions that read a field at once.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <regex>
#include <string>

#include "dfdl/converters/textconverter.h"
#include "dfdl/pif/escapeschemetable.h"
#include "dfdl/pif/groupmembertable.h"
#include "support/scanrig.h"

namespace {

struct Scheme {
    const char* name;
    MarkupWords words;
    // Of escape characters: what a field is made of; the groups are what is kept. Of blocks: the block.
    const char* pattern;
    const char* hidden;  // of blocks: an end that is none
};

const Scheme SCHEMES[] = {
    {"plain", {.separator = u",", .escape = u"?"}, R"(\?(.?)|([^,?]))", nullptr},
    {"doubled", {.separator = u",", .escape = u"?", .escapeEscape = u"?"}, R"(\?(.?)|([^,?]))", nullptr},
    {"escaped",
     {.separator = u",", .escape = u"?", .escapeEscape = u"^"},
     R"(\^(\?)|\?(.?)|(\^[^,]?)|([^,^?]))",
     nullptr},
    {"doubledEnd",
     {.separator = u",", .blockStart = u"<", .blockEnd = u"?", .escapeEscape = u"?"},
     R"(^<((?:\?\?|[^?])*)\?(?!\?))",
     "??"},
    {"escapedEnd",
     {.separator = u",", .blockStart = u"<", .blockEnd = u"?", .escapeEscape = u"^"},
     R"(^<((?:\^\?|\^(?!\?)|[^?^])*)\?)",
     "^?"},
    {"bareEnd", {.separator = u",", .blockStart = u"<", .blockEnd = u"?"}, R"(^<([^?]*)\?)", nullptr},
};

// A field as it should be read.
struct Reading {
    size_t length = 0;
    std::string value;
    bool open = false;  // a block without an end
};

Reading readCharacters(const Scheme& scheme, const std::string& data) {
    const std::regex token(scheme.pattern);
    Reading reading;
    std::smatch match;
    for (auto at = data.begin();
         std::regex_search(at, data.end(), match, token, std::regex_constants::match_continuous);
         at = match[0].second) {
        reading.length += static_cast<size_t>(match.length(0));
        for (size_t group = 1; group < match.size(); ++group) reading.value += match[group].str();
        if (match[0].second == data.end()) break;
    }
    return reading;
}

Reading readBlock(const Scheme& scheme, const std::string& data) {
    Reading reading;
    std::smatch match;
    size_t behind = 0;
    if (std::regex_search(data, match, std::regex(scheme.pattern))) {
        reading.value = match[1].str();
        const std::string hidden = scheme.hidden == nullptr ? "" : scheme.hidden;
        for (size_t at = 0; !hidden.empty() && (at = reading.value.find(hidden, at)) != std::string::npos;
             ++at) {
            reading.value.erase(at, 1);
        }
        behind = static_cast<size_t>(match.length(0));
    } else if (data.starts_with('<')) {
        reading.open = true;
        return reading;
    }
    reading.length = std::min(data.find(',', behind), data.size());
    reading.value += data.substr(behind, reading.length - behind);
    return reading;
}

std::string widen(const std::string& text) {
    std::string bytes;
    for (const char letter : text) bytes += {'\0', letter};
    return bytes;
}

class Agreement {
  public:
    Agreement(const Scheme& scheme, const char* encoding, size_t width)
        : scheme_(scheme), scan_(encoding), width_(width), id_(scan_.within(scheme.words)) {}

    void expect(const std::string& data) {
        SCOPED_TRACE(data);
        const std::string bytes = width_ == 1 ? data : widen(data);
        const bool isBlock = !scheme_.words.blockStart.empty();
        const Reading reading = isBlock ? readBlock(scheme_, data) : readCharacters(scheme_, data);
        scan_.rig.document(bytes);
        scan_.use(id_);
        const std::string found = scan_.find();
        if (reading.open) {
            EXPECT_EQ(found.substr(0, 9), "CTDP3146E");
            EXPECT_EQ(withoutEscapes(data), data);
        } else {
            EXPECT_EQ(std::stoul(found), reading.length * width_);
            EXPECT_EQ(withoutEscapes(data.substr(0, reading.length)), reading.value);
        }
        BufferManager_clear(scan_.rig.buffer);
    }

  private:
    std::string withoutEscapes(const std::string& raw) {
        const std::u16string units(raw.begin(), raw.end());
        DFDLUString* text = DFDLUStringPooler_getDFDLUStringFromView(scan_.rig.heap, units);
        GroupMemberTableRow row;
        TextConverter_applyEscapeSchemeUsingCompiledMarkupSetData(scan_.rig.heap, text, &row,
                                                                  scan_.scanner->markupSet);
        std::string result;
        for (const char16_t unit : DFDLUString_view(text)) result += static_cast<char>(unit);
        delete_DFDLUString(text);
        return result;
    }

    const Scheme& scheme_;
    ScanRig scan_;
    size_t width_;
    int32_t id_;
};

TEST(Escapes, TheScannerAndTheTextAgree) {
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    for (const Scheme& scheme : SCHEMES) {
        SCOPED_TRACE(std::string(scheme.name) + ", seed " + std::to_string(seed));
        Agreement narrow(scheme, "UTF-8", 1);
        Agreement wide(scheme, "UTF-16BE", 2);
        for (int run = 0; run < 600 && !testing::Test::HasFailure(); ++run) {
            std::string data(random() % 12, ' ');
            for (char& letter : data) letter = "a??^^,<"[random() % 7];
            if (random() % 3 == 0) data.insert(0, 1, '<');
            narrow.expect(data);
            wide.expect(data);
        }
    }
}

}  // namespace
