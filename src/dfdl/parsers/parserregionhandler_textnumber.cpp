// Numbers that are written as text.
#include <cmath>

#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/converters/simpletypeconverter.h"
#include "dfdl/converters/textconverter.h"
#include "dfdl/converters/textnumberformatmgr.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlicu.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/stringliteralcache.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/textencodingtable.h"
#include "dfdl/pif/textstringtable.h"

namespace {

using Text = Owned<DFDLUString, delete_DFDLUString>;

// A conversion under way.
struct Conversion {
    ParserRegionHandler* handler;
    const GroupMemberTableRow* row;
    const TextNumberTableRow* numberRow;
    const NumberFormatCacheEntry* entry;
    ParsedNumber number;
};

ProcessingError* errorOf(const Conversion& conversion) { return conversion.handler->context->currentError; }

bool ignoresCase(const GroupMemberTableRow* row) {
    return row->textStringRow != nullptr && row->textStringRow->iIgnoreCase;
}

template <class... Inserts>
bool refuse(const Conversion& conversion, const char* key, const char* format, Inserts... inserts) {
    ProcessingError_setValues(errorOf(conversion), __FILE__, __LINE__, key, ERROR_PROCESSING, SUBKIND_NONE,
                              format, inserts...);
    return false;
}

bool refuseConversion(const Conversion& conversion, const DFDLUString* text, const char* cause) {
    return refuse(conversion, DFDLParser_invalidNumberConversion, "%Z%Z%s", text,
                  GroupMemberTableRow_getElementName(conversion.row), cause);
}

bool refuseRange(const Conversion& conversion, const DFDLUString* text) {
    ParserRegionHandler_raiseOutOfRange(conversion.handler, conversion.row, text);
    return false;
}

// ---- The point that is not written ---------------------------------------------------------------------

constexpr double power(int32_t exponent) {
    double result = 1;
    for (int32_t i = 0; i < exponent; ++i) result *= 10;
    return result;
}

constexpr int32_t EXACT_POWER = 18;  // of ten, in a word

// Digits before the point are written out as far as a word has them.
void shiftDecimal(DFDLDecimal* decimal, int32_t digits) {
    if (digits < 0 && digits >= -EXACT_POWER) {
        const Owned<DFDLDecimal, delete_DFDLDecimal> factor(
            new_DFDLDecimal(decimal->heap, decimal->constants));
        int64_t ten = 1;
        for (int32_t i = digits; i < 0; ++i) ten *= 10;
        DFDLDecimal_setSignedQValue(factor.get(), ten);
        DFDLDecimal_multi(decimal, factor.get());
    } else {
        DFDLDecimal_setDecimalAt(decimal, digits - decimal->number.exponent);
    }
}

void applyVirtualPoint(ParsedNumber* number, int32_t digits) {
    if (digits == 0) return;
    if (number->form == PARSED_DOUBLE) {
        number->real = digits > 0 ? number->real / power(digits) : number->real * power(-digits);
        return;
    }
    if (number->form == PARSED_WORD) DFDLDecimal_setSignedQValue(number->decimal, number->word);
    number->form = PARSED_DECIMAL;
    if (DFDLDecimal_isFinite(number->decimal)) shiftDecimal(number->decimal, digits);
}

// ---- Standard numbers ----------------------------------------------------------------------------------

bool isZeroText(const Conversion& conversion, const DFDLUString* text) {
    const DFDLUString* list = conversion.numberRow->iNumberZeroRep;
    if (DFDLUString_length(list) == 0) return false;
    StringLiteralCache* cache = conversion.handler->stringLiteralCache;
    if (matchStringLiteralList(cache, StringLiteralCache_getDFDLStringLiteralList(cache, list),
                               ignoresCase(conversion.row), text)) {
        return true;
    }
    if (!ProcessingError_hasKey(errorOf(conversion), TEXT_INVALID_MNEMONIC)) return false;
    const DFDLUString* name = GroupMemberTableRow_getElementName(conversion.row);
    ProcessingError_reset(errorOf(conversion));
    ProcessingError_setValues(errorOf(conversion), __FILE__, __LINE__, TEXT_INVALID_MNEMONIC,
                              ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z%S%s", list,
                              name == nullptr ? u"" : name->chars, "textNumberZeroRep");
    return false;
}

void setZero(Conversion* conversion) {
    const int32_t type = conversion->row->simpleTypeKind;
    const bool isReal = type == SIMPLE_FLOAT || type == SIMPLE_DOUBLE;
    conversion->number.form = isReal ? PARSED_DOUBLE : type == SIMPLE_DECIMAL ? PARSED_DECIMAL : PARSED_WORD;
    conversion->number.word = 0;
    conversion->number.real = 0;
    DFDLDecimal_clear(conversion->number.decimal);
}

std::u16string_view infinityOf(const NumberFormatCacheEntry* entry, UChar (&units)[64]) {
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = unum_getSymbol(entry->format, UNUM_INFINITY_SYMBOL, units, 64, &status);
    return U_SUCCESS(status) ? std::u16string_view(units, static_cast<size_t>(length))
                             : std::u16string_view();
}

// An infinity that is spelled is one; any other comes of a number that is too large.
bool readDouble(Conversion* conversion, const DFDLUString* text) {
    ParsedNumber* number = &conversion->number;
    std::u16string_view parsed;
    number->form = PARSED_DOUBLE;
    if (!ParserRegionHandler_createDoubleFromText(conversion->handler, text, conversion->entry,
                                                  conversion->numberRow->iNumberBase, &number->real,
                                                  conversion->row, &parsed)) {
        return false;
    }
    UChar units[64];
    if (dfdl_isInfinity(number->real)) {
        return infinityOf(conversion->entry, units) == parsed || refuseRange(*conversion, text);
    }
    applyVirtualPoint(number, conversion->entry->virtualDecimalDigits);
    const bool overflows = conversion->row->simpleTypeKind == SIMPLE_FLOAT && !dfdl_isNaN(number->real) &&
                           std::isinf(static_cast<float>(number->real));
    return !overflows || refuseRange(*conversion, text);
}

bool readDecimal(Conversion* conversion, const DFDLUString* text) {
    ParsedNumber* number = &conversion->number;
    DFDLDecimal* decimal = number->decimal;
    DFDLDecimal_clear(decimal);
    number->form = PARSED_DECIMAL;
    if (!ParserRegionHandler_createDecimalFromText(conversion->handler, text, conversion->entry,
                                                   conversion->numberRow->iNumberBase, decimal,
                                                   conversion->row)) {
        return false;
    }
    if (!conversion->numberRow->iDecimalSigned && DFDLDecimal_signum(decimal) < 0) {
        return refuse(*conversion, DFDLParser_invalidUnsignedDecimalValue, "%E%Z",
                      DFDLDecimal_getDouble(decimal, conversion->handler->heap),
                      GroupMemberTableRow_getElementName(conversion->row));
    }
    if (!DFDLDecimal_isFinite(decimal)) {
        const bool isInfinite = (decimal->number.bits & DEC_INFINITE) != 0;
        return refuseConversion(*conversion, text, isInfinite ? "can't convert infinity" : "(unknown)");
    }
    applyVirtualPoint(number, conversion->entry->virtualDecimalDigits);
    return true;
}

// A number that is no whole one is out of the range of integers.
bool readInteger(Conversion* conversion, const DFDLUString* text) {
    ParsedNumber* number = &conversion->number;
    DFDLDecimal_clear(number->decimal);
    number->form = PARSED_WORD;
    if (!ParserRegionHandler_createNumberFromText(conversion->handler, text, conversion->entry,
                                                  conversion->numberRow->iNumberBase, number,
                                                  conversion->row)) {
        return false;
    }
    applyVirtualPoint(number, conversion->entry->virtualDecimalDigits);
    if (number->form == PARSED_WORD) return true;
    if (!DFDLDecimal_isFinite(number->decimal)) return refuseRange(*conversion, text);
    if (number->decimal->number.exponent < 0) DFDLDecimal_reduce(number->decimal);
    return number->decimal->number.exponent >= 0 || refuseRange(*conversion, text);
}

// The errors of a text stand; what else may have gone wrong is not to be told from here.
bool tellFailure(const Conversion& conversion, const DFDLUString* text) {
    ProcessingError* error = errorOf(conversion);
    for (const char* key :
         {DFDLParser_numberParseError, DFDLParser_numberParseIncomplete, DFDLParser_numValueOutOfRange,
          DFDLParser_invalidUnsignedDecimalValue, DFDLParser_invalidNumberConversion}) {
        if (ProcessingError_hasKey(error, key)) return false;
    }
    ProcessingError_reset(error);
    return refuseConversion(conversion, text, "(unknown)");
}

bool readStandard(Conversion* conversion, Text* text) {
    ParserRegionHandler* handler = conversion->handler;
    text->reset(TextConverter_preprocessCheckPolicy(text->release(), conversion->numberRow,
                                                    conversion->entry->format, ignoresCase(conversion->row),
                                                    errorOf(*conversion), conversion->row, handler->heap));
    if (*text == nullptr) return false;
    if (DFDLUString_length(text->get()) == 0) {
        return refuse(*conversion, DFDLParser_numberEmptyString, "%Z",
                      GroupMemberTableRow_getElementName(conversion->row));
    }
    if (isZeroText(*conversion, text->get())) {
        setZero(conversion);
        return true;
    }
    if (ProcessingError_isSet(errorOf(*conversion))) return false;
    bool read = false;
    switch (conversion->row->simpleTypeKind) {
        case SIMPLE_FLOAT:
        case SIMPLE_DOUBLE:
            read = readDouble(conversion, text->get());
            break;
        case SIMPLE_DECIMAL:
            read = readDecimal(conversion, text->get());
            break;
        default:
            read = readInteger(conversion, text->get());
            break;
    }
    return read || tellFailure(*conversion, text->get());
}

// ---- Zoned numbers -------------------------------------------------------------------------------------

bool isZonedEncoding(DFDLCharset* charset, NumberZonedSignStyleEnum style) {
    if (DFDLCharset_isEBCDIC(charset) || DFDLCharset_isASCIICompatible(charset)) return true;
    switch (style) {
        case ASCII_TRANSLATED_EBCDIC:
            return DFDLCharset_isASCIITranslatedEBCDICZonedCompatible(charset);
        case ASCII_CA_REALIA_MODIFIED:
            return DFDLCharset_isASCIICARealiaModifiedZonedCompatible(charset);
        default:
            return DFDLCharset_isASCIIStandardZonedCompatible(charset);
    }
}

bool refuseEncoding(const Conversion& conversion, const DFDLCharset* charset) {
    ProcessingError_reset(errorOf(conversion));
    ProcessingError_setValues(errorOf(conversion), __FILE__, __LINE__, INVALID_ZONED_ENCODING,
                              ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z%Z",
                              GroupMemberTableRow_getElementName(conversion.row),
                              charset == nullptr ? nullptr : charset->name);
    return false;
}

bool readZonedBytes(const Conversion& conversion, const char* bytes, int32_t units, bool isEbcdic) {
    const auto read = isEbcdic                    ? SimpleTypeConverter_zonedDecimalToNumberEBCDIC
                      : units > ZONED_WORD_DIGITS ? SimpleTypeConverter_zonedDecimalToNumberASCIIWide
                                                  : SimpleTypeConverter_zonedDecimalToNumberASCII;
    return read(errorOf(conversion), bytes, conversion.numberRow, conversion.number.decimal,
                conversion.row->simpleTypeKind, conversion.row);
}

bool readZoned(Conversion* conversion, const DFDLUString* text) {
    ParserRegionHandler* handler = conversion->handler;
    DFDLCharset* charset =
        CharsetManager_getDFDLEncoding(handler->charsetManager, conversion->row->iTextEncodingIndex);
    UConverter* converter = charset == nullptr ? nullptr : DFDLCharset_getConverter(charset);
    if (converter == nullptr || !isZonedEncoding(charset, conversion->numberRow->iNumberZonedSignStyle))
        return refuseEncoding(*conversion, charset);
    DFDLDecimal_clear(conversion->number.decimal);
    conversion->number.form = PARSED_DECIMAL;
    int32_t count = 0;
    const char* bytes = CharsetManager_encode(handler->charsetManager, text, &count, converter,
                                              conversion->row, charset->name);
    if (bytes == nullptr) return refuseEncoding(*conversion, charset);
    if (readZonedBytes(*conversion, bytes, DFDLUString_length(text), DFDLCharset_isEBCDIC(charset))) {
        applyVirtualPoint(&conversion->number, conversion->entry->virtualDecimalDigits);
        return true;
    }
    ProcessingError* error = errorOf(*conversion);
    if (!ProcessingError_hasKey(error, DFDLParser_invalidZonedByteValue) && ProcessingError_isSet(error))
        return false;
    ProcessingError_reset(error);
    return refuse(*conversion, DFDLParser_conversionErrorZonedToNumber, "%Z%Z",
                  GroupMemberTableRow_getElementName(conversion->row), text);
}

// Null with an error.
const NumberFormatCacheEntry* findFormat(ParserRegionHandler* handler, const GroupMemberTableRow* row) {
    ProcessingError* error = handler->context->currentError;
    const NumberFormatCacheEntry* entry =
        TextNumberFormatMgr_getCachedNumberFormat(handler->textNumberFormatMgr, error, row, true);
    if (ProcessingError_isSet(error)) return nullptr;
    if (entry == nullptr) ParserRegionHandler_raise(handler, row, DFDLParser_unresolvedNumberFormat);
    return entry;
}

}  // namespace

DFDLValue* ParserRegionHandler_handleSimpleContent_TextNumber(ParserRegionHandler* this_,
                                                              const GroupMemberTableRow* row,
                                                              DFDLUString* text) {
    Text owner(text);
    if (text == nullptr) {
        ProcessingError_reset(this_->context->currentError);
        ParserRegionHandler_raiseNullText(this_, row);
        return nullptr;
    }
    const NumberFormatCacheEntry* entry = findFormat(this_, row);
    if (entry == nullptr) return nullptr;
    Conversion conversion{this_,
                          row,
                          GroupMemberTableRow_getTextNumberRow(row),
                          entry,
                          {PARSED_WORD, 0, 0, this_->scratchDecimal}};
    const bool read = conversion.numberRow->iTextNumberRepresentation == ZONED
                          ? readZoned(&conversion, owner.get())
                          : readStandard(&conversion, &owner);
    if (!read) return nullptr;
    return ParserRegionHandler_keepIfValid(
        this_, ParserRegionHandler_buildDFDLValueFromNumber(this_, conversion.number, owner.get(), row), row);
}
