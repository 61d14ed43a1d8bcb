#include "dfdl/converters/dfdlcalendar.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/recycledrecord.h"

namespace {

constexpr int32_t MICROSECONDS = 1000;  // in a millisecond
constexpr int32_t MILLISECONDS_OF_MINUTE = 60000;

// Reads fields of a calendar until ICU refuses one.
struct FieldReader {
    UCalendar* source;
    UErrorCode status = U_ZERO_ERROR;

    int32_t operator()(UCalendarDateFields field) { return ucal_get(source, field, &status); }

    template <class... Fields>
    bool has(Fields... fields) {
        return (... && ucal_isSet(source, fields));
    }
};

// ICU fills in the fields that follow from others as soon as one is read. So a group is asked for in this
// order, date first: with a date at hand the hour in the half of the day counts as set.
bool copyFields(DFDLCalendarImpl* target, FieldReader read) {
    if (read.has(UCAL_YEAR, UCAL_MONTH, UCAL_DATE)) {
        const int32_t year = read(UCAL_YEAR);
        target->year = read(UCAL_ERA) == 0 ? -year : year;
        target->month = read(UCAL_MONTH);
        target->day = read(UCAL_DATE);
        target->hasDate = 1;
    }
    if (read.has(UCAL_HOUR, UCAL_MINUTE, UCAL_SECOND)) {
        DfdlCalendarImpl_setTime(target, read(UCAL_HOUR_OF_DAY), read(UCAL_MINUTE), read(UCAL_SECOND));
    }
    if (read.has(UCAL_MILLISECOND)) {
        target->microSecond = read(UCAL_MILLISECOND) * MICROSECONDS;
        target->hasMicroSec = 1;
    }
    if (read.has(UCAL_ZONE_OFFSET)) {
        target->timeZoneOffset = read(UCAL_ZONE_OFFSET) / MILLISECONDS_OF_MINUTE;
        target->hasTimeZone = 1;
    }
    return U_SUCCESS(read.status);
}

}  // namespace

DFDLCalendarImpl* new_DFDLCalendarImpl(DFDLHeapAdapter* heap) {
    return RecycledRecord_take<DFDLCalendarImpl>(heap, POOL_CALENDAR_RECORD);
}

DFDLCalendarImpl* new_DFDLCalendarImplFromUCalendar(DFDLHeapAdapter* heap, UCalendar* source) {
    Owned<DFDLCalendarImpl, delete_DFDLCalendarImplFromUCalendar> this_(new_DFDLCalendarImpl(heap));
    return copyFields(this_.get(), {source}) ? this_.release() : nullptr;
}

DFDLCalendarImpl* DfdlCalendarImpl_clone(DFDLHeapAdapter* heap, const DFDLCalendarImpl* source) {
    Owned<DFDLHeapAdapter, delete_DFDLHeapAdapter> own(heap == nullptr ? new_DFDLHeapAdapterFromHeap(nullptr)
                                                                       : nullptr);
    DFDLCalendarImpl* copy = new_DFDLCalendarImpl(heap == nullptr ? own.get() : heap);
    if (source->hasDate != 0) DfdlCalendarImpl_setDate(copy, source->year, source->month, source->day);
    if (source->hasTime != 0) DfdlCalendarImpl_setTime(copy, source->hour, source->minute, source->second);
    if (source->hasMicroSec != 0) copy->microSecond = source->microSecond;
    if (source->hasTimeZone != 0) copy->timeZoneOffset = source->timeZoneOffset;
    copy->hasMicroSec = source->hasMicroSec;
    copy->hasTimeZone = source->hasTimeZone;
    static_cast<void>(own.release());
    return copy;
}

void delete_DFDLCalendarImplFromUCalendar(DFDLCalendarImpl* this_) {
    if (this_ != nullptr) RecycledRecord_giveBack(this_, POOL_CALENDAR_RECORD);
}

void delete_DFDLCalendarImpl(DFDLCalendarImpl* this_) {
    if (this_ == nullptr) return;
    DFDLHeapAdapter* heap = this_->heap;
    delete_DFDLCalendarImplFromUCalendar(this_);
    delete_DFDLHeapAdapter(heap);
}

int32_t DfdlCalendarImpl_zoneName(const DFDLCalendarImpl* this_, UChar* name) {
    char text[CALENDAR_ZONE_NAME] = "Etc/Unknown";
    int length = 11;
    if (this_->hasTimeZone != 0) {
        const int64_t offset = std::abs(static_cast<int64_t>(this_->timeZoneOffset));
        length = std::snprintf(text, sizeof text, "GMT%c%02d:%02d", this_->timeZoneOffset < 0 ? '-' : '+',
                               static_cast<int>(offset / 60), static_cast<int>(offset % 60));
    }
    std::copy_n(text, length + 1, name);
    return length;
}

void DfdlCalendarImpl_fillUCalendar(const DFDLCalendarImpl* this_, UCalendar* target) {
    UErrorCode status = U_ZERO_ERROR;
    ucal_clear(target);
    if (this_->hasDate != 0) {
        const int32_t year = this_->year < 0 ? this_->year + 1 : this_->year;
        ucal_setDate(target, year, this_->month, this_->day, &status);
    }
    if (this_->hasTime != 0) {
        ucal_set(target, UCAL_HOUR_OF_DAY, this_->hour);
        ucal_set(target, UCAL_MINUTE, this_->minute);
        ucal_set(target, UCAL_SECOND, this_->second);
    }
    if (this_->hasMicroSec != 0) ucal_set(target, UCAL_MILLISECOND, this_->microSecond / MICROSECONDS);
}

UCalendar* DfdlCalendarImpl_getUCalendar(const DFDLCalendarImpl* this_, UErrorCode* status) {
    UChar zone[CALENDAR_ZONE_NAME];
    const int32_t length = DfdlCalendarImpl_zoneName(this_, zone);
    Owned<UCalendar, ucal_close> calendar(ucal_open(nullptr, 0, nullptr, UCAL_GREGORIAN, status));
    if (U_FAILURE(*status)) return nullptr;
    ucal_setTimeZone(calendar.get(), zone, length, status);
    if (U_FAILURE(*status)) return nullptr;
    DfdlCalendarImpl_fillUCalendar(this_, calendar.get());
    return calendar.release();
}
