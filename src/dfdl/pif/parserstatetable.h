#ifndef DFDL_PIF_PARSERSTATETABLE_H
#define DFDL_PIF_PARSERSTATETABLE_H

#include "dfdl/pif/table.h"

struct sPIF;

// Parser states that old schema compilers described. No file carries any: the table stays empty.
struct ParserStateTableRow {
    DFDLHeapAdapter* heap = nullptr;
    sPIF* pif = nullptr;
    int32_t iGroupMemberIndex = -1;
    int32_t iNextRowIndex = -1;
    int32_t iAlternativeNextRowIndex = -1;
};

using ParserStateTable = Table<ParserStateTableRow>;

ParserStateTable* new_ParserStateTable(DFDLHeapAdapter* heap, sPIF* pif);
void delete_ParserStateTable(ParserStateTable* this_);  // null is ignored

#endif
