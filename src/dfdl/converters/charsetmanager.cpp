#include "dfdl/converters/charsetmanager.h"

#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/converters/dfdlcharsetutils.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pif/textencodingtable.h"

namespace {

constexpr int32_t SPARE_ROWS = 10;

DFDLCharset* charsetAt(const CharsetManager* manager, int32_t index) {
    if (index < 0 || index >= manager->rowEncodings->count) return nullptr;
    return ArrayList_getPointer<DFDLCharset>(manager->rowEncodings, index);
}

void dropRowEncodings(CharsetManager* manager, bool all) {
    for (int32_t i = 0; i < manager->rowEncodings->count; ++i) {
        DFDLCharset* charset = charsetAt(manager, i);
        if (charset == nullptr || (!all && charset->fixity == FIXED_CONSTANT)) continue;
        ArrayList_setPointer(manager->rowEncodings, i, nullptr);
        delete_DFDLCharset(charset);
    }
}

void dropScratch(CharsetManager* manager) {
    if (manager->encodeScratch != nullptr)
        DFDLHeapAdapter_arrayDeallocate(manager->heap, manager->encodeScratch);
    manager->encodeScratch = nullptr;
    manager->encodeScratchSize = 0;
}

DFDLCharset* raiseExpression(CharsetManager* manager, const TextEncodingTableRow* row) {
    ProcessingError_setValues(manager->context->currentError, __FILE__, __LINE__,
                              DFDLParser_unsupportedConstruct, ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z%s",
                              row->iEncoding, "an encoding given by an expression");
    return nullptr;
}

// Constant encodings stay until the grammar goes.
DFDLCharset* createCharset(CharsetManager* manager, const TextEncodingTableRow* row, int32_t rowIndex) {
    DFDLUString* name = new_DFDLUStringFromDFDLUString(row->iEncoding, manager->heap);
    const bool utf16Fixed = DFDLCharsetUtils_u_isEncodingUCS2(name) || row->isUTF16WidthFixed;
    DFDLUString* standardName =
        DFDLCharsetUtils_u_getStandardEncoding(manager->heap, name, manager->defaultBigEndian == 0);
    DFDLCharset* charset = new_DFDLCharsetForFixedEncoding(
        manager->heap, manager->context, manager->constants, standardName, name,
        row->iEncodingASCIICompatible, row->iEncodingEBCDIC, utf16Fixed);
    ArrayList_setPointer(manager->rowEncodings, rowIndex, charset);
    return charset;
}

}  // namespace

CharsetManager* new_CharsetManager(DFDLHeapAdapter* heap, DFDLConstants* constants, Context* context) {
    auto* this_ = DFDLHeapAdapter_new<CharsetManager>(heap);
    this_->constants = constants;
    this_->context = context;
    this_->rowEncodings = new_ArrayListOfPointers(heap, 0);
    this_->defaultBigEndian = 1;
    return this_;
}

void delete_CharsetManager(CharsetManager* this_) {
    if (this_ == nullptr) return;
    if (this_->rowEncodings != nullptr) CharsetManager_reset(this_, true);
    delete_ArrayList(this_->rowEncodings);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void CharsetManager_setPif(CharsetManager* this_, const sPIF* pif) {
    if (this_->pif == pif) return;
    CharsetManager_reset(this_, true);
    ArrayList_ensureCapacity(this_->rowEncodings, Table_size(pif->textEncodingTable) + SPARE_ROWS);
    this_->pif = pif;
}

void CharsetManager_reset(CharsetManager* this_, bool all) {
    dropRowEncodings(this_, all);
    dropScratch(this_);
    if (!all) return;
    ArrayList_clear(this_->rowEncodings);
    this_->pif = nullptr;
    this_->defaultBigEndian = 1;
}

DFDLCharset* CharsetManager_getDFDLEncoding(CharsetManager* this_, int32_t rowIndex) {
    DFDLCharset* charset = charsetAt(this_, rowIndex);
    if (charset != nullptr || this_->pif == nullptr) return charset;
    const TextEncodingTableRow* row = Table_row(this_->pif->textEncodingTable, rowIndex);
    if (row == nullptr) return nullptr;
    if (row->iEncodingExprIndex != -1) return raiseExpression(this_, row);
    return createCharset(this_, row, rowIndex);
}
