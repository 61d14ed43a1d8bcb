#include "dfdl/pif/spif.h"

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/pif/patternmanager.h"

namespace {

void makeTables(sPIF* this_, DFDLHeapAdapter* heap) {
    this_->elementTable = new_ElementTable(heap, this_);
    this_->simpleTypeTable = new_SimpleTypeTable(heap, this_);
    this_->groupTable = new_GroupTable(heap, this_);
    this_->groupMemberTable = new_GroupMemberTable(heap, this_);
    this_->lengthSchemeTable = new_LengthSchemeTable(heap, this_);
    this_->textEncodingTable = new_TextEncodingTable(heap, this_);
    this_->textStringTable = new_TextStringTable(heap, this_);
    this_->textNumberTable = new_TextNumberTable(heap, this_);
    this_->calendarFormatTable = new_CalendarFormatTable(heap, this_);
    this_->calendarRepTable = new_CalendarRepTable(heap, this_);
    this_->booleanRepTable = new_BooleanRepTable(heap, this_);
    this_->binaryNumberTable = new_BinaryNumberTable(heap, this_);
    this_->alignmentTable = new_AlignmentTable(heap, this_);
    this_->stringLiteralTable = new_StringLiteralTable(heap, this_);
    this_->stringPartTable = new_StringPartTable(heap, this_);
    this_->textMarkupTable = new_TextMarkupTable(heap, this_);
    this_->escapeSchemeTable = new_EscapeSchemeTable(heap, this_);
    this_->facetTable = new_FacetTable(heap, this_);
    this_->valuesTable = new_ValuesTable(heap, this_);
    this_->expressionTable = new_ExpressionTable(heap, this_);
    this_->variableActionsTable = new_VariableActionsTable(heap, this_);
    this_->variablesTable = new_VariablesTable(heap, this_);
    this_->simpleTypeUnionTable = new_SimpleTypeUnionTable(heap, this_);
    this_->parserStateTable = new_ParserStateTable(heap, this_);
    this_->assertTable = new_AssertTable(heap, this_);
    this_->markupSetTable = new_MarkupSetTable(heap, this_);
    this_->scdTable = new_SCDTable(heap, this_);
    this_->pathExpressionTable = new_PathExpressionTable(heap, this_);
    this_->stepExpressionTable = new_StepExpressionTable(heap, this_);
    this_->nilSchemeTable = new_NilSchemeTable(heap, this_);
    this_->occursSchemeTable = new_OccursSchemeTable(heap, this_);
    this_->pifGlobalsTable = new_PIFGlobalsTable(heap, this_);
}

void deleteTables(sPIF* this_) {
    delete_LengthSchemeTable(this_->lengthSchemeTable);
    delete_TextEncodingTable(this_->textEncodingTable);
    delete_TextStringTable(this_->textStringTable);
    delete_TextNumberTable(this_->textNumberTable);
    delete_CalendarFormatTable(this_->calendarFormatTable);
    delete_CalendarRepTable(this_->calendarRepTable);
    delete_BooleanRepTable(this_->booleanRepTable);
    delete_BinaryNumberTable(this_->binaryNumberTable);
    delete_AlignmentTable(this_->alignmentTable);
    delete_StringLiteralTable(this_->stringLiteralTable);
    delete_StringPartTable(this_->stringPartTable);
    delete_TextMarkupTable(this_->textMarkupTable);
    delete_EscapeSchemeTable(this_->escapeSchemeTable);
    delete_FacetTable(this_->facetTable);
    delete_ValuesTable(this_->valuesTable);
    delete_ExpressionTable(this_->expressionTable);
    delete_VariablesTable(this_->variablesTable);
    delete_VariableActionsTable(this_->variableActionsTable);
    delete_SimpleTypeUnionTable(this_->simpleTypeUnionTable);
    delete_ParserStateTable(this_->parserStateTable);
    delete_AssertTable(this_->assertTable);
    delete_SimpleTypeTable(this_->simpleTypeTable);
    delete_GroupMemberTable(this_->groupMemberTable);
    delete_ElementTable(this_->elementTable);
    delete_GroupTable(this_->groupTable);
    delete_MarkupSetTable(this_->markupSetTable);
    delete_SCDTable(this_->scdTable);
    delete_PathExpressionTable(this_->pathExpressionTable);
    delete_StepExpressionTable(this_->stepExpressionTable);
    delete_NilSchemeTable(this_->nilSchemeTable);
    delete_OccursSchemeTable(this_->occursSchemeTable);
    delete_PIFGlobalsTable(this_->pifGlobalsTable);
}

// Rows are found by number from here on, so the pointers that finalizing sets do not depend on its order.
void indexTables(sPIF* this_) {
    ElementTable_indexRows(this_->elementTable);
    GroupTable_indexRows(this_->groupTable);
    GroupMemberTable_indexRows(this_->groupMemberTable);
    VariablesTable_indexRows(this_->variablesTable);
}

void finalizeTables(sPIF* this_) {
    ValuesTable_finalizeTable(this_->valuesTable);
    ElementTable_finalizeTable(this_->elementTable);
    SimpleTypeTable_finalizeTable(this_->simpleTypeTable);
    GroupTable_finalizeTable(this_->groupTable);
    GroupMemberTable_finalizeTable(this_->groupMemberTable);
    LengthSchemeTable_finalizeTable(this_->lengthSchemeTable);
    TextEncodingTable_finalizeTable(this_->textEncodingTable);
    TextStringTable_finalizeTable(this_->textStringTable);
    TextNumberTable_finalizeTable(this_->textNumberTable);
    CalendarFormatTable_finalizeTable(this_->calendarFormatTable);
    CalendarRepTable_finalizeTable(this_->calendarRepTable);
    BooleanRepTable_finalizeTable(this_->booleanRepTable);
    BinaryNumberTable_finalizeTable(this_->binaryNumberTable);
    AlignmentTable_finalizeTable(this_->alignmentTable);
    StringLiteralTable_finalizeTable(this_->stringLiteralTable);
    StringPartTable_finalizeTable(this_->stringPartTable);
    TextMarkupTable_finalizeTable(this_->textMarkupTable);
    AssertTable_finalizeTable(this_->assertTable);
    MarkupSetTable_finalizeTable(this_->markupSetTable);
    VariableActionsTable_finalizeTable(this_->variableActionsTable);
    PathExpressionTable_finalizeTable(this_->pathExpressionTable);
    StepExpressionTable_finalizeTable(this_->stepExpressionTable);
    NilSchemeTable_finalizeTable(this_->nilSchemeTable);
}

}  // namespace

sPIF* new_PIF(DFDLHeapAdapter* heap, Context* context) {
    Owned<sPIF, delete_PIF> this_(DFDLHeapAdapter_new<sPIF>(heap));
    makeTables(this_.get(), heap);
    this_->patternManager = new_PatternManager(heap, this_.get(), context);
    this_->constants = new_DFDLConstants(heap);
    this_->names = new_ArrayListOfPointers(heap, 0);
    UErrorCode status = U_ZERO_ERROR;
    this_->utf8Converter = ucnv_open("UTF-8", &status);  // fails for want of memory only
    if (this_->utf8Converter == nullptr) DFDLHeapAdapter_refuse(heap);
    return this_.release();
}

void delete_PIF(sPIF* this_) {
    if (this_ == nullptr) return;
    delete_ArrayList(this_->names);
    ucnv_close(this_->utf8Converter);
    delete_DFDLConstants(this_->constants);
    deleteTables(this_);
    delete_PatternManager(this_->patternManager);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

bool PIF_finalizeTables(sPIF* this_) {
    indexTables(this_);
    finalizeTables(this_);
    GroupMemberTable_setFlags(this_->groupMemberTable);
    GroupMemberTable_identifySuppressableGroups(this_->groupMemberTable);
    GroupTable_optimiseChoiceResolution(this_->groupTable);
    GroupTable_countMembers(this_->groupTable);
    return PatternManager_compilePatterns(this_->patternManager);
}
