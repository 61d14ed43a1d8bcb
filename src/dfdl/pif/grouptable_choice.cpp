// What lets a choice find its branch at once: keys of branches for a dispatch expression, or initiators of
// one length, so that reading that many characters tells the branch.

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/framework/dfdlstringliteral.h"
#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pif/tabletext.h"

namespace {

constexpr int32_t MAP_BUCKETS = 63;

// The plain text of a literal, the caller's to delete; null if it is malformed or more than text.
DFDLUString* plainText(DFDLHeapAdapter* heap, const DFDLUString* source) {
    DFDLStringLiteral* literal = new_DFDLStringLiteral(heap, source);
    const DFDLUString* text =
        DFDLStringLiteral_parse(literal) ? DFDLStringLiteral_getUnicodeString(literal) : nullptr;
    DFDLUString* copy = text == nullptr ? nullptr : TableText_fromUnits(heap, DFDLUString_view(text));
    delete_DFDLStringLiteral(literal);
    return copy;
}

bool addKey(DFDLStringHashMap* map, GroupMemberTableRow* branch) {
    const sPIF* pif = branch->pif;
    const DFDLUString* source = StringLiteralTable_getStringLiteralForRowIndex(pif->stringLiteralTable,
                                                                               branch->iChoiceBranchKeyIndex);
    if (branch->iChoiceBranchKeyIndex == -1 || source == nullptr) return false;
    DFDLUString* key = plainText(branch->heap, source);
    if (key == nullptr) return false;
    if (!DFDLStringHashMap_containsKey(map, key)) DFDLStringHashMap_put(map, key, branch, false);
    delete_DFDLUString(key);
    return true;
}

// A map that misses a branch is of no use.
void GroupTableRow_calculateChoiceBranchKeyMap(GroupTableRow* group) {
    if (group->owningRow == nullptr || group->owningRow->iChoiceDispatchKeyIndex == -1) return;
    DFDLStringHashMap* map = new_DFDLStringHashMap(group->heap, MAP_BUCKETS);
    for (auto* branch = group->firstMember; branch != nullptr; branch = branch->nextSibling) {
        if (!addKey(map, branch)) return delete_DFDLStringHashMap(map);
    }
    group->dispatchMap = map;
    group->useDispatchKey = true;
}

bool mayLackInitiator(DelimiterPolicyEnum policy) {
    return policy == DP_NONE || policy == DP_TERMINATOR_ONLY;
}

// Whether data of the branch always begin with its initiator.
bool beginsWithInitiator(const GroupMemberTableRow* branch) {
    if (!GroupMemberTableRow_has(branch, GM_INITIATOR) ||
        GroupMemberTableRow_has(branch, GM_LEADING_ALIGNMENT)) {
        return false;
    }
    if (!GroupMemberTableRow_isElement(branch)) return true;
    if (mayLackInitiator(PIFPhysicalPropertyHelper_getEmptyValueDelimiterPolicy(branch))) return false;
    return branch->nilRow == nullptr || !mayLackInitiator(branch->nilRow->iNilValueDelimiterPolicy);
}

// Adds one initiator, which must be new and as long as the others.
bool addTag(GroupTableRow* group, DFDLStringHashMap* map, GroupMemberTableRow* branch, int32_t* length,
            const DFDLUString* source) {
    DFDLUString* tag = plainText(group->heap, source);
    if (tag == nullptr) return false;
    bool fits = *length == -1 || *length == tag->length;
    *length = tag->length;
    if (branch->markupRow->iIgnoreCase) {
        DFDLUString* upper = DFDLUString_toUpper(tag, group->heap);
        delete_DFDLUString(tag);
        tag = upper;
    }
    fits = fits && !DFDLStringHashMap_containsKey(map, tag);
    if (fits) DFDLStringHashMap_put(map, tag, branch, false);
    delete_DFDLUString(tag);
    return fits;
}

bool addTags(GroupTableRow* group, DFDLStringHashMap* map, GroupMemberTableRow* branch, int32_t* length) {
    if (!beginsWithInitiator(branch)) return false;
    if (branch->iTextEncodingIndex != group->firstMember->iTextEncodingIndex) return false;
    if (PIFPhysicalPropertyHelper_getStaticInitiatorProperty(branch) == nullptr) return true;
    const ArrayList* initiators = branch->markupRow->initiators;
    for (int32_t index = 0; index < ArrayList_size(initiators); ++index) {
        const auto* source = ArrayList_getPointer<DFDLUString>(initiators, index);
        if (!addTag(group, map, branch, length, source)) return false;
    }
    return true;
}

void GroupTableRow_calculateTagLength(GroupTableRow* group) {
    DFDLStringHashMap* map = new_DFDLStringHashMap(group->heap, MAP_BUCKETS);
    int32_t length = -1;
    for (auto* branch = group->firstMember; branch != nullptr; branch = branch->nextSibling) {
        if (!addTags(group, map, branch, &length)) return delete_DFDLStringHashMap(map);
    }
    group->tagMap = map;
    group->tagLength = length;
    group->choiceResolution = CHOICE_BY_TAG;
}

}  // namespace

// Groups that share an id share their members; the work is done for the first of them.
void GroupTable_optimiseChoiceResolution(GroupTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        GroupTableRow* group = Table_at(this_, index);
        if (group->iGroupKind != CHOICE || GroupTable_findRow(this_, group->group_id) != group) continue;
        GroupTableRow_calculateChoiceBranchKeyMap(group);
        if (!group->useDispatchKey) GroupTableRow_calculateTagLength(group);
    }
}
