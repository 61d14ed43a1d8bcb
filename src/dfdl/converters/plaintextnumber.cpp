#include "dfdl/converters/plaintextnumber.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr int32_t MOST_DIGITS = 18;
constexpr int32_t GROUP_DIGITS = 3;

// "#,##0.0##": the digits of one half of a pattern. `groups` tells whether they stand in groups of three.
bool isPlainShape(std::u16string_view shape, bool* groups) {
    const size_t point = shape.find(u'.');
    const std::u16string_view whole = shape.substr(0, point);
    const std::u16string_view fraction =
        point == shape.npos ? std::u16string_view() : shape.substr(point + 1);
    const auto end = std::find_if(whole.begin(), whole.end(), [](UChar c) { return c != u'#' && c != u','; });
    const bool wholeIsPlain = std::all_of(end, whole.end(), [](UChar c) { return c == u'0' || c == u','; }) &&
                              whole.find_first_not_of(u',') != whole.npos;
    const size_t optional = std::min(fraction.find(u'#'), fraction.size());
    const bool fractionIsPlain = fraction.find_first_not_of(u'0') >= optional &&
                                 fraction.substr(optional).find_first_not_of(u'#') == fraction.npos;
    const size_t comma = whole.find(u',');
    *groups = comma != whole.npos;
    const bool inThrees = !*groups || (comma > 0 && whole.size() - comma == GROUP_DIGITS + 1);
    return wholeIsPlain && fractionIsPlain && inThrees;
}

bool isDigit(UChar c) { return c >= u'0' && c <= u'9'; }

// Goes along the text, of units or of bytes.
template <class Char>
class Reader {
  public:
    Reader(const Char* characters, size_t length) : next_(characters), end_(characters + length) {}

    bool take(UChar c) {
        if (next_ == end_ || *next_ != c || !standsForItself(c)) return false;
        ++next_;
        return true;
    }
    // How many digits stand here, all of which become part of the number.
    int32_t digits() {
        const Char* start = next_;
        while (next_ < end_ && isDigit(*next_)) word_ = word_ * 10 + static_cast<uint64_t>(*next_++ - u'0');
        const auto count = static_cast<int32_t>(next_ - start);
        count_ += count;
        return count;
    }
    bool fitsWord() const { return count_ <= MOST_DIGITS; }
    bool atEnd() const { return next_ == end_; }
    uint64_t word() const { return word_; }

  private:
    // Beyond ASCII a byte is another character, or a part of one.
    static bool standsForItself(UChar c) { return sizeof(Char) > 1 || c < 0x80; }

    const Char* next_;
    const Char* end_;
    uint64_t word_ = 0;
    int32_t count_ = 0;  // digits
};

// Digits before the point: all of them together, or in groups of which only the first may be short.
template <class Char>
bool readWhole(Reader<Char>* reader, UChar grouping) {
    const int32_t first = reader->digits();
    if (first < 1) return false;
    if (grouping == 0 || !reader->take(grouping)) return true;
    if (first > GROUP_DIGITS) return false;
    do {
        if (reader->digits() != GROUP_DIGITS) return false;
    } while (reader->take(grouping));
    return true;
}

template <class Char>
bool read(const PlainTextNumber* plan, Reader<Char> reader, PlainDigits* digits) {
    if (!plan->isUsable) return false;
    const bool isNegative = reader.take(u'-');
    const bool hasPlus = !isNegative && plan->takesPlus && reader.take(u'+');
    if (plan->wantsPlus && !isNegative && !hasPlus) return false;
    if (!readWhole(&reader, plan->grouping)) return false;
    int32_t places = 0;
    if (plan->point != 0 && reader.take(plan->point)) {
        places = reader.digits();
        if (places < 1) return false;
    }
    uint64_t word = reader.word();
    if (!reader.atEnd() || !reader.fitsWord() || (word == 0 && isNegative)) return false;
    for (; places > 0 && word % 10 == 0; --places) word /= 10;
    *digits = {isNegative ? -static_cast<int64_t>(word) : static_cast<int64_t>(word), places};
    return true;
}

constexpr size_t WORD_DIGITS = 8;

// The number of up to eight digits, without a branch that depends on how many. A word is loaded, in which
// they become the last, and added up in pairs, then pairs of pairs, then all. False if there is another
// character.
bool foldDigits(const uint8_t* text, size_t count, uint64_t* number) {
    constexpr uint64_t ZEROS = 0x3030303030303030;
    constexpr uint64_t OVER_NINE = 0x7676767676767676;  // sets the highest bit of a byte that is more
    constexpr uint64_t HIGHEST_BITS = 0x8080808080808080;
    uint64_t word = 0;
    std::memcpy(&word, text, sizeof word);
    word = (word ^ ZEROS) << 8 * (WORD_DIGITS - count);
    if (((word | (word + OVER_NINE)) & HIGHEST_BITS) != 0) return false;
    word = (word * 10 + (word >> 8)) & 0x00FF00FF00FF00FF;
    word = (word * 100 + (word >> 16)) & 0x0000FFFF0000FFFF;
    *number = (word * 10000 + (word >> 32)) & 0xFFFFFFFF;
    return true;
}

// Most numbers: up to 16 digits, perhaps with a minus before them. Words are put together as processors of
// the one byte order do.
bool readInteger(const PlainTextNumber* plan, std::span<const uint8_t> text, int64_t loaded,
                 PlainDigits* digits) {
    if constexpr (std::endian::native != std::endian::little) return false;
    const bool isNegative = !text.empty() && text[0] == '-';
    if (isNegative) text = text.subspan(1);
    const auto readable = static_cast<size_t>(isNegative ? loaded - 1 : loaded);
    if (text.empty() || text.size() > 2 * WORD_DIGITS || readable < WORD_DIGITS) return false;
    if (!plan->isUsable || (plan->wantsPlus && !isNegative)) return false;
    const size_t rest = text.size() > WORD_DIGITS ? text.size() - WORD_DIGITS : 0;
    uint64_t high = 0;
    uint64_t low = 0;
    if (rest != 0 && !foldDigits(text.data(), rest, &high)) return false;
    if (!foldDigits(text.data() + rest, text.size() - rest, &low)) return false;
    const auto word = static_cast<int64_t>(high * 100000000 + low);
    *digits = {isNegative ? -word : word, 0};
    return word != 0 || !isNegative;
}

bool isOneOrNone(std::u16string_view symbol) {
    return symbol.empty() || (symbol.size() == 1 && !isDigit(symbol[0]) && symbol[0] != u'-' &&
                              symbol[0] != u'+' && !U16_IS_SURROGATE(symbol[0]));
}

}  // namespace

PlainTextNumber PlainTextNumber_plan(std::u16string_view pattern, std::u16string_view grouping,
                                     std::u16string_view point, bool isLax) {
    const size_t boundary = pattern.find(u';');
    std::u16string_view positive = pattern.substr(0, boundary);
    const bool plus = !positive.empty() && positive[0] == u'+';
    if (plus) positive.remove_prefix(1);
    bool groups = false;
    const bool shape = isPlainShape(positive, &groups);
    // Of the other half ICU takes what stands before and behind the digits, and nothing else.
    const bool hasNegative = boundary != pattern.npos;
    const bool minus =
        hasNegative && pattern.substr(boundary + 1, 1) == u"-" && pattern.substr(boundary + 2) == positive;
    const bool isUsable = shape && (hasNegative ? minus : !plus) && isOneOrNone(grouping) &&
                          isOneOrNone(point) && (grouping.empty() || grouping != point);
    const bool hasPoint = positive.find(u'.') != positive.npos;
    return {isUsable, plus || isLax, plus && !isLax, groups && !grouping.empty() ? grouping[0] : UChar{0},
            hasPoint && !point.empty() ? point[0] : UChar{0}};
}

bool PlainTextNumber_read(const PlainTextNumber* this_, std::u16string_view text, PlainDigits* digits) {
    return read(this_, Reader<char16_t>(text.data(), text.size()), digits);
}

bool PlainTextNumber_read(const PlainTextNumber* this_, std::span<const uint8_t> text, int64_t loaded,
                          PlainDigits* digits) {
    return readInteger(this_, text, loaded, digits) ||
           read(this_, Reader<uint8_t>(text.data(), text.size()), digits);
}

bool PlainDigits_toDouble(PlainDigits digits, double* value) {
    // Both are doubles without rounding, so the quotient is rounded once.
    constexpr int64_t MOST_EXACT = int64_t{1} << 53;
    static constexpr double POWERS[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                        1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
    if (digits.word > MOST_EXACT || digits.word < -MOST_EXACT || digits.places >= std::ssize(POWERS))
        return false;
    *value = static_cast<double>(digits.word) / POWERS[digits.places];
    return true;
}
