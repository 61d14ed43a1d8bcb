// Text out of bytes: counted in bytes and in characters, whole and in pieces, with marks and with bad data.
#include <gtest/gtest.h>

#include <array>

#include "support/bufferrig.h"

namespace {

constexpr std::array<size_t, 6> PIECES = {0, 1, 2, 3, 4, 64};

template <class Body>
void onEveryRoad(std::string_view bytes, Body body) {
    for (const size_t piece : PIECES) {
        for (const bool emptyLast : {false, true}) {
            SCOPED_TRACE("pieces of " + std::to_string(piece) + (emptyLast ? ", empty last buffer" : ""));
            Feed feed(bytes, piece == 0 ? 1 : piece, emptyLast);
            BufferRig rig;
            if (piece == 0) {
                rig.document(bytes);
            } else {
                rig.feed(feed);
            }
            body(rig);
        }
    }
}

struct CharacterCase {
    const char* fault;
    const char* encoding;
    std::string_view bytes;
    int64_t wanted;
    bool strict;
    const char16_t* text;
    int64_t read;      // characters
    int64_t position;  // bytes, afterwards
    const char* error;
};

using namespace std::string_view_literals;

const CharacterCase CHARACTER_CASES[] = {
    {"plain bytes are miscounted", "UTF-8", "abcdef"sv, 4, true, u"abcd", 4, 4, ""},
    {"fewer characters than wanted are an error", "UTF-8", "abc"sv, 5, true, u"abc", 3, 3, ""},
    {"no characters are a text", "UTF-8", ""sv, 5, true, u"null", 0, 0, ""},
    {"nothing wanted reads something", "UTF-8", "abc"sv, 0, true, u"null", 0, 0, ""},
    {"a character in two buffers is cut", "UTF-8", "a\xC3\xA9\xE2\x82\xAC!x"sv, 4, true, u"a\u00E9\u20AC!", 4,
     7, ""},
    {"a pair counts twice", "UTF-8", "\xF0\x9F\x98\x80\xF0\x9F\x98\x81z"sv, 2, true, u"\U0001F600\U0001F601",
     2, 8, ""},
    {"the last pair is cut", "UTF-8", "a\xF0\x9F\x98\x80z"sv, 2, true, u"a\U0001F600", 2, 5, ""},
    {"a pair behind the wanted ones is touched", "UTF-8", "a\xF0\x9F\x98\x80z"sv, 1, true, u"a", 1, 1, ""},
    {"a pair of UTF-16 is cut", "UTF-16LE", "\x3D\xD8\x00\xDE\x41\0"sv, 1, true, u"\U0001F600", 1, 4, ""},
    {"the halves of CESU-8 are taken apart", "CESU-8", "\xED\xA0\xBD\xED\xB8\x80z"sv, 1, true, u"\U0001F600",
     1, 6, ""},
    {"bad data pass", "UTF-8", "ab\xFFz"sv, 4, true, u"null", 2, 2, "CTDP3011E 2 UTF-8"},
    {"bad data count as characters", "UTF-8", "ab\xFFz"sv, 4, false, u"ab", 2, 2, ""},
    {"bad data behind the wanted characters matter", "UTF-8", "ab\xFFz"sv, 2, true, u"ab", 2, 2, ""},
    {"an error points behind the start of its sequence", "UTF-8", "ab\xE2\x82z1234"sv, 9, true, u"null", 2, 2,
     "CTDP3011E 2 UTF-8"},
    {"a cut-off character passes", "UTF-8", "ab\xE2\x82"sv, 3, true, u"null", 2, 2, "CTDP3011E 2 UTF-8"},
    {"a cut-off character is an error where bad data are none", "UTF-8", "ab\xE2\x82"sv, 3, false, u"ab", 2,
     2, ""},
    {"half a unit passes", "UTF-16BE", "\0a\0"sv, 2, true, u"null", 1, 2, "CTDP3011E 2 UTF-16BE"},
    {"a byte without a character passes", "US-ASCII", "ab\x80"sv, 3, true, u"null", 2, 2,
     "CTDP3011E 2 US-ASCII"},
    {"double bytes are cut", "Shift_JIS", "\x82\xA0\x82\xA2\x41\x41"sv, 3, true, u"\u3042\u3044A", 3, 5, ""},
    {"what one read left in the converter shows in the next", "ibm-930", "\x0E\x44\x81\x0F"sv, 1, true,
     u"\u3042", 1, 3, ""},
    {"EBCDIC digits are not digits", "ibm-37", "\xF1\xF2\x5A"sv, 3, true, u"12!", 3, 3, ""},
};

TEST(Characters, AreCountedWholeOnEveryRoad) {
    for (const CharacterCase& c : CHARACTER_CASES) {
        SCOPED_TRACE(c.fault);
        onEveryRoad(c.bytes, [&c](BufferRig& rig) {
            rig.encoding(c.encoding);
            EXPECT_EQ(rig.readCharacters(c.wanted, c.strict), c.text);
            EXPECT_EQ(rig.charsRead, c.read);
            EXPECT_EQ(rig.buffer->charPosition, c.read);
            EXPECT_EQ(rig.buffer->bitPosition, c.position * 8);
            EXPECT_EQ(rig.takeError(), c.error);
        });
    }
}

TEST(Characters, AReadGoesOnWhereTheOneBeforeStopped) {
    onEveryRoad(
        "\xF0\x9F\x98\x80\xE2\x82\xAC"
        "a\xC3\xA9"
        "b\xF0\x9F\x98\x80",
        [](BufferRig& rig) {
            rig.encoding("UTF-8");
            std::u16string text;
            for (int i = 0; i < 6; ++i) text += rig.readCharacters(1);
            EXPECT_EQ(text, u"\U0001F600\u20ACa\u00E9b\U0001F600");
            EXPECT_EQ(rig.readCharacters(1), u"null");
        });
}

TEST(Characters, CountsThatNoTextCanHaveAreAShortage) {
    BufferRig rig;
    rig.encoding("UTF-8");
    rig.document("abc");
    EXPECT_EQ(rig.readCharacters(INT64_MAX), u"null");
    EXPECT_EQ(rig.takeError(), "CTDP3000E 0 item");
    EXPECT_EQ(rig.readCharacters(-1), u"null");
    EXPECT_EQ(rig.charsRead, 0);
    EXPECT_EQ(
        BufferManager_skipMinWidthCharacters(rig.buffer, rig.item.iTextEncodingIndex, INT64_MAX, &rig.item),
        0);
    EXPECT_EQ(rig.takeError(), "CTDP3000E 0 item");
}

// A megabyte in buffers of one byte takes time in proportion to it.
TEST(Characters, ALongTextInSmallPiecesIsPutTogether) {
    std::string bytes;
    std::u16string text;
    for (int i = 0; i < 100000; ++i) {
        bytes += i % 3 == 0 ? "\xC3\xA9" : "x";
        text += i % 3 == 0 ? u"\u00E9" : u"x";
    }
    Feed feed(bytes, 1);
    BufferRig rig;
    rig.encoding("UTF-8");
    rig.feed(feed);
    EXPECT_EQ(rig.readCharacters(100000), text);
}

TEST(Characters, SkipsMoveLikeReads) {
    struct Case {
        const char* encoding;
        std::string_view bytes;
        int64_t count;
        int64_t skipped;
        int64_t position;
        const char* error;
    };
    const Case cases[] = {
        {"UTF-8", "a\xC3\xA9\xF0\x9F\x98\x80z"sv, 3, 3, 7, ""},
        {"UTF-8", "a\xC3\xA9"sv, 3, 2, 3, ""},
        {"UTF-8", "a\xFF\xA9zzzz"sv, 3, 1, 1, "CTDP3011E 1 UTF-8"},
        {"UTF-32BE", "\0\0\0a\0\0\0b\0\0\0c"sv, 2, 2, 8, ""},
        {"ISO-8859-1", "abc"sv, 4, 0, 3, "CTDP3000E 0 item"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.encoding);
        onEveryRoad(c.bytes, [&c](BufferRig& rig) {
            const int32_t row = rig.encoding(c.encoding);
            EXPECT_EQ(BufferManager_skipCharacters(rig.buffer, row, c.count, &rig.item), c.skipped);
            EXPECT_EQ(rig.buffer->bitPosition, c.position * 8);
            EXPECT_EQ(rig.takeError(), c.error);
        });
    }
}

struct ByteCase {
    const char* fault;
    const char* encoding;
    std::string_view bytes;
    int64_t count;
    bool specified;  // the element's length
    const char16_t* text;
    const char* error;
};

const ByteCase BYTE_CASES[] = {
    {"bytes are not text", "UTF-8", "a\xC3\xA9zz"sv, 4, false, u"a\u00E9z", ""},
    {"no bytes are an error", "UTF-16BE", "ab"sv, 0, false, u"", ""},
    {"too few bytes pass", "UTF-8", "abc"sv, 4, false, u"null", "CTDP3000E 0 item"},
    {"a negative count moves back", "UTF-8", "abc"sv, -1, false, u"null", "CTDP3000E 0 item"},
    {"a count beyond all texts asks for memory", "UTF-8", "abc"sv, INT64_MAX, false, u"null",
     "CTDP3000E 0 item"},
    {"a large count asks for memory", "UTF-8", "abc"sv, 2000000000, false, u"null", "CTDP3000E 0 item"},
    {"a cut character fails a specified length", "UTF-8", "ab\xE2\x82zz"sv, 4, true, u"ab", ""},
    {"a cut character passes without a specified length", "UTF-8", "ab\xE2\x82zz"sv, 4, false, u"null",
     "CTDP3011E 2 UTF-8"},
    {"bad data pass for a specified length", "UTF-8",
     "a\xFF"
     "bcde"sv,
     6, true, u"null", "CTDP3011E 1 UTF-8"},
    {"the next text suffers from the one before", "ibm-930", "\x0E\x44\x81"sv, 3, false, u"\u3042", ""},
    {"a table lets a byte pass that is no character", "US-ASCII", "ab\x80\xFF"sv, 4, false, u"null",
     "CTDP3011E 2 US-ASCII"},
};

TEST(Bytes, BecomeTextOnEveryRoad) {
    for (const ByteCase& c : BYTE_CASES) {
        SCOPED_TRACE(c.fault);
        onEveryRoad(c.bytes, [&c](BufferRig& rig) {
            LengthSchemeTableRow length;
            length.iLengthKind = EXPLICIT;
            length.iLengthUnits = BYTES;
            if (c.specified) rig.item.lengthRow = &length;
            rig.encoding(c.encoding);
            EXPECT_EQ(rig.readBytes(c.count), c.text);
            EXPECT_EQ(rig.takeError(), c.error);
            if (*c.error == 0) {
                EXPECT_EQ(rig.buffer->bitPosition, c.count * 8);
            }
        });
    }
}

TEST(Bytes, LimitsOfBytesAndOfCharactersHold) {
    BufferRig rig;
    rig.encoding("UTF-8");
    rig.document(
        "\xC3\xA9"
        "bcdefgh");
    ASSERT_TRUE(BufferManager_imposeScopedBufferLength(rig.buffer, 3, BYTES, &rig.item));
    EXPECT_EQ(rig.readBytes(4), u"null");
    EXPECT_EQ(rig.takeError(), "CTDP3000E 4 item");
    EXPECT_TRUE(BufferManager_removeScopedBufferLengthUnparser(rig.buffer, &rig.item, false, 0));
    ASSERT_TRUE(BufferManager_imposeScopedBufferLength(rig.buffer, 2, CHARACTERS, &rig.item));
    rig.buffer->bitLimit = -1;
    EXPECT_EQ(rig.readBytes(3), u"null");
    EXPECT_EQ(rig.takeError(), "CTDP3000E 7 item");
}

struct MarkCase {
    const char* encoding;
    std::string_view bytes;
    const char16_t* text;  // of all bytes
    int64_t characters;    // moved by the mark and the text
};

const MarkCase MARK_CASES[] = {
    {"UTF-8",
     "\xEF\xBB\xBF"
     "ab"sv,
     u"\uFEFFab", 3},
    {"utf-8",
     "\xEF\xBB\xBF"
     "ab"sv,
     u"\uFEFFab", 3},  // as text: "utf" is not looked at
    {"UTF8", "ab"sv, u"ab", 2},
    {"UTF-8", "\xEF\xBB"sv, u"null", 0},
    {"UTF-16", "\xFE\xFF\0a"sv, u"\uFEFFa", 2},
    {"UTF-16BE", "\0a"sv, u"a", 1},
    {"UTF-16LE",
     "\xFF\xFE"
     "a\0"sv,
     u"\uFEFFa", 2},  // ordinary data
    {"UTF-32BE", "\0\0\xFE\xFF\0\0\0a"sv, u"\uFEFFa", 2},
    {"UTF-32", "\0\0\0a"sv, u"a", 1},
};

TEST(ByteOrderMarks, StayInTheTextAndCountAsACharacter) {
    for (const MarkCase& c : MARK_CASES) {
        SCOPED_TRACE(c.encoding);
        onEveryRoad(c.bytes, [&c](BufferRig& rig) {
            rig.encoding(c.encoding);
            EXPECT_EQ(rig.readCharacters(c.characters), c.text);
            EXPECT_EQ(rig.charsRead, c.characters);
            EXPECT_EQ(rig.takeError(), "");
        });
        onEveryRoad(c.bytes, [&c](BufferRig& rig) {
            rig.encoding(c.encoding);
            if (c.characters == 0) return;
            EXPECT_EQ(rig.readBytes(static_cast<int64_t>(c.bytes.size())), c.text);
            EXPECT_EQ(rig.takeError(), "");
        });
    }
}

TEST(ByteOrderMarks, AreLookedForOnceInTheManagersLife) {
    BufferRig rig;
    rig.encoding("UTF-16");
    rig.document("\0a"sv);
    EXPECT_EQ(rig.readBytes(2), u"a");
    rig.document("\xFE\xFF\0b"sv);
    EXPECT_EQ(rig.readBytes(4), u"\uFEFFb");
    EXPECT_EQ(BufferManager_decodeBOM(rig.buffer, &rig.item), 0);
    rig.encoding("ISO-8859-1");
    rig.document("\xFE"sv);
    EXPECT_EQ(rig.readBytes(1), u"\u00FE");
    EXPECT_EQ(BufferManager_decodeBOM(rig.buffer, &rig.item), -1);
}

TEST(Encodings, OneThatIsUnknownIsNamedWithTheElement) {
    BufferRig rig;
    rig.encoding("NO-SUCH-CODE");
    rig.document("abc");
    EXPECT_EQ(rig.readBytes(1), u"null");
    EXPECT_EQ(rig.takeError(), "CTDV1110E item NO-SUCH-CODE");
    EXPECT_EQ(rig.readCharacters(1), u"null");
    EXPECT_EQ(rig.takeError(), "CTDV1110E item NO-SUCH-CODE");
}

}  // namespace
