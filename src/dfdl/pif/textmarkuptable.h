#ifndef DFDL_PIF_TEXTMARKUPTABLE_H
#define DFDL_PIF_TEXTMARKUPTABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct ArrayList;
struct DFDLUString;
struct EscapeSchemeTableRow;
struct StringLiteralTableRow;
struct sPIF;

// The delimiters of a component, and when they appear.
struct TextMarkupTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t iInitiatorIndex = -1;
    int32_t iTerminatorIndex = -1;
    bool iFinalTerminatorCanBeMissing = false;
    int32_t iSeparatorIndex = -1;
    SeparatorPositionEnum iSeparatorPosition = INFIX;
    SeparatorPolicyEnum iSeparatorPolicy = REQUIRE;
    bool iIgnoreCase = false;
    int32_t iEscapeSchemeIndex = -1;
    DFDLUString* iOutputNewLine = nullptr;
    int32_t iInitiatorExprIndex = -1;
    int32_t iTerminatorExprIndex = -1;
    int32_t iSeparatorExprIndex = -1;
    int32_t iOutputNewLineExprIndex = -1;
    bool iInitiatedContent = false;
    int32_t iTextEncodingIndex = -1;
    DelimiterPolicyEnum iEmptyValueDelimiterPolicy = DP_NONE;

    int32_t id = -1;  // row index + 1
    StringLiteralTableRow* initiatorRow = nullptr;
    StringLiteralTableRow* terminatorRow = nullptr;
    StringLiteralTableRow* separatorRow = nullptr;
    // The entries of each literal in their order: owned lists of owned DFDLUStrings. Null: no literal.
    ArrayList* initiators = nullptr;
    ArrayList* terminators = nullptr;
    ArrayList* separators = nullptr;
    EscapeSchemeTableRow* escapeRow = nullptr;
    int32_t terminatingMarkupId = -1;  // rows that end a component alike share one
};

using TextMarkupTable = Table<TextMarkupTableRow>;

TextMarkupTable* new_TextMarkupTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_TextMarkupTable(TextMarkupTable* this_);  // null is ignored
void TextMarkupTable_finalizeTable(TextMarkupTable* this_);
TextMarkupTableRow* TextMarkupTable_findRow(const TextMarkupTable* this_, int32_t id);  // -1: null
int32_t TextMarkupTable_findRowIndex(const TextMarkupTable* this_, int32_t id);         // -1 none
// An order over all that decides how a component ends.
int32_t TextMarkupTable_compare(const TextMarkupTableRow* a, const TextMarkupTableRow* b);

#endif
