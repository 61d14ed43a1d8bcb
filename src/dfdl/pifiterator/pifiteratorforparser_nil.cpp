// Which content is nil.
#include <algorithm>
#include <string_view>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/framework/compileddfdlstringliteral.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/nilschemetable.h"
#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pif/simpletypetable.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pifiterator/fieldbytes.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/facetvalidator.h"

namespace {

void traceFinding(PIFIteratorForParser* iterator, ContextItemForParser* item, bool found) {
    if (iterator->context->userTraceOn == 0) return;
    PIFIteratorForParser_userTrace(
        iterator, item, found ? ut_DFDLParser_nilLiteralValueFound : ut_DFDLParser_nilLiteralValueNotFound,
        "");
}

// The bytes of the kept part, with the position moved to its start; -1 with an error.
int64_t goToKeptPart(PIFIteratorForParser* iterator, const ContextItemForParser* item,
                     const NilField& field) {
    BufferManager* buffer = iterator->bufferManager;
    const GroupMemberTableRow* row = item->row;
    if (item->plan->trim != TRIM_CHARACTER) {
        const bool moved =
            field.leading == 0 || BufferManager_skipBytes(buffer, field.leading, row) == field.leading;
        return moved ? field.bytes : -1;
    }
    const int32_t encoding = item->plan->encodingIndex;
    if (field.leading > 0) BufferManager_skipCharacters(buffer, encoding, field.leading, row);
    DFDLBufferMarker* start = BufferManager_mark(buffer);
    const int64_t from = BufferManager_bytePosition(buffer);
    if (field.characters > 0 && !PIFIteratorForParser_hasFailed(iterator))
        BufferManager_skipCharacters(buffer, encoding, field.characters, row);
    const int64_t bytes = BufferManager_bytePosition(buffer) - from;
    BufferManager_reset(buffer, start);
    BufferManager_release(buffer, start);
    return PIFIteratorForParser_hasFailed(iterator) ? -1 : bytes;
}

const DFDLUString* nilLiterals(const PIFIteratorForParser* iterator, const GroupMemberTableRow* row) {
    return StringLiteralTable_getStringLiteralForRowIndex(iterator->pif->stringLiteralTable,
                                                          row->nilRow->iNilLiteralIndex);
}

// Whether one of the literals takes all of the next bytes. The scope keeps the scanner from looking further.
bool matchesLiteral(PIFIteratorForParser* iterator, ContextItemForParser* item, int64_t bytes) {
    BufferManager* buffer = iterator->bufferManager;
    DelimitedScannerBytes* scanner = iterator->delimitedScanner;
    const DFDLUString* literals = nilLiterals(iterator, item->row);
    if (literals == nullptr || DelimitedScannerBytes_setMarkupSetWithGroupMemberRow(
                                   scanner, literals, item->row, true, "nilValue") == nullptr) {
        return false;
    }
    if (!BufferManager_imposeScopedBufferLength(buffer, bytes, BYTES, item->row)) return false;
    const bool found = DelimitedScannerBytes_checkForMarkupAtCurrentPosition(
        scanner, item->row->iTextEncodingIndex, false, item->row);
    BufferManager_removeScopedBufferLengthUnparser(buffer, item->row, false, 0);
    return found && scanner->matchedLength == bytes;
}

bool isAll(std::u16string_view text, std::u16string_view unit) {
    if (unit.empty() || text.empty() || text.size() % unit.size() != 0) return false;
    for (size_t at = 0; at < text.size(); at += unit.size()) {
        if (text.substr(at, unit.size()) != unit) return false;
    }
    return true;
}

bool isNilByteAllowed(PIFIteratorForParser* iterator, const ContextItemForParser* item) {
    DFDLCharset* charset =
        CharsetManager_getDFDLEncoding(iterator->charsetManager, item->plan->encodingIndex);
    if (item->plan->units != CHARACTERS || (charset != nullptr && DFDLCharset_isFixedWidth(charset)))
        return true;
    ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__,
                              DFDLParser_invalidNilLiteralByte, ERROR_PROCESSING, SUBKIND_NONE, "%Z",
                              GroupMemberTableRow_getElementName(item->row));
    return false;
}

bool isAllNilBytes(PIFIteratorForParser* iterator, const ContextItemForParser* item, int64_t bytes) {
    if (!isNilByteAllowed(iterator, item)) return false;
    const FieldBytes field(iterator->bufferManager, bytes);
    const auto nil = static_cast<uint8_t>(item->row->nilRow->nilByte);
    return field.bytes() != nullptr &&
           std::all_of(field.bytes(), field.bytes() + bytes, [nil](uint8_t byte) { return byte == nil; });
}

bool isAllNilCharacters(PIFIteratorForParser* iterator, const ContextItemForParser* item, int64_t bytes) {
    const NilSchemeTableRow* nil = item->row->nilRow;
    BufferManager* buffer = iterator->bufferManager;
    DFDLBufferMarker* start = BufferManager_mark(buffer);
    DFDLUString* text = BufferManager_readBytesAsString(buffer, item->plan->encodingIndex, bytes, item->row);
    BufferManager_reset(buffer, start);
    BufferManager_release(buffer, start);
    if (text == nullptr) return false;
    const std::u16string_view unit =
        nil->nilChar != 0 ? std::u16string_view(&nil->nilChar, 1) : DFDLUString_view(nil->nilString);
    const bool all = isAll(DFDLUString_view(text), unit);
    delete_DFDLUString(text);
    return all;
}

// What no data can be told apart from: the literal must be the empty string, and the scope must be empty or
// end here.
bool isComplexContentAbsent(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    switch (item->plan->lengthKind) {
        case EXPLICIT:
        case PREFIXED:
        case PATTERN:
            return item->imposedLength <= 0;
        case DELIMITED:
        case END_OF_PARENT:
            ParserRegionHandler_checkForMarkup(iterator->parserRegionHandler, item->markupSetId, item);
            return !PIFIteratorForParser_hasFailed(iterator) &&
                   PIFIteratorForParser_getScannedMarkup(iterator) != nullptr;
        default:
            // A grammar's mistake must not end the process that loaded it, as an internal error would.
            ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__,
                                      DFDLUnParser_internalError, ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%S",
                                      u"Nillable complex element encountered with incompatible lengthKind");
            return false;
    }
}

// Whether the terminator stands here exactly if nil wants it.
bool terminatorFitsNil(PIFIteratorForParser* iterator, ContextItemForParser* item) {
    if ((item->row->flags & GM_TERMINATOR) == 0) return true;
    BufferManager* buffer = iterator->bufferManager;
    const bool scoped = item->imposedLength >= 0;
    if (scoped) BufferManager_removeScopedBufferLengthUnparser(buffer, item->row, false, 0);
    ParserRegionHandler_checkForMarkup(iterator->parserRegionHandler, item->markupSetId, item);
    const MarkupInfo* markup = PIFIteratorForParser_getScannedMarkup(iterator);
    const bool found =
        markup != nullptr && markup->row == item->row && markup->literal->kind == MARKUP_TERMINATOR;
    if (scoped) {
        PIFIteratorForParser_forgetScannedMarkup(iterator);
        BufferManager_imposeScopedBufferLength(buffer, 0, BYTES, item->row);
    }
    const DelimiterPolicyEnum policy = PIFPhysicalPropertyHelper_getNilValueDelimiterPolicy(item->row);
    return found == (policy == DP_TERMINATOR_ONLY || policy == DP_BOTH);
}

}  // namespace

bool PIFIteratorForParser_isEmptyStringNil(const GroupMemberTableRow* row) {
    return row->nilRow != nullptr && row->nilRow->iNilKind == NK_LITERAL_VALUE &&
           row->nilRow->hasEmptyStringEntity;
}

bool PIFIteratorForParser_decideNil(PIFIteratorForParser* this_, ContextItemForParser* item, bool found) {
    traceFinding(this_, item, found);
    if (found) {
        item->possibleContent = CONTENT_NIL;
    } else {
        item->possibleContent &= ~static_cast<uint32_t>(CONTENT_NIL);
    }
    return found;
}

bool PIFIteratorForParser_checkNilLiteralValues(PIFIteratorForParser* this_, ContextItemForParser* item,
                                                const NilField& field) {
    const bool isEmpty = (item->plan->trim == TRIM_CHARACTER ? field.characters : field.bytes) == 0;
    if (isEmpty && PIFIteratorForParser_isEmptyStringNil(item->row))
        return PIFIteratorForParser_decideNil(this_, item, true);
    BufferManager_reset(this_->bufferManager, field.start);
    const int64_t bytes = goToKeptPart(this_, item, field);
    const bool found = bytes >= 0 && matchesLiteral(this_, item, bytes);
    BufferManager_reset(this_->bufferManager, field.end);
    if (PIFIteratorForParser_hasFailed(this_)) return false;
    return PIFIteratorForParser_decideNil(this_, item, found);
}

bool PIFIteratorForParser_checkNilLiteralCharacter(PIFIteratorForParser* this_, ContextItemForParser* item,
                                                   int64_t bytes) {
    const bool found = item->row->nilRow->nilIsByte ? isAllNilBytes(this_, item, bytes)
                                                    : isAllNilCharacters(this_, item, bytes);
    if (PIFIteratorForParser_hasFailed(this_)) return false;
    return PIFIteratorForParser_decideNil(this_, item, found);
}

bool PIFIteratorForParser_checkNilLogicalValue(PIFIteratorForParser* this_, ContextItemForParser* item) {
    const bool found = item->value != nullptr &&
                       FacetValidator_findLogicalValue(
                           this_->pif, item->value, item->row->nilRow->iNilLogicalIndex, NIL_LOGICAL_VALUE);
    if (this_->context->userTraceOn != 0) {
        PIFIteratorForParser_userTrace(
            this_, item, found ? ut_DFDLParser_nilLogicalValueFound : ut_DFDLParser_nilLogicalValueNotFound,
            "");
    }
    return found;
}

void PIFIteratorForParser_checkNilComplexContent(PIFIteratorForParser* this_, ContextItemForParser* item) {
    const bool nil = isComplexContentAbsent(this_, item) &&
                     PIFIteratorForParser_isEmptyStringNil(item->row) && terminatorFitsNil(this_, item);
    if (PIFIteratorForParser_hasFailed(this_)) return;
    PIFIteratorForParser_decideNil(this_, item, nil);
}
