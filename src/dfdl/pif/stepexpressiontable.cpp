#include "dfdl/pif/stepexpressiontable.h"

#include <charconv>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/tabletext.h"

namespace {

void deleteRow(StepExpressionTableRow* row) {
    delete_DFDLUString(row->iStepExpression);
    delete_DFDLUString(row->predicateText);
}

DFDLUString* decimalText(DFDLHeapAdapter* heap, int32_t number) {
    char digits[12];  // sign and ten digits
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    return TableText_fromUTF8(heap, {digits, static_cast<size_t>(end - digits)});
}

}  // namespace

StepExpressionTable* new_StepExpressionTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<StepExpressionTable, deleteRow>(heap, pif);
}

void delete_StepExpressionTable(StepExpressionTable* this_) { Table_delete(this_); }

void StepExpressionTable_finalizeTable(StepExpressionTable* this_) {
    StepExpressionTableRow* previous = nullptr;
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        StepExpressionTableRow* row = Table_at(this_, index);
        row->predicateText = decimalText(this_->heap, row->iPredicateLiteral);
        if (previous != nullptr && previous->iPathExprTableIndex == row->iPathExprTableIndex) {
            previous->nextStep = row;
        }
        previous = row;
    }
}
