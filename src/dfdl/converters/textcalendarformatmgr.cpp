#include "dfdl/converters/textcalendarformatmgr.h"

#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"

namespace {

constexpr int32_t FIRST_CAPACITY = 10;  // of entries

bool setZone(ICUCalendarTimezonePair* pair, const DFDLUString* zone) {
    UErrorCode status = U_ZERO_ERROR;
    ucal_setTimeZone(pair->calendar, zone->chars, zone->length, &status);
    if (U_FAILURE(status)) return false;
    pair->timeZone = new_DFDLUStringFromDFDLUString(zone, pair->heap);
    return true;
}

ICUCalendarTimezonePair* pairAt(const TextCalendarFormatEntry* entry, int32_t index) {
    return ArrayList_getPointer<ICUCalendarTimezonePair>(entry->calendars, index);
}

UCalendar* addCalendar(TextCalendarFormatEntry* entry, const DFDLUString* zone) {
    if (ArrayList_isEmpty(entry->calendars)) return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    Owned<UCalendar, ucal_close> calendar(ucal_clone(pairAt(entry, 0)->calendar, &status));
    if (U_FAILURE(status)) return nullptr;
    ArrayList_ensureCapacity(entry->calendars, ArrayList_size(entry->calendars) + 1);
    Owned<ICUCalendarTimezonePair, delete_ICUCalendarTimezonePair> pair(
        new_ICUCalendarTimezonePair(entry->heap, calendar.release()));
    if (!setZone(pair.get(), zone)) return nullptr;
    ArrayList_addPointer(entry->calendars, pair.get());
    return pair.release()->calendar;
}

}  // namespace

TextCalendarFormatMgr* new_TextCalendarFormatMgr(DFDLHeapAdapter* heap) {
    Owned<TextCalendarFormatMgr, delete_TextCalendarFormatMgr> this_(
        DFDLHeapAdapter_new<TextCalendarFormatMgr>(heap));
    TextCalendarFormatMgr_ctor(this_.get(), heap);
    return this_.release();
}

void delete_TextCalendarFormatMgr(TextCalendarFormatMgr* this_) {
    if (this_ == nullptr) return;
    TextCalendarFormatMgr_dtor(this_);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void TextCalendarFormatMgr_ctor(TextCalendarFormatMgr* this_, DFDLHeapAdapter* heap) {
    this_->heap = heap;
    this_->entries = new_ArrayListOfPointers(heap, FIRST_CAPACITY);
}

void TextCalendarFormatMgr_dtor(TextCalendarFormatMgr* this_) {
    if (this_->entries != nullptr) TextCalendarFormatMgr_reset(this_);
    delete_ArrayList(this_->entries);
}

void TextCalendarFormatMgr_reset(TextCalendarFormatMgr* this_) {
    while (!ArrayList_isEmpty(this_->entries)) {
        delete_TextCalendarFormatEntry(ArrayList_popPointer<TextCalendarFormatEntry>(this_->entries));
    }
}

TextCalendarFormatEntry* new_TextCalendarFormatEntry(TextCalendarFormatMgr* manager) {
    Owned<TextCalendarFormatEntry, delete_TextCalendarFormatEntry> this_(
        DFDLHeapAdapter_new<TextCalendarFormatEntry>(manager->heap));
    this_->manager = manager;
    this_->calendars = new_ArrayListOfPointers(manager->heap, 1);
    return this_.release();
}

void delete_TextCalendarFormatEntry(TextCalendarFormatEntry* this_) {
    if (this_ == nullptr) return;
    udat_close(this_->format);
    while (this_->calendars != nullptr && !ArrayList_isEmpty(this_->calendars)) {
        delete_ICUCalendarTimezonePair(ArrayList_popPointer<ICUCalendarTimezonePair>(this_->calendars));
    }
    delete_ArrayList(this_->calendars);
    delete_DFDLUString(this_->zone);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

UCalendar* TextCalendarFormatEntry_findCalendar(TextCalendarFormatEntry* this_, const DFDLUString* zone) {
    UCalendar* claimed = nullptr;
    for (int32_t i = 0; i < ArrayList_size(this_->calendars); ++i) {
        ICUCalendarTimezonePair* pair = pairAt(this_, i);
        if (pair->timeZone == nullptr) {
            if (setZone(pair, zone)) claimed = pair->calendar;
        } else if (DFDLUString_equals(pair->timeZone, zone)) {
            return pair->calendar;
        }
    }
    return claimed != nullptr ? claimed : addCalendar(this_, zone);
}

UCalendar* TextCalendarFormatEntry_getUCalendar(TextCalendarFormatEntry* this_,
                                                const DFDLCalendarImpl* record) {
    UChar name[CALENDAR_ZONE_NAME];
    const int32_t length = DfdlCalendarImpl_zoneName(record, name);
    const Owned<DFDLUString, delete_DFDLUString> zone(
        DFDLUStringPooler_getDFDLUStringFromUChars(this_->heap, name, length));
    UCalendar* calendar = TextCalendarFormatEntry_findCalendar(this_, zone.get());
    if (calendar != nullptr) DfdlCalendarImpl_fillUCalendar(record, calendar);
    return calendar;
}

ICUCalendarTimezonePair* new_ICUCalendarTimezonePair(DFDLHeapAdapter* heap, UCalendar* calendar) {
    Owned<UCalendar, ucal_close> owner(calendar);
    auto* this_ = DFDLHeapAdapter_new<ICUCalendarTimezonePair>(heap);
    this_->calendar = owner.release();
    return this_;
}

void delete_ICUCalendarTimezonePair(ICUCalendarTimezonePair* this_) {
    if (this_ == nullptr) return;
    ucal_close(this_->calendar);
    delete_DFDLUString(this_->timeZone);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

bool CalendarPattern_isIso(std::u16string_view pattern) {
    return pattern == u"I" || pattern.starts_with(u"IU");
}
