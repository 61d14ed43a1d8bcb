#include "dfdl/framework/delimitedscannerbytes.h"

#include <algorithm>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/framework/markupmatch.h"
#include "dfdl/framework/scannerdatacache.h"
#include "dfdl/framework/stringliteralcache.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"

namespace {

constexpr char16_t END_OF_DATA_TEXT[] = u"End of data stream";

CompiledDFDLStringLiteral* newEndOfData(DFDLHeapAdapter* heap) {
    constexpr auto length = static_cast<int32_t>(std::size(END_OF_DATA_TEXT) - 1);
    DFDLUString* text = new_DFDLUStringUseUChars(heap, END_OF_DATA_TEXT, length);
    CompiledDFDLStringLiteral* literal = new_CompiledDFDLStringLiteral(heap, text, -1, true);
    delete_DFDLUString(text);
    literal->kind = MARKUP_END_OF_DATA;
    return literal;
}

void forgetScan(DelimitedScannerBytes* scanner) {
    scanner->markupSet = nullptr;
    scanner->markupSetId = -1;
    scanner->matchedLiteral = nullptr;
}

}  // namespace

DelimitedScannerBytes* new_DelimitedScannerBytes(DFDLHeapAdapter* heap, Context* context) {
    auto* this_ = DFDLHeapAdapter_new<DelimitedScannerBytes>(heap);
    this_->context = context;
    this_->markupSetId = -1;
    this_->cache = new_ScannerDataCache(heap);
    this_->emptySet = new_CompiledMarkupSet(heap);
    this_->endOfDataLiteral = newEndOfData(heap);
    this_->listKey = new_DFDLUString(heap);
    return this_;
}

void delete_DelimitedScannerBytes(DelimitedScannerBytes* this_) {
    if (this_ == nullptr) return;
    delete_ScannerDataCache(this_->cache);
    delete_CompiledMarkupSet(this_->emptySet);
    delete_CompiledDFDLStringLiteral(this_->endOfDataLiteral);
    delete_DFDLUString(this_->listKey);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void DelimitedScannerBytes_setPIF(DelimitedScannerBytes* this_, const sPIF* pif) {
    if (this_->pif == pif) return;
    forgetScan(this_);
    std::fill(std::begin(this_->lookups), std::end(this_->lookups), MarkupListLookup{});
    ScannerDataCache_setTable(this_->cache, pif == nullptr ? nullptr : pif->markupSetTable);
    if (this_->literalCache != nullptr) {
        ArrayList_clear(this_->literalCache->volatileSets);
        DFDLStringHashMap_clear(this_->literalCache->compiledSets);
    }
    this_->pif = pif;
}

void DelimitedScannerBytes_reset(DelimitedScannerBytes* this_) {
    forgetScan(this_);
    ScannerDataCache_clearVolatileEntries(this_->cache);
}

bool DelimitedScannerBytes_checkForMarkupAtCurrentPosition(DelimitedScannerBytes* this_,
                                                           int32_t encodingIndex, bool record,
                                                           const GroupMemberTableRow* element) {
    return DelimitedScannerBytes_scanForMarkup(this_, true, encodingIndex, record, element) >= 0 &&
           this_->found != 0;
}

bool DelimitedScannerBytes_matchMarkup(DelimitedScannerBytes* this_, const CompiledDFDLStringLiteral* literal,
                                       const GroupMemberTableRow* /*element*/) {
    ScanWindow window = ScanWindow_open(this_->buffer);
    const int64_t end = MarkupMatch_literal(&window, this_->scanLimit, this_->scanPosition, literal);
    if (end >= 0) this_->scanPosition = end;
    return end >= 0;
}

bool DelimitedScannerBytes_getAlternativeScannedMarkup(DelimitedScannerBytes* this_,
                                                       const CompiledDFDLStringLiteral* literal) {
    if (this_->markupSet == nullptr) return false;
    const CompiledDFDLStringLiteral* other =
        CompiledMarkupSet_findSameDelimiterInEnclosingLevel(this_->markupSet, literal);
    if (other == nullptr) return false;
    PIFIteratorForParser_setScannedMarkupWithLevel(this_->iterator, other->level, other,
                                                   this_->matchedLength);
    return true;
}
