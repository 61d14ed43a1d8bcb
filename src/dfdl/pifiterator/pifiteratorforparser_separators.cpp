#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/framework/compileddfdlstringliteral.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pif/rowtrace.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

long long bytePosition(const PIFIteratorForParser* iterator) {
    return static_cast<long long>(BufferManager_bytePosition(iterator->bufferManager));
}

void raiseMissingSeparator(PIFIteratorForParser* iterator, ContextItemForParser* group) {
    ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__,
                              DFDLParser_missingSeparator, ERROR_PROCESSING, SUBKIND_NONE, "%Z%lld%Z",
                              PIFPhysicalPropertyHelper_getSeparatorProperty(group->row),
                              bytePosition(iterator), PIFIteratorForParser_getPathForError(iterator, group));
}

// Whether the delimiter is a separator of the group itself.
bool isOwnSeparator(const MarkupInfo* markup, const ContextItemForParser* group) {
    return markup != nullptr && markup->row == group->row && markup->literal->kind == MARKUP_SEPARATOR;
}

void reportSeparator(PIFIteratorForParser* iterator, const ContextItemForParser* group, int64_t start) {
    if (iterator->userRegionHandler == nullptr) return;
    using Report = void (*)(DocHandlerEventBuffer*, const DFDLUString*, int64_t, int64_t);
    static constexpr Report REPORTS[] = {DocHandlerEventBuffer_parsedInfixSeparatorRegion,
                                         DocHandlerEventBuffer_parsedPrefixSeparatorRegion,
                                         DocHandlerEventBuffer_parsedPostfixSeparatorRegion};
    REPORTS[group->plan->separatorPosition](iterator->eventBuffer, group->row->scdText, start,
                                            bytePosition(iterator) - start);
}

bool consumeSeparator(PIFIteratorForParser* iterator, ContextItemForParser* group, const MarkupInfo& markup) {
    if (iterator->context->userTraceOn != 0) {
        PIFIteratorForParser_userTrace(iterator, group, ut_DFDLParser_separatorParsed, "%Z",
                                       markup.literal->text);
    }
    const int64_t start = bytePosition(iterator);
    if (!PIFIteratorForParser_consumeMarkup(iterator, group->row, markup.literal, markup.length))
        return false;
    reportSeparator(iterator, group, start);
    PIFIteratorForParser_forgetScannedMarkup(iterator);
    return true;
}

// Consumes the group's separator if it stands here. False with an error; another delimiter that stands here
// stays the scanned one.
bool processSeparatorRegion(PIFIteratorForParser* iterator, ContextItemForParser* group) {
    const MarkupInfo* markup = PIFIteratorForParser_getScannedMarkup(iterator);
    if (markup == nullptr) {
        ParserRegionHandler_checkForMarkup(iterator->parserRegionHandler, group->markupSetId, group);
        if (PIFIteratorForParser_hasFailed(iterator)) return false;
        markup = PIFIteratorForParser_getScannedMarkup(iterator);
    }
    if (markup == nullptr || markup->literal->kind == MARKUP_OTHER) {
        const RowPlan* plan = group->plan;
        if (plan->separatorPolicy == SUPPRESS && plan->separatorPosition != POSTFIX &&
            group->selectedChild != nullptr) {
            group->selectedChild->succeeded = 0;
        }
        raiseMissingSeparator(iterator, group);
        return false;
    }
    return !isOwnSeparator(markup, group) || consumeSeparator(iterator, group, *markup);
}

// Another level's delimiter was seen: what the group still has is empty.
bool closeScope(PIFIteratorForParser* iterator, ContextItemForParser* group) {
    if (group->scopeClosed != 0) return true;
    if (!BufferManager_imposeScopedBufferLength(iterator->bufferManager, 0, BYTES, group->row)) return false;
    group->scopeClosed = 1;
    return true;
}

bool hasEnoughOccurrences(const ContextItemForParser* member) {
    return member != nullptr &&
           (member->occurrences >= member->row->min_occurs || (member->row->flags & GM_SUPPRESSABLE) != 0);
}

// Whether the group may end where its separator is absent.
bool mayEndWithoutSeparator(const ContextItemForParser* group) {
    const ContextItemForParser* member = group->selectedChild;
    const int32_t policy = group->plan->separatorPolicy;
    if (policy != SUPPRESS && policy != SUPPRESS_AT_END) return false;
    if (group->plan->separatorPosition == POSTFIX && member != nullptr && member->succeeded != 0 &&
        ContextItem_getRepresentationLength(member) > 0) {
        return false;
    }
    if (policy == SUPPRESS) return hasEnoughOccurrences(member) || group->kind == ITEM_UNORDERED;
    return hasEnoughOccurrences(member) && (member->row->flags & GM_TRAILING_OPTIONAL) != 0;
}

}  // namespace

bool PIFIteratorForParser_consumeMarkup(PIFIteratorForParser* this_, const GroupMemberTableRow* row,
                                        const CompiledDFDLStringLiteral* literal, int64_t length) {
    BufferManager* buffer = this_->bufferManager;
    if (length == 0) return true;
    if (buffer->charTrackerCount == 0 || row->encodingRow == nullptr || !literal->isCharacterText)
        return BufferManager_skipBytes(buffer, length, row) == length;
    DFDLUString* text = BufferManager_readBytesAsString(buffer, row->iTextEncodingIndex, length, row);
    delete_DFDLUString(text);
    return text != nullptr;
}

void PIFIteratorForParser_group_processSeparator(PIFIteratorForParser* this_, ContextItemForParser* group) {
    if (group->plan->separatorPosition == INFIX && group->firstMember != 0) {
        group->firstMember = 0;
        group->lastSeparatorBytePosition = bytePosition(this_);
        return;
    }
    if (!processSeparatorRegion(this_, group)) return;
    if (this_->scannedMarkup != nullptr) {
        if (!closeScope(this_, group)) return;
        if (!mayEndWithoutSeparator(group)) {
            raiseMissingSeparator(this_, group);
            return;
        }
        group->state = STEP_CLOSE;
    }
    group->lastSeparatorBytePosition = bytePosition(this_);
}

bool PIFIteratorForParser_STATE_CHECK_UNEXPECTED_SEPARATOR(PIFIteratorForParser* this_,
                                                           ContextItemForParser* group) {
    const MarkupInfo* markup = PIFIteratorForParser_getScannedMarkup(this_);
    if (!isOwnSeparator(markup, group)) return true;
    DelimitedScannerBytes* scanner = this_->delimitedScanner;
    const CompiledDFDLStringLiteral* literal = markup->literal;
    const bool otherReading =
        DelimitedScannerBytes_setMarkupSet(scanner, group->markupSetId, group) != nullptr &&
        DelimitedScannerBytes_getAlternativeScannedMarkup(scanner, literal);
    PIFIteratorForParser_forgetScannedMarkup(this_);
    if (otherReading) return true;
    const GroupMemberTableRow* row = group->row;
    const GroupMemberTableRow* last = group->selectedChild != nullptr ? group->selectedChild->row : row;
    ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__,
                              DFDLParser_UnexpectedPostfixSeparator, ERROR_PROCESSING, SUBKIND_NONE,
                              "%Z%lld%Z%S%Z", GroupMemberTableRow_getGroupName(row), bytePosition(this_),
                              literal->text, TraceHandlerAdapter_getNameForRow(this_->traceAdapter, last),
                              PIFIteratorForParser_getPathForError(this_, group));
    return false;
}
