#ifndef DFDL_VARIABLES_VARIABLEMANAGER_H
#define DFDL_VARIABLES_VARIABLEMANAGER_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct ArrayList;
struct Context;
struct DFDLUString;
struct DFDLValue;
struct TraceHandlerAdapter;
struct VariablesTable;
struct sPIF;

// One instance of a variable.
struct Variable {
    DFDLHeapAdapter* heap;
    const DFDLUString* name;          // the grammar's
    const DFDLUString* namespaceUri;  // the grammar's
    int32_t kind;                     // DFDLSimpleTypeEnum
    DFDLValue* value;                 // owned; null while unset
    int32_t variableIndex;            // row in the variables table
    int32_t valueIndex;               // of the default's literal; -1 none
    int32_t valueExpressionIndex;     // of the default's expression; -1 none
    uint32_t setFlag;
    uint32_t external;
    uint32_t inScope;
    uint32_t defaultComputed;
};

// How an external set ended.
enum VariableManagerReturnCodes : int32_t {
    VARIABLE_SET = 0,
    VARIABLE_WRONG_TYPE = 1,
    VARIABLE_OUT_OF_RANGE = 2,
    VARIABLE_NOT_FOUND = 3,
    VARIABLE_NOT_EXTERNAL = 4
};

// Holds the DFDL variables of one engine: a global instance of each, with the values that the caller set from
// outside and the defaults that are literals. Belongs to its engine and lives as long.
struct VariableManager {
    DFDLHeapAdapter* heap;
    Context* context;
    ArrayList* instances;  // Variable*, by row of the variables table; null where none is defined
    const sPIF* grammar;
    uint32_t dirty;  // values have changed since the defaults were worked out
    TraceHandlerAdapter* trace;
};

VariableManager* new_VariableManager(DFDLHeapAdapter* heap, Context* context);
void delete_VariableManager(VariableManager* this_);
// Drops all instances; the next grammar's are then defined.
void VariableManager_setPIF(VariableManager* this_, const sPIF* grammar);
void VariableManager_defineGlobalVariables(VariableManager* this_);
// At the start of a parse. A default that comes from an expression is an error.
void VariableManager_calculateDefaultValues(VariableManager* this_);
void VariableManager_reset(VariableManager* this_);
// A VariableManagerReturnCodes; the value belongs to the variable only if it is VARIABLE_SET.
int32_t VariableManager_setVariableByAPI(VariableManager* this_, const UChar* name, const UChar* namespaceUri,
                                         DFDLValue* value);

#endif
