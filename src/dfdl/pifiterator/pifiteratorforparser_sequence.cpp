#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/grouptable.h"
#include "dfdl/pif/occursschemetable.h"
#include "dfdl/pifiterator/backtrackingmanager.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/rowplan.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

bool failed(const PIFIteratorForParser* iterator) {
    return ProcessingError_isSet(iterator->context->currentError);
}

bool isHidden(const ContextItemForParser* group) { return (group->row->flags & GM_HIDDEN) != 0; }

// An occurrence beyond the required ones.
bool isOptional(const ContextItemForParser* member) {
    return member->occurrences >= member->effectiveMinOccurs;
}

void endGroup(ContextItemForParser* group) {
    ContextItemForParser_setOrderedChild(group, nullptr);
    group->state = STEP_CLOSE;
}

const GroupMemberTableRow* firstMember(const ContextItemForParser* group) {
    const GroupTableRow* content = group->row->groupRow;
    return content == nullptr ? nullptr : content->firstMember;
}

// Everything in the scope has been read. Loads what the input still has first, so that input in pieces and
// input in one piece end at the same place.
bool isScopeExhausted(PIFIteratorForParser* iterator) {
    BufferManager_loadAhead(iterator->bufferManager);
    return BufferManager_endOfScopedDataStream(iterator->bufferManager);
}

// The data ended where a member was still wanted by its own bounds, though not by how its occurrences are
// counted.
void reportMissingTrailing(PIFIteratorForParser* iterator, const ContextItemForParser* group) {
    const ContextItemForParser* member = group->selectedChild;
    if (iterator->validationEnabled == 0 || member->occurrences > 0 || member->row->min_occurs <= 0) return;
    PIFIteratorForParser_reportValidationError(iterator, DFDLParser_minOccursViolation_ValidationError,
                                               member->row, group->row->min_occurs, -1);
}

void traceAttempt(PIFIteratorForParser* iterator, ContextItemForParser* member) {
    if (iterator->context->userTraceOn == 0) return;
    ContextItem_incrementOccurrences(member);
    PIFIteratorForParser_userTrace(iterator, member, ut_DFDLParser_attemptOptionalElement, "%d",
                                   member->occurrences);
    ContextItem_decrementOccurrences(member);
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
    if (group->selectedChild == nullptr) return firstMember(group);
    if (!PIFIteratorForParser_endOfArray(this_, group)) return group->selectedChild->row;
    return group->functions->getNextSiblingToParse(group);
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
    if (group->plan->lengthKind == EXPLICIT) {
        PIFIteratorForParser_STATE_SET_LENGTH_FROM_EXPLICIT_LENGTH(this_, group);
    }
}

void PIFIteratorForParser_group_selectNextSequenceMember(PIFIteratorForParser* this_,
                                                         ContextItemForParser* group) {
    for (;;) {
        const GroupMemberTableRow* candidate = PIFIteratorForParser_nextCandidate(this_, group);
        group->hasResumeRow = 0;
        if (candidate == nullptr) {
            endGroup(group);
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
    if ((member->row->flags & GM_TRAILING_OPTIONAL) != 0 && isOptional(member) && isScopeExhausted(this_)) {
        reportMissingTrailing(this_, group);
        endGroup(group);
        return;
    }
    const int64_t position = BufferManager_bitPosition(this_->bufferManager);
    if (member->occurrences >= MAX_EMPTY_OCCURRENCES && member->occurrenceStart == position) {
        PIFIteratorForParser_raiseEndless(this_, member->row);
        return;
    }
    member->occurrenceStart = position;
    if (!isOptional(member)) return;
    traceAttempt(this_, member);
    ContextItemForParser_createCheckPoint(group);
}

void PIFIteratorForParser_group_afterGroupMember(PIFIteratorForParser* this_, ContextItemForParser* group) {
    if (group->selectedChild->succeeded != 0) {
        ContextItemForParser_releaseCheckPoint(group);
    } else if (!undoFailedMember(this_, group)) {
        return;
    }
    group->afterMember = BufferManager_bitPosition(this_->bufferManager);
}

void PIFIteratorForParser_STATE_BACKTRACK_TO_CHECKPOINT(PIFIteratorForParser* this_,
                                                        ContextItemForParser* group) {
    BacktrackingManager_restoreToCheckPoint(this_->backtrackingManager, group->checkPoint);
    group->representationEnd = BufferManager_bitPosition(this_->bufferManager);
    if (this_->context->userTraceOn != 0) {
        PIFIteratorForParser_userTrace(this_, group, ut_DFDLParser_backtracking, "");
    }
}

void PIFIteratorForParser_group_close(PIFIteratorForParser* this_, ContextItemForParser* group) {
    if (group->imposedLength >= 0) {
        group->imposedLength = -1;
        if (!BufferManager_removeScopedBufferLengthUnparser(this_->bufferManager, group->row, true, 0))
            return;
    }
    if (!PIFIteratorForParser_applyTrailingAlignment(this_, group)) return;
    group->representationEnd = BufferManager_bitPosition(this_->bufferManager);
    if (this_->userRegionHandler != nullptr) {
        DocHandlerEventBuffer_groupEnd(this_->eventBuffer, group->row->scdText,
                                       BufferManager_bytePosition(this_->bufferManager));
    }
    if (isHidden(group)) --this_->hiddenDepth;
    ContextItemForParser_close(group);
    ContextItemForParser_setOrderedChild(group, nullptr);
    if (!failed(this_)) PIFIteratorForParser_pop(this_);
}
