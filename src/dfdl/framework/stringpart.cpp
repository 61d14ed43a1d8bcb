#include "dfdl/framework/stringpart.h"

#include "dfdl/foundation/dfdlustring.h"

namespace {

StringPart* make(DFDLHeapAdapter* heap, std::u16string_view value, int32_t byteValue, StringPartKind kind) {
    if (value.size() > INT32_MAX) DFDLHeapAdapter_refuse(heap);
    auto* part = DFDLHeapAdapter_new<StringPart>(heap);
    part->value = new_DFDLUStringFromUChars(heap, value.data(), static_cast<int32_t>(value.size()));
    part->byteValue = byteValue;
    part->kind = kind;
    return part;
}

}  // namespace

StringPart* new_StringPart(DFDLHeapAdapter* heap, std::u16string_view value, StringPartKind kind) {
    return make(heap, value, -1, kind);
}

StringPart* new_StringPartForByte(DFDLHeapAdapter* heap, uint8_t byte) {
    const UChar unit = byte;
    return make(heap, {&unit, 1}, byte, PART_BYTE);
}

void delete_StringPart(StringPart* this_) {
    if (this_ == nullptr) return;
    delete_DFDLUString(this_->value);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}
