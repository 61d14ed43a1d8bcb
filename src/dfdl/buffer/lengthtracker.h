#ifndef DFDL_BUFFER_LENGTHTRACKER_H
#define DFDL_BUFFER_LENGTHTRACKER_H

#include <cstdint>

struct GroupMemberTableRow;

// One scoped length on the buffer manager's stack: where the content of an element or group must end.
struct LengthTracker {
    int32_t units;      // LengthUnitsEnum; becomes bits when the scope is looked at inside a byte
    int64_t bitLimit;   // absolute, the element's own, not tightened by what encloses it
    int64_t charLimit;  // absolute; -1 none
    const GroupMemberTableRow* element;
    int32_t encodingIndex;
};

#endif
