#include "dfdl/converters/textconverter.h"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>

#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/dfdlustringbuffer.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/textstringtable.h"

namespace {

using View = std::u16string_view;

constexpr View REGEX_METACHARACTERS = u".\\?*+&:{}[]()^$|";

bool isMetacharacter(char16_t unit) { return REGEX_METACHARACTERS.find(unit) != View::npos; }

using Justify = DFDLUString* (*)(const DFDLUString*, int32_t, const DFDLUString*, DFDLHeapAdapter*);

// By TextJustificationEnum.
constexpr Justify JUSTIFY[] = {DFDLUString_leftJustify, DFDLUString_rightJustify, DFDLUString_centerJustify};

void raiseMalformed(ProcessingError* error, const DFDLCharset* charset) {
    ProcessingError_setValues(error, __FILE__, __LINE__, DFDLParser_characterEncodingError, ERROR_PROCESSING,
                              SUBKIND_NONE, "%S%Z", u"Malformed input or unmappable character",
                              charset->name);
}

}  // namespace

int32_t TextConverter_countUnicodeCharacters(const DFDLUString* text) {
    return DFDLUString_countCharacters(text);
}

int32_t TextConverter_countUnicodeCharactersFromBuffer(const UChar* chars, int32_t length) {
    return length <= 0 ? 0 : u_countChar32(chars, length);
}

bool TextConverter_surrogatePairsFound(const DFDLUString* text) {
    const View units = DFDLUString_view(text);
    return std::adjacent_find(units.begin(), units.end(), [](char16_t first, char16_t second) {
               return U16_IS_LEAD(first) && U16_IS_TRAIL(second);
           }) != units.end();
}

bool TextConverter_containsGenericMnemonics(const DFDLUString* text, const DFDLConstants* constants) {
    const DFDLUString* const mnemonics[] = {constants->newLineEntity, constants->whitespaceEntity,
                                            constants->anyWhitespaceEntity, constants->someWhitespaceEntity};
    return std::any_of(std::begin(mnemonics), std::end(mnemonics),
                       [text](const DFDLUString* mnemonic) { return DFDLUString_contains(text, mnemonic); });
}

DFDLUString* TextConverter_escapeJavaRegex(DFDLUString* text, DFDLHeapAdapter* heap) {
    const View units = DFDLUString_view(text);
    if (std::none_of(units.begin(), units.end(), isMetacharacter)) return text;
    DFDLUStringBuffer* escaped = new_DFDLUStringBuffer(heap);
    for (const char16_t unit : units) {
        if (isMetacharacter(unit)) DFDLUStringBuffer_appendUChar(escaped, u'\\');
        DFDLUStringBuffer_appendUChar(escaped, unit);
    }
    return DFDLUStringBuffer_convertToPooledDFDLUString(escaped);
}

DFDLUString* TextConverter_doJustification(DFDLUString* text, const TextStringTableRow* row,
                                           DFDLHeapAdapter* heap) {
    if (row->padString == nullptr) return text;
    return JUSTIFY[row->iTextJustification](text, row->iTextOutputMinLength, row->padString, heap);
}

DFDLUString* TextConverter_createStringFromByteArray(DFDLCharset* charset, const uint8_t* bytes,
                                                     int64_t offset, int64_t length, ProcessingError* error,
                                                     DFDLHeapAdapter* heap) {
    if (length < 0 || length > INT32_MAX / 2 - 1) DFDLHeapAdapter_refuse(heap);
    UConverter* converter = DFDLCharset_getConverter(charset);
    if (converter == nullptr) return nullptr;
    const auto count = static_cast<int32_t>(length);
    UErrorCode status = U_ZERO_ERROR;
    UChar* units = DFDLBufferFactory_GetUBuffer(heap->bufferFactory, 2 * static_cast<int64_t>(count) + 1);
    ucnv_reset(converter);
    const int32_t got = ucnv_toUChars(converter, units, 2 * count + 1,
                                      reinterpret_cast<const char*>(bytes) + offset, count, &status);
    if (U_SUCCESS(status)) return DFDLUStringPooler_getDFDLUStringUseUChars(heap, units, got);
    DFDLBufferFactory_FreeUBuffer(heap->bufferFactory, units);
    ucnv_reset(converter);
    raiseMalformed(error, charset);
    return nullptr;
}
