#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/processor/dfdlparserimpl.h"
#include "dfdl/variables/variablemanager.h"

namespace {

void raiseWithValue(DFDLParserImpl* parser, const UChar* name, const UChar* namespaceUri, DFDLValue* value,
                    const char* key, bool withReason) {
    UErrorCode status = U_ZERO_ERROR;
    DFDLUString* text = DFDLValue_toString(value, &status, parser->heap);
    ProcessingError* error = parser->context->currentError;
    if (withReason) {
        ProcessingError_setValues(error, __FILE__, __LINE__, key, ERROR_PROCESSING, SUBKIND_NONE, "%S%S%s%Z",
                                  name, namespaceUri, "", text);
    } else {
        ProcessingError_setValues(error, __FILE__, __LINE__, key, ERROR_PROCESSING, SUBKIND_NONE, "%S%S%Z",
                                  name, namespaceUri, text);
    }
    if (value->schemaType != TYPE_STRING) delete_DFDLUString(text);
}

void raiseForName(DFDLParserImpl* parser, const UChar* name, const UChar* namespaceUri, const char* key) {
    ProcessingError_setValues(parser->context->currentError, __FILE__, __LINE__, key, ERROR_PROCESSING,
                              SUBKIND_NONE, "%S%S", name, namespaceUri);
}

// Adopts the value where it was not set.
int handleSetVariableResult(DFDLParserImpl* parser, int32_t code, const UChar* name,
                            const UChar* namespaceUri, DFDLValue* value) {
    if (code == VARIABLE_SET) {
        parser->hasNextStage = DFDLParserImpl_hasNextWithSetup;
        return 1;
    }
    ProcessingError_reset(parser->context->currentError);
    switch (code) {
        case VARIABLE_WRONG_TYPE:
            raiseWithValue(parser, name, namespaceUri, value, DFDLParser_variableCantBeCreated, false);
            break;
        case VARIABLE_OUT_OF_RANGE:
            raiseWithValue(parser, name, namespaceUri, value, DFDLParser_variableValueOutOfRange, true);
            break;
        case VARIABLE_NOT_FOUND:
            raiseForName(parser, name, namespaceUri, DFDLParser_variableNotFound);
            break;
        default:
            raiseForName(parser, name, namespaceUri, DFDLParser_variableIsNotExternal);
            break;
    }
    delete_DFDLValue(value);
    DFDLParserImpl_processError(parser);
    ProcessingError_reset(parser->context->currentError);
    return 0;
}

}  // namespace

bool DFDLParserImpl_canSetVariables(const DFDLParserImpl* this_) {
    return this_->parseInProgress == 0 && this_->grammar != nullptr;
}

int DFDLParserImpl_setVariable(DFDLParserImpl* this_, const UChar* name, const UChar* namespaceUri,
                               DFDLValue* value) {
    const UChar* space = namespaceUri == nullptr ? u"" : namespaceUri;
    const int32_t code = VariableManager_setVariableByAPI(this_->variableManager, name, space, value);
    return handleSetVariableResult(this_, code, name, space, value);
}
