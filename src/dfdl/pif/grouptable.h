#ifndef DFDL_PIF_GROUPTABLE_H
#define DFDL_PIF_GROUPTABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLStringHashMap;
struct DFDLUString;
struct GroupMemberTableRow;
struct RowIndex;
struct sPIF;

inline constexpr int32_t CHOICE_BY_TAG = 2;
inline constexpr int32_t CHOICE_BY_TRIAL = 3;

enum Judgement : uint8_t { JUDGEMENT_OPEN = 0, JUDGEMENT_NO = 1, JUDGEMENT_YES = 2 };

// One sequence, choice or content of a complex element.
struct GroupTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t group_id = -1;
    DFDLUString* name = nullptr;
    DFDLUString* namespace_ = nullptr;
    DFDLGroupTypeEnum iGroupKind = SEQUENCE_ORDERED;
    int32_t scd_id = -1;

    GroupMemberTableRow* firstMember = nullptr;  // null: a group without members
    GroupMemberTableRow* owningRow = nullptr;    // the first member row that holds this group
    int32_t memberCount = 0;
    // Judged once for all rows that share the group.
    Judgement suppressableMembers = JUDGEMENT_OPEN;  // each can produce nothing
    Judgement membersWithDefault[2] = {};            // all of them; any of them
    // How a choice finds its branch without trying them in turn.
    int32_t tagLength = -1;  // units of every branch's initiator
    int32_t choiceResolution = CHOICE_BY_TRIAL;
    bool useDispatchKey = false;               // dispatchMap holds a key of every branch
    DFDLStringHashMap* tagMap = nullptr;       // initiator to GroupMemberTableRow
    DFDLStringHashMap* dispatchMap = nullptr;  // branch key to GroupMemberTableRow
};

struct GroupTable {
    using Row = GroupTableRow;
    DFDLHeapAdapter* heap;
    sPIF* pif;
    Array* rows;
    RowIndex* byId;
};

GroupTable* new_GroupTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_GroupTable(GroupTable* this_);     // null is ignored
void GroupTable_indexRows(GroupTable* this_);  // before anything is found
void GroupTable_finalizeTable(GroupTable* this_);
GroupTableRow* GroupTable_findRow(const GroupTable* this_, int32_t groupId);  // -1: null
void GroupTable_optimiseChoiceResolution(GroupTable* this_);
void GroupTable_countMembers(GroupTable* this_);

#endif
