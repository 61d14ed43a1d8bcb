#ifndef DFDL_FRAMEWORK_MARKUPINFO_H
#define DFDL_FRAMEWORK_MARKUPINFO_H

#include <cstdint>

struct CompiledDFDLStringLiteral;
struct GroupMemberTableRow;

// A delimiter that a scan has seen ahead of the position and that nobody has consumed yet. A plain value; the
// literal belongs to the compiled set that it was found in.
struct MarkupInfo {
    const GroupMemberTableRow* row;  // owner of the delimiter
    const CompiledDFDLStringLiteral* literal;
    int64_t length;  // bytes
};

#endif
