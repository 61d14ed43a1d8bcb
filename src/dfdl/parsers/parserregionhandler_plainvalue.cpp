// Numbers and calendars that are written as text, on the short roads.
#include <bit>
#include <cmath>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/converters/calendarfields.h"
#include "dfdl/converters/plaincalendar.h"
#include "dfdl/converters/textcalendarformatmgr.h"
#include "dfdl/converters/textnumberformatmgr.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdltype.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/calendarreptable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/processor/plainelement.h"

namespace {

bool toInteger(PlainDigits digits, int32_t simpleType, PlainValue* value) {
    const bool hasSign = simpleType < SIMPLE_UNSIGNED_LONG;
    *value = {digits.word, 0};
    return digits.places == 0 && (hasSign || digits.word >= 0) &&
           BinaryNumberConverter_checkIntegerRange(digits.word, simpleType);
}

bool toDecimal(PlainDigits digits, const TextNumberTableRow* row, PlainValue* value) {
    *value = {digits.word, digits.places};
    return digits.places <= MOST_PLACES && (row->iDecimalSigned || digits.word >= 0);
}

bool toFloating(PlainDigits digits, int32_t simpleType, PlainValue* value) {
    double real = 0;
    if (!PlainDigits_toDouble(digits, &real)) return false;
    const auto narrow = static_cast<float>(real);
    *value = {
        simpleType == SIMPLE_DOUBLE ? std::bit_cast<int64_t>(real) : int64_t{std::bit_cast<int32_t>(narrow)},
        0};
    return simpleType == SIMPLE_DOUBLE || std::isfinite(narrow);
}

bool readNumber(ParserRegionHandler* handler, const GroupMemberTableRow* row, std::u16string_view text,
                PlainValue* value) {
    const NumberFormatCacheEntry* entry = TextNumberFormatMgr_getCachedNumberFormat(
        handler->textNumberFormatMgr, handler->context->currentError, row, true);
    PlainDigits digits{};
    if (entry == nullptr || entry->virtualDecimalDigits != 0 ||
        !PlainTextNumber_read(&entry->plain, text.data(), static_cast<int32_t>(text.size()), &digits)) {
        return false;
    }
    switch (row->simpleTypeKind) {
        case SIMPLE_FLOAT:
        case SIMPLE_DOUBLE:
            return toFloating(digits, row->simpleTypeKind, value);
        case SIMPLE_DECIMAL:
            return toDecimal(digits, GroupMemberTableRow_getTextNumberRow(row), value);
        default:
            return toInteger(digits, row->simpleTypeKind, value);
    }
}

// A "Z" that the row wants is another thing for ICU than for the data.
bool readCalendar(ParserRegionHandler* handler, const GroupMemberTableRow* row, std::u16string_view text,
                  PlainValue* value) {
    const CalendarRepTableRow* rep = ParserRegionHandler_findCalendarFormat(handler, row);
    if (rep == nullptr || text.find(u'Z') != text.npos) return false;
    const TextCalendarFormatEntry* entry =
        TextCalendarFormatMgr_getEntry(handler->textCalendarFormatMgr, rep->calendarFormatRowIndex);
    CalendarFields fields;
    if (entry->isIso != 0 || !PlainCalendar_read(&entry->plain, text, &fields)) return false;
    if (!fields.hasZone) {
        fields.zoneOffset = entry->zoneOffset;
        fields.hasZone = entry->namesZone != 0;
    }
    value->places = 0;
    return CalendarFields_pack(&fields, &value->word);
}

}  // namespace

bool ParserRegionHandler_readPlainValue(ParserRegionHandler* this_, const GroupMemberTableRow* row,
                                        std::u16string_view text, PlainValue* value) {
    const bool read = row->iPhysicalType == TEXT_CALENDAR ? readCalendar(this_, row, text, value)
                                                          : readNumber(this_, row, text, value);
    ProcessingError* error = this_->context->currentError;
    if (ProcessingError_isSet(error)) ProcessingError_reset(error);
    return read;
}
