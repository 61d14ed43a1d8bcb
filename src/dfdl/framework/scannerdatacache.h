#ifndef DFDL_FRAMEWORK_SCANNERDATACACHE_H
#define DFDL_FRAMEWORK_SCANNERDATACACHE_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct ArrayList;
struct CompiledMarkupSet;
struct MarkupSetTable;

// The compiled sets of one grammar by the id of their markup set. Owns them; belongs to its scanner.
struct ScannerDataCache {
    DFDLHeapAdapter* heap;
    const MarkupSetTable* table;  // null: no grammar
    ArrayList* pairs;             // of pairs of sets, for other items and for simple elements, by value
};

ScannerDataCache* new_ScannerDataCache(DFDLHeapAdapter* heap);
void delete_ScannerDataCache(ScannerDataCache* this_);                                 // null is ignored
void ScannerDataCache_setTable(ScannerDataCache* this_, const MarkupSetTable* table);  // drops all sets

// Null if there is none. A set that is the same for all serves both.
CompiledMarkupSet* ScannerDataCache_get(const ScannerDataCache* this_, int32_t markupSetId, bool forSimple);
// Makes room, so that the store itself cannot fail.
void ScannerDataCache_reserve(ScannerDataCache* this_, int32_t markupSetId);
// By the set's id, which has been reserved, and its audience; adopts the set.
void ScannerDataCache_put(ScannerDataCache* this_, CompiledMarkupSet* set);
void ScannerDataCache_clearVolatileEntries(ScannerDataCache* this_);

#endif
