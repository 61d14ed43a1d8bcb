#ifndef DFDL_PIF_EXPRESSIONTABLE_H
#define DFDL_PIF_EXPRESSIONTABLE_H

#include "dfdl/pif/table.h"

struct DFDLUString;
struct sPIF;

// A compiled expression with its source.
struct ExpressionTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    uint8_t* iInstructionSet = nullptr;  // owned
    DFDLUString* iMessage = nullptr;
    int32_t iFlags = 0;  // EXPRESSION_DELAYED

    int32_t instructionSetLength = 0;  // bytes
};

inline constexpr int32_t EXPRESSION_DELAYED = 1;  // attempted after the content, not before it

using ExpressionTable = Table<ExpressionTableRow>;

ExpressionTable* new_ExpressionTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_ExpressionTable(ExpressionTable* this_);  // null is ignored

#endif
