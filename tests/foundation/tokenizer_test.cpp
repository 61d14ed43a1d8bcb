#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dfdl/foundation/dfdlstringtokenizer.h"
#include "dfdl/foundation/guard.h"
#include "support/testheap.h"

namespace {

using String = Owned<DFDLUString, delete_DFDLUString>;
using Tokens = std::vector<std::u16string>;

struct Case {
    std::u16string text;
    Tokens tokens;
    Tokens withDelimiters;
};

Tokens split(DFDLHeapAdapter* heap, const Case& c, const UChar* delimiters, bool returnDelimiters) {
    const String text(new_DFDLUStringFromUChars(heap, c.text.data(), static_cast<int32_t>(c.text.size())));
    Owned<DFDLStringTokenizer, delete_DFDLStringTokenizer> tokenizer(
        new_DFDLStringTokenizer(heap, returnDelimiters));
    if (delimiters == nullptr) {
        DFDLStringTokenizer_setString(tokenizer.get(), text.get(), u',');
    } else {
        DFDLStringTokenizer_setString_delimList(tokenizer.get(), text.get(), delimiters);
    }
    Tokens tokens;
    for (int32_t left = DFDLStringTokenizer_numberOfTokens(tokenizer.get()); left > 0; --left) {
        EXPECT_TRUE(DFDLStringTokenizer_hasMoreTokens(tokenizer.get()));
        EXPECT_EQ(DFDLStringTokenizer_numberOfTokens(tokenizer.get()), left);
        int32_t length;
        UChar* token = DFDLStringTokenizer_getNextToken(tokenizer.get(), &length);
        EXPECT_EQ(token[length], 0);
        tokens.emplace_back(token, static_cast<size_t>(length));
        DFDLStringTokenizer_releaseToken(tokenizer.get(), token);
    }
    EXPECT_FALSE(DFDLStringTokenizer_hasMoreTokens(tokenizer.get()));
    EXPECT_EQ(DFDLStringTokenizer_getNextTokenAsDFDLUString(tokenizer.get()), nullptr);
    return tokens;
}

TEST(DFDLStringTokenizerTest, oneDelimiter) {
    TestAdapter test;
    for (const Case& c : {Case{u"a,bc", {u"a", u"bc"}, {u"a", u",", u"bc"}},
                          Case{u",,a,,b,", {u"a", u"b"}, {u",", u",", u"a", u",", u",", u"b", u","}},
                          Case{u"a b", {u"a b"}, {u"a b"}}, Case{u",", {}, {u","}}, Case{u"", {}, {}}}) {
        EXPECT_EQ(split(test.adapter, c, nullptr, false), c.tokens);
        EXPECT_EQ(split(test.adapter, c, nullptr, true), c.withDelimiters);
    }
}

TEST(DFDLStringTokenizerTest, whiteSpaceOfLists) {
    TestAdapter test;
    const Case c = {u"\t%NL; a\r\nb\u0085c\f,\u00A0", {u"%NL;", u"a", u"b", u"c", u",\u00A0"}, {}};
    EXPECT_EQ(split(test.adapter, c, whitespaceDelimList, false), c.tokens);
    const Case zero = {std::u16string(u"a\0b", 3), {std::u16string(u"a\0b", 3)}, {}};
    EXPECT_EQ(split(test.adapter, zero, whitespaceDelimList, false), zero.tokens)
        << "the end of the list is no delimiter";
}

TEST(DFDLStringTokenizerTest, pooledToken) {
    TestAdapter test;
    DFDLStringTokenizer* tokenizer = new_DFDLStringTokenizer(test.adapter, false);
    DFDLUString* text = new_DFDLUStringFromUChars(test.adapter, u"one two", 7);
    DFDLStringTokenizer_setString(tokenizer, text, u' ');
    DFDLUString* token = DFDLStringTokenizer_getNextTokenAsDFDLUString(tokenizer);
    EXPECT_EQ(DFDLUString_view(token), u"one");
    EXPECT_EQ(token->pooled, 1U);
    delete_DFDLUString(token);
    delete_DFDLUString(text);
    delete_DFDLStringTokenizer(tokenizer);
}

}  // namespace
