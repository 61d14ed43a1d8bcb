#include "dfdl/converters/dfdlcharset.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "dfdl/converters/dfdlcharsetutils.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlstring.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"

namespace {

constexpr int32_t FIXITY_CONSTANT = 2;
constexpr int32_t LONGEST_NAME = 64;

int32_t triState(bool yes) { return yes ? TRI_YES : TRI_NO; }

// The name in single bytes; a name that is too long for any table is cut, and found in none.
struct NarrowName {
    char text[LONGEST_NAME + 1];
};

NarrowName narrow(const DFDLUString* name) {
    NarrowName result{};
    const std::u16string_view view = DFDLUString_view(name);
    if (view.size() > LONGEST_NAME) return result;
    for (size_t i = 0; i < view.size(); ++i)
        result.text[i] = view[i] < 0x80 ? static_cast<char>(view[i]) : '?';
    return result;
}

int32_t testName(const DFDLCharset* charset, bool (*test)(const char*)) {
    return triState(test(narrow(charset->name).text));
}

UConverter* openConverter(const DFDLCharset* charset) {
    UErrorCode status = U_ZERO_ERROR;
    UConverter* converter = ucnv_openU(charset->standardName->chars, &status);
    if (U_SUCCESS(status) && converter != nullptr) return converter;
    status = U_ZERO_ERROR;
    const auto page = static_cast<int32_t>(std::strtol(narrow(charset->name).text, nullptr, 10));
    converter = ucnv_openCCSID(page, UCNV_IBM, &status);
    return U_SUCCESS(status) ? converter : nullptr;
}

bool installStopCallbacks(UConverter* converter) {
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(converter, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    return U_SUCCESS(status);
}

int32_t byteOrderOf(const UConverter* converter) {
    UErrorCode status = U_ZERO_ERROR;
    const char* name = ucnv_getName(converter, &status);
    if (U_FAILURE(status) || name == nullptr) return 0;
    return std::strstr(name, "BE") != nullptr ? 2 : 1;
}

void setWidths(DFDLCharset* charset, int32_t least, int32_t most) {
    charset->minBytesPerChar = least;
    charset->maxBytesPerChar = most;
}

void calculateMinMaxBytesPerChar(DFDLCharset* charset) {
    if (charset->maxBytesPerChar != -1) return;
    if (DFDLCharset_isUCS2(charset)) return setWidths(charset, 2, 2);
    if (DFDLCharset_isUTF16Compatible(charset))
        return setWidths(charset, 2, charset->utf16FixedState != 0 ? 2 : 4);
    if (DFDLCharset_isUTF32Compatible(charset)) return setWidths(charset, 4, 4);
    const UConverter* converter = DFDLCharset_getConverter(charset);
    if (converter != nullptr)
        setWidths(charset, ucnv_getMinCharSize(converter), ucnv_getMaxCharSize(converter));
}

DFDLCharset* newCharset(DFDLHeapAdapter* heap, Context* context, DFDLConstants* constants,
                        DFDLUString* standardName, DFDLUString* name) {
    auto* charset = DFDLHeapAdapter_new<DFDLCharset>(heap);
    charset->context = context;
    charset->constants = constants;
    charset->standardName = standardName;
    charset->name = name;
    charset->maxBytesPerChar = -1;
    charset->minBytesPerChar = -1;
    return charset;
}

constexpr int32_t ZONED_BYTES = 20;

// Decodes twenty bytes; false if they are not twenty units.
bool decodeZoned(DFDLCharset* charset, const char* bytes, UChar* units) {
    UConverter* converter = DFDLCharset_getConverter(charset);
    if (converter == nullptr) return false;
    UErrorCode status = U_ZERO_ERROR;
    const int32_t count = ucnv_toUChars(converter, units, ZONED_BYTES + 1, bytes, ZONED_BYTES, &status);
    return U_SUCCESS(status) && count == ZONED_BYTES;
}

bool zonedDecodeTo(DFDLCharset* charset, const char* bytes, std::u16string_view expected) {
    UChar units[ZONED_BYTES + 1];
    return decodeZoned(charset, bytes, units) && std::u16string_view(units, ZONED_BYTES) == expected;
}

bool cachedZonedTest(DFDLCharset* charset, int32_t* state, const char* bytes, std::u16string_view expected) {
    if (*state == TRI_UNKNOWN) *state = triState(zonedDecodeTo(charset, bytes, expected));
    return *state == TRI_YES;
}

constexpr const char EBCDIC_ZONED[] =
    "\xC0\xC1\xC2\xC3\xC4\xC5\xC6\xC7\xC8\xC9\xD0\xD1\xD2\xD3\xD4\xD5\xD6\xD7\xD8\xD9";
constexpr std::u16string_view TRANSLATED = u"{ABCDEFGHI}JKLMNOPQR";

int32_t testEBCDICZoned(DFDLCharset* charset) {
    UChar units[ZONED_BYTES + 1] = {};
    if (!decodeZoned(charset, EBCDIC_ZONED, units)) return TRI_NO;
    if (std::u16string_view(units, ZONED_BYTES) == TRANSLATED) return TRI_YES;
    charset->ebcdicPositiveZero = units[0];
    charset->ebcdicNegativeZero = units[10];
    return TRI_NO;
}

}  // namespace

DFDLCharset* new_DFDLCharsetForFixedEncoding(DFDLHeapAdapter* heap, Context* context,
                                             DFDLConstants* constants, DFDLUString* standardName,
                                             DFDLUString* name, bool asciiCompatible, bool ebcdic,
                                             bool utf16Fixed) {
    DFDLCharset* charset = newCharset(heap, context, constants, standardName, name);
    charset->asciiCompatibleState = triState(asciiCompatible);
    charset->ebcdicState = triState(ebcdic);
    charset->utf16FixedState = triState(utf16Fixed);
    charset->fixity = FIXITY_CONSTANT;
    return charset;
}

DFDLCharset* new_DFDLCharsetForVariableEncoding1(DFDLHeapAdapter* heap, Context* context,
                                                 DFDLConstants* constants, DFDLUString* standardName,
                                                 DFDLUString* name, bool utf16Fixed) {
    DFDLCharset* charset = newCharset(heap, context, constants, standardName, name);
    charset->utf16FixedState = triState(utf16Fixed);
    return charset;
}

DFDLCharset* new_DFDLCharsetForVariableEncoding2(DFDLHeapAdapter* heap, Context* context,
                                                 DFDLConstants* constants, DFDLUString* standardName,
                                                 DFDLUString* name) {
    return newCharset(heap, context, constants, standardName, name);
}

void delete_DFDLCharset(DFDLCharset* this_) {
    if (this_ == nullptr) return;
    if (this_->converter != nullptr) ucnv_close(this_->converter);
    if (this_->table != nullptr) DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->table);
    delete_DFDLUString(this_->standardName);
    delete_DFDLUString(this_->name);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

UConverter* DFDLCharset_getConverter(DFDLCharset* this_) {
    if (this_->converter != nullptr) return this_->converter;
    UConverter* converter = openConverter(this_);
    if (converter == nullptr) {
        ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__, INVALID_ENCODING,
                                  ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%s%Z", "(unknown)", this_->name);
        return nullptr;
    }
    if (!installStopCallbacks(converter)) {
        ucnv_close(converter);
        return nullptr;
    }
    this_->converter = converter;
    this_->byteOrderState = byteOrderOf(converter);
    return converter;
}

bool DFDLCharset_isFixedWidth(DFDLCharset* this_) {
    if (DFDLCharset_isUTF16Compatible(this_)) return this_->utf16FixedState == TRI_YES;
    if (this_->fixedWidthState == TRI_UNKNOWN) {
        const UConverter* converter = DFDLCharset_getConverter(this_);
        if (converter == nullptr) return false;
        this_->fixedWidthState = triState(ucnv_getMinCharSize(converter) == ucnv_getMaxCharSize(converter));
    }
    return this_->fixedWidthState == TRI_YES;
}

int32_t DFDLCharset_maxBytesPerChar(DFDLCharset* this_) {
    calculateMinMaxBytesPerChar(this_);
    return this_->maxBytesPerChar;
}

int32_t DFDLCharset_minBytesPerChar(DFDLCharset* this_) {
    calculateMinMaxBytesPerChar(this_);
    return this_->minBytesPerChar;
}

bool DFDLCharset_canHaveBOM(DFDLCharset* this_) {
    if (this_->bomState == TRI_UNKNOWN)
        this_->bomState = triState(DFDLUString_view(this_->name).starts_with(u"UTF"));
    return this_->bomState == TRI_YES;
}

bool DFDLCharset_isUCS2(DFDLCharset* this_) {
    if (this_->ucs2State == TRI_UNKNOWN) this_->ucs2State = testName(this_, DFDLCharsetUtils_isEncodingUCS2);
    return this_->ucs2State == TRI_YES;
}

bool DFDLCharset_isUTF16Compatible(DFDLCharset* this_) {
    if (this_->utf16CompatibleState == TRI_UNKNOWN) {
        this_->utf16CompatibleState = testName(this_, DFDLCharsetUtils_isEncodingUTF16);
    }
    return this_->utf16CompatibleState == TRI_YES;
}

bool DFDLCharset_isUTF32Compatible(DFDLCharset* this_) {
    if (this_->utf32CompatibleState == TRI_UNKNOWN) {
        this_->utf32CompatibleState = testName(this_, DFDLCharsetUtils_isEncodingUTF32);
    }
    return this_->utf32CompatibleState == TRI_YES;
}

bool DFDLCharset_isASCIICompatible(DFDLCharset* this_) {
    if (this_->asciiCompatibleState == TRI_UNKNOWN) {
        this_->asciiCompatibleState = testName(this_, DFDLCharsetUtils_isEncodingASCIICompatible);
    }
    return this_->asciiCompatibleState == TRI_YES;
}

bool DFDLCharset_isEBCDIC(DFDLCharset* this_) {
    if (this_->ebcdicState == TRI_UNKNOWN)
        this_->ebcdicState = testName(this_, DFDLCharsetUtils_isEncodingEBCDIC);
    return this_->ebcdicState == TRI_YES;
}

bool DFDLCharset_isASCIIStandardZonedCompatible(DFDLCharset* this_) {
    return cachedZonedTest(this_, &this_->asciiStandardZonedState, "0123456789pqrstuvwxy",
                           u"0123456789pqrstuvwxy");
}

bool DFDLCharset_isASCIITranslatedEBCDICZonedCompatible(DFDLCharset* this_) {
    return cachedZonedTest(this_, &this_->asciiTranslatedEBCDICZonedState, "{ABCDEFGHI}JKLMNOPQR",
                           TRANSLATED);
}

bool DFDLCharset_isASCIICARealiaModifiedZonedCompatible(DFDLCharset* this_) {
    return cachedZonedTest(this_, &this_->asciiCARealiaZonedState, "0123456789 !\"#$%&'()",
                           u"0123456789 !\"#$%&'()");
}

bool DFDLCharset_isASCIITandemModifiedZonedCompatible(DFDLCharset* this_) {
    static_cast<void>(this_);
    return true;
}

bool DFDLCharset_isEBCDICStandardZonedCompatible(DFDLCharset* this_) {
    if (this_->ebcdicStandardZonedState == TRI_UNKNOWN) {
        if (!DFDLCharset_isEBCDIC(this_)) {
            this_->ebcdicStandardZonedState = TRI_NO;
            return true;
        }
        this_->ebcdicStandardZonedState = testEBCDICZoned(this_);
    }
    return this_->ebcdicStandardZonedState == TRI_YES;
}
