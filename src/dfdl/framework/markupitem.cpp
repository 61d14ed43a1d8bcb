#include "dfdl/framework/markupitem.h"

#include "dfdl/foundation/dfdlustring.h"

void MarkupItem_setValues(MarkupItem* this_, DFDLUString* text, int32_t byteLength,
                          const GroupMemberTableRow* row, int32_t encodingIndex, MarkupKind kind,
                          bool ownsText, int32_t extra) {
    MarkupItem_reset(this_);
    *this_ = {text, byteLength, row, encodingIndex, kind, ownsText, extra};
}

void MarkupItem_reset(MarkupItem* this_) {
    if (this_->ownsText) delete_DFDLUString(this_->text);
    *this_ = {};
    this_->encodingIndex = -1;
}

int32_t MarkupItem_compareTo(const MarkupItem* a, const MarkupItem* b) {
    if (a->text == nullptr || b->text == nullptr) return (a->text == nullptr) - (b->text == nullptr);
    return (a->text->length < b->text->length) - (a->text->length > b->text->length);
}
