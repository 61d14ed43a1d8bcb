// From the text of a number to the number.
#include <unicode/uchar.h>

#include <algorithm>
#include <charconv>

#include "dfdl/converters/textconverter.h"
#include "dfdl/converters/textnumberformatmgr.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlicu.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/textnumbertable.h"
#include "dfdl/pif/textstringtable.h"

namespace {

using View = std::u16string_view;

// How far ICU came with a text.
struct Outcome {
    int32_t position;
    UErrorCode status;
};

bool isWhole(const Outcome& outcome, View text) {
    return U_SUCCESS(outcome.status) && outcome.position == static_cast<int32_t>(text.size());
}

bool refuseAt(ParserRegionHandler* handler, const GroupMemberTableRow* row, const DFDLUString* text,
              int32_t position) {
    TextConverter_raiseParseIncomplete(handler->context->currentError, row, text, position);
    return false;
}

// The text without one zero that may be padding; empty if there is none to leave out.
View withoutPadding(const GroupMemberTableRow* row, View text) {
    const TextStringTableRow* pad = row->textStringRow;
    if (pad == nullptr || text.size() < 2 || DFDLUString_view(pad->padString) != u"0") return {};
    View rest = text;
    if (pad->iTextJustification != LEFT && rest.front() == u'0') rest.remove_prefix(1);
    if (pad->iTextJustification != RIGHT && rest.size() > 1 && rest.back() == u'0') rest.remove_suffix(1);
    return rest.size() < text.size() ? rest : View();
}

// Reads the text, at first without a zero of padding, which must not upset the pattern. `parse` reads one
// text and tells whether the number is of a kind that counts; what it took is left in `parsed`.
template <class Parse>
bool readEitherWay(ParserRegionHandler* handler, const DFDLUString* text, const GroupMemberTableRow* row,
                   View* parsed, const Parse& parse) {
    const View whole = DFDLUString_view(text);
    Outcome outcome{0, U_ZERO_ERROR};
    *parsed = withoutPadding(row, whole);
    if (!parsed->empty() && parse(*parsed, &outcome) && isWhole(outcome, *parsed)) return true;
    outcome = {0, U_ZERO_ERROR};
    *parsed = whole;
    const bool counts = parse(whole, &outcome);
    if (!isWhole(outcome, whole)) return refuseAt(handler, row, text, outcome.position);
    return counts;
}

int32_t sizeOf(View text) { return static_cast<int32_t>(text.size()); }

void setDigits(DFDLDecimal* decimal, PlainDigits digits) {
    DFDLDecimal_setSignedQValue(decimal, digits.word);
    if (digits.places != 0) DFDLDecimal_setDecimalAt(decimal, digits.places);
}

// Null, or the number by the road past ICU.
bool readPlain(const NumberFormatCacheEntry* entry, View text, Outcome* outcome, PlainDigits* digits) {
    if (!PlainTextNumber_read(&entry->plain, text, digits)) return false;
    *outcome = {sizeOf(text), U_ZERO_ERROR};
    return true;
}

bool parseInteger(const NumberFormatCacheEntry* entry, View text, Outcome* outcome, ParsedNumber* number) {
    PlainDigits digits{};
    number->form = PARSED_WORD;
    if (readPlain(entry, text, outcome, &digits) && digits.places == 0) {
        number->word = digits.word;
        return true;
    }
    *outcome = {0, U_ZERO_ERROR};
    int32_t type = -1;
    DFDLDecimal_clear(number->decimal);
    number->word = dfdl_parseInt64(entry->format, text.data(), sizeOf(text), &outcome->position,
                                   number->decimal, &outcome->status, &type);
    if (type == icu::Formattable::kDouble) number->form = PARSED_DECIMAL;
    return type == icu::Formattable::kDouble || type == icu::Formattable::kLong ||
           type == icu::Formattable::kInt64;
}

bool parseDouble(const NumberFormatCacheEntry* entry, View text, Outcome* outcome, double* value) {
    PlainDigits digits{};
    if (readPlain(entry, text, outcome, &digits) && PlainDigits_toDouble(digits, value)) return true;
    *outcome = {0, U_ZERO_ERROR};
    *value = unum_parseDouble(entry->format, text.data(), sizeOf(text), &outcome->position, &outcome->status);
    return true;
}

// ICU writes the zeros at the end of a large number as an exponent: "1.2E+6". Here they become digits again,
// if there is room for them. Returns the length.
int32_t writeOutZeros(char* number, int32_t length, int32_t capacity) {
    char* const end = number + length;
    char* const exponent = std::find(number, end, 'E');
    if (end - exponent < 3 || exponent[1] != '+') return length;
    char* const point = std::find(number, exponent, '.');
    char* const fraction = std::min(point + 1, exponent);
    int32_t zeros = 0;  // stays so where the exponent is beyond its type
    std::from_chars(exponent + 2, end, zeros);
    zeros -= static_cast<int32_t>(exponent - fraction);
    const auto digits = static_cast<int32_t>((point - number) + (exponent - fraction));
    if (zeros <= 0 || zeros > capacity - digits) return length;
    std::copy(fraction, exponent, point);
    std::fill_n(number + digits, zeros, '0');
    return digits + zeros;
}

// What ICU writes is longer than the text by an exponent at most, or is a word for what is no number.
bool parseDecimal(const NumberFormatCacheEntry* entry, View text, Outcome* outcome, DFDLDecimal* decimal) {
    constexpr int32_t MARGIN = 40;
    PlainDigits digits{};
    if (readPlain(entry, text, outcome, &digits)) {
        setDigits(decimal, digits);
        return true;
    }
    *outcome = {0, U_ZERO_ERROR};
    DFDLBufferFactory* factory = decimal->heap->bufferFactory;
    const int32_t capacity = sizeOf(text) + MARGIN;
    auto* number = reinterpret_cast<char*>(DFDLBufferFactory_GetBuffer(factory, int64_t{capacity} + 1));
    const ScopeExit end([&] { DFDLBufferFactory_FreeBuffer(factory, reinterpret_cast<uint8_t*>(number)); });
    int32_t length = dfdl_parseDecimal(entry->format, text.data(), sizeOf(text), &outcome->position, number,
                                       capacity, &outcome->status);
    length = writeOutZeros(number, length, capacity);
    number[length] = '\0';
    return length > 0 && DFDLDecimal_setString(decimal, number, length);
}

}  // namespace

bool ParserRegionHandler_createNumberFromText(ParserRegionHandler* this_, const DFDLUString* text,
                                              const NumberFormatCacheEntry* entry, NumberBaseEnum base,
                                              ParsedNumber* number, const GroupMemberTableRow* row) {
    if (base != NUMBER_BASE_10)
        return ParserRegionHandler_parseLong(this_, text, TextNumberTableRow_radix(base), number, row);
    View parsed;
    const bool read = readEitherWay(this_, text, row, &parsed, [entry, number](View part, Outcome* outcome) {
        return parseInteger(entry, part, outcome, number);
    });
    if (read || ProcessingError_isSet(this_->context->currentError)) return read;
    ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__,
                              DFDLParser_invalidIntegerValue, ERROR_PROCESSING, SUBKIND_NONE, "%lld%Z",
                              static_cast<long long>(number->word), GroupMemberTableRow_getElementName(row));
    return false;
}

bool ParserRegionHandler_createDoubleFromText(ParserRegionHandler* this_, const DFDLUString* text,
                                              const NumberFormatCacheEntry* entry, NumberBaseEnum base,
                                              double* value, const GroupMemberTableRow* row,
                                              std::u16string_view* parsed) {
    *value = 0;
    *parsed = {};
    if (base != NUMBER_BASE_10) return true;
    return readEitherWay(this_, text, row, parsed, [entry, value](View part, Outcome* outcome) {
        return parseDouble(entry, part, outcome, value);
    });
}

bool ParserRegionHandler_createDecimalFromText(ParserRegionHandler* this_, const DFDLUString* text,
                                               const NumberFormatCacheEntry* entry, NumberBaseEnum base,
                                               DFDLDecimal* decimal, const GroupMemberTableRow* row) {
    if (base != NUMBER_BASE_10) return true;
    View parsed;
    return readEitherWay(this_, text, row, &parsed, [entry, decimal](View part, Outcome* outcome) {
        return parseDecimal(entry, part, outcome, decimal);
    });
}

bool ParserRegionHandler_parseLong(ParserRegionHandler* this_, const DFDLUString* text, int32_t radix,
                                   ParsedNumber* number, const GroupMemberTableRow* row) {
    constexpr uint64_t LEAST = uint64_t{1} << 63;  // without its sign
    const View units = DFDLUString_view(text);
    const bool isNegative = !units.empty() && units[0] == u'-';
    uint64_t size = 0;
    bool overflows = false;
    for (size_t at = isNegative ? 1 : 0; at < units.size(); ++at) {
        const int32_t digit = u_digit(units[at], static_cast<int8_t>(radix));
        if (digit < 0) return refuseAt(this_, row, text, static_cast<int32_t>(at));
        overflows = __builtin_mul_overflow(size, static_cast<uint64_t>(radix), &size) || overflows;
        overflows = __builtin_add_overflow(size, static_cast<uint64_t>(digit), &size) || overflows;
    }
    if (overflows || (isNegative && size > LEAST)) {
        ParserRegionHandler_raiseOutOfRange(this_, row, text);
        return false;
    }
    number->form = PARSED_WORD;
    number->word = static_cast<int64_t>(isNegative ? 0 - size : size);
    if (!isNegative && size >= LEAST) {
        number->form = PARSED_DECIMAL;
        DFDLDecimal_setUnsignedQValue(number->decimal, size);
    }
    return true;
}
