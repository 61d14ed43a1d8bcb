#include "dfdl/variables/variablemanager.h"

#include <unicode/ustring.h>

#include "dfdl/converters/binarynumberconverter.h"
#include "dfdl/foundation/array.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pif/valuestable.h"
#include "dfdl/pif/variableactionstable.h"
#include "dfdl/pif/variablestable.h"

namespace {

Variable* instanceAt(const VariableManager* manager, int32_t index) {
    if (index < 0 || index >= manager->instances->count) return nullptr;
    return ArrayList_getPointer<Variable>(manager->instances, index);
}

void deleteVariable(Variable* variable) {
    if (variable == nullptr) return;
    delete_DFDLValue(variable->value);
    DFDLHeapAdapter_objectDeallocate(variable->heap, variable);
}

void dropInstances(VariableManager* manager) {
    for (int32_t i = 0; i < manager->instances->count; ++i) deleteVariable(instanceAt(manager, i));
    ArrayList_clear(manager->instances);
}

void setValue(Variable* variable, DFDLValue* value) {
    if (variable->value == value) return;
    delete_DFDLValue(variable->value);
    variable->value = value;
}

void define(VariableManager* manager, const VariableActionsTableRow* action) {
    const auto* row =
        Array_row<VariablesTableRow>(manager->grammar->variablesTable->rows, action->variableRowIndex);
    if (row == nullptr || instanceAt(manager, action->variableRowIndex) != nullptr) return;
    auto* variable = DFDLHeapAdapter_new<Variable>(manager->heap);
    variable->name = row->iName;
    variable->namespaceUri = row->iNamespace;
    variable->kind = row->iSimpleType;
    variable->variableIndex = action->variableRowIndex;
    variable->valueIndex = action->iValueIndex;
    variable->valueExpressionIndex = action->iValueExpressionIndex;
    variable->external = row->iIsExternal ? 1U : 0U;
    variable->inScope = 1;
    ArrayList_setPointer(manager->instances, action->variableRowIndex, variable);
}

template <class Visit>
void forEachGlobalDefinition(const VariableManager* manager, Visit visit) {
    const Array* actions = manager->grammar->variableActionsTable->rows;
    for (int32_t i = 0; i < actions->count; ++i) {
        const auto* action = Array_row<VariableActionsTableRow>(actions, i);
        if (action->iGroupMemberTableId == -1 && action->iAction == ACTION_DEFINE) visit(action);
    }
}

void raiseUnsupported(VariableManager* manager, const Variable* variable) {
    ProcessingError_setValues(manager->context->currentError, __FILE__, __LINE__,
                              DFDLParser_unsupportedConstruct, ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z%s",
                              variable->name, "a default of a variable that comes from an expression");
}

// What the caller has set stays as the default.
bool calculateDefault(VariableManager* manager, Variable* variable) {
    variable->defaultComputed = 1;
    if (variable->setFlag != 0 && variable->external != 0) {
        variable->setFlag = 0;
        return true;
    }
    if (variable->value != nullptr) return true;
    if (variable->valueExpressionIndex != -1) {
        raiseUnsupported(manager, variable);
        return false;
    }
    const DFDLValue* literal = ValuesTable_getDFDLValue(manager->grammar->valuesTable, variable->valueIndex);
    if (literal != nullptr) setValue(variable, DFDLValue_clone(literal, manager->heap));
    return true;
}

bool isNumericKind(int32_t kind) { return kind >= SIMPLE_FLOAT && kind <= SIMPLE_NON_NEGATIVE_INTEGER; }

bool isNumber(const DFDLValue* value) {
    return (value->schemaType >= TYPE_DECIMAL && value->schemaType <= TYPE_DOUBLE) ||
           value->schemaType >= TYPE_INTEGER;
}

bool isCalendar(const DFDLValue* value) {
    return value->schemaType >= TYPE_DATETIME && value->schemaType <= TYPE_DATE;
}

int32_t checkType(const Variable* variable, const DFDLValue* value) {
    if (isNumericKind(variable->kind)) {
        if (!isNumber(value)) return VARIABLE_WRONG_TYPE;
        return BinaryNumberConverter_checkNumericRange(value, variable->kind) ? VARIABLE_SET
                                                                              : VARIABLE_OUT_OF_RANGE;
    }
    if (value->schemaType != DFDLType_getTypeFromDFDLSimpleType(variable->kind)) return VARIABLE_WRONG_TYPE;
    if (value->schemaType == TYPE_STRING && value->u.string == nullptr) return VARIABLE_WRONG_TYPE;
    if (isCalendar(value) && value->u.calendar.calendar == nullptr) return VARIABLE_WRONG_TYPE;
    return VARIABLE_SET;
}

DFDLUString* newName(VariableManager* manager, const UChar* text) {
    return new_DFDLUStringUseUChars(manager->heap, text, u_strlen(text));
}

Variable* findInstance(VariableManager* manager, const UChar* name, const UChar* namespaceUri) {
    const Owned<DFDLUString, delete_DFDLUString> nameString(newName(manager, name));
    const Owned<DFDLUString, delete_DFDLUString> namespaceString(newName(manager, namespaceUri));
    return instanceAt(
        manager, VariablesTable_getGlobalVariableIndex(manager->grammar->variablesTable, nameString.get(),
                                                       namespaceString.get()));
}

}  // namespace

VariableManager* new_VariableManager(DFDLHeapAdapter* heap, Context* context) {
    auto* this_ = DFDLHeapAdapter_new<VariableManager>(heap);
    this_->context = context;
    this_->instances = new_ArrayListOfPointers(heap, 10);
    return this_;
}

void delete_VariableManager(VariableManager* this_) {
    if (this_ == nullptr) return;
    dropInstances(this_);
    delete_ArrayList(this_->instances);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void VariableManager_setPIF(VariableManager* this_, const sPIF* grammar) {
    dropInstances(this_);
    this_->grammar = grammar;
}

void VariableManager_defineGlobalVariables(VariableManager* this_) {
    forEachGlobalDefinition(this_, [&](const VariableActionsTableRow* action) { define(this_, action); });
    this_->dirty = 1;
}

void VariableManager_calculateDefaultValues(VariableManager* this_) {
    if (this_->dirty == 0 || this_->grammar == nullptr) return;
    for (int32_t i = 0; i < this_->instances->count; ++i) {
        Variable* variable = instanceAt(this_, i);
        if (variable == nullptr || (variable->defaultComputed != 0 && variable->setFlag == 0)) continue;
        if (!calculateDefault(this_, variable)) return;
    }
    this_->dirty = 0;
}

// Nothing changes a variable while data are parsed, so the values of the start still stand.
void VariableManager_reset(VariableManager* this_) { static_cast<void>(this_); }

int32_t VariableManager_setVariableByAPI(VariableManager* this_, const UChar* name, const UChar* namespaceUri,
                                         DFDLValue* value) {
    Variable* variable = findInstance(this_, name, namespaceUri);
    if (variable == nullptr) return VARIABLE_NOT_FOUND;
    if (variable->external == 0) return VARIABLE_NOT_EXTERNAL;
    const int32_t checked = checkType(variable, value);
    if (checked != VARIABLE_SET) return checked;
    setValue(variable, value);
    variable->inScope = 1;
    variable->setFlag = 1;
    this_->dirty = 1;
    return VARIABLE_SET;
}
