#include "dfdl/foundation/stringidmap.h"

StringIDMap* new_StringIDMap(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<StringIDMap>(heap);
    this_->ids = new_IntegerHashtable(heap);
    return this_;
}

void delete_StringIDMap(StringIDMap* this_) {
    if (this_ == nullptr) return;
    delete_IntegerHashtable(this_->ids);
    delete_DFDLString(this_->symbolTable);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void StringIDMap_setStringIDLookup(StringIDMap* this_, StringIDLookup lookup, void* context) {
    this_->lookup = lookup;
    this_->lookupContext = context;
}

void StringIDMap_setSymbolTable(StringIDMap* this_, const DFDLString* symbolTable) {
    DFDLString* copy =
        symbolTable == nullptr ? nullptr : new_DFDLStringFromDFDLString(symbolTable, this_->heap);
    delete_DFDLString(this_->symbolTable);
    this_->symbolTable = copy;
    IntegerHashtable_clear(this_->ids);
}

int32_t StringIDMap_getStringIDForSymbol(StringIDMap* this_, int32_t symbol) {
    if (IntegerHashtable_containsKey(this_->ids, symbol)) return IntegerHashtable_get(this_->ids, symbol);
    if (this_->lookup == nullptr) return 0;
    const int32_t id = this_->lookup(this_->lookupContext, this_->symbolTable, symbol);
    IntegerHashtable_put(this_->ids, symbol, id);
    return id;
}
