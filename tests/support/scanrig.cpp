#include "support/scanrig.h"

#include <gtest/gtest.h>

#include <algorithm>

ScanRig::ScanRig(const char* encoding, const DFDLHeapImpl* heap)
    : rig(heap), encodingIndex(rig.encoding(encoding)) {
    cache = new_StringLiteralCache(rig.heap, CompiledMarkupSetDeleteFunction);
    scanner = new_DelimitedScannerBytes(rig.heap, rig.context);
    scanner->buffer = rig.buffer;
    scanner->charsetManager = rig.charsets;
    scanner->literalCache = cache;
    scanner->iterator = &iterator;
    iterator.delimitedScanner = scanner;
    iterator.bufferManager = rig.buffer;
}

ScanRig::~ScanRig() {
    delete_DelimitedScannerBytes(scanner);
    delete_StringLiteralCache(cache);
    for (DFDLUString* list : lists) delete_DFDLUString(list);
}

DFDLUString* ScanRig::text(std::u16string_view units) {
    return new_DFDLUStringFromUChars(rig.heap, units.data(), static_cast<int32_t>(units.size()));
}

int32_t ScanRig::literal(std::u16string_view units) {
    if (units.empty()) return -1;
    StringPartTableRow part;
    part.iStringPart = text(units);
    Table_loadRow(rig.pif->stringPartTable, part);
    StringLiteralTableRow row;
    row.iStringPartIndex = Table_size(rig.pif->stringPartTable) - 1;
    Table_loadRow(rig.pif->stringLiteralTable, row);
    return Table_size(rig.pif->stringLiteralTable) - 1;
}

int32_t ScanRig::scheme(const MarkupWords& words) {
    if (words.escape.empty() && words.blockStart.empty()) return -1;
    EscapeSchemeTableRow row;
    row.iEscapeKind = words.blockStart.empty() ? ESCAPE_CHARACTER : ESCAPE_BLOCK;
    row.iEscapeSchemeName = text(u"scheme");
    row.iEscapeCharacter = text(words.escape);
    row.iEscapeBlockStart = text(words.blockStart);
    row.iEscapeBlockEnd = text(words.blockEnd);
    row.iEscapeEscapeCharacter = text(words.escapeEscape);
    Table_loadRow(rig.pif->escapeSchemeTable, row);
    return Table_size(rig.pif->escapeSchemeTable) - 1;
}

int32_t ScanRig::within(const MarkupWords& words) {
    TextMarkupTableRow markup;
    markup.iTextEncodingIndex = encodingIndex;
    markup.iIgnoreCase = words.ignoreCase;
    markup.iTerminatorIndex = literal(words.terminator);
    markup.iSeparatorIndex = literal(words.separator);
    markup.iEscapeSchemeIndex = scheme(words);
    Table_loadRow(rig.pif->textMarkupTable, markup);
    return addSet(sets_, sets_ - 1, Table_size(rig.pif->textMarkupTable) - 1);
}

int32_t ScanRig::withinPlain() { return addSet(sets_, sets_ - 1, -1); }

int32_t ScanRig::addSet(int32_t id, int32_t parent, int32_t markupRow) {
    MarkupSetTableRow row;
    row.iMarkupSetId = id;
    row.iParentMarkupSetId = parent;
    row.iTextMarkupTableId = markupRow;
    Table_loadRow(rig.pif->markupSetTable, row);
    ++sets_;
    return id;
}

void ScanRig::finish() {
    StringPartTable_finalizeTable(rig.pif->stringPartTable);
    StringLiteralTable_finalizeTable(rig.pif->stringLiteralTable);
    TextMarkupTable_finalizeTable(rig.pif->textMarkupTable);
    MarkupSetTable_finalizeTable(rig.pif->markupSetTable);
    DelimitedScannerBytes_setPIF(scanner, rig.pif);
    for (int32_t level = 0; level < std::max(sets_, 1); ++level) {
        rows.emplace_back().child_group_id = 0;
        items.emplace_back().row = &rows.back();
    }
    for (size_t level = 0; level + 1 < items.size(); ++level) items[level].parent = &items[level + 1];
    iterator.currentItem = &items.front();
    iterator.rootItem = &items.back();
}

CompiledMarkupSet* ScanRig::use(int32_t id, bool simple) {
    if (items.empty()) finish();
    items.front().row = simple ? &rig.item : &rows.front();
    return DelimitedScannerBytes_setMarkupSet(scanner, id, &items.front());
}

CompiledMarkupSet* ScanRig::useList(std::u16string_view list, bool ownsKey) {
    if (items.empty()) finish();
    DFDLUString* string = lists.emplace_back(text(list));
    return DelimitedScannerBytes_setMarkupSetWithGroupMemberRow(scanner, string, &rig.item, ownsKey,
                                                                "initiator");
}

int64_t ScanRig::scan(bool record, bool atPositionOnly) {
    return DelimitedScannerBytes_scanForMarkup(scanner, atPositionOnly, encodingIndex, record, &rig.item);
}

std::string ScanRig::find(bool record, bool atPositionOnly) {
    const int64_t content = scan(record, atPositionOnly);
    if (content < 0) return rig.takeError();
    const CompiledDFDLStringLiteral* literal = scanner->matchedLiteral;
    if (literal == nullptr) return "none";
    EXPECT_EQ(scanner->found != 0, literal->kind != MARKUP_END_OF_DATA);
    constexpr const char* KINDS[] = {"other", "", "terminator", "separator", "end"};
    return std::to_string(content) + "," + std::to_string(scanner->matchedLength) + "," +
           KINDS[literal->kind] + std::to_string(literal->level);
}
