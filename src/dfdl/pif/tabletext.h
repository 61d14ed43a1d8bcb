#ifndef DFDL_PIF_TABLETEXT_H
#define DFDL_PIF_TABLETEXT_H

#include <string_view>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLUString;

// A string of just the size that its text needs, in one block: a grammar holds many short texts for as long
// as it lives, for which the blocks of the buffer factory are too large. Goes with delete_DFDLUString.
// Malformed UTF-8 becomes replacement characters.
DFDLUString* TableText_fromUTF8(DFDLHeapAdapter* heap, std::string_view text);
DFDLUString* TableText_fromUnits(DFDLHeapAdapter* heap, std::u16string_view text);

#endif
