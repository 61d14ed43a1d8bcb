#include "dfdl/pif/cpifloader.h"

#include <dfdl/dfdl.h>

#include <algorithm>
#include <climits>
#include <fstream>
#include <iterator>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/cpifloader_enums.h"
#include "dfdl/pif/cpifloader_rows.h"
#include "dfdl/pif/pifwrapperaccess.h"
#include "dfdl/pif/tabletext.h"

namespace {

void append(ValuesTable* table, const ValuesTableRow& row) { ValuesTable_loadRow(table, row); }

template <class T>
void append(T* table, const typename T::Row& row) {
    Table_loadRow(table, row);
}

// False for a table that is missing.
template <class T, class Message>
bool loadTable(T* table, const Message& message) {
    if (table == nullptr) return false;
    for (const auto& row : message.row()) append(table, rowOf(table->heap, row));
    return true;
}

// A file without a row of globals has the oldest form. One with several says nothing that could be believed.
bool loadGlobals(PIFGlobalsTable* table, const PIF::MPIFGlobalsTable& message) {
    if (message.row_size() > 1) return true;
    PIFGlobalsTableRow globals = {.PIFVersion = -1, .PIFTraitsFlags = 0};
    if (message.row_size() == 1) {
        globals.PIFVersion = message.row(0).pifversion();
        globals.PIFTraitsFlags = message.row(0).piftraitsflags();
    }
    Table_loadRow(table, globals);
    return globals.PIFVersion <= NEWEST_PIF_VERSION;
}

bool loadTables(sPIF* pif, const PIF::MPIF& message) {
    bool loaded = true;
    loaded = loaded && loadTable(pif->lengthSchemeTable, message.length_scheme_table());
    loaded = loaded && loadTable(pif->textEncodingTable, message.text_encoding_table());
    loaded = loaded && loadTable(pif->textStringTable, message.text_string_table());
    loaded = loaded && loadTable(pif->textNumberTable, message.text_number_table());
    loaded = loaded && loadTable(pif->calendarFormatTable, message.calendar_format_table());
    loaded = loaded && loadTable(pif->calendarRepTable, message.calendar_rep_table());
    loaded = loaded && loadTable(pif->booleanRepTable, message.boolean_rep_table());
    loaded = loaded && loadTable(pif->binaryNumberTable, message.binary_number_table());
    loaded = loaded && loadTable(pif->alignmentTable, message.alignment_table());
    loaded = loaded && loadTable(pif->stringPartTable, message.string_part_table());
    loaded = loaded && loadTable(pif->stringLiteralTable, message.string_literal_table());
    loaded = loaded && loadTable(pif->textMarkupTable, message.text_markup_table());
    loaded = loaded && loadTable(pif->escapeSchemeTable, message.escape_scheme_table());
    loaded = loaded && loadTable(pif->facetTable, message.facet_table());
    loaded = loaded && loadTable(pif->valuesTable, message.values_table());
    loaded = loaded && loadTable(pif->simpleTypeUnionTable, message.simpletype_union_table());
    loaded = loaded && loadTable(pif->expressionTable, message.expressions_table());
    loaded = loaded && loadTable(pif->variablesTable, message.variables_table());
    loaded = loaded && loadTable(pif->assertTable, message.assert_table());
    loaded = loaded && loadTable(pif->variableActionsTable, message.variable_actions_table());
    loaded = loaded && loadTable(pif->groupTable, message.group_table());
    loaded = loaded && loadTable(pif->simpleTypeTable, message.simple_type_table());
    loaded = loaded && loadTable(pif->groupMemberTable, message.group_member_table());
    loaded = loaded && loadTable(pif->elementTable, message.element_table());
    loaded = loaded && loadTable(pif->markupSetTable, message.markupset_table());
    loaded = loaded && loadTable(pif->scdTable, message.scd_table());
    loaded = loaded && loadTable(pif->pathExpressionTable, message.path_expression_table());
    loaded = loaded && loadTable(pif->stepExpressionTable, message.step_expression_table());
    loaded = loaded && loadTable(pif->nilSchemeTable, message.nil_scheme_table());
    loaded = loaded && loadTable(pif->occursSchemeTable, message.occurs_scheme_table());
    return loaded;
}

bool fail(int* resultCode, int code) {
    *resultCode = code;
    return false;
}

}  // namespace

DFDLSimpleTypeEnum CPIFLoader_getDFDLSimpleTypeEnum(const char* name) {
    static constexpr std::string_view NAMES[] = {"STRING",
                                                 "BOOLEAN",
                                                 "HEXBINARY",
                                                 "DATE",
                                                 "TIME",
                                                 "DATETIME",
                                                 "FLOAT",
                                                 "DOUBLE",
                                                 "DECIMAL",
                                                 "INTEGER",
                                                 "LONG",
                                                 "INT",
                                                 "SHORT",
                                                 "BYTE",
                                                 "UNSIGNEDLONG",
                                                 "UNSIGNEDINT",
                                                 "UNSIGNEDSHORT",
                                                 "UNSIGNEDBYTE",
                                                 "NONNEGATIVEINTEGER"};
    static_assert(std::size(NAMES) == SIMPLE_UNKNOWN);
    const auto* found = std::find(std::begin(NAMES), std::end(NAMES), std::string_view(name));
    return static_cast<DFDLSimpleTypeEnum>(found - std::begin(NAMES));
}

bool CPIFLoader_loadPIF(CPIFLoader* this_, const PIF::MPIF& message, int* resultCode) {
    *resultCode = DFDL_GRAMMAR_LOADED;
    if (this_->pif->pifGlobalsTable == nullptr) return fail(resultCode, DFDL_GRAMMAR_NOT_A_PIF);
    if (!loadGlobals(this_->pif->pifGlobalsTable, message.pif_globals_table())) {
        return fail(resultCode, DFDL_GRAMMAR_VERSION);
    }
    if (!loadTables(this_->pif, message)) return fail(resultCode, DFDL_GRAMMAR_NOT_A_PIF);
    return PIF_finalizeTables(this_->pif) || fail(resultCode, DFDL_GRAMMAR_NOT_A_PIF);
}

// A folder can be opened too, and only reading tells.
bool CPIFLoader_readFile(CPIFLoader* this_, const char* path, int* resultCode) {
    if (path == nullptr) return fail(resultCode, DFDL_GRAMMAR_CANNOT_OPEN);
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) return fail(resultCode, DFDL_GRAMMAR_CANNOT_OPEN);
    file.peek();
    if (file.bad()) return fail(resultCode, DFDL_GRAMMAR_CANNOT_OPEN);
    file.clear();
    PIF::MPIF message;
    if (!message.ParsePartialFromIstream(&file)) return fail(resultCode, DFDL_GRAMMAR_NOT_A_PIF);
    return CPIFLoader_loadPIF(this_, message, resultCode);
}

bool CPIFLoader_readBytes(CPIFLoader* this_, const char* bytes, size_t length, int* resultCode) {
    const bool readable = length <= INT_MAX && (bytes != nullptr || length == 0);
    PIF::MPIF message;
    if (!readable || !message.ParsePartialFromArray(bytes, static_cast<int>(length))) {
        return fail(resultCode, DFDL_GRAMMAR_NOT_A_PIF);
    }
    return CPIFLoader_loadPIF(this_, message, resultCode);
}

bool CPIFLoader_readWrapper(CPIFLoader* this_, const PIFWrapper::MPIF* wrapper, int* resultCode) {
    const PIF::MPIF* message = PIFWrapper_message(wrapper);
    if (message == nullptr) return fail(resultCode, DFDL_GRAMMAR_NOT_A_PIF);
    return CPIFLoader_loadPIF(this_, *message, resultCode);
}

bool LoadPIF(sPIF* pif, const char* path, int* resultCode) {
    CPIFLoader loader = {pif};
    return CPIFLoader_readFile(&loader, path, resultCode);
}

bool LoadPIFFromStream(sPIF* pif, const char* bytes, size_t length, int* resultCode) {
    CPIFLoader loader = {pif};
    return CPIFLoader_readBytes(&loader, bytes, length, resultCode);
}

bool LoadPIFFromWrappedPIF(sPIF* pif, const PIFWrapper::MPIF* wrapper, int* resultCode) {
    CPIFLoader loader = {pif};
    return CPIFLoader_readWrapper(&loader, wrapper, resultCode);
}
