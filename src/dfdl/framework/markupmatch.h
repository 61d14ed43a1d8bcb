#ifndef DFDL_FRAMEWORK_MARKUPMATCH_H
#define DFDL_FRAMEWORK_MARKUPMATCH_H

#include <cstdint>

#include "dfdl/framework/scanwindow.h"

struct CompiledDFDLStringLiteral;

// Whether bytes or a delimiter stand at a place of the data. A byte at or beyond the limit, or beyond the end
// of the data, is none. `window` is left wherever the last byte was looked at.

bool MarkupMatch_bytes(ScanWindow* window, int64_t limit, int64_t position, const uint8_t* bytes,
                       int32_t count);
// Where the delimiter that stands at the position ends; -1 if it does not stand there.
int64_t MarkupMatch_literal(ScanWindow* window, int64_t limit, int64_t position,
                            const CompiledDFDLStringLiteral* literal);

#endif
