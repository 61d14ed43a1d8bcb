// When the occurrences of a member have come to an end.
#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/occursschemetable.h"
#include "dfdl/pif/rowtrace.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/dfdlerrorhandler.h"
#include "dfdl/processor/dfdlparserimpl.h"

namespace {

OccursCountKindEnum countKind(const GroupMemberTableRow* row) {
    if (row->occursRow == nullptr || (row->flags & GM_NOT_SINGLE) == 0) return OCK_FIXED;
    return row->occursRow->iOccursCountKind;
}

void traceAbsent(PIFIteratorForParser* iterator, ContextItemForParser* member, const char* kind) {
    if (iterator->context->userTraceOn == 0) return;
    const UChar* name = TraceHandlerAdapter_getNameForRow(iterator->traceAdapter, member->row);
    TraceHandlerAdapter_userTraceInfo(
        iterator->traceAdapter, member->row, ContextItem_getXPath(member),
        ut_DFDLParser_occurrenceNotFoundInData, "%D%S%i%s",
        static_cast<long long>(BufferManager_bytePosition(iterator->bufferManager)), name,
        member->occurrences, kind);
}

void traceNoProgress(PIFIteratorForParser* iterator, ContextItemForParser* member) {
    if (iterator->context->userTraceOn == 0) return;
    PIFIteratorForParser_userTrace(iterator, member, ut_DFDLParser_arrayParseTerminatedNoForwardProgress, "");
}

// An occurrence that has taken nothing from the data: the next one would take nothing either. An empty member
// behind a separator has made progress with its separator, which may be taken before the next occurrence.
bool standsStill(const ContextItemForParser* member, int64_t position) {
    const auto* group = static_cast<const ContextItemForParser*>(member->parent);
    if (group->plan->separatorPosition == INFIX && member->plan->lengthKind == DELIMITED) return false;
    return member->occurrences >= 1 && position == member->occurrenceStart;
}

void validateCount(PIFIteratorForParser* iterator, const ContextItemForParser* member, int32_t count) {
    const GroupMemberTableRow* row = member->row;
    if (iterator->validationEnabled == 0) return;
    if (row->max_occurs >= 0 && count > row->max_occurs) {
        PIFIteratorForParser_reportValidationError(iterator, DFDLParser_maxOccursViolation_ValidationError,
                                                   row, row->max_occurs, count);
    }
    if (count < row->min_occurs) {
        PIFIteratorForParser_reportValidationError(iterator, DFDLParser_minOccursViolation_ValidationError,
                                                   row, row->min_occurs, count);
    }
}

bool endOfParsed(PIFIteratorForParser* iterator, ContextItemForParser* member, int64_t position) {
    int32_t count = member->occurrences;
    bool end = true;
    if (member->succeeded == 0) {
        traceAbsent(iterator, member, "parsed");
        --count;
    } else if (standsStill(member, position)) {
        traceNoProgress(iterator, member);
        --count;
    } else {
        member->occurrenceStart = position;
        end = PIFIteratorForParser_isScopeExhausted(iterator);
    }
    if (end) validateCount(iterator, member, count);
    return end;
}

bool endOfImplicit(PIFIteratorForParser* iterator, ContextItemForParser* member, int64_t position) {
    if (member->succeeded == 0) {
        traceAbsent(iterator, member, "implicit");
        return true;
    }
    if (member->occurrences > member->row->min_occurs && standsStill(member, position)) {
        traceNoProgress(iterator, member);
        return true;
    }
    if (member->effectiveMaxOccurs < 0) {
        member->occurrenceStart = position;
        return false;
    }
    const bool belowMinimum = member->occurrences < member->row->min_occurs;
    if (belowMinimum || !PIFIteratorForParser_isScopeExhausted(iterator))
        return member->occurrences >= member->effectiveMaxOccurs;
    return true;
}

}  // namespace

bool PIFIteratorForParser_endOfArray(PIFIteratorForParser* this_, ContextItemForParser* group) {
    ContextItemForParser* member = group->selectedChild;
    const int64_t position = BufferManager_bitPosition(this_->bufferManager);
    switch (countKind(member->row)) {
        case OCK_FIXED:
            return member->occurrences >= member->effectiveMaxOccurs;
        case OCK_PARSED:
            return endOfParsed(this_, member, position);
        case OCK_IMPLICIT:
            return endOfImplicit(this_, member, position);
        default:
            return true;  // no item is made of a member that is counted in another way
    }
}

void PIFIteratorForParser_reportValidationError(PIFIteratorForParser* this_, const char* key,
                                                const GroupMemberTableRow* row, int32_t bound,
                                                int32_t count) {
    DFDLParserImpl* parser = this_->parser;
    ProcessingError* error = this_->context->currentError;
    ProcessingError_setValues(error, __FILE__, __LINE__, key, ERROR_VALIDATION, SUBKIND_NONE, "%Z%d%d",
                              row->scdText, bound, count);
    if (this_->context->userTraceOn != 0) TraceHandlerAdapter_userTraceError(this_->traceAdapter, error);
    DFDLErrorHandlerImpl_deliver(parser->errorHandler, &DFDLErrorHandlerImpl::validationError,
                                 DIAGNOSTIC_VALIDATION_ERROR, error, parser->messageHeap,
                                 parser->resourceCatalog, parser->messageBuffer);
    ProcessingError_reset(error);
}
