#ifndef DFDL_PIF_GROUPMEMBERTABLE_H
#define DFDL_PIF_GROUPMEMBERTABLE_H

#include "dfdl/foundation/dfdltype.h"
#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct AlignmentTableRow;
struct AssertTableRow;
struct BinaryNumberTableRow;
struct BooleanRepTableRow;
struct CalendarRepTableRow;
struct DFDLUString;
struct ElementTableRow;
struct EscapeSchemeTableRow;
struct ExpressionTableRow;
struct GroupTableRow;
struct LengthSchemeTableRow;
struct NilSchemeTableRow;
struct OccursSchemeTableRow;
struct RowIndex;
struct TextEncodingTableRow;
struct TextMarkupTableRow;
struct TextNumberTableRow;
struct TextStringTableRow;
struct VariableActionsTableRow;
struct sPIF;

// One particle of the grammar with all its physical properties, which is what a walk stands on. The members
// of a group are adjacent rows; a global element has a row of its own without a parent.
struct GroupMemberTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    // What walks read at every step.
    uint32_t flags = 0;  // GM_...
    DFDLSimpleTypeEnum simpleTypeKind = SIMPLE_UNKNOWN;
    ElementTableRow* elementRow = nullptr;  // null: the member is a group
    GroupTableRow* groupRow = nullptr;      // child group, content of a complex element
    GroupTableRow* parentGroup = nullptr;   // null: a global element
    GroupMemberTableRow* nextSibling = nullptr;
    GroupMemberTableRow* previousSibling = nullptr;
    int32_t rowIndex = -1;
    int32_t effectiveMinOccurs = 0;
    int32_t effectiveMaxOccurs = 0;  // -1 unbounded
    TextEncodingTableRow* encodingRow = nullptr;
    LengthSchemeTableRow* lengthRow = nullptr;
    TextStringTableRow* textStringRow = nullptr;
    AlignmentTableRow* alignmentRow = nullptr;
    TextMarkupTableRow* markupRow = nullptr;
    EscapeSchemeTableRow* escapeRow = nullptr;  // of the markup
    NilSchemeTableRow* nilRow = nullptr;
    OccursSchemeTableRow* occursRow = nullptr;
    AssertTableRow* firstAssert = nullptr;
    VariableActionsTableRow* firstVariableAction = nullptr;
    int32_t firstVariableActionIndex = -1;
    void* physicalRow = nullptr;      // of the table that iPhysicalType selects; see the accessors
    DFDLUString* scdText = nullptr;   // schema component designator; may be null
    bool hasDefaultComputed = false;  // settled when loading ends

    // As the file has it.
    int32_t parent_group_id = -1;   // -1: a global element
    int32_t sequence_number = 0;    // from 1
    int32_t child_element_id = -1;  // -1: the member is a group
    int32_t child_group_id = -1;    // of a complex element: its content
    int32_t min_occurs = 0;
    int32_t max_occurs = 0;        // -1 unbounded
    int32_t iLengthSchemeId = -1;  // position id
    int32_t iTextStringIndex = -1;
    int32_t iAlignmentId = -1;
    int32_t iTextMarkupId = -1;  // position id
    PhysicalTypeEnum iPhysicalType = TEXT_STRING;
    RepresentationEnum iDfdlRepresentation = REPRESENTATION_BINARY;
    int32_t iPhysicalTypeIndex = -1;
    int32_t iPhysicalTypeTableRowId = -1;  // position id, of a text number
    int32_t iTextEncodingIndex = -1;
    int32_t iFirstAssertIndex = -1;
    int32_t iOuputValueCalcExprIndex = -1;
    int32_t iInputValueCalcExprIndex = -1;
    int32_t iNilSchemeIndex = -1;
    int32_t iPathExprTypeValue = -1;  // bits of PathExpressionTypeEnum
    int32_t iOccursSchemeTableIndex = -1;
    bool iFloating = false;  // makes an ordered parent one with floating components
    int32_t iChoiceDispatchKeyIndex = -1;
    int32_t iChoiceBranchKeyIndex = -1;
};

// Decisions that would need several rows, ready as bits of `flags`.
inline constexpr uint32_t GM_HIDDEN = 0x1;  // never set by loading
inline constexpr uint32_t GM_HAS_DEFAULT = 0x2;
inline constexpr uint32_t GM_LEADING_ALIGNMENT = 0x4;  // alignment or skip
inline constexpr uint32_t GM_TRAILING_ALIGNMENT = 0x8;
inline constexpr uint32_t GM_INITIATOR = 0x10;
inline constexpr uint32_t GM_TERMINATOR = 0x20;
inline constexpr uint32_t GM_SEPARATOR = 0x40;  // groups only
inline constexpr uint32_t GM_SEPARATOR_INFIX = 0x80;
inline constexpr uint32_t GM_SEPARATOR_PREFIX = 0x100;
inline constexpr uint32_t GM_SEPARATOR_POSTFIX = 0x200;
inline constexpr uint32_t GM_DELIMITED_LENGTH = 0x800;
inline constexpr uint32_t GM_TEXT = 0x1000;
inline constexpr uint32_t GM_TRIM = 0x2000;
inline constexpr uint32_t GM_INPUT_VALUE_CALC = 0x4000;
inline constexpr uint32_t GM_ESCAPE_SCHEME = 0x8000;
inline constexpr uint32_t GM_LENGTH_NOT_CONSTANT = 0x10000;
inline constexpr uint32_t GM_NOT_SINGLE = 0x20000;
inline constexpr uint32_t GM_TRAILING_OPTIONAL = 0x40000;
inline constexpr uint32_t GM_OCCURS_FIXED = 0x80000;
inline constexpr uint32_t GM_INITIATOR_OPTIONAL = 0x100000;
inline constexpr uint32_t GM_TERMINATOR_OPTIONAL = 0x200000;
inline constexpr uint32_t GM_EXPLICIT_CONSTANT_LENGTH = 0x400000;
inline constexpr uint32_t GM_PREFIXED_LENGTH = 0x800000;
inline constexpr uint32_t GM_SUPPRESSABLE = 0x1000000;  // can produce nothing in the data
inline constexpr uint32_t GM_SUPPRESSABLE_KNOWN = 0x2000000;
inline constexpr uint32_t GM_OCCURS_EXPRESSION = 0x4000000;

struct GroupMemberTable {
    using Row = GroupMemberTableRow;
    DFDLHeapAdapter* heap;
    sPIF* pif;
    Array* rows;
    RowIndex* firstMembers;    // parent group id to row with sequence number 1
    RowIndex* globalElements;  // element id to row without a parent
    RowIndex* byChildGroup;    // child group id to first row
};

GroupMemberTable* new_GroupMemberTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_GroupMemberTable(GroupMemberTable* this_);     // null is ignored
void GroupMemberTable_indexRows(GroupMemberTable* this_);  // before anything is found
void GroupMemberTable_finalizeTable(GroupMemberTable* this_);
void GroupMemberTable_setFlags(GroupMemberTable* this_);
void GroupMemberTable_identifySuppressableGroups(GroupMemberTable* this_);
int32_t GroupMemberTable_findFirstRowIndex(const GroupMemberTable* this_, int32_t parentGroupId);  // -1 none
GroupMemberTableRow* GroupMemberTable_findRowForGlobalElement(const GroupMemberTable* this_,
                                                              int32_t elementId);
GroupMemberTableRow* GroupMemberTable_findRowByChildGroupID(const GroupMemberTable* this_, int32_t groupId);
// The row of a global element, where a document begins. Null if there is none.
GroupMemberTableRow* GroupMemberTable_findElement(const GroupMemberTable* this_, const DFDLUString* name,
                                                  const DFDLUString* namespaceUri);

void GroupMemberTableRow_populateRowReferences(GroupMemberTableRow* this_, GroupMemberTableRow* previous);
void GroupMemberTableRow_setFlags(GroupMemberTableRow* this_);
// Whether the element can stand for itself when the data lack it; settles GM_HAS_DEFAULT.
bool GroupMemberTableRow_calcHasDefault(GroupMemberTableRow* this_);
void GroupMemberTableRow_setIsHidden(GroupMemberTableRow* this_, bool hidden);

inline bool GroupMemberTableRow_has(const GroupMemberTableRow* this_, uint32_t flags) {  // any of them
    return (this_->flags & flags) != 0;
}
inline bool GroupMemberTableRow_isElement(const GroupMemberTableRow* this_) {
    return this_->child_element_id != -1;
}
// Null where a row is missing.
DFDLUString* GroupMemberTableRow_getElementName(const GroupMemberTableRow* this_);
DFDLUString* GroupMemberTableRow_getGroupName(const GroupMemberTableRow* this_);
DFDLUString* GroupMemberTableRow_getNamespace(const GroupMemberTableRow* this_);
EscapeSchemeTableRow* GroupMemberTableRow_getEscapeSchemeTableRow(const GroupMemberTableRow* this_);
ExpressionTableRow* GroupMemberTableRow_getExpressionTableRow(const GroupMemberTableRow* this_,
                                                              int32_t index);
// physicalRow by its kind; null if the member is of another kind.
BinaryNumberTableRow* GroupMemberTableRow_getBinaryNumberRow(const GroupMemberTableRow* this_);
CalendarRepTableRow* GroupMemberTableRow_getCalendarRepRow(const GroupMemberTableRow* this_);
BooleanRepTableRow* GroupMemberTableRow_getBooleanRepRow(const GroupMemberTableRow* this_);
TextNumberTableRow* GroupMemberTableRow_getTextNumberRow(const GroupMemberTableRow* this_);

#endif
