#include <string_view>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/rowplan.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

// Where the length is counted in characters of varying width, only reading tells how many bytes they take.
constexpr int64_t LENGTH_BY_READING = -1;

void raiseForElement(PIFIteratorForParser* iterator, const GroupMemberTableRow* row, const char* key,
                     int32_t kind) {
    ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__, key, kind, SUBKIND_NONE,
                              "%Z", GroupMemberTableRow_getElementName(row));
}

void raiseOverflow(PIFIteratorForParser* iterator, const GroupMemberTableRow* row) {
    ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__, DFDLParser_bufferOverflow,
                              ERROR_PROCESSING, SUBKIND_LACK_OF_DATA, "%lld%Z",
                              static_cast<long long>(BufferManager_bytePosition(iterator->bufferManager)),
                              GroupMemberTableRow_getElementName(row));
}

DFDLCharset* charsetOf(PIFIteratorForParser* iterator, const ContextItemForParser* item) {
    return CharsetManager_getDFDLEncoding(iterator->charsetManager, item->plan->encodingIndex);
}

// An error that says that no converter can be had stands if the result is false.
bool haveCharset(PIFIteratorForParser* iterator, const ContextItemForParser* item, DFDLCharset* charset) {
    if (charset != nullptr && DFDLCharset_getConverter(charset) != nullptr) return true;
    if (!ProcessingError_isSet(iterator->context->currentError)) {
        PIFIteratorForParser_raiseUnsupported(iterator, item->row, "text without an encoding");
    }
    return false;
}

bool bytesForCharacters(PIFIteratorForParser* iterator, const ContextItemForParser* item, int64_t length,
                        int64_t* bytes) {
    DFDLCharset* charset = charsetOf(iterator, item);
    if (!haveCharset(iterator, item, charset)) return false;
    const bool fixed = DFDLCharset_isFixedWidth(charset);
    *bytes = fixed ? length * DFDLCharset_maxBytesPerChar(charset) : (length > 0 ? LENGTH_BY_READING : 0);
    return true;
}

// A text whose length is implied by its type is counted in characters; counting bytes instead is right only
// where the two are the same.
bool checkImpliedLength(PIFIteratorForParser* iterator, const ContextItemForParser* item) {
    DFDLCharset* charset = charsetOf(iterator, item);
    if (!haveCharset(iterator, item, charset)) return false;
    if (DFDLCharset_maxBytesPerChar(charset) == 1) return true;
    raiseForElement(iterator, item->row, IMPLICIT_MBCS_STRING_WITH_LENGTH_UNITS_BYTES,
                    ERROR_SCHEMA_DEFINITION);
    return false;
}

bool byteLength(PIFIteratorForParser* iterator, const ContextItemForParser* item, int64_t length,
                int64_t* bytes) {
    *bytes = length;
    switch (item->plan->units) {
        case BYTES:
            return item->plan->lengthKind != IMPLICIT || checkImpliedLength(iterator, item);
        case CHARACTERS:
            return bytesForCharacters(iterator, item, length, bytes);
        default:
            ProcessingError_setValues(
                iterator->context->currentError, __FILE__, __LINE__, DFDLParser_incorrectLengthUnits,
                ERROR_PROCESSING, SUBKIND_NONE, "%Z%lld", GroupMemberTableRow_getElementName(item->row),
                static_cast<long long>(BufferManager_bytePosition(iterator->bufferManager)));
            return false;
    }
}

bool readCharacters(PIFIteratorForParser* iterator, ContextItemForParser* item, int64_t length) {
    int64_t charsRead = 0;
    iterator->extractedText = BufferManager_readCharacterData(
        iterator->bufferManager, item->plan->encodingIndex, length, &charsRead, item->row, true);
    if (ProcessingError_isSet(iterator->context->currentError)) return false;
    if (charsRead == length) return true;
    raiseOverflow(iterator, item->row);
    return false;
}

// The bytes of a field before it is read: in place where they lie together, else a copy.
class FieldBytes {
  public:
    FieldBytes(PIFIteratorForParser* iterator, int64_t length)
        : iterator_(iterator), bytes_(BufferManager_peekBytes(iterator->bufferManager, length)) {
        if (bytes_ == nullptr) copyBytes(length);
    }
    ~FieldBytes() {
        if (copy_ != nullptr) BufferManager_deAllocateBytes(iterator_->bufferManager, copy_);
    }
    FieldBytes(const FieldBytes&) = delete;
    FieldBytes& operator=(const FieldBytes&) = delete;

    const uint8_t* bytes() const { return bytes_; }  // null: fewer bytes than asked for

  private:
    void copyBytes(int64_t length) {
        BufferManager* buffer = iterator_->bufferManager;
        copy_ = BufferManager_allocateBytes(buffer, length);
        const int64_t got =
            BufferManager_read(buffer, copy_, length, BufferManager_bytePosition(buffer), false);
        if (got == length) bytes_ = copy_;
    }

    PIFIteratorForParser* iterator_;
    const uint8_t* bytes_;
    uint8_t* copy_ = nullptr;
};

struct Padding {
    int64_t leading;  // bytes
    int64_t trailing;
};

// Pad bytes at the ends that are trimmed, in whole characters of `width` bytes.
Padding countPadBytes(const RowPlan& plan, const uint8_t* bytes, int64_t length, int64_t width) {
    Padding padding{0, 0};
    if (plan.trimLeading != 0) {
        while (padding.leading < length && bytes[padding.leading] == plan.padByte) ++padding.leading;
    }
    padding.leading -= padding.leading % width;
    const int64_t rest = length - padding.leading;
    if (plan.trimTrailing != 0) {
        while (padding.trailing < rest && bytes[length - 1 - padding.trailing] == plan.padByte)
            ++padding.trailing;
    }
    padding.trailing -= padding.trailing % width;
    return padding;
}

bool skip(PIFIteratorForParser* iterator, const ContextItemForParser* item, int64_t bytes) {
    return bytes == 0 || BufferManager_skipBytes(iterator->bufferManager, bytes, item->row) == bytes;
}

bool readTrimmedBytes(PIFIteratorForParser* iterator, ContextItemForParser* item, int64_t length) {
    DFDLCharset* charset = charsetOf(iterator, item);
    if (!haveCharset(iterator, item, charset)) return false;
    if (item->plan->units == CHARACTERS && !DFDLCharset_isFixedWidth(charset) &&
        !DFDLCharset_isUCS2(charset)) {
        raiseForElement(iterator, item->row, DFDLParser_unableToApplyPadByte, ERROR_PROCESSING);
        return false;
    }
    Padding padding{0, 0};
    {
        const FieldBytes field(iterator, length);
        if (field.bytes() == nullptr) {
            raiseOverflow(iterator, item->row);
            return false;
        }
        padding = countPadBytes(*item->plan, field.bytes(), length, DFDLCharset_maxBytesPerChar(charset));
    }
    if (!skip(iterator, item, padding.leading)) return false;
    const int64_t kept = length - padding.leading - padding.trailing;
    iterator->extractedText = kept == 0
                                  ? DFDLUStringPooler_getDFDLUStringFromUChars(iterator->heap, u"", 0)
                                  : BufferManager_readBytesAsString(
                                        iterator->bufferManager, item->plan->encodingIndex, kept, item->row);
    return iterator->extractedText != nullptr && skip(iterator, item, padding.trailing);
}

std::u16string_view padOf(const RowPlan& plan) {
    return {plan.padCharacter, plan.padCharacter[1] == 0 ? 1U : 2U};
}

int32_t leadingPads(const UChar* chars, int32_t length, std::u16string_view pad) {
    int32_t at = 0;
    while (at < length) {
        if (std::u16string_view(chars + at, static_cast<size_t>(length - at)).substr(0, pad.size()) != pad)
            break;
        at += static_cast<int32_t>(pad.size());
    }
    return at;
}

int32_t lengthWithoutTrailingPads(const UChar* chars, int32_t start, int32_t length,
                                  std::u16string_view pad) {
    int32_t at = length;
    while (at > start) {
        if (!std::u16string_view(chars + start, static_cast<size_t>(at - start)).ends_with(pad)) break;
        at -= static_cast<int32_t>(pad.size());
    }
    return at;
}

void trimCharacters(const RowPlan& plan, DFDLUString* text) {
    const int32_t start = plan.trimLeading != 0 ? leadingPads(text->chars, text->length, padOf(plan)) : 0;
    const int32_t end = plan.trimTrailing != 0
                            ? lengthWithoutTrailingPads(text->chars, start, text->length, padOf(plan))
                            : text->length;
    if (start > 0)
        std::char_traits<UChar>::move(text->chars, text->chars + start, static_cast<size_t>(end - start));
    text->length = end - start;
    text->chars[text->length] = 0;
}

bool readText(PIFIteratorForParser* iterator, ContextItemForParser* item, int64_t length, int64_t bytes) {
    const RowPlan& plan = *item->plan;
    if (plan.trim == TRIM_BYTE) {
        if (bytes != LENGTH_BY_READING) return readTrimmedBytes(iterator, item, bytes);
        raiseForElement(iterator, item->row, DFDLParser_unableToApplyPadByte, ERROR_PROCESSING);
        return false;
    }
    if (bytes == LENGTH_BY_READING) {
        if (!readCharacters(iterator, item, length)) return false;
    } else {
        iterator->extractedText =
            BufferManager_readBytesAsString(iterator->bufferManager, plan.encodingIndex, bytes, item->row);
    }
    if (iterator->extractedText == nullptr) return false;
    if (plan.trim == TRIM_CHARACTER) trimCharacters(plan, iterator->extractedText);
    return true;
}

void reportContent(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    item->contentEnd = BufferManager_bytePosition(iterator->bufferManager);
    if (iterator->userRegionHandler != nullptr) {
        DocHandlerEventBuffer_parsedSimpleContentRegion(iterator->eventBuffer, item->row->scdText,
                                                        item->contentStart,
                                                        item->contentEnd - item->contentStart);
    }
    if (iterator->context->userTraceOn != 0) {
        PIFIteratorForParser_userTrace(iterator, item, ut_DFDLParser_scanForSpecifiedLengthValueIdentified,
                                       "%Z", iterator->extractedText);
    }
}

}  // namespace

bool PIFIteratorForParser_extractTextRepresentation(PIFIteratorForParser* this_, ContextItemForParser* item,
                                                    int64_t length) {
    int64_t bytes = 0;
    if (length < 0) length = 0;
    if (!byteLength(this_, item, length, &bytes)) return false;
    item->contentStart = BufferManager_bytePosition(this_->bufferManager);
    if (bytes == 0) {
        item->contentEnd = item->contentStart;
        return PIFIteratorForParser_processZeroLengthSimpleContent(this_, item);
    }
    item->possibleContent &= ~static_cast<uint32_t>(CONTENT_EMPTY);
    if (!readText(this_, item, length, bytes)) return false;
    reportContent(this_, item);
    return true;
}
