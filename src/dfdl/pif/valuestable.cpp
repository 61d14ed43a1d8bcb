#include "dfdl/pif/valuestable.h"

#include <unicode/ucal.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "dfdl/converters/calendarconverter.h"
#include "dfdl/converters/dfdlcalendar.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlstring.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/pif/spif.h"

namespace {

using Row = ValuesTableRow;

void deleteRow(Row* row) {
    delete_DFDLValue(row->value);
    delete_DFDLDecimal(row->decimalValue);
    DFDLHeapAdapter_arrayDeallocate(row->heap, row->hexBytes);
    delete_DFDLUString(row->iValue);
}

uint8_t nibbleOf(UChar unit) {
    if (unit >= u'0' && unit <= u'9') return static_cast<uint8_t>(unit - u'0');
    const UChar lower = unit | 0x20;
    return lower >= u'a' && lower <= u'f' ? static_cast<uint8_t>(lower - u'a' + 10) : 0;
}

void readHexBytes(Row* row) {
    const std::u16string_view digits = DFDLUString_view(row->iValue);
    row->hexBytes = DFDLHeapAdapter_newArray<uint8_t>(row->heap, digits.size() / 2 + 1);
    row->hexLength = static_cast<int32_t>(digits.size() / 2);
    for (size_t index = 0; index < digits.size() / 2; ++index) {
        row->hexBytes[index] =
            static_cast<uint8_t>(nibbleOf(digits[2 * index]) << 4 | nibbleOf(digits[2 * index + 1]));
    }
}

void dropPlus(DFDLUString* text) {
    if (text->length == 0 || text->chars[0] != u'+') return;
    std::copy(text->chars + 1, text->chars + text->length + 1, text->chars);
    --text->length;
}

// The text of a number in bytes, without the white space around it. What is longer than the array is a number
// with so many digits that the rest of them does not count.
struct Digits {
    char text[512];
    size_t length;

    explicit Digits(const DFDLUString* source) : text(), length(0) {
        for (const UChar unit : DFDLUString_view(source)) {
            const bool blank = unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r';
            if (blank && length == 0) continue;
            if (blank || unit > 0x7E || length == sizeof text - 1) break;
            text[length++] = static_cast<char>(unit);
        }
    }
    std::string_view view() const { return {text, length}; }
};

// Names of the numbers that are none; `longNames` knows those of doubles too.
bool specialReal(std::string_view text, bool longNames, double* result) {
    constexpr double INFINITE = std::numeric_limits<double>::infinity();
    if (text == "NaN") {
        *result = std::numeric_limits<double>::quiet_NaN();
    } else if (text == "INF" || (longNames && text == "Infinity")) {
        *result = INFINITE;
    } else if (text == "-INF" || (longNames && text == "-Infinity")) {
        *result = -INFINITE;
    } else {
        return false;
    }
    return true;
}

// Numbers beyond the type are infinite or zero, as rounding makes them.
template <class Real>
bool readReal(const Row* row, double* result) {
    const Digits digits(row->iValue);
    if (specialReal(digits.view(), sizeof(Real) == sizeof(double), result)) return true;
    const char* begin = digits.text + (digits.length > 0 && digits.text[0] == '+' ? 1 : 0);
    const char* end = digits.text + digits.length;
    if (std::find_if(begin, end, [](char c) { return c >= '0' && c <= '9'; }) == end) return false;
    Real real = 0;
    const auto read = std::from_chars(begin, end, real);
    if (read.ec == std::errc::invalid_argument || read.ptr != end) return false;
    if (read.ec == std::errc::result_out_of_range) real = static_cast<Real>(strtod(begin, nullptr));
    *result = static_cast<double>(real);
    return true;
}

DFDLValue* realValue(const Row* row) {
    double real = 0;
    const bool isReal =
        row->iSimpleType == SIMPLE_FLOAT ? readReal<float>(row, &real) : readReal<double>(row, &real);
    return isReal ? DoubleDV_createDFDLValue(row->heap, real) : nullptr;
}

DFDLValue* booleanValue(const Row* row) {
    const std::string_view names[] = {"1", "true", "TRUE", "false", "FALSE"};
    const Digits digits(row->iValue);
    const auto known = std::find(std::begin(names), std::end(names), digits.view()) - std::begin(names);
    const bool value = known < 3 || (known > 4 && strtoll(digits.text, nullptr, 10) != 0);
    return BooleanDV_createDFDLValue(row->heap, value ? 1 : 0);
}

// Beyond 64 bits the nearest number that has them.
DFDLValue* signedValue(const Row* row) {
    const Digits digits(row->iValue);
    char* end = nullptr;
    const int64_t number = strtoll(digits.text, &end, 10);
    if (end == digits.text) return nullptr;
    const auto kind = static_cast<DFDLType>(DFDLType_getTypeFromDFDLSimpleType(row->iSimpleType));
    return SignedDV_createDFDLValue(row->heap, kind, number);
}

DFDLValue* unsignedValue(const Row* row) {
    const Digits digits(row->iValue);
    char* end = nullptr;
    const uint64_t number = strtoull(digits.text, &end, 0);
    if (end == digits.text) return nullptr;
    const auto kind = static_cast<DFDLType>(DFDLType_getTypeFromDFDLSimpleType(row->iSimpleType));
    return UnsignedDV_createDFDLValue(row->heap, kind, number);
}

DFDLValue* calendarValue(const Row* row) {
    DFDLConstants* constants = row->pif->constants;
    const bool isDate = row->iSimpleType == SIMPLE_DATE;
    const bool isTime = row->iSimpleType == SIMPLE_TIME;
    const Owned<UCalendar, ucal_close> calendar(
        isDate   ? CalendarConverter_createCalendarFromSchemaLexicalDate(row->iValue, constants)
        : isTime ? CalendarConverter_createCalendarFromSchemaLexicalTime(row->iValue, constants)
                 : CalendarConverter_createCalendarFromSchemaLexicalDateTime(row->iValue, constants));
    if (calendar == nullptr) return nullptr;
    DFDLCalendarImpl* record = new_DFDLCalendarImplFromUCalendar(row->heap, calendar.get());
    if (record == nullptr) return nullptr;
    const auto create = isDate   ? DateDV_createDFDLValue
                        : isTime ? TimeDV_createDFDLValue
                                 : DateTimeDV_createDFDLValue;
    return create(row->heap, record, true, CalendarConverter_hasTimezone(row->iValue));
}

// Engines in several threads read the number, whose conversions are kept when they are first asked for.
DFDLDecimal* newDecimal(const Row* row) {
    DFDLString* text = new_DFDLStringFromDFDLUString(row->heap, row->pif->utf8Converter, row->iValue);
    DFDLDecimal* decimal = new_DFDLDecimalFromChar(row->heap, row->pif->constants, text->chars, text->length);
    delete_DFDLString(text);
    if (decimal == nullptr) return nullptr;
    DFDLDecimal_getSignedQValue(decimal);
    DFDLDecimal_getUnsignedQValue(decimal);
    DFDLDecimal_getDouble(decimal, row->heap);
    return decimal;
}

DFDLValue* decimalValue(const Row* row) {
    DFDLDecimal* decimal = newDecimal(row);
    return decimal == nullptr ? nullptr : DecimalDV_createDFDLValue(row->heap, decimal);
}

DFDLValue* stringValue(const Row* row) {
    return StringDV_createDFDLValue(
        row->heap, new_DFDLUStringUseUChars(row->heap, row->iValue->chars, row->iValue->length));
}

DFDLValue* valueOf(const Row* row) {
    switch (row->iSimpleType) {
        case SIMPLE_STRING:
            return stringValue(row);
        case SIMPLE_BOOLEAN:
            return booleanValue(row);
        case SIMPLE_HEXBINARY:
            return HexBinaryDV_createDFDLValue(row->heap, row->hexBytes, row->hexLength, false);
        case SIMPLE_DATE:
        case SIMPLE_TIME:
        case SIMPLE_DATETIME:
            return calendarValue(row);
        case SIMPLE_FLOAT:
        case SIMPLE_DOUBLE:
            return realValue(row);
        case SIMPLE_DECIMAL:
            return decimalValue(row);
        case SIMPLE_INTEGER:
        case SIMPLE_LONG:
        case SIMPLE_INT:
        case SIMPLE_SHORT:
        case SIMPLE_BYTE:
            return signedValue(row);
        case SIMPLE_UNKNOWN:
            return nullptr;
        default:
            return unsignedValue(row);
    }
}

}  // namespace

ValuesTable* new_ValuesTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<ValuesTable, deleteRow>(heap, pif);
}

void delete_ValuesTable(ValuesTable* this_) { Table_delete(this_); }

void ValuesTable_loadRow(ValuesTable* this_, const ValuesTableRow& row) {
    ValuesTableRow* added = Table_loadRow(this_, row);
    const DFDLSimpleTypeEnum kind = added->iSimpleType;
    if (kind == SIMPLE_HEXBINARY) readHexBytes(added);
    if (kind >= SIMPLE_LONG && kind <= SIMPLE_UNSIGNED_BYTE) dropPlus(added->iValue);
}

void ValuesTable_finalizeTable(ValuesTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        ValuesTableRow_buildDFDLValue(Table_at(this_, index));
    }
}

void ValuesTableRow_buildDFDLValue(ValuesTableRow* this_) {
    if (this_->iSimpleType >= SIMPLE_DECIMAL && this_->iSimpleType <= SIMPLE_NON_NEGATIVE_INTEGER) {
        this_->decimalValue = newDecimal(this_);
    }
    this_->value = valueOf(this_);
}

DFDLValue* ValuesTable_getDFDLValue(const ValuesTable* this_, int32_t rowIndex) {
    const ValuesTableRow* row = Table_row(this_, rowIndex);
    return row == nullptr ? nullptr : row->value;
}

DFDLDecimal* ValuesTable_getDecimalValue(const ValuesTable* this_, int32_t rowIndex) {
    const ValuesTableRow* row = Table_row(this_, rowIndex);
    return row == nullptr ? nullptr : row->decimalValue;
}

DFDLUString* ValuesTableRow_getHexBinaryLexicalValue(const ValuesTableRow* this_) {
    return this_ == nullptr || this_->iSimpleType != SIMPLE_HEXBINARY ? nullptr : this_->iValue;
}
