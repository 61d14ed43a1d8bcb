#ifndef DFDL_PIF_PATTERNMANAGER_H
#define DFDL_PIF_PATTERNMANAGER_H

#include <unicode/uregex.h>

#include "dfdl/foundation/dfdlheapadapter.h"

struct ArrayList;
struct Context;
struct sPIF;

// The regular expressions of a grammar: patterns that decide lengths and patterns that values must match.
// They are compiled once, while the grammar is loaded, and never matched on, so that engines in several
// threads can share them; whoever matches takes a clone. Belongs to its grammar.
//
// A pattern that does not compile does not stop the load: the element that needs it fails at its first use.
struct PatternManager {
    DFDLHeapAdapter* heap;
    Context* context;  // of the load; null once it has ended
    sPIF* pif;
    ArrayList* lengthPatterns;  // of URegularExpression by row of the length schemes; null: none
    ArrayList* facetPatterns;   // the same by row of the facets
};

inline constexpr int32_t PATTERN_TIME_LIMIT = 300000;  // in the unit of uregex_setTimeLimit
inline constexpr int32_t PATTERN_STACK_LIMIT = 0;      // none

PatternManager* new_PatternManager(DFDLHeapAdapter* heap, sPIF* pif, Context* context);
void delete_PatternManager(PatternManager* this_);  // null is ignored

bool PatternManager_compilePatterns(PatternManager* this_);
bool PatternManager_compileLengthPatterns(PatternManager* this_);
bool PatternManager_compileFacetPatterns(PatternManager* this_);

// A clone with its limits set, the caller's to close. Null if there is no such pattern, or it did not compile
// or cannot be cloned. `heap` is the engine's own, whose trace hears of what goes wrong.
URegularExpression* PatternManager_getLengthKindPattern(const PatternManager* this_, int32_t rowIndex,
                                                        DFDLHeapAdapter* heap);
URegularExpression* PatternManager_getFacetValidationPattern(const PatternManager* this_,
                                                             int32_t facetRowIndex, DFDLHeapAdapter* heap);

#endif
