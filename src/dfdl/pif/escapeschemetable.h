#ifndef DFDL_PIF_ESCAPESCHEMETABLE_H
#define DFDL_PIF_ESCAPESCHEMETABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLUString;
struct sPIF;

// How delimiters are hidden in data.
struct EscapeSchemeTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    DFDLUString* iEscapeSchemeName = nullptr;
    EscapeKindEnum iEscapeKind = ESCAPE_CHARACTER;
    DFDLUString* iEscapeCharacter = nullptr;
    DFDLUString* iEscapeBlockStart = nullptr;
    DFDLUString* iEscapeBlockEnd = nullptr;
    DFDLUString* iEscapeEscapeCharacter = nullptr;
    DFDLUString* iExtraEscapedCharacters = nullptr;
    GenerateEscapeEnum iGenerateEscape = ESCAPE_ALWAYS;
    int32_t iEscapeCharacterExpr = -1;
    int32_t iEscapeEscapeCharacterExpr = -1;
};

using EscapeSchemeTable = Table<EscapeSchemeTableRow>;

EscapeSchemeTable* new_EscapeSchemeTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_EscapeSchemeTable(EscapeSchemeTable* this_);  // null is ignored

#endif
