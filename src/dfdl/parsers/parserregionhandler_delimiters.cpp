#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/parsers/parserregionhandler.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pifiterator/contextitemforparser.h"

namespace {

// One of the delimiters of a list at the position; without one the error says so.
bool findDelimiter(ParserRegionHandler* handler, const GroupMemberTableRow* row, const DFDLUString* list,
                   const char* propertyName, bool record, const char* missing) {
    const ProcessingError* error = handler->context->currentError;
    DelimitedScannerBytes* scanner = handler->scanner;
    DelimitedScannerBytes_setMarkupSetWithGroupMemberRow(scanner, list, row, true, propertyName);
    if (ProcessingError_isSet(error)) return false;
    if (DelimitedScannerBytes_checkForMarkupAtCurrentPosition(scanner, row->iTextEncodingIndex, record, row))
        return true;
    if (ProcessingError_isSet(error)) return false;
    ProcessingError_setValues(handler->context->currentError, __FILE__, __LINE__, missing, ERROR_PROCESSING,
                              SUBKIND_NONE, nullptr);
    return false;
}

}  // namespace

bool ParserRegionHandler_handleInitiatorRegion(ParserRegionHandler* this_, const GroupMemberTableRow* row) {
    return findDelimiter(this_, row, PIFPhysicalPropertyHelper_getInitiatorProperty(row), "initiator", false,
                         DFDLParser_missingInitiator);
}

bool ParserRegionHandler_handleTerminatorRegion(ParserRegionHandler* this_, const GroupMemberTableRow* row) {
    return findDelimiter(this_, row, PIFPhysicalPropertyHelper_getTerminatorProperty(row), "terminator", true,
                         DFDLParser_missingTerminator);
}

bool ParserRegionHandler_checkForMarkup(ParserRegionHandler* this_, int32_t markupSetId,
                                        ContextItemForParser* item) {
    DelimitedScannerBytes* scanner = this_->scanner;
    if (DelimitedScannerBytes_setMarkupSet(scanner, markupSetId, item) == nullptr) return false;
    return DelimitedScannerBytes_checkForMarkupAtCurrentPosition(scanner, item->row->iTextEncodingIndex, true,
                                                                 item->row);
}
