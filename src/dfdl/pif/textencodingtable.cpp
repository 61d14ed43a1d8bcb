#include "dfdl/pif/textencodingtable.h"

#include "dfdl/converters/dfdlcharsetutils.h"
#include "dfdl/foundation/dfdlconstants.h"
#include "dfdl/foundation/dfdlstring.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/spif.h"

namespace {

void deleteRow(TextEncodingTableRow* row) {
    delete_DFDLUString(row->iEncoding);
    delete_DFDLString(row->encodingName);
}

}  // namespace

TextEncodingTable* new_TextEncodingTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<TextEncodingTable, deleteRow>(heap, pif);
}

void delete_TextEncodingTable(TextEncodingTable* this_) { Table_delete(this_); }

void TextEncodingTable_finalizeTable(TextEncodingTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        TextEncodingTableRow* row = Table_at(this_, index);
        const sPIF* pif = this_->pif;
        row->encodingName = new_DFDLStringFromDFDLUString(this_->heap, pif->utf8Converter, row->iEncoding);
        row->fixedByteOrder =
            FixedState_ofExpression(pif, row->iByteOrderExprIndex, DFDLConstants::VARIABLE_BYTE_ORDER);
        row->fixedEncoding =
            FixedState_ofExpression(pif, row->iEncodingExprIndex, DFDLConstants::VARIABLE_ENCODING);
        if (row->iEncodingExprIndex != -1) {
            row->iEncodingASCIICompatible =
                DFDLCharsetUtils_isEncodingASCIICompatible(row->encodingName->chars);
            row->iEncodingEBCDIC = DFDLCharsetUtils_isEncodingEBCDIC(row->encodingName->chars);
        }
    }
}
