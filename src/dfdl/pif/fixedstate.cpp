#include "dfdl/pif/fixedstate.h"

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/spif.h"

FixedState FixedState_ofExpression(const sPIF* pif, int32_t expressionIndex, const char16_t* variable) {
    if (expressionIndex == -1) return FIXED_CONSTANT;
    const ExpressionTableRow* row = Table_row(pif->expressionTable, expressionIndex);
    return row != nullptr && DFDLUString_view(row->iMessage) == variable ? FIXED_BY_VARIABLE : FIXED_NOT;
}
