#include "dfdl/pif/simpletypetable.h"

#include <algorithm>
#include <iterator>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/spif.h"

namespace {

void deleteRow(SimpleTypeTableRow* row) {
    delete_DFDLUString(row->name);
    delete_DFDLUString(row->namespace_);
    delete_DFDLUString(row->pifSimpleTypeName);
}

}  // namespace

SimpleTypeTable* new_SimpleTypeTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<SimpleTypeTable, deleteRow>(heap, pif);
}

void delete_SimpleTypeTable(SimpleTypeTable* this_) { Table_delete(this_); }

void SimpleTypeTable_finalizeTable(SimpleTypeTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        SimpleTypeTableRow* row = Table_at(this_, index);
        row->kind = SimpleTypeTableRow_valueof(row->pifSimpleTypeName);
        row->baseType = SimpleTypeTable_findRow(this_, row->builtInTypeId);
        row->firstFacet = Table_row(this_->pif->facetTable, row->iFacetTableId);
        row->firstUnionRow = Table_row(this_->pif->simpleTypeUnionTable, row->iUnionTableId);
    }
}

int32_t SimpleTypeTable_findRowIndex(const SimpleTypeTable* this_, int32_t id) {
    if (id == -1) return -1;
    int32_t low = 0;
    int32_t high = Table_size(this_) - 1;
    while (low <= high) {
        const int32_t middle = low + (high - low) / 2;
        const int32_t found = Table_at(this_, middle)->simple_type_id;
        if (found == id) return middle;
        if (found < id) {
            low = middle + 1;
        } else {
            high = middle - 1;
        }
    }
    return -1;
}

SimpleTypeTableRow* SimpleTypeTable_findRow(const SimpleTypeTable* this_, int32_t id) {
    return Table_row(this_, SimpleTypeTable_findRowIndex(this_, id));
}

DFDLSimpleTypeEnum SimpleTypeTableRow_valueof(const DFDLUString* name) {
    static constexpr std::u16string_view NAMES[] = {u"STRING",
                                                    u"BOOLEAN",
                                                    u"HEXBINARY",
                                                    u"DATE",
                                                    u"TIME",
                                                    u"DATETIME",
                                                    u"FLOAT",
                                                    u"DOUBLE",
                                                    u"DECIMAL",
                                                    u"INTEGER",
                                                    u"LONG",
                                                    u"INT",
                                                    u"SHORT",
                                                    u"BYTE",
                                                    u"UNSIGNEDLONG",
                                                    u"UNSIGNEDINT",
                                                    u"UNSIGNEDSHORT",
                                                    u"UNSIGNEDBYTE",
                                                    u"NONNEGATIVEINTEGER"};
    static_assert(std::size(NAMES) == SIMPLE_UNKNOWN);
    const auto* found = std::find(std::begin(NAMES), std::end(NAMES), DFDLUString_view(name));
    return static_cast<DFDLSimpleTypeEnum>(found - std::begin(NAMES));
}
