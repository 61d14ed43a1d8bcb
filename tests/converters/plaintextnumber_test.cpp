// The short road of text numbers against ICU, on random patterns and texts.
#include "dfdl/converters/plaintextnumber.h"

#include <gtest/gtest.h>
#include <unicode/unum.h>

#include <cmath>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "dfdl/foundation/dfdlicu.h"

namespace {

constexpr uint32_t SEED = 20261124;
constexpr int PATTERNS = 1000;
constexpr int TEXTS = 1000;
constexpr size_t WORD_DIGITS = 8;  // that are read at once

using Text = std::u16string;

std::string narrow(const Text& text) { return {text.begin(), text.end()}; }

class Random {
  public:
    explicit Random(uint32_t seed) : engine_(seed) {}

    int below(int bound) { return static_cast<int>(engine_() % static_cast<uint32_t>(bound)); }
    template <size_t Count>
    const char16_t* one(const char16_t* const (&choices)[Count]) {
        return choices[below(static_cast<int>(Count))];
    }

  private:
    std::mt19937 engine_;
};

// What a number format is made of.
struct Format {
    Text pattern, grouping, point;
    bool isLax;
};

Format randomFormat(Random* random) {
    static constexpr const char16_t* WHOLES[] = {u"0",      u"#0",       u"000",    u"#,##0", u"#",
                                                 u"##,##0", u"#,##,##0", u"#,###0", u"0,000", u"00000000"};
    static constexpr const char16_t* FRACTIONS[] = {u"", u"", u".00", u".###", u".0#", u".", u".#0"};
    static constexpr const char16_t* AFFIXES[] = {u"", u"", u"", u"", u"", u"", u"", u"+", u"$", u"'P'"};
    static constexpr const char16_t* NEGATIVES[] = {u"", u"", u"", u"", u";-", u";-", u";("};
    const Text shape = Text(random->one(WHOLES)) + random->one(FRACTIONS);
    Text pattern = random->one(AFFIXES) + shape;
    if (random->below(20) == 0) pattern += random->one({u"%", u"E0", u"-", u" "});
    const Text negative = random->one(NEGATIVES);
    if (!negative.empty()) pattern += negative + (random->below(8) == 0 ? Text(u"0") : shape);
    return {pattern, random->one({u"", u",", u",", u".", u" ", u"'", u"\u00A0"}),
            random->one({u"", u".", u".", u",", u"_"}), random->below(2) == 0};
}

// Mostly a number, in the format's symbols or in others.
Text randomText(const Format& format, Random* random) {
    Text text = random->below(4) == 0 ? random->one({u"-", u"-", u"+", u"(", u" ", u"$"}) : u"";
    const int groups = 1 + random->below(random->below(4) == 0 ? 8 : 3);
    for (int group = 0; group < groups; ++group) {
        const int digits = random->below(6) == 0 ? 1 + random->below(4) : 3;
        for (int i = 0; i < digits; ++i)
            text += static_cast<char16_t>(u'0' + (random->below(3) == 0 ? 0 : random->below(10)));
        if (group + 1 < groups && random->below(3) != 0)
            text += random->below(8) == 0 ? random->one({u",", u".", u"'"}) : format.grouping;
    }
    if (random->below(2) == 0) {
        text += random->below(8) == 0 ? random->one({u",", u".", u"e"}) : format.point;
        for (int digits = random->below(5); digits > 0; --digits)
            text += static_cast<char16_t>(u'0' + (random->below(2) == 0 ? 0 : random->below(10)));
    }
    if (random->below(20) == 0) text += random->one({u"-", u"%", u" ", u"E5", u"x"});
    return text;
}

UNumberFormat* open(const Format& format) {
    UErrorCode status = U_ZERO_ERROR;
    UNumberFormat* icu = unum_open(UNUM_PATTERN_DECIMAL, format.pattern.c_str(), -1, "", nullptr, &status);
    if (U_FAILURE(status)) return nullptr;
    unum_setAttribute(icu, UNUM_LENIENT_PARSE, format.isLax);
    unum_setSymbol(icu, UNUM_GROUPING_SEPARATOR_SYMBOL, format.grouping.c_str(),
                   static_cast<int32_t>(format.grouping.size()), &status);
    unum_setSymbol(icu, UNUM_DECIMAL_SEPARATOR_SYMBOL, format.point.c_str(),
                   static_cast<int32_t>(format.point.size()), &status);
    return icu;
}

// Digits without the point and the places behind it, of ICU's "-12.5" or "1.25E+7".
Text canonical(std::string number) {
    const size_t power = number.find('E');
    int places = power == number.npos ? 0 : -std::stoi(number.substr(power + 1));
    number = number.substr(0, power);
    const size_t point = number.find('.');
    if (point != number.npos) {
        places += static_cast<int>(number.size() - point - 1);
        number.erase(point, 1);
    }
    const std::string word = std::to_string(std::stoll(number)) + "/" + std::to_string(places);
    return {word.begin(), word.end()};
}

struct Result {
    bool whole;  // the text is a number
    Text digits;
    double nearest;
};

Result askICU(const UNumberFormat* icu, const Text& text) {
    icu::Formattable value;
    int32_t position = 0;
    int32_t type = 0;
    UErrorCode status = U_ZERO_ERROR;
    parseDFDLRes(&value, icu, text.c_str(), static_cast<int32_t>(text.size()), &position, &status, &type);
    if (U_FAILURE(status) || position != static_cast<int32_t>(text.size())) return {false, {}, 0};
    const icu::StringPiece number = value.getDecimalNumber(status);
    return {true, canonical(std::string(number.data(), static_cast<size_t>(number.length()))),
            value.getDouble(status)};
}

// Whether the text is plain. So must its bytes be, if each is one character of ASCII; they lie at the end of
// a block of their own, so that the sanitizer sees what is read behind them.
bool readsAlike(const PlainTextNumber& plan, const Text& text, PlainDigits* digits) {
    const bool isPlain = PlainTextNumber_read(&plan, text, digits);
    const bool isASCII = text.find_first_of(u"\u00A0\u0663") == text.npos;
    const std::vector<uint8_t> bytes(text.begin(), text.end());
    std::vector<uint8_t> behind = bytes;
    behind.insert(behind.end(), WORD_DIGITS, static_cast<uint8_t>(text.size() % 2 == 0 ? '1' : 0xFF));
    for (const std::vector<uint8_t>& loaded : {bytes, behind}) {
        PlainDigits ofBytes{};
        EXPECT_EQ(isPlain && isASCII, PlainTextNumber_read(&plan, std::span(loaded).first(text.size()),
                                                           std::ssize(loaded), &ofBytes))
            << narrow(text);
        EXPECT_TRUE(!isPlain || !isASCII ||
                    (ofBytes.word == digits->word && ofBytes.places == digits->places));
    }
    return isPlain;
}

TEST(PlainTextNumber, IsWhatICUReads) {
    Random random(SEED);
    int read = 0;
    for (int round = 0; round < PATTERNS; ++round) {
        const Format format = randomFormat(&random);
        const std::unique_ptr<UNumberFormat, decltype(&unum_close)> icu(
            reinterpret_cast<UNumberFormat*>(open(format)), unum_close);
        if (icu == nullptr) continue;
        const PlainTextNumber plan =
            PlainTextNumber_plan(format.pattern, format.grouping, format.point, format.isLax);
        for (int i = 0; i < TEXTS; ++i) {
            const Text text = randomText(format, &random);
            PlainDigits digits{};
            if (!readsAlike(plan, text, &digits)) continue;
            ++read;
            const Result expected = askICU(icu.get(), text);
            const std::string word = std::to_string(digits.word) + "/" + std::to_string(digits.places);
            double nearest = expected.nearest;
            PlainDigits_toDouble(digits, &nearest);
            ASSERT_TRUE(expected.whole && narrow(expected.digits) == word && nearest == expected.nearest)
                << narrow(text) << " by " << narrow(format.pattern) << (format.isLax ? " lax" : " strict")
                << ", grouping \"" << narrow(format.grouping) << "\", point \"" << narrow(format.point)
                << "\": " << word << ", not " << narrow(expected.digits);
        }
    }
    EXPECT_GT(read, PATTERNS * TEXTS / 10) << "the short road should be taken often enough";
}

}  // namespace
