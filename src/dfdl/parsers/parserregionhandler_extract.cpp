// The text of fields whose length is known.
#include <limits>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/converters/textconverter.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/parsers/trustedlength.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/lengthschemetable.h"
#include "dfdl/pif/textstringtable.h"

namespace {

// What is known of a field before it is read.
struct TextField {
    int32_t encodingIndex;
    int32_t maxBytes;  // of a character
    bool trimBytes;
};

bool isTrimmedAsBytes(const TextStringTableRow* row) {
    return row != nullptr && row->iTextTrimKind == TRIM_KIND_PAD_CHAR && row->padIsByte;
}

// Bytes can be trimmed only where they tell how long a field is, or where characters all have one width.
bool prepare(ParserRegionHandler* handler, const GroupMemberTableRow* row, bool inCharacters,
             TextField* field) {
    *field = {row->iTextEncodingIndex, 1, false};
    const TextStringTableRow* stringRow = row->textStringRow;
    if (stringRow == nullptr || stringRow->iTextTrimKind != TRIM_KIND_PAD_CHAR) return true;
    DFDLCharset* charset = CharsetManager_getDFDLEncoding(handler->charsetManager, field->encodingIndex);
    if (charset == nullptr || DFDLCharset_getConverter(charset) == nullptr) return false;
    field->maxBytes = DFDLCharset_maxBytesPerChar(charset);
    field->trimBytes = isTrimmedAsBytes(stringRow);
    if (field->trimBytes && inCharacters && !DFDLCharset_isFixedWidth(charset) &&
        !DFDLCharset_isUCS2(charset)) {
        ParserRegionHandler_raise(handler, row, DFDLParser_unableToApplyPadByte);
        return false;
    }
    return true;
}

DFDLUString* readFixed(ParserRegionHandler* handler, const GroupMemberTableRow* row, const TextField& field,
                       int64_t length) {
    const int32_t units = row->lengthRow->iLengthUnits;
    if (length == -1) return nullptr;
    if (!field.trimBytes) {
        return ParserRegionHandler_extractFixedLengthText(handler, field.encodingIndex, units, length, row);
    }
    const int64_t width = units == CHARACTERS ? field.maxBytes : 1;
    if (length > std::numeric_limits<int64_t>::max() / width) {
        BufferManager_raise(handler->bufferManager, DFDLParser_bufferOverflow, row);
        return nullptr;
    }
    return ParserRegionHandler_extractFixedLengthTextAndTrim(handler, field.encodingIndex, length * width,
                                                             field.maxBytes, row->textStringRow, row);
}

DFDLUString* readDelimited(ParserRegionHandler* handler, const GroupMemberTableRow* row,
                           const TextField& field, int64_t length) {
    if (!field.trimBytes) {
        return BufferManager_readBytesAsString(handler->bufferManager, field.encodingIndex, length, row);
    }
    return ParserRegionHandler_extractFixedLengthTextAndTrim(handler, field.encodingIndex, length,
                                                             field.maxBytes, row->textStringRow, row);
}

DFDLUString* readByKind(ParserRegionHandler* handler, const GroupMemberTableRow* row, int64_t length) {
    const LengthSchemeTableRow* scheme = row->lengthRow;
    TextField field{};
    if (!prepare(handler, row, scheme != nullptr && scheme->iLengthUnits == CHARACTERS, &field)) {
        return nullptr;
    }
    switch (scheme == nullptr ? UNDEFINED_LKIND : scheme->iLengthKind) {
        case IMPLICIT:
        case EXPLICIT:
        case PREFIXED:
            return readFixed(handler, row, field, length);
        case DELIMITED:
            return readDelimited(handler, row, field, length);
        case UNDEFINED_LKIND:
            ParserRegionHandler_raise(handler, row, DFDLParser_missingLengthKind);
            return nullptr;
        default:
            return nullptr;
    }
}

DFDLUString* readCharacters(ParserRegionHandler* handler, int32_t encodingIndex, int64_t length,
                            const GroupMemberTableRow* row) {
    ProcessingError* error = handler->context->currentError;
    int64_t charsRead = 0;
    DFDLUString* text =
        BufferManager_readCharacterData(handler->bufferManager, encodingIndex, length, &charsRead, row, true);
    if (text != nullptr && charsRead == length) return text;
    delete_DFDLUString(text);
    if (!ProcessingError_hasKey(error, DFDLParser_characterCodingException)) {
        ProcessingError_reset(error);
        BufferManager_raise(handler->bufferManager, DFDLParser_bufferOverflow, row);
    }
    return nullptr;
}

// The bytes of a field, for the lifetime of this object.
class FieldBytes {
  public:
    FieldBytes(BufferManager* buffer, int64_t count, const GroupMemberTableRow* row) : buffer_(buffer) {
        const int64_t start = BufferManager_bytePosition(buffer);
        const bool there = count >= 0 && count <= std::numeric_limits<int32_t>::max() &&
                           ParserRegionHandler_mayTakeBlock(buffer, count);
        if (there) {
            bytes_ = BufferManager_allocateBytes(buffer, count);
            complete_ = BufferManager_getBytes(buffer, bytes_, count, start, true, row) == count;
        }
        if (!complete_) BufferManager_raiseAt(buffer, DFDLParser_bufferOverflow, start, row);
    }
    ~FieldBytes() {
        if (bytes_ != nullptr) BufferManager_deAllocateBytes(buffer_, bytes_);
    }
    FieldBytes(const FieldBytes&) = delete;
    FieldBytes& operator=(const FieldBytes&) = delete;

    const uint8_t* get() const { return complete_ ? bytes_ : nullptr; }

  private:
    BufferManager* buffer_;
    uint8_t* bytes_ = nullptr;
    bool complete_ = false;
};

// What is left of the bytes, both ends included.
struct Rest {
    int64_t first;
    int64_t last;
};

Rest trim(const uint8_t* bytes, int64_t length, const TextStringTableRow* row) {
    const auto isPad = [&](int64_t at) { return bytes[at] == static_cast<uint8_t>(row->padByte); };
    Rest rest{0, length - 1};
    if (row->iTextJustification != LEFT) {
        while (rest.first < rest.last && isPad(rest.first)) ++rest.first;
    }
    if (row->iTextJustification != RIGHT) {
        while (rest.last > 0 && isPad(rest.last)) --rest.last;
    }
    return rest;
}

DFDLUString* decode(ParserRegionHandler* handler, const uint8_t* bytes, int64_t count, int32_t maxBytes) {
    const BufferManager* buffer = handler->bufferManager;
    int64_t consumed = 0;
    UErrorCode status = U_ZERO_ERROR;
    DFDLUString* text = CharsetManager_decodeWithIgnoreTruncIgnoreMalformed(
        handler->charsetManager, bytes, count, static_cast<int32_t>(count), &consumed, buffer->decoder,
        &status, false, maxBytes, true, true);
    if (text != nullptr) return text;
    ucnv_resetToUnicode(buffer->decoder);
    ProcessingError_setValues(handler->context->currentError, __FILE__, __LINE__,
                              DFDLParser_characterCodingException, ERROR_PROCESSING, SUBKIND_NONE, "%lld%Z",
                              static_cast<long long>(BufferManager_bytePosition(buffer)),
                              buffer->currentCharset->name);
    return nullptr;
}

}  // namespace

DFDLUString* ParserRegionHandler_extractTextRepresentation(ParserRegionHandler* this_,
                                                           const GroupMemberTableRow* row, int64_t length) {
    DFDLUString* text = readByKind(this_, row, length);
    if (text == nullptr || GroupMemberTableRow_getEscapeSchemeTableRow(row) == nullptr) return text;
    DFDLUString* plain = TextConverter_applyEscapeScheme(this_->heap, text, row);
    if (plain != text) delete_DFDLUString(text);
    return plain;
}

DFDLUString* ParserRegionHandler_extractFixedLengthText(ParserRegionHandler* this_, int32_t encodingIndex,
                                                        int32_t units, int64_t length,
                                                        const GroupMemberTableRow* row) {
    if (length == 0) return DFDLUStringPooler_getDFDLUString(this_->heap);
    switch (units) {
        case BYTES:
            return BufferManager_readBytesAsString(this_->bufferManager, encodingIndex, length, row);
        case CHARACTERS:
            return readCharacters(this_, encodingIndex, length, row);
        default:
            ProcessingError_setValues(
                this_->context->currentError, __FILE__, __LINE__, DFDLParser_incorrectLengthUnits,
                ERROR_PROCESSING, SUBKIND_NONE, "%Z%lld", GroupMemberTableRow_getElementName(row),
                static_cast<long long>(BufferManager_bytePosition(this_->bufferManager)));
            return nullptr;
    }
}

DFDLUString* ParserRegionHandler_extractFixedLengthTextAndTrim(ParserRegionHandler* this_,
                                                               int32_t encodingIndex, int64_t byteLength,
                                                               int32_t maxBytes,
                                                               const TextStringTableRow* stringRow,
                                                               const GroupMemberTableRow* row) {
    BufferManager* buffer = this_->bufferManager;
    if (!BufferManager_initializeEncoderDecoders(buffer, encodingIndex, row) || buffer->decoder == nullptr) {
        return nullptr;
    }
    const FieldBytes bytes(buffer, byteLength, row);
    if (bytes.get() == nullptr) return nullptr;
    const Rest rest = trim(bytes.get(), byteLength, stringRow);
    if (rest.first > rest.last || rest.last < 1) return DFDLUStringPooler_getDFDLUString(this_->heap);
    return decode(this_, bytes.get() + rest.first, rest.last - rest.first + 1, maxBytes);
}
