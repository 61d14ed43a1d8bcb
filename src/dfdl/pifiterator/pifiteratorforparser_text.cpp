#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <string_view>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/converters/textconverter.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/nilschemetable.h"
#include "dfdl/pifiterator/fieldbytes.h"
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
    const bool scanned = (item->row->flags & GM_DELIMITED_LENGTH) != 0;
    switch (item->plan->units) {
        case BYTES:
            return item->plan->lengthKind != IMPLICIT || item->row->iPhysicalType != TEXT_STRING ||
                   checkImpliedLength(iterator, item);
        case CHARACTERS:
            return scanned || bytesForCharacters(iterator, item, length, bytes);
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

// Bytes of padding at the two ends of a field.
struct Padding {
    int64_t leading;
    int64_t trailing;
};

// What trimming has left of a field.
struct Kept {
    int64_t leading;     // padding before it: characters where a character is the pad, else bytes
    int64_t characters;  // where a character is the pad
    int64_t bytes;       // else
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

bool readTrimmedBytes(PIFIteratorForParser* iterator, ContextItemForParser* item, int64_t length,
                      Kept* result) {
    DFDLCharset* charset = charsetOf(iterator, item);
    if (!haveCharset(iterator, item, charset)) return false;
    const bool counted = (item->row->flags & GM_DELIMITED_LENGTH) == 0 && item->plan->units == CHARACTERS;
    if (counted && !DFDLCharset_isFixedWidth(charset) && !DFDLCharset_isUCS2(charset)) {
        raiseForElement(iterator, item->row, DFDLParser_unableToApplyPadByte, ERROR_PROCESSING);
        return false;
    }
    Padding padding{0, 0};
    {
        const FieldBytes field(iterator->bufferManager, length);
        if (field.bytes() == nullptr) {
            raiseOverflow(iterator, item->row);
            return false;
        }
        padding = countPadBytes(*item->plan, field.bytes(), length, DFDLCharset_maxBytesPerChar(charset));
    }
    if (!skip(iterator, item, padding.leading)) return false;
    const int64_t kept = length - padding.leading - padding.trailing;
    *result = {padding.leading, 0, kept};
    // A number that is padding throughout is zero.
    const std::u16string_view nothing = item->row->iPhysicalType == TEXT_NUMBER ? u"0" : u"";
    iterator->extractedText = kept == 0
                                  ? DFDLUStringPooler_getDFDLUStringFromView(iterator->heap, nothing)
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

// Zeros pad numbers, but one of them is the number's own where no other digit is left in front.
void keepZero(const DFDLUString* text, int32_t* start, int32_t* end) {
    const bool isEmpty = *start == *end;
    if (*start > 0 && (isEmpty || u_isdigit(text->chars[*start]) == 0)) {
        --*start;
    } else if (isEmpty && *end < text->length) {
        ++*end;
    }
}

// The characters of padding that stood in front.
int32_t trimCharacters(const RowPlan& plan, bool isNumber, DFDLUString* text) {
    int32_t start = plan.trimLeading != 0 ? leadingPads(text->chars, text->length, padOf(plan)) : 0;
    int32_t end = plan.trimTrailing != 0
                      ? lengthWithoutTrailingPads(text->chars, start, text->length, padOf(plan))
                      : text->length;
    if (isNumber && padOf(plan) == u"0") keepZero(text, &start, &end);
    if (start > 0)
        std::char_traits<UChar>::move(text->chars, text->chars + start, static_cast<size_t>(end - start));
    text->length = end - start;
    text->chars[text->length] = 0;
    return start / static_cast<int32_t>(padOf(plan).size());
}

bool readText(PIFIteratorForParser* iterator, ContextItemForParser* item, int64_t length, int64_t bytes,
              Kept* kept) {
    const RowPlan& plan = *item->plan;
    if (plan.trim == TRIM_BYTE) {
        if (bytes != LENGTH_BY_READING) return readTrimmedBytes(iterator, item, bytes, kept);
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
    *kept = {0, 0, bytes};
    if (plan.trim == TRIM_CHARACTER) {
        kept->leading =
            trimCharacters(plan, item->row->iPhysicalType == TEXT_NUMBER, iterator->extractedText);
        kept->characters = u_countChar32(iterator->extractedText->chars, iterator->extractedText->length);
    }
    return true;
}

const char* contentTraceKey(const RowPlan& plan) {
    switch (plan.lengthKind) {
        case DELIMITED:
            return ut_DFDLParser_scanForMarkupLengthValueIdentified;
        case PATTERN:
        case END_OF_PARENT:
            return ut_DFDLParser_scanForVariableLengthValueIdentified;
        default:
            return ut_DFDLParser_scanForSpecifiedLengthValueIdentified;
    }
}

void reportContent(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    item->contentEnd = BufferManager_bytePosition(iterator->bufferManager);
    if (iterator->userRegionHandler == nullptr) return;
    DocHandlerEventBuffer_parsedSimpleContentRegion(
        iterator->eventBuffer, item->row->scdText, item->contentStart, item->contentEnd - item->contentStart);
}

// Nil is looked for in the bytes as they are, padding and all, so their number must be known.
bool measureCharacters(PIFIteratorForParser* iterator, ContextItemForParser* item, int64_t length,
                       int64_t* bytes) {
    BufferManager* buffer = iterator->bufferManager;
    DFDLBufferMarker* start = BufferManager_mark(buffer);
    const int64_t from = BufferManager_bytePosition(buffer);
    const bool read = readCharacters(iterator, item, length);
    PIFIteratorForParser_releaseExtractedText(iterator);
    *bytes = BufferManager_bytePosition(buffer) - from;
    BufferManager_reset(buffer, start);
    BufferManager_release(buffer, start);
    return read;
}

// A field of nothing but nil characters is moved over and has no text.
bool readUnlessNilCharacters(PIFIteratorForParser* iterator, ContextItemForParser* item, int64_t length,
                             int64_t bytes) {
    Kept kept{};
    if (bytes == LENGTH_BY_READING && !measureCharacters(iterator, item, length, &bytes)) return false;
    const bool nil = PIFIteratorForParser_checkNilLiteralCharacter(iterator, item, bytes);
    if (PIFIteratorForParser_hasFailed(iterator)) return false;
    // Nil bytes need not be text in the encoding; they are decoded only where an outer length counts
    // characters.
    if (nil && item->row->nilRow->nilIsByte && iterator->bufferManager->charTrackerCount == 0)
        return skip(iterator, item, bytes);
    if (!readText(iterator, item, length, bytes, &kept)) return false;
    if (nil) PIFIteratorForParser_releaseExtractedText(iterator);
    return true;
}

bool readAndMatchNilLiterals(PIFIteratorForParser* iterator, ContextItemForParser* item, int64_t length,
                             int64_t bytes) {
    Kept kept{};
    BufferManager* buffer = iterator->bufferManager;
    if (bytes == LENGTH_BY_READING && !measureCharacters(iterator, item, length, &bytes)) return false;
    DFDLBufferMarker* start = BufferManager_mark(buffer);
    bool read = readText(iterator, item, length, bytes, &kept);
    if (read) {
        DFDLBufferMarker* end = BufferManager_mark(buffer);
        PIFIteratorForParser_checkNilLiteralValues(iterator, item,
                                                   {start, end, kept.leading, kept.characters, kept.bytes});
        BufferManager_release(buffer, end);
        read = !PIFIteratorForParser_hasFailed(iterator);
    }
    BufferManager_release(buffer, start);
    return read;
}

bool readContent(PIFIteratorForParser* iterator, ContextItemForParser* item, int64_t length, int64_t bytes) {
    if ((item->possibleContent & CONTENT_NIL) != 0) {
        if (item->plan->nilKind == NK_LITERAL_CHAR)
            return readUnlessNilCharacters(iterator, item, length, bytes);
        if (item->plan->nilKind == NK_LITERAL_VALUE)
            return readAndMatchNilLiterals(iterator, item, length, bytes);
    }
    Kept kept{};
    return readText(iterator, item, length, bytes, &kept);
}

bool removeEscapes(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    DFDLUString* text = iterator->extractedText;
    if ((item->row->flags & GM_ESCAPE_SCHEME) == 0 || text == nullptr) return true;
    DFDLUString* plain =
        item->markupSetId == -1
            ? TextConverter_applyEscapeScheme(iterator->heap, text, item->row)
            : TextConverter_applyEscapeSchemeUsingCompiledMarkupSetData(
                  iterator->heap, text, item->row,
                  DelimitedScannerBytes_setMarkupSet(iterator->delimitedScanner, item->markupSetId, item));
    if (PIFIteratorForParser_hasFailed(iterator)) return false;
    if (plain == text) return true;
    delete_DFDLUString(text);
    iterator->extractedText = plain;
    return true;
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
    if (!readContent(this_, item, length, bytes)) return false;
    reportContent(this_, item);
    if (!removeEscapes(this_, item)) return false;
    if (this_->context->userTraceOn != 0 && this_->extractedText != nullptr)
        PIFIteratorForParser_userTrace(this_, item, contentTraceKey(*item->plan), "%Z", this_->extractedText);
    return true;
}
