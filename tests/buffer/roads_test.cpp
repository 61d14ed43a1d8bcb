// The roads past ICU against ICU, on random data that are partly good, partly bad.
#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <random>
#include <vector>

#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/guard.h"
#include "support/bufferrig.h"

namespace {

const char* const ENCODINGS[] = {"UTF-8",    "US-ASCII",  "ISO-8859-1", "windows-1252", "ibm-437", "ibm-37",
                                 "ibm-1047", "Shift_JIS", "EUC-JP",     "GB18030",      "Big5",    "ibm-1364",
                                 "UTF-16BE", "UTF-16LE",  "UTF-32BE",   "windows-874",  "KOI8-R",  "CESU-8"};

using Converter = Owned<UConverter, ucnv_close>;

Converter openStrict(const char* encoding) {
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(encoding, &status));
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    EXPECT_TRUE(U_SUCCESS(status)) << encoding;
    return converter;
}

// Text that the encoding has, with stretches of ASCII, and now and then a byte of anything.
std::string randomBytes(UConverter* converter, std::mt19937& random, int characters, bool withBad) {
    std::string bytes;
    for (int i = 0; i < characters; ++i) {
        const auto kind = random() % 40;
        if (withBad && kind == 39) {
            bytes += static_cast<char>(random());
            continue;
        }
        const UChar32 character = kind < 30   ? 0x20 + static_cast<UChar32>(random() % 95)
                                  : kind < 34 ? static_cast<UChar32>(random() % 0x600)
                                  : kind < 38 ? 0x3000 + static_cast<UChar32>(random() % 0x6000)
                                              : 0x1F300 + static_cast<UChar32>(random() % 0x300);
        UChar units[2];
        int32_t length = 0;
        U16_APPEND_UNSAFE(units, length, character);
        char encoded[16];
        UErrorCode status = U_ZERO_ERROR;
        ucnv_setFromUCallBack(converter, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
        const int32_t size = ucnv_fromUChars(converter, encoded, sizeof encoded, units, length, &status);
        if (U_SUCCESS(status)) bytes.append(encoded, static_cast<size_t>(size));
    }
    return bytes;
}

struct Reference {
    std::vector<std::u16string> characters;
    std::vector<int64_t> ends;  // byte offset behind each
    bool bad = false;           // the data end with something that is no character
};

// Character by character, by ICU's own function for that.
Reference decodeSlowly(UConverter* converter, std::string_view bytes) {
    Reference reference;
    ucnv_reset(converter);
    const char* at = bytes.data();
    const char* end = at + bytes.size();
    while (at < end) {
        UErrorCode status = U_ZERO_ERROR;
        const UChar32 character = ucnv_getNextUChar(converter, &at, end, &status);
        if (U_FAILURE(status)) {
            reference.bad = status != U_INDEX_OUTOFBOUNDS_ERROR;
            break;
        }
        UChar units[2];
        int32_t length = 0;
        U16_APPEND_UNSAFE(units, length, character);
        reference.characters.emplace_back(units, static_cast<size_t>(length));
        reference.ends.push_back(at - bytes.data());
    }
    return reference;
}

void compareCharacters(BufferRig& rig, const Reference& reference, std::mt19937& random) {
    size_t at = 0;
    for (;;) {
        const size_t wanted = 1 + random() % 30;
        const bool enough = at + wanted <= reference.characters.size();
        std::u16string expected;
        for (size_t i = at; i < at + wanted && i < reference.characters.size(); ++i)
            expected += reference.characters[i];
        const std::u16string text = rig.readCharacters(static_cast<int64_t>(wanted));
        const std::string error = rig.takeError();
        if (!enough && reference.bad) {
            EXPECT_EQ(error.substr(0, 9), "CTDP3011E");
            return;
        }
        ASSERT_EQ(error, "");
        ASSERT_EQ(text, expected.empty() ? u"null" : expected) << "at character " << at;
        if (!enough) return;
        at += wanted;
        ASSERT_EQ(rig.buffer->bitPosition, reference.ends[at - 1] * 8);
    }
}

TEST(DecodeRoads, CharactersInPiecesAreICUsCharacters) {
    for (uint32_t seed = 1; seed <= 12; ++seed) {
        for (const char* encoding : ENCODINGS) {
            SCOPED_TRACE(std::string(encoding) + ", seed " + std::to_string(seed));
            std::mt19937 random(seed);
            const Converter converter = openStrict(encoding);
            const std::string bytes = randomBytes(converter.get(), random, 200, seed % 2 == 0);
            const Reference reference = decodeSlowly(converter.get(), bytes);
            for (const size_t piece : {size_t{0}, size_t{1}, size_t{2}, size_t{3}, size_t{7}, size_t{50}}) {
                Feed feed(bytes, piece == 0 ? bytes.size() : piece, piece % 2 == 1);
                BufferRig rig;
                rig.encoding(encoding);
                rig.buffer->bomChecked = 1;
                rig.feed(feed);
                std::mt19937 reads(seed);
                compareCharacters(rig, reference, reads);
                if (HasFailure()) return;
            }
        }
    }
}

TEST(DecodeRoads, BytesAsTextAreICUsText) {
    for (uint32_t seed = 1; seed <= 12; ++seed) {
        for (const char* encoding : ENCODINGS) {
            SCOPED_TRACE(std::string(encoding) + ", seed " + std::to_string(seed));
            std::mt19937 random(seed);
            const Converter converter = openStrict(encoding);
            BufferRig rig;
            rig.encoding(encoding);
            rig.buffer->bomChecked = 1;
            for (int i = 0; i < 30; ++i) {
                const std::string bytes =
                    randomBytes(converter.get(), random, static_cast<int>(random() % 60), i % 3 == 0);
                UChar units[1024];
                UErrorCode status = U_ZERO_ERROR;
                const int32_t length = ucnv_toUChars(converter.get(), units, 1024, bytes.data(),
                                                     static_cast<int32_t>(bytes.size()), &status);
                rig.document(bytes);
                const std::u16string text = rig.readBytes(static_cast<int64_t>(bytes.size()));
                const std::string error = rig.takeError();
                ASSERT_EQ(error.substr(0, 9), U_SUCCESS(status) ? "" : "CTDP3011E");
                if (U_SUCCESS(status)) {
                    ASSERT_EQ(text, std::u16string(units, static_cast<size_t>(length)));
                }
            }
        }
    }
}

TEST(DecodeRoads, EveryByteAloneAndEveryLengthAroundABlock) {
    for (const char* encoding : ENCODINGS) {
        SCOPED_TRACE(encoding);
        const Converter converter = openStrict(encoding);
        BufferRig rig;
        DFDLCharset* charset = CharsetManager_getDFDLEncoding(rig.charsets, rig.encoding(encoding));
        for (int byte = 0; byte < 256; ++byte) {
            for (const size_t length : {size_t{1}, size_t{15}, size_t{16}, size_t{17}, size_t{33}}) {
                for (const size_t place : {size_t{0}, length - 1}) {
                    std::string bytes(length, 'A');
                    bytes[place] = static_cast<char>(byte);
                    UChar direct[64];
                    const auto count = static_cast<int64_t>(length);
                    if (!DFDLCharset_decodeDirectly(charset, reinterpret_cast<const uint8_t*>(bytes.data()),
                                                    count, direct))
                        continue;
                    UChar units[64];
                    UErrorCode status = U_ZERO_ERROR;
                    const int32_t expected = ucnv_toUChars(converter.get(), units, 64, bytes.data(),
                                                           static_cast<int32_t>(length), &status);
                    ASSERT_TRUE(U_SUCCESS(status)) << "byte " << byte;
                    ASSERT_EQ(std::u16string(direct, length),
                              std::u16string(units, static_cast<size_t>(expected)))
                        << "byte " << byte;
                }
            }
        }
    }
}

// Else the roads are never taken, and the tests above compare ICU with itself.
TEST(DecodeRoads, AreFoundWhereTheyAre) {
    const std::pair<const char*, int32_t> expected[] = {{"UTF-8", ROAD_ASCII},
                                                        {"Shift_JIS", ROAD_ICU},
                                                        {"EUC-JP", ROAD_ASCII},
                                                        {"GB18030", ROAD_ASCII},
                                                        {"US-ASCII", ROAD_TABLE},
                                                        {"ibm-37", ROAD_TABLE},
                                                        {"windows-1252", ROAD_TABLE},
                                                        {"ISO-8859-1", ROAD_TABLE},
                                                        {"ibm-930", ROAD_ICU},
                                                        {"UTF-7", ROAD_ICU},
                                                        {"UTF-16BE", ROAD_ICU},
                                                        {"ISO-2022-JP", ROAD_ICU},
                                                        {"HZ", ROAD_ICU},
                                                        {"SCSU", ROAD_ICU}};
    for (const auto& [encoding, road] : expected) {
        BufferRig rig;
        DFDLCharset* charset = CharsetManager_getDFDLEncoding(rig.charsets, rig.encoding(encoding));
        EXPECT_EQ(DFDLCharset_hasDirectRoad(charset), road != ROAD_ICU) << encoding;
        EXPECT_EQ(charset->road, road) << encoding;
    }
}

}  // namespace
