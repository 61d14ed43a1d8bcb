#ifndef DFDL_PROCESSOR_DFDLREGIONHANDLER_H
#define DFDL_PROCESSOR_DFDLREGIONHANDLER_H

#include <dfdl/dfdl.h>

#include "dfdl/foundation/dfdlheapadapter.h"

// The caller's callbacks for where the parts of the representation lie. Made and deleted by the caller.
struct DFDLRegionHandlerImpl {
    DFDLHeapAdapter* heap;  // its own
    DFDLElementStartCallback elementStart;
    DFDLElementEndCallback elementEnd;
    DFDLGroupStartCallback groupStart;
    DFDLGroupEndCallback groupEnd;
    DFDLRegionCallback leadingAlignmentRegion;
    DFDLRegionCallback initiatorRegion;
    DFDLRegionCallback simpleContentRegion;
    DFDLRegionCallback terminatorRegion;
    DFDLRegionCallback trailingAlignmentRegion;
    DFDLRegionCallback prefixSeparatorRegion;
    DFDLRegionCallback infixSeparatorRegion;
    DFDLRegionCallback postfixSeparatorRegion;
    void* contextObject;
};

#endif
