#ifndef DFDL_PROCESSOR_FACETVALIDATOR_H
#define DFDL_PROCESSOR_FACETVALIDATOR_H

#include <cstdint>

#include "dfdl/foundation/dfdltype.h"
#include "dfdl/pif/pifenums.h"

struct DFDLValue;
struct sPIF;

// Questions about values and the constants that the facet table gives for their types. Without state.

// Whether the value equals one of the adjacent rows of one type and kind that begin at a row of the facet
// table. False where there is no such row, or one of another kind.
bool FacetValidator_findLogicalValue(const sPIF* pif, const DFDLValue* value, int32_t firstRow,
                                     FacetKindEnum kind);
// Under the kind of the simple type that both have. False if either is null.
bool FacetValidator_valuesAreEqual(const DFDLValue* constant, const DFDLValue* value,
                                   DFDLSimpleTypeEnum kind);

#endif
