#include "dfdl/foundation/insertformat.h"

#include <unicode/ustring.h>

#include <algorithm>
#include <cstring>

#include "dfdl/foundation/dfdlbufferfactory.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlstring.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/unprintable.h"
#include "dfdl/foundation/xsvalue.h"

namespace {

// A buffer of the engine's for as long as a text is put together.
class Scratch {
  public:
    Scratch(DFDLHeapAdapter* heap, int64_t units)
        : factory_(heap->bufferFactory), units_(DFDLBufferFactory_GetUBuffer(factory_, units)) {}
    ~Scratch() { DFDLBufferFactory_FreeUBuffer(factory_, units_); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    UChar* units() const { return units_; }

  private:
    DFDLBufferFactory* factory_;
    UChar* units_;
};

// One more than is kept, so that a text that is too long can be told from one that just fits.
size_t wanted(const InsertStyle& style) { return static_cast<size_t>(style.limit) + 1; }

DFDLUString* fromBytes(DFDLHeapAdapter* heap, const char* bytes, size_t length, const InsertStyle& style) {
    const Scratch scratch(heap, static_cast<int64_t>(length) + 1);
    int32_t units = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(scratch.units(), static_cast<int32_t>(length) + 1, &units, bytes,
                         static_cast<int32_t>(length), 0xFFFD, nullptr, &status);
    return InsertText_new(heap, {scratch.units(), static_cast<size_t>(units)}, style);
}

DFDLUString* nullText(DFDLHeapAdapter* heap, const InsertStyle& style) {
    return InsertText_new(heap, style.nullText, style);
}

DFDLUString* fromCString(DFDLHeapAdapter* heap, const char* text, const InsertStyle& style) {
    if (text == nullptr) return nullText(heap, style);
    return fromBytes(heap, text, strnlen(text, 3 * wanted(style)), style);
}

DFDLUString* fromUChars(DFDLHeapAdapter* heap, const UChar* text, const InsertStyle& style) {
    if (text == nullptr) return nullText(heap, style);
    const UChar* end = std::find(text, text + wanted(style), u'\0');
    return InsertText_new(heap, {text, static_cast<size_t>(end - text)}, style);
}

DFDLUString* fromUString(DFDLHeapAdapter* heap, const DFDLUString* text, const InsertStyle& style) {
    return text == nullptr ? nullText(heap, style) : InsertText_new(heap, DFDLUString_view(text), style);
}

// Cut to the style; `whole` goes.
DFDLUString* cut(DFDLHeapAdapter* heap, DFDLUString* whole, const InsertStyle& style) {
    DFDLUString* text = InsertText_new(heap, DFDLUString_view(whole), style);
    delete_DFDLUString(whole);
    return text;
}

DFDLUString* fromValue(DFDLHeapAdapter* heap, const DFDLValue* value, const InsertStyle& style) {
    if (value == nullptr) return nullText(heap, style);
    UErrorCode status = U_ZERO_ERROR;
    DFDLUString* whole = DFDLValue_toString(value, &status, heap);
    DFDLUString* shown = Unprintable_replace(heap, DFDLUString_view(whole).substr(0, wanted(style)), false);
    if (value->schemaType != TYPE_STRING) delete_DFDLUString(whole);
    return cut(heap, shown, style);
}

// Of data of any length no more becomes digits than can be shown.
int64_t atMost(int32_t digits, const InsertStyle& style) {
    return std::min(static_cast<int64_t>(digits), static_cast<int64_t>(wanted(style)));
}

DFDLUString* captureHex(DFDLHeapAdapter* heap, InsertArguments* arguments, const InsertStyle& style) {
    const auto* bytes = va_arg(arguments->list, const uint8_t*);
    const int32_t length = va_arg(arguments->list, int32_t);
    if (bytes == nullptr || length <= 0) return InsertText_new(heap, u"(null)", style);
    return cut(heap, new_DFDLUString_fromHexBinary(heap, bytes, atMost(length, style)), style);
}

DFDLUString* captureBits(DFDLHeapAdapter* heap, InsertArguments* arguments, const InsertStyle& style) {
    const auto* bytes = va_arg(arguments->list, const uint8_t*);
    const int32_t length = va_arg(arguments->list, int32_t);
    const int32_t offset = va_arg(arguments->list, int32_t);
    if (bytes == nullptr || length <= 0 || offset < 0) return InsertText_new(heap, u"(null)", style);
    return cut(heap, new_DFDLUString_fromBinaryBits(heap, bytes, atMost(length, style), offset), style);
}

// Null for a letter that is no text's.
DFDLUString* captureText(char letter, InsertArguments* arguments, DFDLHeapAdapter* heap,
                         const InsertStyle& style) {
    switch (letter) {
        case 'B':
            return captureHex(heap, arguments, style);
        case 'b':
            return captureBits(heap, arguments, style);
        case 'S':
            return fromUChars(heap, va_arg(arguments->list, const UChar*), style);
        case 'Z':
            return fromUString(heap, va_arg(arguments->list, const DFDLUString*), style);
        case 's':
            return fromCString(heap, va_arg(arguments->list, const char*), style);
        case 'z': {
            const auto* text = va_arg(arguments->list, const DFDLString*);
            return fromCString(heap, text == nullptr ? nullptr : text->chars, style);
        }
        case 'C': {
            const auto unit = static_cast<UChar>(va_arg(arguments->list, int));
            return InsertText_new(heap, {&unit, unit == 0 ? 0U : 1U}, style);  // none: where a text ended
        }
        case 'c': {
            const auto byte = static_cast<char>(va_arg(arguments->list, int));
            return fromBytes(heap, &byte, 1, style);
        }
        case 'V':
            return style.trace ? fromValue(heap, va_arg(arguments->list, const DFDLValue*), style) : nullptr;
        default:
            return nullptr;
    }
}

int64_t captureInteger(std::string_view piece, InsertArguments* arguments) {
    const bool isSigned = piece.back() == 'd' || piece.back() == 'i';
    if (piece.find("ll") != std::string_view::npos) return va_arg(arguments->list, int64_t);
    const int32_t value = va_arg(arguments->list, int32_t);
    const bool isShort =
        piece.find('h') != std::string_view::npos && piece.find('l') == std::string_view::npos;
    if (isShort) return isSigned ? int64_t{static_cast<int16_t>(value)} : static_cast<uint16_t>(value);
    return isSigned ? int64_t{value} : int64_t{static_cast<uint32_t>(value)};
}

bool captureNumber(CapturedInsert* insert, InsertArguments* arguments, bool trace) {
    const char letter = InsertPiece_letter(insert->piece);
    const std::string_view piece(insert->piece.text, static_cast<size_t>(insert->piece.length));
    insert->kind = INSERT_INTEGER;
    if (strchr("diouxX", letter) != nullptr) {
        insert->value.integer = captureInteger(piece, arguments);
    } else if (strchr("eEfgG", letter) != nullptr) {
        insert->kind = INSERT_REAL;
        insert->value.real = va_arg(arguments->list, double);
    } else if (trace && letter == 'D') {
        insert->value.integer = va_arg(arguments->list, int64_t);
    } else if (trace && letter == 'p') {
        insert->value.integer = reinterpret_cast<intptr_t>(va_arg(arguments->list, void*));
    } else {
        return false;
    }
    return true;
}

}  // namespace

bool InsertPiece_next(const char** format, InsertPiece* piece) {
    if (*format == nullptr) return false;
    const char* start = strchr(*format, '%');
    if (start == nullptr) return false;
    const char* next = strchr(start + 1, '%');
    *format = next == nullptr ? start + strlen(start) : next;
    *piece = {start, static_cast<int32_t>(*format - start)};
    return true;
}

void CapturedInsert_capture(CapturedInsert* this_, InsertPiece piece, InsertArguments* arguments,
                            DFDLHeapAdapter* heap, const InsertStyle& style) {
    this_->piece = piece;
    this_->kind = INSERT_UNKNOWN;
    if (DFDLUString* text = captureText(InsertPiece_letter(piece), arguments, heap, style)) {
        this_->kind = INSERT_TEXT;
        this_->value.text = text;
    } else if (!captureNumber(this_, arguments, style.trace)) {
        this_->kind = INSERT_UNKNOWN;
    }
}

DFDLUString* InsertText_new(DFDLHeapAdapter* heap, std::u16string_view text, const InsertStyle& style) {
    auto limit = static_cast<size_t>(style.limit);
    if (text.size() <= limit) {
        return DFDLUStringPooler_getDFDLUStringFromUChars(heap, text.data(),
                                                          static_cast<int32_t>(text.size()));
    }
    if (U16_IS_LEAD(text[limit - 1])) --limit;
    const Scratch scratch(heap, static_cast<int64_t>(limit + style.cutMark.size()));
    std::copy_n(text.begin(), limit, scratch.units());
    std::copy(style.cutMark.begin(), style.cutMark.end(), scratch.units() + limit);
    return DFDLUStringPooler_getDFDLUStringFromUChars(heap, scratch.units(),
                                                      static_cast<int32_t>(limit + style.cutMark.size()));
}
