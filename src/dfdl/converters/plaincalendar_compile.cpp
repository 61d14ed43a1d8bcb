// From a pattern to the layout of its texts.
#include <algorithm>
#include <cstring>

#include "dfdl/converters/packedcalendar.h"
#include "dfdl/converters/plaincalendar.h"

namespace {

constexpr int32_t WORD_BYTES = 8;

enum Kind : uint8_t {
    YEAR,
    SHORT_YEAR,
    MONTH,
    MONTH_NAME,
    DAY,
    HOUR,
    MINUTE,
    SECOND,
    FRACTION,
    ZONE,
    LITERAL
};

// A run of one letter that is plain, with the characters that it reads.
struct Run {
    char16_t letter;
    uint8_t length;
    Kind kind;
    uint8_t width;
};
constexpr Run RUNS[] = {{u'y', 4, YEAR, 4},     {u'u', 4, YEAR, 4},       {u'y', 2, SHORT_YEAR, 2},
                        {u'M', 2, MONTH, 2},    {u'M', 3, MONTH_NAME, 3}, {u'd', 2, DAY, 2},
                        {u'H', 2, HOUR, 2},     {u'm', 2, MINUTE, 2},     {u's', 2, SECOND, 2},
                        {u'S', 1, FRACTION, 1}, {u'S', 2, FRACTION, 2},   {u'S', 3, FRACTION, 3},
                        {u'X', 2, ZONE, 5},     {u'X', 3, ZONE, 6},       {u'Z', 1, ZONE, 5},
                        {u'Z', 5, ZONE, 6},     {u'x', 2, ZONE, 5},       {u'x', 3, ZONE, 6}};

// One thing that a text has next.
struct Step {
    Kind kind;
    uint8_t width;
    char16_t literal;
};

struct Steps {
    Step list[PLAIN_CALENDAR_BYTES];
    int32_t count;
    int32_t width;  // of all of them
};

bool isLetter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }

// Characters that ICU takes for themselves and for nothing else.
bool isPlainLiteral(char16_t c) {
    return std::u16string_view(u"-/:.,T ").find(c) != std::u16string_view::npos;
}

const Run* findRun(char16_t letter, size_t length) {
    for (const Run& run : RUNS) {
        if (run.letter == letter && run.length == length) return &run;
    }
    return nullptr;
}

bool isYear(Kind kind) { return kind == YEAR || kind == SHORT_YEAR; }
bool isMonth(Kind kind) { return kind == MONTH || kind == MONTH_NAME; }

bool isSameField(Kind a, Kind b) {
    return (a == b && a != LITERAL) || (isYear(a) && isYear(b)) || (isMonth(a) && isMonth(b));
}

// A field that is there twice has two values.
bool add(Steps* steps, Step step) {
    const bool isTwice = std::any_of(steps->list, steps->list + steps->count, [step](const Step& other) {
        return isSameField(other.kind, step.kind);
    });
    if (isTwice || steps->width + step.width > PLAIN_CALENDAR_BYTES) return false;
    steps->list[steps->count++] = step;
    steps->width += step.width;
    return true;
}

bool split(Steps* steps, std::u16string_view pattern) {
    while (!pattern.empty()) {
        const char16_t c = pattern[0];
        size_t length = 1;
        if (c == u'\'') {
            length = 3;
            if (pattern.size() < length || pattern[2] != u'\'' || !isPlainLiteral(pattern[1])) return false;
            if (!add(steps, {LITERAL, 1, pattern[1]})) return false;
        } else if (isLetter(c)) {
            while (length < pattern.size() && pattern[length] == c) ++length;
            const Run* run = findRun(c, length);
            if (run == nullptr || !add(steps, {run->kind, run->width, c})) return false;
        } else if (!isPlainLiteral(c) || !add(steps, {LITERAL, 1, c})) {
            return false;
        }
        pattern.remove_prefix(length);
    }
    return true;
}

// ICU skips blanks where a field begins, and nowhere else takes them for themselves.
bool blanksStandBetweenFields(const Steps& steps) {
    for (int32_t i = 0; i < steps.count; ++i) {
        const Step* const step = steps.list + i;
        if (step->kind != LITERAL || step->literal != u' ') continue;
        if (i == 0 || i + 1 == steps.count || step[-1].kind == LITERAL || step[1].kind == LITERAL)
            return false;
    }
    return true;
}

bool canBeRead(const Steps& steps, const PlainCalendarSetting& setting) {
    return std::none_of(steps.list, steps.list + steps.count, [&setting](const Step& step) {
        return (step.kind == MONTH_NAME && !setting.namesMonths) ||
               (step.kind == SHORT_YEAR && setting.centuryStart < 0);
    });
}

// What each character of a text has to be.
struct Shape {
    uint8_t kept[PLAIN_CALENDAR_BYTES];  // 0: it is looked at elsewhere
    uint8_t expected[PLAIN_CALENDAR_BYTES];
    uint8_t most[PLAIN_CALENDAR_BYTES];  // beyond what is expected
};

void expectDigits(Shape* shape, int32_t at, int32_t count) {
    std::fill_n(shape->kept + at, count, uint8_t{0xFF});
    std::fill_n(shape->expected + at, count, uint8_t{'0'});
    std::fill_n(shape->most + at, count, uint8_t{9});
}

void expectLiteral(Shape* shape, int32_t at, char16_t literal) {
    shape->kept[at] = 0xFF;
    shape->expected[at] = static_cast<uint8_t>(literal);
    shape->most[at] = 0;
}

void expectStep(Shape* shape, const Step& step, int32_t at) {
    if (step.kind == LITERAL) return expectLiteral(shape, at, step.literal);
    if (step.kind == MONTH_NAME) return;
    if (step.kind != ZONE) return expectDigits(shape, at, step.width);
    expectDigits(shape, at + 1, step.width - 1);
    if (step.width == 6) expectLiteral(shape, at + 3, u':');
}

// The last word ends with the text, so that nothing behind it is read; a text below a word is padded.
int32_t startOfLastWord(int32_t width) { return std::max(width - WORD_BYTES, 0); }

void setWords(PlainCalendar* plan, const Shape& shape) {
    constexpr uint8_t MOST_OF_LOW_BITS = 0x7F;
    plan->wordCount = (plan->width + WORD_BYTES - 1) / WORD_BYTES;
    for (int32_t i = 0; i < plan->wordCount; ++i) {
        const int32_t start = std::min(WORD_BYTES * i, startOfLastWord(plan->width));
        PlainCalendarWord* word = plan->words + i;
        uint8_t excess[WORD_BYTES];
        std::transform(shape.most + start, shape.most + start + WORD_BYTES, excess,
                       [](uint8_t most) { return static_cast<uint8_t>(MOST_OF_LOW_BITS - most); });
        std::memcpy(&word->kept, shape.kept + start, sizeof word->kept);
        std::memcpy(&word->expected, shape.expected + start, sizeof word->expected);
        std::memcpy(&word->excess, excess, sizeof word->excess);
    }
}

// Where the character of a text stands among the digits that the words give. So does what follows it, even if
// that is where the last word begins: both words have it.
uint8_t placeOf(const PlainCalendar* plan, int32_t at) {
    const int32_t start = startOfLastWord(plan->width);
    return static_cast<uint8_t>(at < start ? at : WORD_BYTES * (plan->wordCount - 1) + at - start);
}

void placeFraction(PlainCalendar* plan, int32_t at, int32_t digits) {
    for (int32_t i = 0; i < digits; ++i) plan->places.fraction[i] = placeOf(plan, at + i);
}

void placeYear(PlainCalendar* plan, const Step& step, int32_t at) {
    plan->hasShortYear = step.kind == SHORT_YEAR;
    plan->places.century = plan->hasShortYear ? uint8_t{DEFAULT_ZERO} : placeOf(plan, at);
    plan->places.year = placeOf(plan, at + step.width - 2);
}

void placeZone(PlainCalendar* plan, const Step& step, int32_t at) {
    plan->zoneSign = static_cast<int8_t>(at);
    plan->places.zoneHours = placeOf(plan, at + 1);
    plan->places.zoneMinutes = placeOf(plan, at + step.width - 2);
}

void placeStep(PlainCalendar* plan, const Step& step, int32_t at) {
    static constexpr uint8_t PlainCalendarPlaces::*PAIRS[] = {nullptr,
                                                              nullptr,
                                                              &PlainCalendarPlaces::month,
                                                              nullptr,
                                                              &PlainCalendarPlaces::day,
                                                              &PlainCalendarPlaces::hour,
                                                              &PlainCalendarPlaces::minute,
                                                              &PlainCalendarPlaces::second};
    plan->hasTime |= step.kind >= HOUR && step.kind <= FRACTION;
    if (isYear(step.kind)) return placeYear(plan, step, at);
    if (step.kind == MONTH_NAME) {
        plan->monthName = static_cast<int8_t>(at);
    } else if (step.kind == FRACTION) {
        placeFraction(plan, at, step.width);
    } else if (step.kind == ZONE) {
        placeZone(plan, step, at);
    } else if (step.kind != LITERAL) {
        plan->places.*PAIRS[step.kind] = placeOf(plan, at);
    }
}

// Nothing is there yet.
PlainCalendar blankPlan(const PlainCalendarSetting& setting) {
    PlainCalendar plan{};
    plan.places = {
        DEFAULT_CENTURY, DEFAULT_YEAR, DEFAULT_MONTH_OR_DAY, DEFAULT_MONTH_OR_DAY,
        DEFAULT_ZERO,    DEFAULT_ZERO, DEFAULT_ZERO,         {DEFAULT_ZERO, DEFAULT_ZERO, DEFAULT_ZERO},
        DEFAULT_ZERO,    DEFAULT_ZERO};
    plan.monthName = -1;
    plan.zoneSign = -1;
    plan.centuryStart = setting.centuryStart;
    plan.zone = PackedCalendar_zone(setting.zoneOffset, setting.namesZone);
    return plan;
}

}  // namespace

PlainCalendar PlainCalendar_compile(std::u16string_view pattern, const PlainCalendarSetting& setting) {
    Steps steps{};
    PlainCalendar plan = blankPlan(setting);
    if (!split(&steps, pattern) || !blanksStandBetweenFields(steps) || !canBeRead(steps, setting))
        return plan;
    plan.width = steps.width;
    Shape shape{};
    int32_t at = 0;
    for (const Step* step = steps.list; step < steps.list + steps.count; at += step++->width)
        expectStep(&shape, *step, at);
    setWords(&plan, shape);
    at = 0;
    for (const Step* step = steps.list; step < steps.list + steps.count; at += step++->width)
        placeStep(&plan, *step, at);
    return plan;
}
