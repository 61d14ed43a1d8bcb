#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/grouptable.h"
#include "dfdl/pif/occursschemetable.h"
#include "dfdl/pifiterator/backtrackingmanager.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/rowplan.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

void traceState(const PIFIteratorForParser* iterator, const char* function, const char* state) {
    if (iterator->context->serviceTraceOn != 0)
        TraceHandlerAdapter_service(iterator->traceAdapter, function, state);
}

bool isHidden(const ContextItemForParser* group) { return (group->row->flags & GM_HIDDEN) != 0; }

// An occurrence beyond the required ones.
bool isOptional(const ContextItemForParser* member) {
    return member->occurrences >= member->effectiveMinOccurs;
}

bool isUnordered(const ContextItemForParser* group) { return group->kind == ITEM_UNORDERED; }

// The data ended where a member was still wanted by its own bounds, though not by how its occurrences are
// counted.
void reportMissingTrailing(PIFIteratorForParser* iterator, const ContextItemForParser* group) {
    const ContextItemForParser* member = group->selectedChild;
    if (iterator->validationEnabled == 0 || isUnordered(group)) return;
    if (member->occurrences > 0 || member->row->min_occurs <= 0) return;
    PIFIteratorForParser_reportValidationError(iterator, DFDLParser_minOccursViolation_ValidationError,
                                               member->row, group->row->min_occurs, -1);
}

void traceAttempt(PIFIteratorForParser* iterator, const ContextItemForParser* group) {
    ContextItemForParser* member = group->selectedChild;
    if (iterator->context->userTraceOn == 0) return;
    if (isUnordered(group))
        PIFIteratorForParser_userTrace(iterator, member, ut_DFDLParser_attemptUnorderedBranch, "");
    if (!isOptional(member)) return;
    ContextItem_incrementOccurrences(member);
    PIFIteratorForParser_userTrace(iterator, member, ut_DFDLParser_attemptOptionalElement, "%d",
                                   member->occurrences);
    ContextItem_decrementOccurrences(member);
}

bool isTrailing(const ContextItemForParser* member) {
    return (member->row->flags & GM_TRAILING_OPTIONAL) != 0;
}

void processLeadingSeparator(PIFIteratorForParser* iterator, ContextItemForParser* group) {
    const int32_t position = group->plan->separatorPosition;
    if (position == INFIX || position == PREFIX) PIFIteratorForParser_group_processSeparator(iterator, group);
}

// The scopes that the group imposed: first the one that an enclosing delimiter closed, then its own length,
// of which what is left is skipped.
bool endScopes(PIFIteratorForParser* iterator, ContextItemForParser* group) {
    BufferManager* buffer = iterator->bufferManager;
    if (group->scopeClosed != 0) {
        group->scopeClosed = 0;
        BufferManager_removeScopedBufferLengthUnparser(buffer, group->row, false, 0);
    }
    if (group->imposedLength >= 0) {
        group->imposedLength = -1;
        if (!BufferManager_removeScopedBufferLengthUnparser(buffer, group->row, true, 0)) return false;
    }
    PIFIteratorForParser_forgetEndOfData(iterator);
    return true;
}

// The failure of an inner level passes through a group that it does not concern; one of the member's own is
// the group's to judge.
bool belongsElsewhere(ProcessingError* error, const GroupMemberTableRow* member) {
    if (error->subKind != SUBKIND_ASSERT || error->row == nullptr) return false;
    if (error->row != member) return true;
    error->row = nullptr;
    return false;
}

// Makes the occurrence as if it had never been tried. False if its failure stands.
bool undoFailedMember(PIFIteratorForParser* iterator, ContextItemForParser* group) {
    Context* context = iterator->context;
    if (group->retainedError != context->activeError) {
        ProcessingError_reset(context->currentError);
        Context_swapErrors(context);
    }
    if (belongsElsewhere(context->currentError, group->selectedChild->row)) {
        ContextItemForParser_releaseCheckPoint(group);
        return false;
    }
    if (group->checkPoint == nullptr || context->currentError->kind == ERROR_SCHEMA_DEFINITION) return false;
    PIFIteratorForParser_STATE_BACKTRACK_TO_CHECKPOINT(iterator, group);
    ContextItemForParser_releaseCheckPoint(group);
    ProcessingError_reset(context->currentError);
    group->retainedError = nullptr;
    return true;
}

}  // namespace

const GroupMemberTableRow* PIFIteratorForParser_nextCandidate(PIFIteratorForParser* this_,
                                                              ContextItemForParser* group) {
    if (group->hasResumeRow != 0) return group->resumeRow;
    if (group->selectedChild == nullptr) return ContextItemForParser_firstMemberRow(group);
    if (!PIFIteratorForParser_endOfArray(this_, group)) return group->selectedChild->row;
    return group->functions->getNextSiblingToParse(group);
}

void PIFIteratorForParser_leaveHidden(PIFIteratorForParser* this_, const ContextItemForParser* group) {
    if (isHidden(group)) --this_->hiddenDepth;
}

void PIFIteratorForParser_group_open(PIFIteratorForParser* this_, ContextItemForParser* group) {
    ContextItem_incrementOccurrences(group);
    if (this_->userRegionHandler != nullptr) {
        DocHandlerEventBuffer_groupStart(this_->eventBuffer, group->row->scdText,
                                         BufferManager_bytePosition(this_->bufferManager));
    }
    group->representationStart = BufferManager_bitPosition(this_->bufferManager);
    group->possibleContent &= ~static_cast<uint32_t>(CONTENT_EMPTY | CONTENT_NIL);
    if (isHidden(group)) ++this_->hiddenDepth;
    if (!PIFIteratorForParser_applyLeadingAlignment(this_, group)) return;
    if ((group->row->flags & GM_INITIATOR) != 0 &&
        !PIFIteratorForParser_processElementInitiatorRegion(this_, group)) {
        return;
    }
    if (group->plan->lengthKind == EXPLICIT &&
        !PIFIteratorForParser_STATE_SET_LENGTH_FROM_EXPLICIT_LENGTH(this_, group)) {
        return;
    }
    PIFIteratorForParser_forgetScannedMarkup(this_);
    group->firstMember = group->plan->separatorPosition == INFIX;
    if (group->plan->separatorPosition == POSTFIX)
        group->lastSeparatorBytePosition = BufferManager_bytePosition(this_->bufferManager);
}

void PIFIteratorForParser_group_selectNextSequenceMember(PIFIteratorForParser* this_,
                                                         ContextItemForParser* group) {
    for (;;) {
        const GroupMemberTableRow* candidate = PIFIteratorForParser_nextCandidate(this_, group);
        group->hasResumeRow = 0;
        if (candidate == nullptr) {
            ContextItemForParser_endGroup(group);
            return;
        }
        if (group->selectedChild != nullptr && candidate == group->selectedChild->row) {
            ContextItemForParser_resetForOccurrence(group->selectedChild);
            return;
        }
        ContextItemForParser* member = PIFIteratorForParser_createContextItem(this_, candidate);
        if (member == nullptr) return;
        ContextItemForParser_setOrderedChild(group, member);
        if (member->effectiveMaxOccurs != 0) return;
    }
}

void PIFIteratorForParser_group_beforeGroupMember(PIFIteratorForParser* this_, ContextItemForParser* group) {
    ContextItemForParser* member = group->selectedChild;
    const bool mayBeAbsent = isOptional(member) || isUnordered(group);
    const bool mayEndHere = isUnordered(group) || (isOptional(member) && isTrailing(member));
    if (mayEndHere && PIFIteratorForParser_isScopeExhausted(this_)) {
        reportMissingTrailing(this_, group);
        ContextItemForParser_endGroup(group);
        return;
    }
    if (member->emptyOccurrences >= MAX_EMPTY_OCCURRENCES) {
        PIFIteratorForParser_raiseEndless(this_, member->row);
        return;
    }
    member->occurrenceStart = BufferManager_bitPosition(this_->bufferManager);
    if (!mayBeAbsent) return processLeadingSeparator(this_, group);
    traceAttempt(this_, group);
    // A separator that may be suppressed goes with the attempt; any other stands, whatever becomes of it.
    if (group->plan->separatorPolicy == SUPPRESS) {
        PIFIteratorForParser_STATE_TAKE_CHECKPOINT(this_, group);
        return processLeadingSeparator(this_, group);
    }
    processLeadingSeparator(this_, group);
    if (group->state == STEP_CLOSE || PIFIteratorForParser_hasFailed(this_)) return;
    PIFIteratorForParser_STATE_TAKE_CHECKPOINT(this_, group);
}

void PIFIteratorForParser_group_afterGroupMember(PIFIteratorForParser* this_, ContextItemForParser* group) {
    ContextItemForParser* member = group->selectedChild;
    const bool succeeded = member->succeeded != 0;
    const bool moved = BufferManager_bitPosition(this_->bufferManager) != member->occurrenceStart;
    member->emptyOccurrences = moved ? 0 : member->emptyOccurrences + 1;
    if (succeeded) {
        if (group->checkPoint != nullptr) PIFIteratorForParser_STATE_RELEASE_CHECKPOINT(this_, group);
    } else if (!undoFailedMember(this_, group)) {
        return;
    }
    if (group->plan->separatorPosition == POSTFIX &&
        (succeeded || group->plan->separatorPolicy != SUPPRESS)) {
        PIFIteratorForParser_group_processSeparator(this_, group);
        if (PIFIteratorForParser_hasFailed(this_)) return;
    }
    group->afterMember = BufferManager_bitPosition(this_->bufferManager);
}

void PIFIteratorForParser_STATE_TAKE_CHECKPOINT(PIFIteratorForParser* this_, ContextItemForParser* group) {
    traceState(this_, __func__, "PS_TAKE_CHECKPOINT");
    if (group->selectedChild != nullptr) ContextItemForParser_createCheckPoint(group);
}

void PIFIteratorForParser_STATE_RELEASE_CHECKPOINT(PIFIteratorForParser* this_, ContextItemForParser* group) {
    traceState(this_, __func__, "PS_RELEASE_CHECKPOINT");
    ContextItemForParser_releaseCheckPoint(group);
}

void PIFIteratorForParser_STATE_BACKTRACK_TO_CHECKPOINT(PIFIteratorForParser* this_,
                                                        ContextItemForParser* group) {
    traceState(this_, __func__, "PS_BACKTRACK_TO_CHECKPOINT");
    BacktrackingManager_restoreToCheckPoint(this_->backtrackingManager, group->checkPoint);
    group->representationEnd = BufferManager_bitPosition(this_->bufferManager);
    if (this_->context->userTraceOn != 0) {
        PIFIteratorForParser_userTrace(this_, group, ut_DFDLParser_backtracking, "");
    }
}

void PIFIteratorForParser_group_close(PIFIteratorForParser* this_, ContextItemForParser* group) {
    const int32_t position = group->plan->separatorPosition;
    ContextItemForParser_releaseCheckPoint(group);
    if ((position == INFIX || position == PREFIX) &&
        !PIFIteratorForParser_STATE_CHECK_UNEXPECTED_SEPARATOR(this_, group)) {
        return;
    }
    if (!endScopes(this_, group)) return;
    if ((group->row->flags & GM_TERMINATOR) != 0 &&
        !PIFIteratorForParser_processTerminatorRegion(this_, group))
        return;
    if (!PIFIteratorForParser_applyTrailingAlignment(this_, group)) return;
    group->representationEnd = BufferManager_bitPosition(this_->bufferManager);
    if (this_->userRegionHandler != nullptr) {
        DocHandlerEventBuffer_groupEnd(this_->eventBuffer, group->row->scdText,
                                       BufferManager_bytePosition(this_->bufferManager));
    }
    ContextItemForParser_close(group);
    ContextItemForParser_setOrderedChild(group, nullptr);
    if (PIFIteratorForParser_hasFailed(this_)) return;
    PIFIteratorForParser_leaveHidden(this_, group);
    PIFIteratorForParser_pop(this_);
}
