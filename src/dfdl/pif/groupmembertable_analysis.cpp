// What depends on the members below: defaults of complex elements, groups that can produce nothing. Groups
// may be nested as deep as a file likes, and a hostile file nests them in circles. So both walks keep their
// own stack, and a row that is met again while it is being judged counts as one that has not the property.

#include "dfdl/foundation/arraylist.h"
#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pif/spif.h"

namespace {

// One row that waits for rows below it.
struct Pending {
    GroupMemberTableRow* row;
    GroupMemberTableRow* member;  // being judged
    bool any;                     // one member with the property is enough
    Judgement* judgement;         // of the members, for other rows with the same group
};

void conclude(const Pending* pending, bool value) {
    if (pending->judgement != nullptr) *pending->judgement = value ? JUDGEMENT_YES : JUDGEMENT_NO;
}

Pending* topOf(ArrayList* stack) {
    return static_cast<Pending*>(ArrayList_get(stack, ArrayList_size(stack) - 1));
}

void pop(ArrayList* stack) { --stack->count; }

ArrayList* newStack(DFDLHeapAdapter* heap) {
    return new_ArrayList(heap, 0, static_cast<int32_t>(sizeof(Pending)));
}

bool hasDefault(const GroupMemberTableRow* row) { return GroupMemberTableRow_has(row, GM_HAS_DEFAULT); }

bool simpleHasDefault(const GroupMemberTableRow* row) {
    if (row->elementRow != nullptr && row->elementRow->defaultValueIndex != -1) return true;
    return row->nilRow != nullptr && row->nilRow->iUseNilForDefault;
}

void settleDefault(GroupMemberTableRow* row, bool value) {
    if (value) row->flags |= GM_HAS_DEFAULT;
}

// Settles the row if it stands alone; otherwise its members have to be judged first. The mark is set in
// either case, so that a circle ends.
void beginDefault(ArrayList* stack, GroupMemberTableRow* row) {
    row->hasDefaultComputed = true;
    if (!GroupMemberTableRow_isElement(row)) return;
    if (row->child_group_id == -1) return settleDefault(row, simpleHasDefault(row));
    const GroupMemberTableRow* content = row->groupRow == nullptr ? nullptr : row->groupRow->firstMember;
    if (content == nullptr || content->groupRow == nullptr) return;
    const PhysicalTypeEnum kind = content->iPhysicalType;
    if (kind != GROUP_SEQUENCE && kind != GROUP_UNORDERED && kind != GROUP_CHOICE) return;
    GroupMemberTableRow* first = content->groupRow->firstMember;
    if (first == nullptr) return settleDefault(row, true);
    const bool any = kind == GROUP_CHOICE;
    const Judgement known = content->groupRow->membersWithDefault[any];
    if (known != JUDGEMENT_OPEN) return settleDefault(row, known == JUDGEMENT_YES);
    const Pending pending = {row, first, any, &content->groupRow->membersWithDefault[any]};
    ArrayList_add(stack, &pending);
}

void stepDefault(ArrayList* stack) {
    Pending* top = topOf(stack);
    if (top->member == nullptr) {  // none has decided
        conclude(top, !top->any);
        settleDefault(top->row, !top->any);
        return pop(stack);
    }
    if (!top->member->hasDefaultComputed) return beginDefault(stack, top->member);
    if (hasDefault(top->member) == top->any) {
        conclude(top, top->any);
        settleDefault(top->row, top->any);
        return pop(stack);
    }
    top->member = top->member->nextSibling;
}

bool isGroup(const GroupMemberTableRow* row) { return !GroupMemberTableRow_isElement(row); }

// Whether empty content of the member still has a delimiter.
bool leavesDelimiter(const GroupMemberTableRow* member) {
    const DelimiterPolicyEnum policy = PIFPhysicalPropertyHelper_getEmptyValueDelimiterPolicy(member);
    const bool initiator = policy == DP_INITIATOR_ONLY || policy == DP_BOTH;
    const bool terminator = policy == DP_TERMINATOR_ONLY || policy == DP_BOTH;
    return (initiator && GroupMemberTableRow_has(member, GM_INITIATOR)) ||
           (terminator && GroupMemberTableRow_has(member, GM_TERMINATOR));
}

void beginSuppressable(ArrayList* stack, GroupMemberTableRow* row) {
    row->flags |= GM_SUPPRESSABLE_KNOWN;
    if (GroupMemberTableRow_has(row, GM_INITIATOR | GM_TERMINATOR)) return;
    GroupTableRow* group = row->groupRow;
    const Judgement known = group == nullptr ? JUDGEMENT_OPEN : group->suppressableMembers;
    if (known == JUDGEMENT_YES) row->flags |= GM_SUPPRESSABLE;
    if (known != JUDGEMENT_OPEN) return;
    const Pending pending = {row, group == nullptr ? nullptr : group->firstMember, false,
                             group == nullptr ? nullptr : &group->suppressableMembers};
    ArrayList_add(stack, &pending);
}

void endSuppressable(ArrayList* stack, bool value) {
    const Pending* top = topOf(stack);
    conclude(top, value);
    if (value) top->row->flags |= GM_SUPPRESSABLE;
    pop(stack);
}

void stepSuppressable(ArrayList* stack) {
    Pending* top = topOf(stack);
    GroupMemberTableRow* member = top->member;
    if (member == nullptr) return endSuppressable(stack, true);
    if (member->min_occurs > 0) {
        if (!isGroup(member)) return endSuppressable(stack, false);
        if (!GroupMemberTableRow_has(member, GM_SUPPRESSABLE_KNOWN)) return beginSuppressable(stack, member);
        if (!GroupMemberTableRow_has(member, GM_SUPPRESSABLE)) return endSuppressable(stack, false);
    }
    if (leavesDelimiter(member)) return endSuppressable(stack, false);
    top->member = member->nextSibling;
}

// Backwards from the last member of a group, as long as members can be missing at its end.
void markTrailingOptional(GroupMemberTableRow* last) {
    for (GroupMemberTableRow* row = last; row != nullptr; row = row->previousSibling) {
        if (row->min_occurs != 0 && !GroupMemberTableRow_has(row, GM_SUPPRESSABLE)) {
            const bool open = row->max_occurs == -1 || row->max_occurs > row->min_occurs;
            if (open) row->flags |= GM_TRAILING_OPTIONAL;
            return;
        }
        row->flags |= GM_TRAILING_OPTIONAL;
    }
}

}  // namespace

bool GroupMemberTableRow_calcHasDefault(GroupMemberTableRow* this_) {
    if (!this_->hasDefaultComputed) {
        ArrayList* stack = newStack(this_->heap);
        beginDefault(stack, this_);
        while (!ArrayList_isEmpty(stack)) stepDefault(stack);
        delete_ArrayList(stack);
    }
    return hasDefault(this_);
}

void GroupMemberTable_identifySuppressableGroups(GroupMemberTable* this_) {
    ArrayList* stack = newStack(this_->heap);
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        GroupMemberTableRow* row = Table_at(this_, index);
        if (!isGroup(row) || GroupMemberTableRow_has(row, GM_SUPPRESSABLE_KNOWN)) continue;
        beginSuppressable(stack, row);
        while (!ArrayList_isEmpty(stack)) stepSuppressable(stack);
    }
    delete_ArrayList(stack);
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        GroupMemberTableRow* row = Table_at(this_, index);
        if (row->parent_group_id != -1 && row->nextSibling == nullptr) markTrailingOptional(row);
    }
}
