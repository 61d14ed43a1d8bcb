#include "text.h"

#include <gtest/gtest.h>

namespace {

TEST(ToolText, TakesWellFormedUtf8Only) {
    const struct {
        std::string bytes;
        bool good;
    } cases[] = {
        {"", true},
        {"plain", true},
        {"\xC2\x80\xDF\xBF", true},
        {"\xE0\xA0\x80\xEF\xBF\xBF", true},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", true},
        {"\x80", false},              // a tail without a head
        {"\xC1\xBF", false},          // longer than needed
        {"\xE0\x9F\xBF", false},      // the same in three
        {"\xF0\x8F\xBF\xBF", false},  // and in four
        {"\xED\xA0\x80", false},      // a surrogate
        {"\xF4\x90\x80\x80", false},  // beyond the last code point
        {"\xF5\x80\x80\x80", false},
        {"\xE2\x82", false},  // cut
        {"\xE2x\x82", false},
    };
    for (const auto& c : cases) {
        const auto text = toUtf16(c.bytes);
        ASSERT_EQ(text.has_value(), c.good) << testing::PrintToString(c.bytes);
        if (!text) continue;
        std::string back;
        appendUtf8(back, *text);
        EXPECT_EQ(back, c.bytes);
    }
}

TEST(ToolText, ALoneSurrogateBecomesTheReplacementCharacter) {
    std::string text;
    appendUtf8(text, u"a\xD800z\xDC00");
    EXPECT_EQ(text, "a\uFFFDz\uFFFD");
}

}  // namespace
