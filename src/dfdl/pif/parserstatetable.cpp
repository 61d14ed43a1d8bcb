#include "dfdl/pif/parserstatetable.h"

ParserStateTable* new_ParserStateTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<ParserStateTable>(heap, pif);
}

void delete_ParserStateTable(ParserStateTable* this_) { Table_delete(this_); }
