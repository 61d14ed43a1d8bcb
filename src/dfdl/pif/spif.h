#ifndef DFDL_PIF_SPIF_H
#define DFDL_PIF_SPIF_H

#include <unicode/ucnv.h>

#include "dfdl/pif/alignmenttable.h"
#include "dfdl/pif/asserttable.h"
#include "dfdl/pif/binarynumbertable.h"
#include "dfdl/pif/booleanreptable.h"
#include "dfdl/pif/calendarformattable.h"
#include "dfdl/pif/calendarreptable.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/escapeschemetable.h"
#include "dfdl/pif/expressiontable.h"
#include "dfdl/pif/facettable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pif/grouptable.h"
#include "dfdl/pif/lengthschemetable.h"
#include "dfdl/pif/markupsettable.h"
#include "dfdl/pif/nilschemetable.h"
#include "dfdl/pif/occursschemetable.h"
#include "dfdl/pif/parserstatetable.h"
#include "dfdl/pif/pathexpressiontable.h"
#include "dfdl/pif/pifglobalstable.h"
#include "dfdl/pif/scdtable.h"
#include "dfdl/pif/simpletypetable.h"
#include "dfdl/pif/simpletypeuniontable.h"
#include "dfdl/pif/stepexpressiontable.h"
#include "dfdl/pif/stringliteraltable.h"
#include "dfdl/pif/stringparttable.h"
#include "dfdl/pif/textencodingtable.h"
#include "dfdl/pif/textmarkuptable.h"
#include "dfdl/pif/textnumbertable.h"
#include "dfdl/pif/textstringtable.h"
#include "dfdl/pif/valuestable.h"
#include "dfdl/pif/variableactionstable.h"
#include "dfdl/pif/variablestable.h"

struct ArrayList;
struct Context;
struct DFDLConstants;
struct PatternManager;

// A loaded grammar. It is filled by one load, finished by PIF_finalizeTables, and from then on only read, by
// any number of engines at once. It owns all it points at and the heap adapter that all of it comes from;
// converter and constants serve loading alone.
struct sPIF {
    DFDLHeapAdapter* heap;
    ElementTable* elementTable;
    SimpleTypeTable* simpleTypeTable;
    GroupTable* groupTable;
    GroupMemberTable* groupMemberTable;
    LengthSchemeTable* lengthSchemeTable;
    TextEncodingTable* textEncodingTable;
    TextStringTable* textStringTable;
    TextNumberTable* textNumberTable;
    CalendarFormatTable* calendarFormatTable;
    CalendarRepTable* calendarRepTable;
    BooleanRepTable* booleanRepTable;
    BinaryNumberTable* binaryNumberTable;
    AlignmentTable* alignmentTable;
    StringLiteralTable* stringLiteralTable;
    StringPartTable* stringPartTable;
    TextMarkupTable* textMarkupTable;
    EscapeSchemeTable* escapeSchemeTable;
    FacetTable* facetTable;
    ValuesTable* valuesTable;
    ExpressionTable* expressionTable;
    VariablesTable* variablesTable;
    VariableActionsTable* variableActionsTable;
    SimpleTypeUnionTable* simpleTypeUnionTable;
    ParserStateTable* parserStateTable;
    AssertTable* assertTable;
    MarkupSetTable* markupSetTable;
    SCDTable* scdTable;
    PathExpressionTable* pathExpressionTable;
    StepExpressionTable* stepExpressionTable;
    NilSchemeTable* nilSchemeTable;
    OccursSchemeTable* occursSchemeTable;
    PIFGlobalsTable* pifGlobalsTable;
    PatternManager* patternManager;
    DFDLConstants* constants;
    UConverter* utf8Converter;
    ArrayList*
        names;  // of elements' names and namespaces, each once, borrowed; an index in it is a name's id
};

sPIF* new_PIF(DFDLHeapAdapter* heap, Context* context);
// Null is ignored. A grammar of which only a part could be made is released too.
void delete_PIF(sPIF* this_);

// Turns numbers into pointers and settles all that can be known in advance. Once, when all rows are there.
bool PIF_finalizeTables(sPIF* this_);

#endif
