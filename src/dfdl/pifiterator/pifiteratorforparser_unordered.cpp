// Unordered groups: any member may come next, and what came is shown in the order of the grammar.
#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/grouptable.h"
#include "dfdl/pifiterator/backtrackingmanager.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/unorderedmembers.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

UnorderedMembers* membersOf(ContextItemForParser* group) {
    if (group->unordered != nullptr) return group->unordered;
    RowPlan* plan = group->plan;
    if (plan->spareMembers == nullptr) {
        const GroupTableRow* content = group->row->groupRow;
        group->unordered = new_UnorderedMembers(group->heap, content == nullptr ? 0 : content->memberCount);
    } else {
        group->unordered = plan->spareMembers;
        plan->spareMembers = group->unordered->next;
    }
    return group->unordered;
}

// The members of a group are adjacent rows.
int32_t slotOf(const ContextItemForParser* group) {
    return group->selectedChild->row->rowIndex - ContextItemForParser_firstMemberRow(group)->rowIndex;
}

DocHandlerEventBuffer* bufferOf(UnorderedMembers* members, int32_t slot) {
    DocHandlerEventBuffer*& buffer = members->memberBuffers[slot];
    if (buffer == nullptr) buffer = new_DocHandlerEventBuffer(members->heap);
    return buffer;
}

// A number of occurrences that is out of bounds fails a member that is no array; for an array it is a matter
// of validation.
bool judgeCount(PIFIteratorForParser* iterator, const GroupMemberTableRow* row, int32_t count, int32_t bound,
                const char* processingError, const char* validationError) {
    if ((row->flags & GM_NOT_SINGLE) == 0) {
        const DFDLUString* name = row->elementRow != nullptr ? GroupMemberTableRow_getElementName(row)
                                                             : GroupMemberTableRow_getGroupName(row);
        ProcessingError_setValues(iterator->context->currentError, __FILE__, __LINE__, processingError,
                                  ERROR_PROCESSING, SUBKIND_NONE, "%Z%d%d", name, count, bound);
        return false;
    }
    if (iterator->validationEnabled != 0)
        PIFIteratorForParser_reportValidationError(iterator, validationError, row, bound, count);
    return true;
}

bool validateMinMaxOccurs(PIFIteratorForParser* iterator, const GroupMemberTableRow* row, int32_t count) {
    if (row->max_occurs >= 0 && count > row->max_occurs) {
        return judgeCount(iterator, row, count, row->max_occurs,
                          DFDLParser_maxOccursViolation_ProcessingError,
                          DFDLParser_maxOccursViolation_ValidationError);
    }
    if (count >= row->min_occurs) return true;
    return judgeCount(iterator, row, count, row->min_occurs, DFDLParser_minOccursViolation_ProcessingError,
                      DFDLParser_minOccursViolation_ValidationError);
}

bool madeProgress(const ContextItemForParser* member) {
    return BufferManager_bitPosition(member->iterator->bufferManager) != member->occurrenceStart;
}

void removeProxy(ContextItemForParser* group) {
    if (!group->unordered->isProxySet) return;
    group->unordered->isProxySet = false;
    PIFIteratorForParser_removeDocHandlerProxy(group->iterator);
}

void select(PIFIteratorForParser* iterator, ContextItemForParser* group, const GroupMemberTableRow* row) {
    ContextItemForParser* member = PIFIteratorForParser_createContextItem(iterator, row);
    if (member == nullptr) return;
    ContextItemForParser_setOrderedChild(group, member);
    member->occurrenceStart = BufferManager_bitPosition(iterator->bufferManager);
}

}  // namespace

void PIFIteratorForParser_setDocHandlerProxy(PIFIteratorForParser* this_, DocHandlerEventBuffer* buffer) {
    DocHandlerEventBuffer_chainTo(buffer, this_->eventBuffer);
    this_->eventBuffer = buffer;
    this_->backtrackingManager->eventBuffer = buffer;
}

void PIFIteratorForParser_removeDocHandlerProxy(PIFIteratorForParser* this_) {
    this_->eventBuffer = this_->eventBuffer->chainedBuffer;
    this_->backtrackingManager->eventBuffer = this_->eventBuffer;
}

// After a member that was there, all may come again; after one that was not, those behind it are left to try.
void PIFIteratorForParser_group_selectNextUnorderedMember(PIFIteratorForParser* this_,
                                                          ContextItemForParser* group) {
    ContextItemForParser* last = group->selectedChild;
    const GroupMemberTableRow* next = ContextItemForParser_firstMemberRow(group);
    if (last != nullptr && last->succeeded == 0) {
        next = last->row->nextSibling;
    } else if (last != nullptr && !madeProgress(last)) {
        if (this_->context->userTraceOn != 0) {
            PIFIteratorForParser_userTrace(this_, last, ut_DFDLParser_arrayParseTerminatedNoForwardProgress,
                                           "");
        }
        next = nullptr;
    }
    // A member that may not occur is not tried.
    while (next != nullptr && next->effectiveMaxOccurs == 0) next = next->nextSibling;
    if (next == nullptr) return ContextItemForParser_endGroup(group);
    select(this_, group, next);
}

void ContextItemForParser_unorderedGroup_state_beforeGroupMember(ContextItemForParser* this_) {
    PIFIteratorForParser* iterator = this_->iterator;
    PIFIteratorForParser_group_selectNextUnorderedMember(iterator, this_);
    if (this_->state == STEP_CLOSE || PIFIteratorForParser_hasFailed(iterator)) return;
    UnorderedMembers* members = membersOf(this_);
    const int32_t slot = slotOf(this_);
    this_->selectedChild->occurrences = members->memberCounts[slot];
    PIFIteratorForParser_setDocHandlerProxy(iterator, bufferOf(members, slot));
    members->isProxySet = true;
    PIFIteratorForParser_group_beforeGroupMember(iterator, this_);
    if (this_->state == STEP_CLOSE) removeProxy(this_);
}

void ContextItemForParser_releaseUnorderedMembers(ContextItemForParser* this_) {
    UnorderedMembers* members = this_->unordered;
    if (members == nullptr) return;
    removeProxy(this_);
    UnorderedMembers_clear(members);
    this_->unordered = nullptr;
    members->next = this_->plan->spareMembers;
    this_->plan->spareMembers = members;
}

void ContextItemForParser_unorderedGroup_state_afterGroupMember(ContextItemForParser* this_) {
    PIFIteratorForParser* iterator = this_->iterator;
    PIFIteratorForParser_group_afterGroupMember(iterator, this_);
    removeProxy(this_);
    if (this_->selectedChild->succeeded != 0) {
        ++this_->unordered->memberCounts[slotOf(this_)];
    } else if (this_->selectedChild->row->nextSibling == nullptr) {
        this_->state = STEP_CLOSE;
    }
}

void ContextItemForParser_unorderedGroup_state_close(ContextItemForParser* this_) {
    PIFIteratorForParser* iterator = this_->iterator;
    const UnorderedMembers* members = membersOf(this_);
    int32_t slot = 0;
    for (const GroupMemberTableRow* row = ContextItemForParser_firstMemberRow(this_); row != nullptr;
         row = row->nextSibling) {
        if (!validateMinMaxOccurs(iterator, row, members->memberCounts[slot++])) return;
    }
    for (slot = 0; slot < members->memberCount; ++slot) {
        if (members->memberBuffers[slot] != nullptr)
            DocHandlerEventBuffer_flush(members->memberBuffers[slot]);
    }
    PIFIteratorForParser_group_close(iterator, this_);
}
