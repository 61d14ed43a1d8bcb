#ifndef DFDL_PIF_TEXTSTRINGTABLE_H
#define DFDL_PIF_TEXTSTRINGTABLE_H

#include "dfdl/pif/pifenums.h"
#include "dfdl/pif/table.h"

struct DFDLUString;
struct sPIF;

// Padding, trimming and justification of text.
struct TextStringTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    TextPadKindEnum iTextPadKind = PAD_KIND_NONE;
    DFDLUString* iTextPadCharacter = nullptr;  // a string literal
    TextTrimKindEnum iTextTrimKind = TRIM_KIND_NONE;
    int32_t iEscapeSchemeIndex = -1;
    TextJustificationEnum iTextJustification = LEFT;
    int32_t iTextEncodingIndex = -1;
    bool iIgnoreCase = false;
    bool iTruncateLenString = false;
    int32_t iTextOutputMinLength = -1;

    DFDLUString* padString = nullptr;  // owned; null: a byte, or no pad character
    int32_t padByte = -1;
    bool padIsByte = false;
};

using TextStringTable = Table<TextStringTableRow>;

TextStringTable* new_TextStringTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_TextStringTable(TextStringTable* this_);  // null is ignored
void TextStringTable_finalizeTable(TextStringTable* this_);

#endif
