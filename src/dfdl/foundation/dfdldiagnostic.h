#ifndef DFDL_FOUNDATION_DFDLDIAGNOSTIC_H
#define DFDL_FOUNDATION_DFDLDIAGNOSTIC_H

#include <dfdl/dfdl.h>
#include <unicode/ucnv.h>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLUString;
struct ProcessingError;
struct ResourceCatalog;

enum DiagnosticType : int32_t {
    DIAGNOSTIC_WARNING = 0,
    DIAGNOSTIC_PROCESSING_ERROR = 1,
    DIAGNOSTIC_SCHEMA_DEFINITION_ERROR = 2,
    DIAGNOSTIC_VALIDATION_ERROR = 3,
    DIAGNOSTIC_RECOVERABLE_ERROR = 4
};

// Units of the scratch that a summary is formatted into.
inline constexpr int32_t DIAGNOSTIC_CAPACITY = 8192;

// What the caller's error callbacks receive; lives for the one call.
struct DFDLDiagnosticImpl {
    DFDLHeapAdapter* heap;
    DFDLUString* code;
    DFDLUString* summary;
    DFDLUString* codeAndSummary;  // made on demand
    DFDLUString* schemaLocation;  // never set
    int32_t type;                 // DiagnosticType
};

// `buffer` holds DIAGNOSTIC_CAPACITY units.
DFDLDiagnosticImpl* new_DFDLDiagnosticImplFromProsError(DFDLHeapAdapter* heap, UConverter* converter,
                                                        const ProcessingError* record,
                                                        ResourceCatalog* catalog, UChar* buffer,
                                                        int32_t type);
DFDLDiagnosticImpl* new_DFDLDiagnosticImplFromString(DFDLHeapAdapter* heap, UConverter* converter,
                                                     const char* text);
void delete_DFDLDiagnosticImpl(DFDLDiagnosticImpl* this_);  // null is ignored
const DFDLUString* DFDLDiagnosticImpl_getCodeAndSummary(DFDLDiagnosticImpl* this_);

#endif
