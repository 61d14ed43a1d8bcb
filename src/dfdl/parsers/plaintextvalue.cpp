#include "dfdl/parsers/plaintextvalue.h"

#include <bit>
#include <cmath>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/converters/calendarconverter.h"
#include "dfdl/converters/textcalendarformatmgr.h"
#include "dfdl/converters/textnumberformatmgr.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdltype.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/calendarreptable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/textstringtable.h"
#include "dfdl/processor/plainelement.h"

namespace {

// A number in digits. One that is justified to its first digit may lose a zero that is no padding.
bool isPlainNumber(const GroupMemberTableRow& row) {
    const bool isNumber =
        row.simpleTypeKind >= SIMPLE_FLOAT && row.simpleTypeKind <= SIMPLE_NON_NEGATIVE_INTEGER;
    const TextNumberTableRow* number = GroupMemberTableRow_getTextNumberRow(&row);
    const TextStringTableRow* text = row.textStringRow;
    const bool losesZeros =
        text != nullptr && text->iTextJustification != RIGHT && DFDLUString_view(text->padString) == u"0";
    return isNumber && number != nullptr && number->iTextNumberRepresentation == TEXT &&
           number->iNumberBase == NUMBER_BASE_10 && DFDLUString_length(number->iNumberZeroRep) == 0 &&
           !losesZeros;
}

bool isPlainCalendar(const GroupMemberTableRow& row) {
    const int32_t type = row.simpleTypeKind;
    if (row.iPhysicalType != TEXT_CALENDAR || type < SIMPLE_DATE || type > SIMPLE_DATETIME) return false;
    const CalendarRepTableRow* rep = GroupMemberTableRow_getCalendarRepRow(&row);
    return rep != nullptr && rep->calendarFormatRow != nullptr && rep->calendarFormatRowIndex >= 0;
}

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

bool toNumber(PlainDigits digits, const GroupMemberTableRow* row, PlainValue* value) {
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

// Formats are made as for the general road, but what is wrong with one is for that road to say.
void forgetError(ParserRegionHandler* handler) {
    ProcessingError* error = handler->context->currentError;
    if (ProcessingError_isSet(error)) ProcessingError_reset(error);
}

const NumberFormatCacheEntry* makeNumberFormat(ParserRegionHandler* handler, const GroupMemberTableRow* row) {
    const NumberFormatCacheEntry* entry = TextNumberFormatMgr_getCachedNumberFormat(
        handler->textNumberFormatMgr, handler->context->currentError, row, true);
    forgetError(handler);
    return entry;
}

const TextCalendarFormatEntry* makeCalendarFormat(ParserRegionHandler* handler, const PlainTextValue* plan) {
    const bool isMade = ParserRegionHandler_findCalendarFormat(handler, plan->row) != nullptr;
    forgetError(handler);
    return isMade ? TextCalendarFormatMgr_getEntry(handler->textCalendarFormatMgr, plan->formatSlot)
                  : nullptr;
}

// Null if it cannot be had.
const NumberFormatCacheEntry* numberFormat(ParserRegionHandler* handler, const PlainTextValue* plan) {
    const NumberFormatCacheEntry* entry =
        TextNumberFormatMgr_entryInSlot(handler->textNumberFormatMgr, plan->formatSlot);
    return entry != nullptr ? entry : makeNumberFormat(handler, plan->row);
}

// Years of two digits depend on the year that it is, so that no entry outlives it.
const TextCalendarFormatEntry* calendarFormat(ParserRegionHandler* handler, const PlainTextValue* plan) {
    const TextCalendarFormatMgr* manager = handler->textCalendarFormatMgr;
    const TextCalendarFormatEntry* entry = manager->currentYear == CalendarConverter_getCurrentYear(false)
                                               ? TextCalendarFormatMgr_getEntry(manager, plan->formatSlot)
                                               : nullptr;
    return entry != nullptr ? entry : makeCalendarFormat(handler, plan);
}

// The two forms of a text.
struct Units {
    std::u16string_view text;

    bool readBy(const PlainCalendar* plain, int64_t* word) const {
        return PlainCalendar_read(plain, text, word);
    }
    bool readBy(const PlainTextNumber* plain, PlainDigits* digits) const {
        return PlainTextNumber_read(plain, text, digits);
    }
};
struct Bytes {
    std::span<const uint8_t> text;
    int64_t loaded;

    bool readBy(const PlainCalendar* plain, int64_t* word) const {
        return PlainCalendar_read(plain, text, word);
    }
    bool readBy(const PlainTextNumber* plain, PlainDigits* digits) const {
        return PlainTextNumber_read(plain, text, loaded, digits);
    }
};

template <class Text>
bool read(const PlainTextValue* plan, ParserRegionHandler* handler, const Text& text, PlainValue* value) {
    if (plan->isCalendar) {
        const TextCalendarFormatEntry* format = calendarFormat(handler, plan);
        value->places = 0;
        return format != nullptr && text.readBy(&format->plain, &value->word);
    }
    const NumberFormatCacheEntry* format = numberFormat(handler, plan);
    PlainDigits digits{};
    return format != nullptr && format->virtualDecimalDigits == 0 && text.readBy(&format->plain, &digits) &&
           toNumber(digits, plan->row, value);
}

}  // namespace

PlainTextValue PlainTextValue_of(const GroupMemberTableRow& row) {
    if (isPlainNumber(row)) return {&row, TextNumberFormatMgr_slotOf(&row), false};
    if (!isPlainCalendar(row)) return {};
    return {&row, GroupMemberTableRow_getCalendarRepRow(&row)->calendarFormatRowIndex, true};
}

bool PlainTextValue_readBytes(const PlainTextValue* this_, ParserRegionHandler* handler,
                              std::span<const uint8_t> text, int64_t loaded, PlainValue* value) {
    return read(this_, handler, Bytes{text, loaded}, value);
}

bool PlainTextValue_read(const PlainTextValue* this_, ParserRegionHandler* handler, std::u16string_view text,
                         PlainValue* value) {
    return read(this_, handler, Units{text}, value);
}
