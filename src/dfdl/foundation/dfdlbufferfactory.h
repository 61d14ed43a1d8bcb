#ifndef DFDL_FOUNDATION_DFDLBUFFERFACTORY_H
#define DFDL_FOUNDATION_DFDLBUFFERFACTORY_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

// Recycles short-lived blocks of bytes and of 16-bit units. Blocks of up to 256 units are kept and given out
// again; larger ones come from the heap and go straight back to it. Contents of a new block are undefined.
struct DFDLBufferFactory;

DFDLBufferFactory* new_DFDLBufferFactory(DFDLHeapAdapter* heap);
void delete_DFDLBufferFactory(DFDLBufferFactory* this_);

uint8_t* DFDLBufferFactory_GetBuffer(DFDLBufferFactory* this_, int64_t bytes);
void DFDLBufferFactory_FreeBuffer(DFDLBufferFactory* this_, uint8_t* buffer);  // null is ignored
UChar* DFDLBufferFactory_GetUBuffer(DFDLBufferFactory* this_, int64_t units);
void DFDLBufferFactory_FreeUBuffer(DFDLBufferFactory* this_, UChar* buffer);

// Gives every small block back to the heap, those in use included: nobody may hold one any more.
void DFDLBufferFactory_reset(DFDLBufferFactory* this_);

#endif
