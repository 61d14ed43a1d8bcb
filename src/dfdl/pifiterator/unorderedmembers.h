#ifndef DFDL_PIFITERATOR_UNORDEREDMEMBERS_H
#define DFDL_PIFITERATOR_UNORDEREDMEMBERS_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DocHandlerEventBuffer;

// What the members of one open unordered group have come to: how often each has occurred, and its events,
// which are shown member by member when the group closes. Those that are not in use wait with the plan of
// their row.
struct UnorderedMembers {
    DFDLHeapAdapter* heap;
    int32_t memberCount;
    DocHandlerEventBuffer** memberBuffers;  // by sequence number less 1; null until the member is tried
    int32_t* memberCounts;
    bool isProxySet;         // events go to one of the buffers at present
    UnorderedMembers* next;  // spare
};

UnorderedMembers* new_UnorderedMembers(DFDLHeapAdapter* heap, int32_t memberCount);
void delete_UnorderedMembers(UnorderedMembers* this_);
// Forgets counts and events, the newest first.
void UnorderedMembers_clear(UnorderedMembers* this_);

#endif
