#include "dfdl/processor/facetvalidator.h"

#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/xsvalue.h"
#include "dfdl/pif/spif.h"

namespace {

bool isDecimal(const DFDLValue* value) { return value->schemaType == TYPE_DECIMAL; }

// Integers beyond 64 bits are decimals; all others compare by their words.
bool areEqualIntegers(const DFDLValue* a, const DFDLValue* b) {
    if (isDecimal(a) != isDecimal(b)) return false;
    if (isDecimal(a))
        return DFDLDecimal_compare(DFDLValue_getDecimalValue(a), DFDLValue_getDecimalValue(b)) == 0;
    UErrorCode status = U_ZERO_ERROR;
    return DFDLValue_toSignedInt(a, &status) == DFDLValue_toSignedInt(b, &status) && U_SUCCESS(status);
}

bool areEqual(const DFDLValue* a, const DFDLValue* b) {
    UErrorCode status = U_ZERO_ERROR;
    return DFDLValue_compare(a, b, &status) != 0 && U_SUCCESS(status);
}

}  // namespace

bool FacetValidator_findLogicalValue(const sPIF* pif, const DFDLValue* value, int32_t firstRow,
                                     FacetKindEnum kind) {
    const FacetTableRow* first = Table_row(pif->facetTable, firstRow);
    if (first == nullptr) return false;
    for (int32_t index = firstRow; index < Table_size(pif->facetTable); ++index) {
        const FacetTableRow* facet = Table_at(pif->facetTable, index);
        if (facet->iSimpleTypeId != first->iSimpleTypeId || facet->iFacetKind != kind) return false;
        const ValuesTableRow* constant = Table_row(pif->valuesTable, facet->iValueId);
        if (constant != nullptr &&
            FacetValidator_valuesAreEqual(constant->value, value, constant->iSimpleType)) {
            return true;
        }
    }
    return false;
}

bool FacetValidator_valuesAreEqual(const DFDLValue* constant, const DFDLValue* value,
                                   DFDLSimpleTypeEnum kind) {
    if (constant == nullptr || value == nullptr) return false;
    switch (kind) {
        case SIMPLE_STRING:
            return DFDLUString_equals(DFDLValue_getStringValue(constant), DFDLValue_getStringValue(value));
        case SIMPLE_BOOLEAN:
            return (DFDLValue_getBooleanValue(constant) != 0) == (DFDLValue_getBooleanValue(value) != 0);
        case SIMPLE_FLOAT:
        case SIMPLE_DOUBLE:
            return DFDLValue_getFloatValue(constant) == DFDLValue_getFloatValue(value);
        case SIMPLE_DECIMAL:
            return DFDLDecimal_compare(DFDLValue_getDecimalValue(constant),
                                       DFDLValue_getDecimalValue(value)) == 0;
        case SIMPLE_HEXBINARY:
        case SIMPLE_DATE:
        case SIMPLE_TIME:
        case SIMPLE_DATETIME:
            return areEqual(constant, value);
        default:
            return kind <= SIMPLE_NON_NEGATIVE_INTEGER && areEqualIntegers(constant, value);
    }
}
