#ifndef DFDL_PIF_ROWTRACE_H
#define DFDL_PIF_ROWTRACE_H

#include "dfdl/foundation/tracehandleradapter.h"

struct GroupMemberTableRow;

// User trace about a row of the grammar.

// The name of the element or group; for a group without one, the word for its kind. Empty for no row.
const UChar* TraceHandlerAdapter_getNameForRow(TraceHandlerAdapter* this_, const GroupMemberTableRow* row);

// Designator and path of a row, for a message whose inserts are those of its format only. Both may be null.
TraceSubject TraceSubject_ofRow(const GroupMemberTableRow* row, const DFDLUString* path);
// The same for a message that begins with byte position, name, designator and path.
TraceSubject TraceSubject_ofPlace(TraceHandlerAdapter* adapter, const GroupMemberTableRow* row,
                                  const DFDLUString* path, int64_t bytePosition);

void TraceHandlerAdapter_userTraceInfo(TraceHandlerAdapter* this_, const GroupMemberTableRow* row,
                                       const DFDLUString* path, const char* key, const char* format, ...);

#endif
