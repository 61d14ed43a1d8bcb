#ifndef DFDL_PIFITERATOR_BACKTRACKINGMANAGER_H
#define DFDL_PIFITERATOR_BACKTRACKINGMANAGER_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"
#include "dfdl/framework/markupinfo.h"

struct BufferManager;
struct BufferManagerCheckPoint;
struct DHCheckPoint;
struct DocHandlerEventBuffer;
struct EHCheckPoint;
struct ErrorHandlerEventBuffer;
struct PIFIteratorForParser;

// What the walk has seen ahead and not consumed.
struct PIForParserCheckPoint {
    MarkupInfo scannedMarkup;
    uint32_t hasScannedMarkup;
    int64_t scannedAt;
    uint32_t firstMember;  // of the item on top of the stack
};

// What an attempt can change and how it stood before: the place in the data with its scopes, the delimiter
// seen ahead, the events and the errors that have not been shown yet. Pooled; held by the context item whose
// point of uncertainty it is.
struct BacktrackingCheckPoint {
    DFDLHeapAdapter* heap;
    BufferManagerCheckPoint* bufferCheckPoint;
    DHCheckPoint* docHandlerCheckPoint;
    EHCheckPoint* errorHandlerCheckPoint;
    PIForParserCheckPoint iteratorCheckPoint;
};

// Takes, restores and ends check points. While one is open nothing of what is parsed reaches the caller.
// Belongs to its parser and lives as long; its collaborators are set when the parser is wired.
struct BacktrackingManager {
    DFDLHeapAdapter* heap;
    DocHandlerEventBuffer* eventBuffer;  // the present one
    BufferManager* bufferManager;
    PIFIteratorForParser* iterator;
    ErrorHandlerEventBuffer* errorEventBuffer;
};

BacktrackingManager* new_BacktrackingManager(DFDLHeapAdapter* heap);
void delete_BacktrackingManager(BacktrackingManager* this_);  // null is ignored

BacktrackingCheckPoint* BacktrackingManager_getCheckPoint(BacktrackingManager* this_);
// The check point stays open and can be restored again.
void BacktrackingManager_restoreToCheckPoint(BacktrackingManager* this_, BacktrackingCheckPoint* checkPoint);
// Ends it: what has been parsed since stands. Null is ignored. The last release shows what was held.
void BacktrackingManager_releaseCheckPoint(BacktrackingManager* this_, BacktrackingCheckPoint* checkPoint);
// Moves an open check point to where the data stand now, and to the present event buffer. What else it holds
// stays as it was.
void BacktrackingManager_refreshCheckPoint(BacktrackingManager* this_, BacktrackingCheckPoint* checkPoint);

#endif
