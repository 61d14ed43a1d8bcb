#include "dfdl/pifiterator/contextitemforparser.h"

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/tracehandleradapter.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/grouptable.h"
#include "dfdl/pif/markupsettable.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pif/textmarkuptable.h"
#include "dfdl/pifiterator/backtrackingmanager.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/rowplan.h"

namespace {

constexpr PoolTraits ITEM_TRAITS = PoolTraits_ofRecord<ContextItemForParser>(20, 100);

ObjectPool* itemPool(DFDLHeapAdapter* heap) {
    return DFDLPoolingFactory_pool(heap->poolingFactory, POOL_CONTEXT_ITEM, &ITEM_TRAITS);
}

void noop(ContextItemForParser* item) { static_cast<void>(item); }

void sequenceOpen(ContextItemForParser* item) { PIFIteratorForParser_group_open(item->iterator, item); }
void sequenceClose(ContextItemForParser* item) { PIFIteratorForParser_group_close(item->iterator, item); }
void complexOpen(ContextItemForParser* item) {
    PIFIteratorForParser_ComplexElement_open(item->iterator, item);
}
void complexClose(ContextItemForParser* item) {
    PIFIteratorForParser_ComplexElement_close(item->iterator, item);
}

void runAhead(ContextItemForParser* group) {
    switch (group->plan->separatorPosition) {
        case POSITION_NONE:
            return PIFIteratorForParser_runPlainMembers(group->iterator, group);
        case INFIX:
            return PIFIteratorForParser_runPlainFields(group->iterator, group);
        default:
            return;
    }
}

void sequenceBeforeMember(ContextItemForParser* item) {
    if (item->iterator->runsAhead != 0) runAhead(item);
    PIFIteratorForParser_group_selectNextSequenceMember(item->iterator, item);
    if (item->state == STEP_CLOSE || ProcessingError_isSet(item->context->currentError)) return;
    PIFIteratorForParser_group_beforeGroupMember(item->iterator, item);
}

void sequenceAfterMember(ContextItemForParser* item) {
    PIFIteratorForParser_group_afterGroupMember(item->iterator, item);
}

// Choices have no table yet: no item is made of their rows.
constexpr ContextItemFunctions FUNCTIONS[] = {
    {ContextItemForParser_runUntilPopped, ContextItemForParser_simpleElement_processNext,
     ContextItemForParser_default_getNextSiblingToParse, noop, noop, noop, noop, noop},
    {ContextItemForParser_runUntilPopped, ContextItemForParser_complexElement_processNext,
     ContextItemForParser_default_getNextSiblingToParse, complexOpen, noop, complexClose, noop, noop},
    {ContextItemForParser_runUntilPopped, ContextItemForParser_sequenceGroup_processNext,
     ContextItemForParser_default_getNextSiblingToParse, sequenceOpen, noop, sequenceClose,
     sequenceBeforeMember, sequenceAfterMember},
    {nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
    {ContextItemForParser_runUntilPopped, ContextItemForParser_sequenceGroup_processNext,
     ContextItemForParser_default_getNextSiblingToParse, sequenceOpen, noop,
     ContextItemForParser_unorderedGroup_state_close,
     ContextItemForParser_unorderedGroup_state_beforeGroupMember,
     ContextItemForParser_unorderedGroup_state_afterGroupMember},
};

// Keeps the failure in the standby record, so that the walk works on with an empty one.
void retainError(ContextItemForParser* item) {
    Context_swapErrors(item->context);
    item->retainedError = item->context->standbyError;
    ProcessingError_reset(item->context->currentError);
}

void passProcessingErrorToParent(ContextItemForParser* item) {
    if (item->parent == nullptr) return;
    static_cast<ContextItemForParser*>(item->parent)->retainedError = item->retainedError;
    item->retainedError = nullptr;
}

// The parent's decision about a failed child comes later; a failed root is the end of the walk.
void handOverError(ContextItemForParser* item) {
    Context* context = item->context;
    if (item->parent != nullptr) {
        auto* retained = static_cast<ContextItemForParser*>(item->parent)->retainedError;
        if (context->userTraceOn != 0 && retained != nullptr) {
            TraceHandlerAdapter_userTraceError(item->iterator->traceAdapter, retained);
        }
    } else if (item->retainedError != nullptr) {
        Context_swapErrors(context);
        item->retainedError = nullptr;
    }
}

// Puts back what the element's own point of uncertainty covers, unless an assert below it failed: that
// failure is not this point's to undo.
void undoAttempt(ContextItemForParser* item) {
    ProcessingError* failed = item->retainedError;
    const bool assertFailed = failed->subKind == SUBKIND_ASSERT && failed->row != nullptr;
    if (assertFailed && failed->row == item->row) {
        failed->row = nullptr;
    } else if (item->checkPoint != nullptr) {
        if (!assertFailed) PIFIteratorForParser_STATE_BACKTRACK_TO_CHECKPOINT(item->iterator, item);
        PIFIteratorForParser_STATE_RELEASE_CHECKPOINT(item->iterator, item);
        ProcessingError_reset(item->context->currentError);
    }
}

void failGroup(ContextItemForParser* group) {
    retainError(group);
    ProcessingError* failed = group->retainedError;
    if (failed->subKind == SUBKIND_ASSERT && failed->row == group->row) failed->row = nullptr;
    PIFIteratorForParser_leaveHidden(group->iterator, group);
    ContextItemForParser_handleProcessingError(group);
}

void pushSelectedChild(ContextItemForParser* group) {
    group->iterator->currentItem = group;
    PIFIteratorForParser_push(group->iterator, group->selectedChild);
    group->state = STEP_AFTER_MEMBER;
}

void releaseValue(ContextItemForParser* item) {
    if (item->value == nullptr) return;
    DFDLPoolingFactory_releaseDFDLValue(item->heap->poolingFactory, item->value);
    item->value = nullptr;
}

// What belongs to one occurrence.
void resetOccurrence(ContextItemForParser* item) {
    item->possibleContent = CONTENT_ANY;
    item->markupSetId = -1;
    item->firstMember = 0;
    item->lastSeparatorBytePosition = -1;
    item->scopeClosed = 0;
    item->initiatorMissing = 0;
    item->succeeded = 1;
    item->retainedError = nullptr;
    item->hasResumeRow = 0;
    item->state = STEP_OPEN;
}

}  // namespace

ContextItemForParser* ContextItemForParserPooler_getContextItemForParser(PIFIteratorForParser* iterator,
                                                                         const GroupMemberTableRow* row,
                                                                         uint32_t kind) {
    auto* item = static_cast<ContextItemForParser*>(ObjectPool_get(itemPool(iterator->heap)));
    ContextItem_setValues(item, iterator->context, iterator->constants, row);
    item->iterator = iterator;
    item->plan = &iterator->plans[row->rowIndex];
    ContextItemForParser_init(item, kind);
    return item;
}

void ContextItemForParserPooler_releaseContextItemForParser(ContextItemForParser* item) {
    if (item == nullptr) return;
    releaseValue(item);
    ContextItemForParser_releaseUnorderedMembers(item);
    ContextItem_dropXPath(item);
    ContextItemForParserPooler_releaseContextItemForParser(item->selectedChild);
    item->selectedChild = nullptr;
    ObjectPool_release(itemPool(item->heap), item);
}

void ContextItemForParser_init(ContextItemForParser* this_, uint32_t kind) {
    this_->selectedChild = nullptr;
    this_->checkPoint = nullptr;
    this_->value = nullptr;
    this_->unordered = nullptr;
    this_->emptyOccurrences = 0;
    resetOccurrence(this_);
    this_->kind = kind;
    this_->functions = &FUNCTIONS[kind];
}

void ContextItemForParser_resetForOccurrence(ContextItemForParser* this_) {
    ContextItemForParser_setOrderedChild(this_, nullptr);
    releaseValue(this_);
    ContextItem_dropXPath(this_);
    resetOccurrence(this_);
    this_->imposedLength = -1;
}

void ContextItemForParser_setOrderedChild(ContextItemForParser* this_, ContextItemForParser* child) {
    ContextItemForParserPooler_releaseContextItemForParser(this_->selectedChild);
    this_->selectedChild = child;
    if (child != nullptr) ContextItem_setParent(child, this_);
}

void ContextItemForParser_endGroup(ContextItemForParser* this_) {
    ContextItemForParser_setOrderedChild(this_, nullptr);
    this_->state = STEP_CLOSE;
}

const GroupMemberTableRow* ContextItemForParser_firstMemberRow(const ContextItemForParser* this_) {
    const GroupTableRow* content = this_->row->groupRow;
    return content == nullptr ? nullptr : content->firstMember;
}

void ContextItemForParser_close(ContextItemForParser* this_) {
    ContextItemForParser_releaseCheckPoint(this_);
    ContextItemForParser_releaseUnorderedMembers(this_);
    releaseValue(this_);
}

void ContextItemForParser_findMarkupSet(ContextItemForParser* this_) {
    RowPlan* plan = this_->plan;
    const auto* parent = static_cast<const ContextItemForParser*>(this_->parent);
    const int32_t parentSetId = parent == nullptr ? -1 : parent->markupSetId;
    if (plan->memoParentSetId != parentSetId) {
        const TextMarkupTableRow* markup = this_->row->markupRow;
        plan->memoMarkupSetId =
            MarkupSetTable_getMarkupSetId(this_->iterator->pif->markupSetTable, parentSetId,
                                          markup == nullptr ? -1 : markup->terminatingMarkupId);
        plan->memoParentSetId = parentSetId;
    }
    this_->markupSetId = plan->memoMarkupSetId;
}

void ContextItemForParser_createCheckPoint(ContextItemForParser* this_) {
    BacktrackingManager* manager = this_->iterator->backtrackingManager;
    if (this_->checkPoint == nullptr) {
        this_->checkPoint = BacktrackingManager_getCheckPoint(manager);
    } else {
        BacktrackingManager_refreshCheckPoint(manager, this_->checkPoint);
    }
}

void ContextItemForParser_releaseCheckPoint(ContextItemForParser* this_) {
    BacktrackingCheckPoint* checkPoint = this_->checkPoint;
    this_->checkPoint = nullptr;
    BacktrackingManager_releaseCheckPoint(this_->iterator->backtrackingManager, checkPoint);
}

void ContextItemForParser_state_backtrack(ContextItemForParser* this_) {
    retainError(this_);
    undoAttempt(this_);
    ContextItemForParser_handleProcessingError(this_);
}

void ContextItemForParser_handleProcessingError(ContextItemForParser* this_) {
    PIFIteratorForParser* iterator = this_->iterator;
    passProcessingErrorToParent(this_);
    this_->succeeded = 0;
    PIFIteratorForParser_releaseBufferLimits(iterator, this_);
    ContextItemForParser_close(this_);
    handOverError(this_);
    iterator->currentItem = this_;
    PIFIteratorForParser_pop(iterator);
    ContextItemForParser_setOrderedChild(this_, nullptr);
}

void ContextItemForParser_runUntilPopped(ContextItemForParser* this_) {
    PIFIteratorForParser* iterator = this_->iterator;
    const ContextItem* below = this_->parent;
    do {
        ContextItemForParser* item = iterator->currentItem;
        item->functions->processNext(item);
    } while (iterator->currentItem != below);
}

void ContextItemForParser_simpleElement_processNext(ContextItemForParser* this_) {
    if (this_->state != STEP_OPEN) return;
    PIFIteratorForParser_SimpleElement_open(this_->iterator, this_);
    if (ProcessingError_isSet(this_->context->currentError)) ContextItemForParser_state_backtrack(this_);
}

void ContextItemForParser_complexElement_processNext(ContextItemForParser* this_) {
    Context* context = this_->context;
    if (this_->retainedError != nullptr) {
        ProcessingError_reset(context->currentError);
        Context_swapErrors(context);
        ContextItemForParser_state_backtrack(this_);
        return;
    }
    if (this_->state == STEP_OPEN) {
        this_->functions->state_open(this_);
        this_->state = STEP_CLOSE;
    } else {
        this_->functions->state_close(this_);
    }
    if (ProcessingError_isSet(context->currentError)) ContextItemForParser_state_backtrack(this_);
}

void ContextItemForParser_sequenceGroup_processNext(ContextItemForParser* this_) {
    Context* context = this_->context;
    switch (this_->state) {
        case STEP_OPEN:
            this_->functions->state_open(this_);
            this_->state = STEP_BEFORE_MEMBER;
            break;
        case STEP_AFTER_MEMBER:
            this_->functions->state_afterGroupMember(this_);
            if (ProcessingError_isSet(context->currentError) || this_->state == STEP_CLOSE) break;
            this_->state = STEP_BEFORE_MEMBER;
            [[fallthrough]];
        case STEP_BEFORE_MEMBER:
            this_->functions->state_beforeGroupMember(this_);
            if (ProcessingError_isSet(context->currentError) || this_->state == STEP_CLOSE) break;
            pushSelectedChild(this_);
            break;
        default:
            this_->functions->state_close(this_);
            break;
    }
    if (ProcessingError_isSet(context->currentError)) failGroup(this_);
}

const GroupMemberTableRow* ContextItemForParser_default_getNextSiblingToParse(ContextItemForParser* this_) {
    return this_->selectedChild->row->nextSibling;
}
