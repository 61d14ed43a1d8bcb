#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/simpletypetable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"

DFDLValue* ParserRegionHandler_handleSimpleContent_TextString(ParserRegionHandler* this_,
                                                              const GroupMemberTableRow* row,
                                                              DFDLUString* text) {
    if (text == nullptr) {
        ProcessingError_setValues(this_->context->currentError, __FILE__, __LINE__,
                                  DFDLParser_nullConversionString, ERROR_PROCESSING, SUBKIND_NONE, "%Z",
                                  GroupMemberTableRow_getElementName(row));
        return nullptr;
    }
    DFDLValue* value = DFDLPoolingFactory_getStringDFDLValue(this_->heap->poolingFactory, text);
    if (this_->validationEnabled == 0 || ParserRegionHandler_validateFacets(this_, value, row)) return value;
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
