#include "dfdl/pifiterator/unorderedmembers.h"

#include "dfdl/processor/dochandlereventbuffer.h"

UnorderedMembers* new_UnorderedMembers(DFDLHeapAdapter* heap, int32_t memberCount) {
    auto* this_ = DFDLHeapAdapter_new<UnorderedMembers>(heap);
    const auto slots = static_cast<size_t>(memberCount) + 1;
    this_->memberBuffers = DFDLHeapAdapter_newArray<DocHandlerEventBuffer*>(heap, slots);
    this_->memberCounts = DFDLHeapAdapter_newArray<int32_t>(heap, slots);
    this_->memberCount = memberCount;
    for (int32_t member = 0; member < memberCount; ++member) {
        this_->memberBuffers[member] = nullptr;
        this_->memberCounts[member] = 0;
    }
    return this_;
}

void delete_UnorderedMembers(UnorderedMembers* this_) {
    for (int32_t member = this_->memberCount; member > 0; --member)
        delete_DocHandlerEventBuffer(this_->memberBuffers[member - 1]);
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->memberBuffers);
    DFDLHeapAdapter_arrayDeallocate(this_->heap, this_->memberCounts);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void UnorderedMembers_clear(UnorderedMembers* this_) {
    for (int32_t member = this_->memberCount; member > 0; --member) {
        DocHandlerEventBuffer* buffer = this_->memberBuffers[member - 1];
        if (buffer != nullptr) DocHandlerEventBuffer_discardEventsAfterIndex(buffer, 0);
        this_->memberCounts[member - 1] = 0;
    }
}
