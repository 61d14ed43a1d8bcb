#ifndef DFDL_PIF_CPIFLOADER_ROWS_H
#define DFDL_PIF_CPIFLOADER_ROWS_H

#include "dfdl/pif/spif.h"
#include "pif.pb.h"

// Each row of the message as a row of its table. Strings and bytes of the result come from `heap` and belong
// to it.
LengthSchemeTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MLengthSchemeTableRow& row);
TextEncodingTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MTextEncodingTableRow& row);
TextStringTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MTextStringTableRow& row);
TextNumberTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MTextNumberTableRow& row);
CalendarFormatTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MCalendarFormatTableRow& row);
CalendarRepTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MCalendarRepTableRow& row);
BooleanRepTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MBooleanRepTableRow& row);
BinaryNumberTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MBinaryNumberTableRow& row);
AlignmentTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MAlignmentTableRow& row);
StringPartTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MStringPartTableRow& row);
StringLiteralTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MStringLiteralTableRow& row);
TextMarkupTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MTextMarkupTableRow& row);
EscapeSchemeTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MEscapeSchemeTableRow& row);
FacetTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MFacetTableRow& row);
ValuesTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MValuesTableRow& row);
SimpleTypeUnionTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MSimpleTypeUnionTableRow& row);
ExpressionTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MExpressionsTableRow& row);
VariablesTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MVariablesTableRow& row);
AssertTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MAssertTableRow& row);
VariableActionsTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MVariableActionsTableRow& row);
GroupTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MGroupTableRow& row);
SimpleTypeTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MSimpleTypeTableRow& row);
GroupMemberTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MGroupMemberTableRow& row);
ElementTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MElementTableRow& row);
MarkupSetTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MMarkupSetTableRow& row);
SCDTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MSCDTableRow& row);
PathExpressionTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MPathExpressionTableRow& row);
StepExpressionTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MStepExpressionTableRow& row);
NilSchemeTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MNilSchemeTableRow& row);
OccursSchemeTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MOccursSchemeTableRow& row);

#endif
