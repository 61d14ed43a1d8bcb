// Stamps in the forms of ISO 8601. They are read by hand, since their forms are told apart by lengths and not
// by a pattern.
#include <algorithm>
#include <cmath>
#include <limits>

#include "dfdl/converters/calendarconverter.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"

namespace {

constexpr std::u16string_view GMT = DFDLConstants::GMT;
constexpr size_t OFFSET_UNITS = 6;        // "+05:30"
constexpr size_t OFFSET_HOURS_UNITS = 3;  // "+05"
constexpr int32_t MOST_ZONE_NAME = 32;    // longer than any name of an offset

bool isDigit(UChar c) { return c >= u'0' && c <= u'9'; }
bool isSign(UChar c) { return c == u'+' || c == u'-'; }
bool isBlank(UChar c) { return c == u' ' || (c >= u'\t' && c <= u'\r'); }

// What stands in the place of digits counts by its code: lax reading carries it over somehow.
int32_t digitsAt(std::u16string_view text, size_t start, size_t count) {
    int32_t value = 0;
    for (const UChar c : text.substr(start, count)) value = value * 10 + (c - u'0');
    return value;
}

// The number at the start of two units, behind white space and a sign; 0 if there is none.
int32_t numberOfTwo(std::u16string_view text) {
    size_t at = 0;
    while (at < text.size() && isBlank(text[at])) ++at;
    const bool isNegative = at < text.size() && text[at] == u'-';
    if (at < text.size() && isSign(text[at])) ++at;
    int32_t value = 0;
    for (; at < text.size() && isDigit(text[at]); ++at) value = value * 10 + (text[at] - u'0');
    return isNegative ? -value : value;
}

bool readDate(std::u16string_view text, bool strict, CalendarFields* fields) {
    if (text.size() != 4 && text.size() != 7 && text.size() != 10) return false;
    const bool isWhole = text.size() == 10;
    if (!isWhole && text.starts_with(DFDLConstants::TWO_HYPHENS)) return false;
    if (text.size() == 7 && text.find(u'-') == text.npos) return false;
    fields->year = digitsAt(text, 0, 4);
    if (text.size() == 4) return true;
    fields->month = digitsAt(text, 5, 2) - 1;
    if (isWhole) fields->day = digitsAt(text, 8, 2);
    return !strict || CalendarConverter_validateDateFields(fields->year, fields->month, fields->day);
}

enum State : int32_t { HOURS, MINUTES, SECONDS, ZONE };

// Reads the time of one stamp.
class TimeReader {
  public:
    TimeReader(std::u16string_view text, bool timeOnly, IsoStamp* stamp)
        : text_(text), timeOnly_(timeOnly), stamp_(stamp) {}

    bool read() {
        while (at_ < text_.size()) {
            if (state_ == ZONE ? !readZone() : !readField()) return false;
        }
        return true;
    }

  private:
    bool readField() {
        if (!skipColonInFront() || text_.size() - at_ < 2) return false;
        *fieldOf(state_) = numberOfTwo(text_.substr(at_, 2));
        at_ += 2;
        if (!readBehindField()) return false;
        const bool zoneFollows = at_ < text_.size() && isSign(text_[at_]);
        state_ = zoneFollows ? ZONE : static_cast<State>(state_ + 1);
        return true;
    }

    // Times alone have their colons, dates and times may have none.
    bool skipColonInFront() {
        if (!timeOnly_ || state_ == HOURS) return true;
        if (text_[at_] != u':') return false;
        ++at_;
        return true;
    }

    bool readBehindField() {
        if (at_ == text_.size()) return true;
        if (text_[at_] == u'.' || text_[at_] == u',') {
            return (!timeOnly_ || state_ == SECONDS) && readFraction();
        }
        if (text_[at_] != u':') return true;
        if (timeOnly_) return state_ != SECONDS;  // it stands in front of the next
        ++at_;
        return true;
    }

    bool readFraction() {
        const size_t start = ++at_;
        double digits = 0;
        double scale = 1;
        for (; at_ < text_.size() && isDigit(text_[at_]); ++at_) {
            digits = digits * 10 + (text_[at_] - u'0');
            scale *= 10;
        }
        if (at_ == start) return false;
        if (state_ == SECONDS) {
            setMilliseconds(digits, at_ - start);
        } else {
            // Infinite for more digits than a double can count, whose share is not worth a unit.
            const double share = std::isfinite(scale) ? digits / scale : 0;
            *fieldOf(static_cast<State>(state_ + 1)) = static_cast<int32_t>(std::floor(share * 60 + 0.5));
        }
        return true;
    }

    // More than three digits count as they stand.
    void setMilliseconds(double digits, size_t count) {
        const double factor = count == 1 ? 100 : count == 2 ? 10 : 1;
        constexpr double MOST = std::numeric_limits<int32_t>::max();
        stamp_->fields.millisecond = static_cast<int32_t>(std::min(digits * factor, MOST));
    }

    bool readZone() {
        stamp_->fields.hasZone = true;
        const std::u16string_view rest = text_.substr(at_);
        if (timeOnly_) {
            if (!isSign(rest[0])) return false;
            stamp_->zone = rest;
            at_ = text_.size();
            return true;
        }
        if (rest[0] != u'Z') {
            // The minutes of an offset are not those of the zone.
            if (rest.size() < OFFSET_UNITS) return false;
            stamp_->zone = rest.substr(0, OFFSET_HOURS_UNITS);
        }
        at_ += rest[0] == u'Z' ? 1 : OFFSET_UNITS;
        return at_ == text_.size();
    }

    int32_t* fieldOf(State state) {
        CalendarFields& fields = stamp_->fields;
        if (state == HOURS) return &fields.hour;
        return state == MINUTES ? &fields.minute : &fields.second;
    }

    std::u16string_view text_;
    bool timeOnly_;
    IsoStamp* stamp_;
    State state_ = HOURS;
    size_t at_ = 0;
};

}  // namespace

bool CalendarConverter_readISO8601String(std::u16string_view text, bool forDate, bool strict,
                                         IsoStamp* stamp) {
    const size_t mark = text.rfind(u'T');
    if (mark != text.npos && forDate) return false;
    const std::u16string_view date = text.substr(0, mark);
    if (!date.empty() && !readDate(date, strict, &stamp->fields)) return false;
    return mark == text.npos || TimeReader(text.substr(mark + 1), false, stamp).read();
}

bool CalendarConverter_readISO8601Time(std::u16string_view text, IsoStamp* stamp) {
    return TimeReader(text, true, stamp).read();
}

UCalendar* CalendarConverter_createCalendarFromISO8601String(const DFDLUString* text, bool forDate,
                                                             bool strict, bool* hasZone) {
    IsoStamp stamp;
    if (!CalendarConverter_readISO8601String(DFDLUString_view(text), forDate, strict, &stamp)) return nullptr;
    *hasZone = stamp.fields.hasZone;
    return IsoStamp_toUCalendar(&stamp);
}

UCalendar* CalendarConverter_createCalendarFromISO8601Time(const DFDLUString* text, bool* hasZone) {
    IsoStamp stamp;
    if (!CalendarConverter_readISO8601Time(DFDLUString_view(text), &stamp)) return nullptr;
    *hasZone = stamp.fields.hasZone;
    return IsoStamp_toUCalendar(&stamp);
}

int32_t IsoStamp_zoneName(const IsoStamp* this_, UChar* name) {
    std::u16string_view offset = this_->zone;
    if (GMT.size() + offset.size() > MOST_ZONE_NAME) offset = u"?";  // no offset is that long
    std::copy(GMT.begin(), GMT.end(), name);
    std::copy(offset.begin(), offset.end(), name + GMT.size());
    return static_cast<int32_t>(GMT.size() + offset.size());
}

bool IsoStamp_findOffset(IsoStamp* this_) {
    const std::u16string_view zone = this_->zone;
    if (zone.empty()) return true;
    if (zone.size() != OFFSET_UNITS && zone.size() != OFFSET_HOURS_UNITS) return false;
    if (!isSign(zone[0]) || !isDigit(zone[1]) || !isDigit(zone[2])) return false;
    int32_t minutes = digitsAt(zone, 1, 2) * 60;
    if (zone.size() == OFFSET_UNITS) {
        if (zone[3] != u':' || !isDigit(zone[4]) || !isDigit(zone[5]) || zone[4] > u'5') return false;
        minutes += digitsAt(zone, 4, 2);
    }
    this_->fields.zoneOffset = zone[0] == u'-' ? -minutes : minutes;
    return minutes <= CALENDAR_MOST_ZONE_MINUTES;
}

UCalendar* IsoStamp_toUCalendar(const IsoStamp* this_) {
    UErrorCode status = U_ZERO_ERROR;
    Owned<UCalendar, ucal_close> calendar(
        ucal_open(GMT.data(), static_cast<int32_t>(GMT.size()), nullptr, UCAL_GREGORIAN, &status));
    if (U_FAILURE(status)) return nullptr;
    UChar name[MOST_ZONE_NAME];
    const int32_t length = IsoStamp_zoneName(this_, name);
    ucal_setTimeZone(calendar.get(), name, length, &status);
    CalendarFields_fillUCalendar(&this_->fields, calendar.get(), &status);
    return U_SUCCESS(status) ? calendar.release() : nullptr;
}
