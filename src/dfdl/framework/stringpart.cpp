#include "dfdl/framework/stringpart.h"

#include "dfdl/foundation/dfdlustring.h"

StringPart* new_StringPart(DFDLHeapAdapter* heap, std::u16string_view value, StringPartKind kind) {
    auto* this_ = DFDLHeapAdapter_new<StringPart>(heap);
    this_->kind = kind;
    this_->byteValue = -1;
    this_->value = new_DFDLUStringFromUChars(heap, value.data(), static_cast<int32_t>(value.size()));
    return this_;
}

StringPart* new_StringPartForByte(DFDLHeapAdapter* heap, uint8_t byte) {
    const UChar unit = byte;
    StringPart* this_ = new_StringPart(heap, {&unit, 1}, PART_BYTE);
    this_->byteValue = byte;
    return this_;
}

void delete_StringPart(StringPart* this_) {
    if (this_ == nullptr) return;
    delete_DFDLUString(this_->value);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}
