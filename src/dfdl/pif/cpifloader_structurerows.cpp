// Rows of elements, types, expressions and variables.

#include <string>

#include "dfdl/pif/cpifloader_enums.h"
#include "dfdl/pif/cpifloader_rows.h"
#include "dfdl/pif/tabletext.h"

namespace {

DFDLUString* text(DFDLHeapAdapter* heap, const std::string& value) { return TableText_fromUTF8(heap, value); }

uint8_t* bytes(DFDLHeapAdapter* heap, const std::string& value) {
    auto* copy = DFDLHeapAdapter_newArray<uint8_t>(heap, value.size() + 1);
    DFDLHeapAdapter_arrayCopy(heap, value.data(), copy, 1, value.size());
    return copy;
}

}  // namespace

ElementTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MElementTableRow& row) {
    return {.element_id = row.element_id(),
            .name = text(heap, row.name()),
            .namespace_ = text(heap, row.namespace_()),
            .simple_type_id = row.simple_type_id(),
            .group_id = row.group_id(),
            .defaultValueIndex = row.defaultvalueindex(),
            .valueConstraintKind = CPIFLoader_getEnum<ValueConstraintKindEnum>(row.valueconstraintkind()),
            .scd_id = row.scd_id()};
}

GroupTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MGroupTableRow& row) {
    return {.group_id = row.group_id(),
            .name = text(heap, row.name()),
            .namespace_ = text(heap, row.namespace_()),
            .iGroupKind = CPIFLoader_getEnum<DFDLGroupTypeEnum>(row.igroupkind()),
            .scd_id = row.scd_id()};
}

GroupMemberTableRow rowOf(DFDLHeapAdapter* /*heap*/, const PIF::MGroupMemberTableRow& row) {
    return {.parent_group_id = row.parent_group_id(),
            .sequence_number = row.sequence_number(),
            .child_element_id = row.child_element_id(),
            .child_group_id = row.child_group_id(),
            .min_occurs = row.min_occurs(),
            .max_occurs = row.max_occurs(),
            .iLengthSchemeId = row.ilengthschemeid(),
            .iTextStringIndex = row.itextstringindex(),
            .iAlignmentId = row.ialignmentid(),
            .iTextMarkupId = row.itextmarkupid(),
            .iPhysicalType = CPIFLoader_getEnum<PhysicalTypeEnum>(row.iphysicaltype()),
            .iDfdlRepresentation = CPIFLoader_getEnum<RepresentationEnum>(row.idfdlrepresentation()),
            .iPhysicalTypeIndex = row.iphysicaltypeindex(),
            .iPhysicalTypeTableRowId = row.iphysicaltypetablerowid(),
            .iTextEncodingIndex = row.itextencodingindex(),
            .iFirstAssertIndex = row.ifirstassertindex(),
            .iOuputValueCalcExprIndex = row.iouputvaluecalcexprindex(),
            .iInputValueCalcExprIndex = row.iinputvaluecalcexprindex(),
            .iNilSchemeIndex = row.inilschemeindex(),
            .iPathExprTypeValue = row.ipathexprtypevalue(),
            .iOccursSchemeTableIndex = row.ioccursschemetableindex(),
            .iFloating = row.ifloating(),
            .iChoiceDispatchKeyIndex = row.has_ichoicedispatchkeyindex() ? row.ichoicedispatchkeyindex() : -1,
            .iChoiceBranchKeyIndex = row.has_ichoicebranchkeyindex() ? row.ichoicebranchkeyindex() : -1};
}

SimpleTypeTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MSimpleTypeTableRow& row) {
    return {.simple_type_id = row.simple_type_id(),
            .name = text(heap, row.name()),
            .namespace_ = text(heap, row.namespace_()),
            .pifSimpleTypeName = text(heap, row.pifsimpletypename()),
            .builtInTypeId = row.builtintypeid(),
            .iFacetTableId = row.ifacettableid(),
            .iUnionTableId = row.iuniontableid()};
}

SimpleTypeUnionTableRow rowOf(DFDLHeapAdapter* /*heap*/, const PIF::MSimpleTypeUnionTableRow& row) {
    return {.iSimpleTypeId = row.isimpletypeid(), .iMemberSimpleTypeIndex = row.imembersimpletypeindex()};
}

FacetTableRow rowOf(DFDLHeapAdapter* /*heap*/, const PIF::MFacetTableRow& row) {
    return {.iSimpleTypeId = row.isimpletypeid(),
            .iFacetKind = CPIFLoader_getEnum<FacetKindEnum>(row.ifacetkind()),
            .iValueId = row.ivalueid(),
            .iImplicit = row.iimplicit()};
}

ValuesTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MValuesTableRow& row) {
    return {.iValue = text(heap, row.ivalue()),
            .iSimpleType = CPIFLoader_getDFDLSimpleTypeEnum(row.isimpletype().c_str())};
}

SCDTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MSCDTableRow& row) {
    return {.iSCD = text(heap, row.iscd())};
}

ExpressionTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MExpressionsTableRow& row) {
    return {.iInstructionSet = bytes(heap, row.iinstructionset()),
            .iMessage = text(heap, row.imessage()),
            .iFlags = row.iflags(),
            .instructionSetLength = static_cast<int32_t>(row.iinstructionset().size())};
}

VariablesTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MVariablesTableRow& row) {
    return {.iName = text(heap, row.iname()),
            .iNamespace = text(heap, row.inamespace()),
            .iIsExternal = row.iisexternal(),
            .iID = row.iid(),
            .iSimpleType = CPIFLoader_getDFDLSimpleTypeEnum(row.isimpletype().c_str())};
}

VariableActionsTableRow rowOf(DFDLHeapAdapter* /*heap*/, const PIF::MVariableActionsTableRow& row) {
    return {.iVariableId = row.ivariableid(),
            .iGroupMemberTableId = row.igroupmembertableid(),
            .iAction = CPIFLoader_getEnum<DFDLVariableActionEnum>(row.iaction()),
            .iValueIndex = row.ivalueindex(),
            .iValueExpressionIndex = row.ivalueexpressionindex()};
}

AssertTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MAssertTableRow& row) {
    return {.iGroupMemberIndex = row.igroupmemberindex(),
            .iDiscriminatorFlag = row.idiscriminatorflag(),
            .iExpressionIndex = row.iexpressionindex(),
            .iMessage = text(heap, row.imessage()),
            .iFailureType = CPIFLoader_getEnum<FailureTypeEnum>(row.ifailuretype())};
}

PathExpressionTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MPathExpressionTableRow& row) {
    return {.iPathExpression = text(heap, row.ipathexpression()),
            .iExpressionTableIndex = row.iexpressiontableindex(),
            .iFirstStepExpressionIndex = row.ifirststepexpressionindex()};
}

StepExpressionTableRow rowOf(DFDLHeapAdapter* heap, const PIF::MStepExpressionTableRow& row) {
    return {.iStepExpression = text(heap, row.istepexpression()),
            .iPathExprTableIndex = row.ipathexprtableindex(),
            .iPredicateLiteral = row.ipredicateliteral(),
            .iPredicateLiteralExprIndex = row.ipredicateliteralexprindex(),
            .iStepExpressionEnum = CPIFLoader_getEnum<StepExpressionEnum>(row.istepexpressionenum())};
}
