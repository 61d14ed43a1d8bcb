#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "support/scanrig.h"

namespace {

struct Delimiter {
    std::string text;
    int level;
    bool terminator;
};

// One grammar, one set within the other, and some data.
struct Problem {
    std::vector<Delimiter> delimiters;
    std::string escape;
    std::string blockStart;
    std::string blockEnd;
    std::string escapeEscape;
    std::string data;
};

// The rules said again over one string, candidate by candidate and byte by byte.
class Oracle {
  public:
    explicit Oracle(const Problem& problem) : p_(problem), data_(problem.data) {}

    std::string find() {
        if (!p_.blockStart.empty() && stands(p_.blockStart) && !passBlock()) return "CTDP3146E scheme item";
        while (at_ < data_.size()) {
            if (!p_.escape.empty() && passEscape()) continue;
            if (at_ >= data_.size()) break;
            if (const Delimiter* found = best()) {
                return std::to_string(at_) + "," + std::to_string(found->text.size()) + "," +
                       (found->terminator ? "terminator" : "separator") + std::to_string(found->level);
            }
            ++at_;
        }
        return std::to_string(data_.size()) + ",0,end0";
    }

  private:
    bool stands(const std::string& text, size_t ahead = 0) const {
        return at_ + ahead <= data_.size() && data_.compare(at_ + ahead, text.size(), text) == 0;
    }
    bool has(const std::string& text) const { return at_ + text.size() <= data_.size(); }

    bool passBlock() {
        const std::string& hides = p_.escapeEscape;
        for (at_ += p_.blockStart.size(); at_ < data_.size(); ++at_) {
            if (!hides.empty() && stands(hides) && stands(p_.blockEnd, hides.size())) {
                at_ += hides.size() + p_.blockEnd.size() - 1;
            } else if (stands(p_.blockEnd)) {
                at_ += p_.blockEnd.size();
                return true;
            }
        }
        return false;
    }

    // Whether the search starts anew behind what was passed. One byte is one character here.
    bool passEscape() {
        if (!isFirst(data_[at_]) || !has(p_.escapeEscape)) return false;
        const bool doubled = !p_.escapeEscape.empty() && stands(p_.escapeEscape);
        if (doubled) at_ += p_.escapeEscape.size();
        if (at_ >= data_.size() || !has(p_.escape)) return false;
        if (stands(p_.escape)) {
            at_ += p_.escape.size();
            if (!doubled && at_ < data_.size()) ++at_;
            return true;
        }
        if (!doubled || p_.escape != p_.escapeEscape) return false;
        ++at_;
        return true;
    }

    bool isFirst(char byte) const {
        for (const Delimiter& delimiter : p_.delimiters) {
            if (delimiter.text[0] == byte) return true;
        }
        return p_.escape[0] == byte || (!p_.escapeEscape.empty() && p_.escapeEscape[0] == byte);
    }

    const Delimiter* best() const {
        const Delimiter* best = nullptr;
        for (const Delimiter& delimiter : p_.delimiters) {
            if (!stands(delimiter.text)) continue;
            if (best == nullptr || rank(delimiter) < rank(*best)) best = &delimiter;
        }
        return best;
    }
    static std::tuple<int, int, bool> rank(const Delimiter& d) {
        return {-static_cast<int>(d.text.size()), d.level, !d.terminator};
    }

    const Problem& p_;
    const std::string& data_;
    size_t at_ = 0;
};

class Chance {
  public:
    explicit Chance(uint32_t seed) : engine_(seed) {}
    size_t below(size_t count) { return engine_() % count; }
    std::string text(const std::string& letters, size_t most) {
        std::string text;
        for (size_t left = 1 + below(most); left > 0; --left) text += letters[below(letters.size())];
        return text;
    }

  private:
    std::mt19937 engine_;
};

// Few letters, so that delimiters overlap; now and then many delimiters, so that there are more first bytes
// than vectors take; long stretches of what starts nothing, so that there is something to pass over.
Problem problemOf(Chance& chance) {
    Problem p;
    const std::string letters = chance.below(4) == 0 ? ",;:!|/&+*=" : ",;\\\"";
    const size_t count = 1 + chance.below(letters.size() * 2);
    for (size_t i = 0; i < count; ++i) {
        p.delimiters.push_back(
            {chance.text(letters, 3), static_cast<int>(chance.below(3)), chance.below(2) == 0});
    }
    const size_t scheme = chance.below(3);
    if (scheme == 1) p.escape = chance.text(letters, 2);
    if (scheme == 2) p.blockStart = chance.text(letters, 2);
    if (scheme == 2) p.blockEnd = chance.text(letters, 2);
    if (scheme != 0 && chance.below(3) != 0) {
        p.escapeEscape = chance.below(2) == 0 ? chance.text(letters, 2) : p.escape + p.blockEnd;
    }
    if (chance.below(2) == 0) p.data = p.blockStart;
    for (size_t runs = chance.below(5); runs > 0; --runs) {
        p.data += std::string(chance.below(90), 'x') + chance.text(letters + "x", 6);
    }
    return p;
}

std::u16string wide(const std::string& text) { return {text.begin(), text.end()}; }

std::string describe(const Problem& p) {
    std::string text = "data " + p.data + "\nescape " + p.escape + " block " + p.blockStart + " " +
                       p.blockEnd + " escape-escape " + p.escapeEscape + "\n";
    for (const Delimiter& d : p.delimiters) {
        text += d.text + (d.terminator ? " terminator " : " separator ") + std::to_string(d.level) + "\n";
    }
    return text;
}

void addSets(ScanRig& rig, const Problem& p) {
    for (int level = 2; level >= 0; --level) {
        std::u16string lists[2];
        for (const Delimiter& d : p.delimiters) {
            if (d.level == level) lists[d.terminator ? 0 : 1] += wide(d.text) + u" ";
        }
        const std::u16string escape = wide(p.escape);
        const std::u16string start = wide(p.blockStart);
        const std::u16string end = wide(p.blockEnd);
        const std::u16string escapeEscape = wide(p.escapeEscape);
        MarkupWords words{.terminator = lists[0], .separator = lists[1]};
        if (level == 0) {
            words.escape = escape;
            words.blockStart = start;
            words.blockEnd = end;
            words.escapeEscape = escapeEscape;
        }
        rig.within(words);
    }
}

TEST(DelimitedScanner, findsWhatTheRulesSayOnRandomSetsAndData) {
    const uint32_t seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    Chance chance(seed);
    for (int round = 0; round < 2000 && !testing::Test::HasFailure(); ++round) {
        const Problem p = problemOf(chance);
        const std::string expected = Oracle(p).find();
        for (const size_t piece : {size_t{0}, size_t{1}, 2 + chance.below(60)}) {
            ScanRig rig("ISO-8859-1");
            addSets(rig, p);
            Feed feed(p.data, std::max(piece, size_t{1}), chance.below(2) == 0);
            if (piece == 0) {
                rig.rig.document(p.data);
            } else {
                rig.rig.feed(feed);
            }
            rig.use(2);
            EXPECT_EQ(rig.find(), expected) << "in pieces of " << piece << "\n" << describe(p);
            BufferManager_clear(rig.rig.buffer);
        }
    }
}

}  // namespace
