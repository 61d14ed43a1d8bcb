#include <algorithm>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/dfdltype.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/binarynumbertable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/nilschemetable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

// A number in two's complement has lengths that its type allows.
bool fitsType(PIFIteratorForParser* iterator, const ContextItemForParser* item, int64_t length) {
    const GroupMemberTableRow* row = item->row;
    const BinaryNumberTableRow* number = GroupMemberTableRow_getBinaryNumberRow(row);
    if (row->iPhysicalType != BINARY_NUMBER || number == nullptr ||
        number->iBinaryNumberRepresentation != BINARY || length < 1) {
        return true;
    }
    const bool bits = item->plan->units == BITS && item->plan->lengthKind != DELIMITED;
    const bool valid = bits ? DFDLType_isValidBitLength(row->simpleTypeKind, length)
                            : DFDLType_isValidByteLength(row->simpleTypeKind, length);
    if (valid) return true;
    ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__,
                              DFDLParser_binaryNumberLengthExceedsType, ERROR_PROCESSING, SUBKIND_NONE,
                              "%Z%s%lld%s", row->scdText,
                              DFDLType_getTypeName(DFDLType_getTypeFromDFDLSimpleType(row->simpleTypeKind)),
                              static_cast<long long>(length), bits ? "bits" : "bytes");
    return false;
}

void reportContent(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    item->contentEnd = BufferManager_bytePosition(iterator->bufferManager);
    if (iterator->userRegionHandler == nullptr) return;
    DocHandlerEventBuffer_parsedSimpleContentRegion(
        iterator->eventBuffer, item->row->scdText, item->contentStart, item->contentEnd - item->contentStart);
}

// Whether the block is made of nothing but the pattern, again and again; the end may cut the last one off.
bool isAll(const uint8_t* bytes, int64_t count, const uint8_t* pattern, int64_t patternBytes) {
    if (patternBytes < 1) return false;
    for (int64_t at = 0; at < count; at += patternBytes) {
        const int64_t length = std::min(patternBytes, count - at);
        if (!std::equal(pattern, pattern + length, bytes + at)) return false;
    }
    return true;
}

bool isAllNilCharacters(PIFIteratorForParser* iterator, const ContextItemForParser* item) {
    const NilSchemeTableRow* nil = item->row->nilRow;
    const auto nilByte = static_cast<uint8_t>(nil->nilByte);
    if (nil->nilIsByte) return isAll(iterator->extractedBytes, iterator->extractedByteCount, &nilByte, 1);
    DFDLCharset* charset =
        CharsetManager_getDFDLEncoding(iterator->charsetManager, item->plan->encodingIndex);
    UConverter* converter = charset == nullptr ? nullptr : DFDLCharset_getConverter(charset);
    if (converter == nullptr) return false;
    int32_t bytes = 0;
    const char* encoded = CharsetManager_encode_UChar(iterator->charsetManager, &nil->nilChar, 1, &bytes,
                                                      converter, item->row, charset->name);
    return encoded != nullptr && isAll(iterator->extractedBytes, iterator->extractedByteCount,
                                       reinterpret_cast<const uint8_t*>(encoded), bytes);
}

// The field lies between the marks, on byte boundaries.
bool checkNil(PIFIteratorForParser* iterator, ContextItemForParser* item, DFDLBufferMarker* start) {
    if ((item->possibleContent & CONTENT_NIL) == 0) return true;
    if (item->plan->nilKind == NK_LITERAL_CHAR) {
        PIFIteratorForParser_decideNil(iterator, item, isAllNilCharacters(iterator, item));
    } else if (item->plan->nilKind == NK_LITERAL_VALUE) {
        DFDLBufferMarker* end = BufferManager_mark(iterator->bufferManager);
        PIFIteratorForParser_checkNilLiteralValues(iterator, item,
                                                   {start, end, 0, 0, item->contentEnd - item->contentStart});
        BufferManager_release(iterator->bufferManager, end);
    }
    return !PIFIteratorForParser_hasFailed(iterator);
}

bool extract(PIFIteratorForParser* iterator, ContextItemForParser* item, int64_t length,
             DFDLBufferMarker* start) {
    iterator->extractedBytes = ParserRegionHandler_extractBinaryRepresentation(
        iterator->parserRegionHandler, item->row, length, &iterator->extractedByteCount);
    if (PIFIteratorForParser_hasFailed(iterator)) return false;
    reportContent(iterator, item);
    if (iterator->extractedByteCount == 0)
        return PIFIteratorForParser_processZeroLengthSimpleContent(iterator, item);
    item->possibleContent &= ~static_cast<uint32_t>(CONTENT_EMPTY);
    return checkNil(iterator, item, start);
}

}  // namespace

bool PIFIteratorForParser_extractBinaryRepresentation(PIFIteratorForParser* this_, ContextItemForParser* item,
                                                      int64_t length) {
    item->contentStart = BufferManager_bytePosition(this_->bufferManager);
    item->contentEnd = item->contentStart;
    if (!fitsType(this_, item, length)) return false;
    const bool marks = item->plan->nilKind == NK_LITERAL_VALUE;
    DFDLBufferMarker* start = marks ? BufferManager_mark(this_->bufferManager) : nullptr;
    const bool extracted = extract(this_, item, length, start);
    if (marks) BufferManager_release(this_->bufferManager, start);
    return extracted;
}

void PIFIteratorForParser_releaseExtractedBytes(PIFIteratorForParser* this_) {
    if (this_->extractedBytes != nullptr)
        BufferManager_deAllocateBytes(this_->bufferManager, this_->extractedBytes);
    this_->extractedBytes = nullptr;
    this_->extractedByteCount = 0;
}
