#ifndef DFDL_FOUNDATION_DFDLCONSTANTS_H
#define DFDL_FOUNDATION_DFDLCONSTANTS_H

#include "dfdl/foundation/dfdlheapadapter.h"

// Constants of one engine or grammar: decimal bounds, strings, ready date formatters.
struct DFDLConstants;

DFDLConstants* new_DFDLConstants(DFDLHeapAdapter* heap);
void delete_DFDLConstants(DFDLConstants* this_);

#endif
