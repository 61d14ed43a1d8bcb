#ifndef DFDL_FRAMEWORK_MARKUPITEM_H
#define DFDL_FRAMEWORK_MARKUPITEM_H

#include <cstdint>

#include "dfdl/framework/compileddfdlstringliteral.h"

struct DFDLUString;
struct GroupMemberTableRow;

// A delimiter that is in scope while its row is written. A row of the stack of those, where it stays to be
// filled again after it was popped.
struct MarkupItem {
    DFDLUString* text;  // null: none
    int32_t byteLength;
    const GroupMemberTableRow* row;  // owner of the delimiter
    int32_t encodingIndex;
    MarkupKind kind;
    bool ownsText;
    int32_t extra;  // of whoever keeps the item
};

// Adopts the text if it is to own it; a text that it has owned before goes.
void MarkupItem_setValues(MarkupItem* this_, DFDLUString* text, int32_t byteLength,
                          const GroupMemberTableRow* row, int32_t encodingIndex, MarkupKind kind,
                          bool ownsText, int32_t extra);
void MarkupItem_reset(MarkupItem* this_);  // of nothing, and owning nothing
// Below 0 if the first comes first: longer texts, in units, before shorter ones, and those before none.
int32_t MarkupItem_compareTo(const MarkupItem* a, const MarkupItem* b);

#endif
