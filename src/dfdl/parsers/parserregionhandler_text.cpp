#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/framework/stringliteralcache.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/booleanreptable.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/simpletypetable.h"
#include "dfdl/pif/textstringtable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"

namespace {

using PooledText = Owned<DFDLUString, delete_DFDLUString>;

// The texts for one of the two truth values.
struct TruthTexts {
    const DFDLUString* list;
    int32_t expression;
    const char* property;
    const char* unsupported;
};

// An error of the literals can be told better by who knows whose they are.
void raiseMalformedList(ParserRegionHandler* handler, const GroupMemberTableRow* row,
                        const TruthTexts& texts) {
    ProcessingError* error = handler->context->currentError;
    if (!ProcessingError_hasKey(error, TEXT_INVALID_MNEMONIC)) return;
    const DFDLUString* name = GroupMemberTableRow_getElementName(row);
    ProcessingError_reset(error);
    ProcessingError_setValues(error, __FILE__, __LINE__, TEXT_INVALID_MNEMONIC, ERROR_SCHEMA_DEFINITION,
                              SUBKIND_NONE, "%Z%S%s", texts.list, name == nullptr ? u"" : name->chars,
                              texts.property);
}

// False also with an error.
bool isOneOf(ParserRegionHandler* handler, const GroupMemberTableRow* row, const TruthTexts& texts,
             const DFDLUString* text) {
    if (DFDLUString_length(texts.list) == 0 && texts.expression != -1) {
        PIFIteratorForParser_raiseUnsupported(handler->pifIterator, row, texts.unsupported);
        return false;
    }
    if (texts.list == nullptr) return false;
    StringLiteralCache* cache = handler->stringLiteralCache;
    const bool ignoreCase = row->textStringRow != nullptr && row->textStringRow->iIgnoreCase;
    const bool found = matchStringLiteralList(
        cache, StringLiteralCache_getDFDLStringLiteralList(cache, texts.list), ignoreCase, text);
    if (!found) raiseMalformedList(handler, row, texts);
    return found;
}

}  // namespace

DFDLValue* ParserRegionHandler_handleSimpleContent_TextString(ParserRegionHandler* this_,
                                                              const GroupMemberTableRow* row,
                                                              DFDLUString* text) {
    if (text == nullptr) {
        ParserRegionHandler_raiseNullText(this_, row);
        return nullptr;
    }
    return ParserRegionHandler_keepIfValid(
        this_, DFDLPoolingFactory_getStringDFDLValue(this_->heap->poolingFactory, text), row);
}

const DFDLUString* ParserRegionHandler_getTextBooleanTrueRepresentation(const BooleanRepTableRow* row) {
    return row == nullptr ? nullptr : row->iTextBooleanTrueRep;
}

const DFDLUString* ParserRegionHandler_getTextBooleanFalseRepresentation(const BooleanRepTableRow* row) {
    return row == nullptr ? nullptr : row->iTextBooleanFalseRep;
}

DFDLValue* ParserRegionHandler_handleSimpleContent_TextBoolean(ParserRegionHandler* this_,
                                                               const GroupMemberTableRow* row,
                                                               DFDLUString* text) {
    const PooledText owner(text);
    if (text == nullptr) {
        ParserRegionHandler_raiseNullText(this_, row);
        return nullptr;
    }
    const BooleanRepTableRow* rep = GroupMemberTableRow_getBooleanRepRow(row);
    const TruthTexts truths[] = {{ParserRegionHandler_getTextBooleanTrueRepresentation(rep),
                                  rep == nullptr ? -1 : rep->iTextBooleanTrueRepExpIndex,
                                  "textBooleanTrueRep", "texts for true given by an expression"},
                                 {ParserRegionHandler_getTextBooleanFalseRepresentation(rep),
                                  rep == nullptr ? -1 : rep->iTextBooleanFalseRepExpIndex,
                                  "textBooleanFalseRep", "texts for false given by an expression"}};
    ProcessingError* error = this_->context->currentError;
    for (const TruthTexts& texts : truths) {
        if (isOneOf(this_, row, texts, text)) {
            return ParserRegionHandler_keepIfValid(
                this_, BooleanDV_createDFDLValue(this_->heap, &texts == truths), row);
        }
        if (ProcessingError_isSet(error)) return nullptr;
    }
    ProcessingError_setValues(error, __FILE__, __LINE__, DFDLParser_invalidBooleanValue, ERROR_PROCESSING,
                              SUBKIND_NONE, "%Z", text);
    return nullptr;
}

DFDLValue* ParserRegionHandler_keepIfValid(ParserRegionHandler* this_, DFDLValue* value,
                                           const GroupMemberTableRow* row) {
    if (value == nullptr || this_->validationEnabled == 0 ||
        ParserRegionHandler_validateFacets(this_, value, row)) {
        return value;
    }
    DFDLPoolingFactory_releaseDFDLValue(this_->heap->poolingFactory, value);
    return nullptr;
}

bool ParserRegionHandler_validateFacets(ParserRegionHandler* this_, const DFDLValue* value,
                                        const GroupMemberTableRow* row) {
    static_cast<void>(value);
    const SimpleTypeTableRow* type = row->elementRow->simpleType;
    if (type == nullptr || (type->firstFacet == nullptr && type->firstUnionRow == nullptr)) return true;
    PIFIteratorForParser_raiseUnsupported(this_->pifIterator, row, "facets to be validated");
    return false;
}
