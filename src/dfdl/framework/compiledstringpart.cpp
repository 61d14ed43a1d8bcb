#include "dfdl/framework/compiledstringpart.h"

#include "dfdl/foundation/arraylist.h"

namespace {

void freeBytes(DFDLHeapAdapter* heap, uint8_t* bytes) {
    if (bytes != nullptr) DFDLHeapAdapter_arrayDeallocate(heap, bytes);
}

uint8_t* copyBytes(DFDLHeapAdapter* heap, const uint8_t* bytes, int32_t count) {
    if (bytes == nullptr) return nullptr;
    return static_cast<uint8_t*>(DFDLHeapAdapter_arrayDuplicate(heap, bytes, 1, static_cast<size_t>(count)));
}

ArrayList* cloneList(const ArrayList* mnemonics, DFDLHeapAdapter* heap) {
    if (mnemonics == nullptr) return nullptr;
    ArrayList* list = new_ArrayListOfPointers(heap, ArrayList_size(mnemonics));
    for (int32_t i = 0; i < ArrayList_size(mnemonics); ++i) {
        const auto* mnemonic = ArrayList_getPointer<MnemonicPart>(mnemonics, i);
        uint8_t* bytes = copyBytes(heap, mnemonic->bytes, mnemonic->length);
        ArrayList_addPointer(list, new_MnemonicPart(heap, bytes, mnemonic->length));
    }
    return list;
}

}  // namespace

MnemonicPart* new_MnemonicPart(DFDLHeapAdapter* heap, uint8_t* bytes, int32_t length) {
    auto* this_ = DFDLHeapAdapter_new<MnemonicPart>(heap);
    this_->bytes = bytes;
    this_->length = length;
    return this_;
}

void delete_MnemonicPart(MnemonicPart* this_) {
    if (this_ == nullptr) return;
    freeBytes(this_->heap, this_->bytes);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void MnemonicPart_deleteList(ArrayList* mnemonics) {
    if (mnemonics == nullptr) return;
    while (!ArrayList_isEmpty(mnemonics)) delete_MnemonicPart(ArrayList_popPointer<MnemonicPart>(mnemonics));
    delete_ArrayList(mnemonics);
}

CompiledStringPart* new_CompiledStringPart(DFDLHeapAdapter* heap, CompiledStringPartKind kind) {
    auto* this_ = DFDLHeapAdapter_new<CompiledStringPart>(heap);
    this_->kind = kind;
    return this_;
}

void delete_CompiledStringPart(CompiledStringPart* this_) {
    if (this_ == nullptr) return;
    freeBytes(this_->heap, this_->lowerBytes);
    freeBytes(this_->heap, this_->upperBytes);
    freeBytes(this_->heap, this_->exactBytes);
    MnemonicPart_deleteList(this_->alternatives);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

CompiledStringPart* CompiledStringPart_clone(const CompiledStringPart* this_, DFDLHeapAdapter* heap) {
    CompiledStringPart* copy = new_CompiledStringPart(heap, this_->kind);
    copy->byteCount = this_->byteCount;
    copy->lowerBytes = copyBytes(heap, this_->lowerBytes, this_->byteCount);
    copy->upperBytes = copyBytes(heap, this_->upperBytes, this_->byteCount);
    copy->exactBytes = copyBytes(heap, this_->exactBytes, this_->byteCount);
    copy->alternatives = cloneList(this_->alternatives, heap);
    copy->optional = this_->optional;
    copy->repeating = this_->repeating;
    return copy;
}
