#include "dfdl/converters/plaincalendar.h"

namespace {

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

constexpr size_t MONTH_NAME_UNITS = 3;

// A run of one letter that is plain, with the units that it reads.
struct Run {
    char16_t letter;
    uint8_t length;
    Kind kind;
    uint8_t width;  // of a zone: the most
};
constexpr Run RUNS[] = {{u'y', 4, YEAR, 4},
                        {u'u', 4, YEAR, 4},
                        {u'y', 2, SHORT_YEAR, 2},
                        {u'M', 2, MONTH, 2},
                        {u'M', 3, MONTH_NAME, MONTH_NAME_UNITS},
                        {u'd', 2, DAY, 2},
                        {u'H', 2, HOUR, 2},
                        {u'm', 2, MINUTE, 2},
                        {u's', 2, SECOND, 2},
                        {u'S', 1, FRACTION, 1},
                        {u'S', 2, FRACTION, 2},
                        {u'S', 3, FRACTION, 3},
                        {u'X', 2, ZONE, 5},
                        {u'X', 3, ZONE, 6},
                        {u'Z', 1, ZONE, 5},
                        {u'Z', 5, ZONE, 6},
                        {u'x', 2, ZONE, 5},
                        {u'x', 3, ZONE, 6}};

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
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

bool isMonth(PlainCalendarStep step) { return step.kind == MONTH || step.kind == MONTH_NAME; }

bool add(PlainCalendar* plan, PlainCalendarStep step) {
    if (plan->count == PLAIN_CALENDAR_STEPS) return false;
    // A field that is there twice has two values.
    for (int32_t i = 0; i < plan->count && step.kind != LITERAL; ++i) {
        if (plan->steps[i].kind == step.kind) return false;
        if (plan->steps[i].kind <= SHORT_YEAR && step.kind <= SHORT_YEAR) return false;
        if (isMonth(plan->steps[i]) && isMonth(step)) return false;
    }
    plan->steps[plan->count++] = step;
    return true;
}

bool compile(PlainCalendar* plan, std::u16string_view pattern, bool namesMonths) {
    while (!pattern.empty()) {
        const char16_t c = pattern[0];
        size_t length = 1;
        if (c == u'\'') {
            length = 3;
            if (pattern.size() < length || pattern[2] != u'\'' || !isPlainLiteral(pattern[1])) return false;
            if (!add(plan, {LITERAL, 1, pattern[1]})) return false;
        } else if (isLetter(c)) {
            while (length < pattern.size() && pattern[length] == c) ++length;
            const Run* run = findRun(c, length);
            if (run == nullptr || (run->kind == MONTH_NAME && !namesMonths) ||
                !add(plan, {run->kind, run->width, c}))
                return false;
        } else if (!isPlainLiteral(c) || !add(plan, {LITERAL, 1, c})) {
            return false;
        }
        pattern.remove_prefix(length);
    }
    return true;
}

// ICU skips blanks where a field begins, and nowhere else takes them for themselves.
bool blanksStandBetweenFields(const PlainCalendar* plan) {
    for (int32_t i = 0; i < plan->count; ++i) {
        const PlainCalendarStep& step = plan->steps[i];
        if (step.kind != LITERAL || step.literal != u' ') continue;
        if (i == 0 || i + 1 == plan->count) return false;
        if (plan->steps[i - 1].kind == LITERAL || plan->steps[i + 1].kind == LITERAL) return false;
    }
    return true;
}

bool readDigits(std::u16string_view text, int32_t* value) {
    *value = 0;
    for (const char16_t c : text) {
        if (!isDigit(c)) return false;
        *value = *value * 10 + (c - u'0');
    }
    return true;
}

bool readMonthName(std::u16string_view text, CalendarFields* fields) {
    for (int32_t month = 0; month < 12; ++month) {
        if (PLAIN_CALENDAR_MONTHS.substr(static_cast<size_t>(month) * MONTH_NAME_UNITS, MONTH_NAME_UNITS) ==
            text) {
            fields->month = month;
            return true;
        }
    }
    return false;
}

// "+05:30" or "+0530".
bool readZone(std::u16string_view text, CalendarFields* fields) {
    int32_t hours = 0;
    int32_t minutes = 0;
    const size_t colon = text.size() == 6 ? 1 : 0;
    if (text[0] != u'+' && text[0] != u'-') return false;
    if (colon != 0 && text[3] != u':') return false;
    if (!readDigits(text.substr(1, 2), &hours) || !readDigits(text.substr(3 + colon), &minutes)) return false;
    if (minutes > 59) return false;
    const int32_t offset = hours * 60 + minutes;
    fields->zoneOffset = text[0] == u'-' ? -offset : offset;
    fields->hasZone = true;
    return true;
}

// The first year of the century itself is in either of two, by what follows.
bool setShortYear(const PlainCalendar* plan, int32_t value, CalendarFields* fields) {
    const int32_t first = plan->centuryStart;
    if (first < 0 || value == first % 100) return false;
    fields->year = first - first % 100 + value + (value < first % 100 ? 100 : 0);
    return true;
}

bool setField(const PlainCalendar* plan, const PlainCalendarStep& step, int32_t value,
              CalendarFields* fields) {
    static constexpr int32_t SCALES[] = {0, 100, 10, 1};  // by digits of the fraction
    switch (step.kind) {
        case YEAR:
            fields->year = value;
            return true;
        case SHORT_YEAR:
            return setShortYear(plan, value, fields);
        case MONTH:
            fields->month = value - 1;
            return true;
        case DAY:
            fields->day = value;
            return true;
        case HOUR:
            fields->hour = value;
            return true;
        case MINUTE:
            fields->minute = value;
            return true;
        case SECOND:
            fields->second = value;
            return true;
        default:
            fields->millisecond = value * SCALES[step.width];
            return true;
    }
}

bool readStep(const PlainCalendar* plan, const PlainCalendarStep& step, std::u16string_view text,
              CalendarFields* fields) {
    if (step.kind == LITERAL) return text[0] == step.literal;
    if (step.kind == ZONE) return readZone(text, fields);
    if (step.kind == MONTH_NAME) return readMonthName(text, fields);
    int32_t value = 0;
    return readDigits(text, &value) && setField(plan, step, value, fields);
}

}  // namespace

void PlainCalendar_compile(PlainCalendar* this_, std::u16string_view pattern, int32_t centuryStart,
                           bool namesMonths) {
    *this_ = {};
    this_->centuryStart = centuryStart;
    if (!compile(this_, pattern, namesMonths) || !blanksStandBetweenFields(this_)) this_->count = 0;
}

bool PlainCalendar_read(const PlainCalendar* this_, std::u16string_view text, CalendarFields* fields) {
    if (this_->count == 0) return false;
    *fields = {};
    for (int32_t i = 0; i < this_->count; ++i) {
        const PlainCalendarStep& step = this_->steps[i];
        if (text.size() < step.width || !readStep(this_, step, text.substr(0, step.width), fields))
            return false;
        text.remove_prefix(step.width);
    }
    return text.empty() && CalendarFields_arePlain(fields);
}
