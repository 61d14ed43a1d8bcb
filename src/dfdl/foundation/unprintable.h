#ifndef DFDL_FOUNDATION_UNPRINTABLE_H
#define DFDL_FOUNDATION_UNPRINTABLE_H

#include <string_view>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLUString;

// A pooled copy of a text for people to read: control characters, and a space if wanted, are replaced by the
// character entities that DFDL has for them, such as "%LF;".
DFDLUString* Unprintable_replace(DFDLHeapAdapter* heap, std::u16string_view text, bool replaceSpace);

#endif
