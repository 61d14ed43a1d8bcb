#include "dfdl/pif/groupmembertable.h"

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/rowindex.h"
#include "dfdl/pif/spif.h"

namespace {

void link(GroupMemberTableRow* row, GroupMemberTableRow* previous) {
    row->nextSibling = nullptr;
    row->previousSibling = nullptr;
    if (previous == nullptr || previous->parent_group_id != row->parent_group_id) return;
    row->previousSibling = previous;
    previous->nextSibling = row;
}

void resolveChildren(GroupMemberTableRow* row) {
    const sPIF* pif = row->pif;
    row->elementRow = ElementTable_findRow(pif->elementTable, row->child_element_id);
    row->groupRow = GroupTable_findRow(pif->groupTable, row->child_group_id);
    if (row->parent_group_id >= 0)
        row->parentGroup = GroupTable_findRow(pif->groupTable, row->parent_group_id);
    if (row->elementRow != nullptr && row->elementRow->simpleType != nullptr) {
        row->simpleTypeKind = SimpleTypeTableRow_valueof(row->elementRow->simpleType->pifSimpleTypeName);
    }
    const int32_t scdId = row->elementRow != nullptr ? row->elementRow->scd_id
                          : row->groupRow != nullptr ? row->groupRow->scd_id
                                                     : -1;
    const SCDTableRow* scd = Table_row(pif->scdTable, scdId);
    if (scd != nullptr) row->scdText = scd->iSCD;
}

void resolveProperties(GroupMemberTableRow* row) {
    const sPIF* pif = row->pif;
    row->nilRow = Table_row(pif->nilSchemeTable, row->iNilSchemeIndex);
    row->alignmentRow = Table_row(pif->alignmentTable, row->iAlignmentId);
    row->markupRow = TextMarkupTable_findRow(pif->textMarkupTable, row->iTextMarkupId);
    row->lengthRow = LengthSchemeTable_findRow(pif->lengthSchemeTable, row->iLengthSchemeId);
    row->textStringRow = Table_row(pif->textStringTable, row->iTextStringIndex);
    row->encodingRow = Table_row(pif->textEncodingTable, row->iTextEncodingIndex);
    row->firstAssert = Table_row(pif->assertTable, row->iFirstAssertIndex);
    row->occursRow = Table_row(pif->occursSchemeTable, row->iOccursSchemeTableIndex);
    if (row->markupRow != nullptr) {
        row->escapeRow = Table_row(pif->escapeSchemeTable, row->markupRow->iEscapeSchemeIndex);
    }
}

void* physicalRowOf(GroupMemberTableRow* row) {
    const sPIF* pif = row->pif;
    switch (row->iPhysicalType) {
        case TEXT_STRING:
            return nullptr;
        case TEXT_NUMBER:
            row->iPhysicalTypeIndex =
                TextNumberTable_findRowIndex(pif->textNumberTable, row->iPhysicalTypeTableRowId);
            return Table_row(pif->textNumberTable, row->iPhysicalTypeIndex);
        case BINARY_NUMBER:
            return Table_row(pif->binaryNumberTable, row->iPhysicalTypeIndex);
        case TEXT_CALENDAR:
        case BINARY_CALENDAR:
            return Table_row(pif->calendarRepTable, row->iPhysicalTypeIndex);
        case TEXT_BOOLEAN:
        case BINARY_BOOLEAN:
            return Table_row(pif->booleanRepTable, row->iPhysicalTypeIndex);
        default:
            row->iPhysicalTypeIndex = -1;
            return nullptr;
    }
}

template <class Row>
Row* physicalRowAs(const GroupMemberTableRow* row, PhysicalTypeEnum kind, PhysicalTypeEnum otherKind) {
    const bool isOfKind = row->iPhysicalType == kind || row->iPhysicalType == otherKind;
    return isOfKind ? static_cast<Row*>(row->physicalRow) : nullptr;
}

}  // namespace

GroupMemberTable* new_GroupMemberTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<GroupMemberTable>(heap, pif);
}

void delete_GroupMemberTable(GroupMemberTable* this_) {
    if (this_ == nullptr) return;
    delete_RowIndex(this_->firstMembers);
    delete_RowIndex(this_->globalElements);
    delete_RowIndex(this_->byChildGroup);
    Table_delete(this_);
}

void GroupMemberTable_indexRows(GroupMemberTable* this_) {
    this_->firstMembers = RowIndex_ofTable(this_, [](const GroupMemberTableRow* row, int64_t* key) {
        *key = row->parent_group_id;
        return row->sequence_number == 1;
    });
    this_->globalElements = RowIndex_ofTable(this_, [](const GroupMemberTableRow* row, int64_t* key) {
        *key = row->child_element_id;
        return row->parent_group_id == -1;
    });
    this_->byChildGroup = RowIndex_ofTable(this_, [](const GroupMemberTableRow* row, int64_t* key) {
        *key = row->child_group_id;
        return true;
    });
}

void GroupMemberTable_finalizeTable(GroupMemberTable* this_) {
    GroupMemberTableRow* previous = nullptr;
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        GroupMemberTableRow* row = Table_at(this_, index);
        row->rowIndex = index;
        GroupMemberTableRow_populateRowReferences(row, previous);
        previous = row;
    }
}

void GroupMemberTableRow_populateRowReferences(GroupMemberTableRow* this_, GroupMemberTableRow* previous) {
    resolveChildren(this_);
    link(this_, previous);
    resolveProperties(this_);
    this_->physicalRow = physicalRowOf(this_);
    GroupTableRow* parent = this_->parentGroup;
    if (this_->iFloating && parent != nullptr && parent->iGroupKind == SEQUENCE_ORDERED) {
        parent->iGroupKind = SEQUENCE_WITH_FLOATING_COMPONENTS;
    }
}

int32_t GroupMemberTable_findFirstRowIndex(const GroupMemberTable* this_, int32_t parentGroupId) {
    return RowIndex_find(this_->firstMembers, parentGroupId);
}

GroupMemberTableRow* GroupMemberTable_findRowForGlobalElement(const GroupMemberTable* this_,
                                                              int32_t elementId) {
    return Table_row(this_, RowIndex_find(this_->globalElements, elementId));
}

GroupMemberTableRow* GroupMemberTable_findRowByChildGroupID(const GroupMemberTable* this_, int32_t groupId) {
    return Table_row(this_, RowIndex_find(this_->byChildGroup, groupId));
}

GroupMemberTableRow* GroupMemberTable_findElement(const GroupMemberTable* this_, const DFDLUString* name,
                                                  const DFDLUString* namespaceUri) {
    const ElementTableRow* row =
        ElementTable_findGlobalElementWithNamespace(this_->pif->elementTable, name, namespaceUri);
    return row == nullptr ? nullptr : row->globalMember;
}

void GroupMemberTableRow_setIsHidden(GroupMemberTableRow* this_, bool hidden) {
    this_->flags = hidden ? this_->flags | GM_HIDDEN : this_->flags & ~GM_HIDDEN;
}

DFDLUString* GroupMemberTableRow_getElementName(const GroupMemberTableRow* this_) {
    return this_ == nullptr || this_->elementRow == nullptr ? nullptr : this_->elementRow->name;
}

DFDLUString* GroupMemberTableRow_getGroupName(const GroupMemberTableRow* this_) {
    return this_ == nullptr || this_->groupRow == nullptr ? nullptr : this_->groupRow->name;
}

DFDLUString* GroupMemberTableRow_getNamespace(const GroupMemberTableRow* this_) {
    if (this_ == nullptr) return nullptr;
    if (this_->elementRow != nullptr) return this_->elementRow->namespace_;
    return this_->groupRow == nullptr ? nullptr : this_->groupRow->namespace_;
}

EscapeSchemeTableRow* GroupMemberTableRow_getEscapeSchemeTableRow(const GroupMemberTableRow* this_) {
    return this_ == nullptr ? nullptr : this_->escapeRow;
}

ExpressionTableRow* GroupMemberTableRow_getExpressionTableRow(const GroupMemberTableRow* this_,
                                                              int32_t index) {
    return this_ == nullptr ? nullptr : Table_row(this_->pif->expressionTable, index);
}

BinaryNumberTableRow* GroupMemberTableRow_getBinaryNumberRow(const GroupMemberTableRow* this_) {
    return physicalRowAs<BinaryNumberTableRow>(this_, BINARY_NUMBER, BINARY_NUMBER);
}

CalendarRepTableRow* GroupMemberTableRow_getCalendarRepRow(const GroupMemberTableRow* this_) {
    return physicalRowAs<CalendarRepTableRow>(this_, TEXT_CALENDAR, BINARY_CALENDAR);
}

BooleanRepTableRow* GroupMemberTableRow_getBooleanRepRow(const GroupMemberTableRow* this_) {
    return physicalRowAs<BooleanRepTableRow>(this_, TEXT_BOOLEAN, BINARY_BOOLEAN);
}

TextNumberTableRow* GroupMemberTableRow_getTextNumberRow(const GroupMemberTableRow* this_) {
    return physicalRowAs<TextNumberTableRow>(this_, TEXT_NUMBER, TEXT_NUMBER);
}
