// Compiling sets, and finding those that have been.
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/framework/scannerdatacache.h"
#include "dfdl/framework/stringliteralcache.h"
#include "dfdl/pif/pifphysicalpropertyhelper.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pifiterator/contextitem.h"

namespace {

// Sets within sets. A grammar has as many as its elements are deep; more is a circle or meant to hurt.
constexpr int32_t MOST_ENCLOSING_SETS = 1000;

using Scanner = DelimitedScannerBytes;

// One set being compiled.
struct Build {
    Scanner* scanner;
    const GroupMemberTableRow* element;
    const TextMarkupTableRow* markup;
    UConverter* converter;
    const DFDLUString* encodingName;
    CompiledMarkupSet* set;
};

bool unsupported(Scanner* scanner, const GroupMemberTableRow* element, const char* what) {
    ProcessingError_setValues(scanner->context->currentError, __FILE__, __LINE__,
                              DFDLParser_unsupportedConstruct, ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z%s",
                              element == nullptr ? nullptr : element->scdText, what);
    return false;
}

bool isDynamic(const DFDLUString* text, int32_t expression) {
    return DFDLUString_length(text) == 0 && expression != -1;
}

bool addEscapeScheme(const Build& build) {
    const EscapeSchemeTableRow* row = build.markup->escapeRow;
    if (row != nullptr && (isDynamic(row->iEscapeCharacter, row->iEscapeCharacterExpr) ||
                           isDynamic(row->iEscapeEscapeCharacter, row->iEscapeEscapeCharacterExpr))) {
        return unsupported(build.scanner, build.element, "an escape character given by an expression");
    }
    return CompiledMarkupSet_configureScannerDataForEscapeScheme(build.set, build.scanner->context, row,
                                                                 build.converter, build.encodingName);
}

bool addDelimiters(const Build& build, const DFDLUString* text, int32_t expression, MarkupKind kind,
                   const char* propertyName) {
    if (isDynamic(text, expression)) {
        return unsupported(build.scanner, build.element,
                           kind == MARKUP_TERMINATOR ? "a terminator given by an expression"
                                                     : "a separator given by an expression");
    }
    const TextMarkupTableRow* markup = build.markup;
    return DelimitedScannerBytes_addDelimiterValuesToScannerData(
        build.scanner, build.set,
        {text, kind, markup->iTextEncodingIndex, markup->iIgnoreCase, build.element, propertyName});
}

// What the set has of its own. False without a converter, or with an error.
bool addOwnMarkup(Build build, bool forSimple) {
    DFDLCharset* charset =
        CharsetManager_getDFDLEncoding(build.scanner->charsetManager, build.markup->iTextEncodingIndex);
    build.converter = charset == nullptr ? nullptr : DFDLCharset_getConverter(charset);
    if (build.converter == nullptr) return false;
    build.encodingName = charset->name;
    if (forSimple && !addEscapeScheme(build)) return false;
    const TextMarkupTableRow* markup = build.markup;
    return addDelimiters(build, PIFPhysicalPropertyHelper_getTerminatorPropertyWithTextMarkup(markup),
                         markup->iTerminatorExprIndex, MARKUP_TERMINATOR, "terminator") &&
           addDelimiters(build, PIFPhysicalPropertyHelper_getSeparatorPropertyWithTextMarkup(markup),
                         markup->iSeparatorExprIndex, MARKUP_SEPARATOR, "separator");
}

CompiledMarkupSet* createScannerData(Scanner* scanner, const MarkupSetTableRow* row, const ContextItem* item,
                                     bool forSimple, int32_t depth);

// The enclosing set as it is seen from within, or an empty one; null with an error.
CompiledMarkupSet* startSet(Scanner* scanner, const MarkupSetTableRow* row, const ContextItem* item,
                            int32_t depth) {
    const int32_t parentId = row->iParentMarkupSetId;
    const MarkupSetTableRow* parentRow =
        parentId == -1 ? nullptr : MarkupSetTable_findRowByID(scanner->pif->markupSetTable, parentId);
    if (parentRow == nullptr) return new_CompiledMarkupSet(scanner->heap);
    const CompiledMarkupSet* known = ScannerDataCache_get(scanner->cache, parentId, false);
    if (known != nullptr) return CompiledMarkupSet_createDeepCopyAndIncrementLevels(known);
    const ContextItem* parentItem = item == nullptr ? nullptr : item->parent;
    CompiledMarkupSet* parent = createScannerData(scanner, parentRow, parentItem, false, depth + 1);
    if (parent == nullptr) return nullptr;
    CompiledMarkupSet* set = CompiledMarkupSet_createDeepCopyAndIncrementLevels(parent);
    delete_CompiledMarkupSet(parent);
    return set;
}

MarkupSetAudience audienceOf(const MarkupSetTableRow* row, bool forSimple) {
    if (row->markupRow == nullptr || row->markupRow->escapeRow == nullptr) return AUDIENCE_ALL;
    return forSimple ? AUDIENCE_SIMPLE_ELEMENTS : AUDIENCE_OTHERS;
}

CompiledMarkupSet* createScannerData(Scanner* scanner, const MarkupSetTableRow* row, const ContextItem* item,
                                     bool forSimple, int32_t depth) {
    const GroupMemberTableRow* element = item == nullptr ? nullptr : item->row;
    if (depth > MOST_ENCLOSING_SETS) {
        unsupported(scanner, element, "more enclosing sets of delimiters than 1000");
        return nullptr;
    }
    CompiledMarkupSet* set = startSet(scanner, row, item, depth);
    if (set == nullptr) return nullptr;
    const Build build{scanner, element, row->markupRow, nullptr, nullptr, set};
    if (row->markupRow != nullptr && !addOwnMarkup(build, forSimple)) {
        delete_CompiledMarkupSet(set);
        return nullptr;
    }
    set->id = row->iMarkupSetId;
    set->audience = audienceOf(row, forSimple);
    CompiledMarkupSet_finish(set);
    return set;
}

CompiledMarkupSet* compile(Scanner* scanner, int32_t markupSetId, const ContextItem* item, bool forSimple) {
    if (scanner->pif == nullptr) return nullptr;
    const MarkupSetTableRow* row = MarkupSetTable_findRowByID(scanner->pif->markupSetTable, markupSetId);
    if (row == nullptr) return nullptr;
    ScannerDataCache_reserve(scanner->cache, markupSetId);
    CompiledMarkupSet* set = createScannerData(scanner, row, item, forSimple, 0);
    if (set != nullptr) ScannerDataCache_put(scanner->cache, set);
    return set;
}

bool serves(const CompiledMarkupSet* set, bool forSimple) {
    return set->audience == AUDIENCE_ALL || (set->audience == AUDIENCE_SIMPLE_ELEMENTS) == forSimple;
}

// The same text compiles to other bytes in another encoding and to other parts if case is ignored.
const DFDLUString* keyOf(Scanner* scanner, const MarkupSource& source) {
    const auto index = static_cast<uint32_t>(source.encodingIndex);
    const UChar settings[] = {static_cast<UChar>(index), static_cast<UChar>(index >> 16),
                              static_cast<UChar>(source.ignoreCase ? 1 : 0)};
    constexpr auto SETTINGS = static_cast<int32_t>(std::size(settings));
    DFDLUString* key = scanner->listKey;
    DFDLUString_replaceValue(key, source.list->chars, source.list->length);
    DFDLUString* whole = DFDLUString_concatWithUChars(key, settings, SETTINGS, scanner->heap);
    DFDLUString_replaceValue(key, whole->chars, whole->length);
    delete_DFDLUString(whole);
    return key;
}

MarkupSource sourceOf(const DFDLUString* list, const GroupMemberTableRow* row, const char* propertyName) {
    const TextMarkupTableRow* markup = row->markupRow;
    const int32_t encoding = markup == nullptr ? row->iTextEncodingIndex : markup->iTextEncodingIndex;
    return {list, MARKUP_OTHER, encoding, markup != nullptr && markup->iIgnoreCase, row, propertyName};
}

CompiledMarkupSet* compileList(Scanner* scanner, const MarkupSource& source) {
    CompiledMarkupSet* set = new_CompiledMarkupSet(scanner->heap);
    if (!DelimitedScannerBytes_addDelimiterValuesToScannerData(scanner, set, source)) {
        delete_CompiledMarkupSet(set);
        return nullptr;
    }
    CompiledMarkupSet_finish(set);
    return set;
}

void keep(Scanner* scanner, CompiledMarkupSet* set) {
    StringLiteralCache* cache = scanner->literalCache;
    ArrayList_makeRoomAfter(cache->volatileSets, ArrayList_size(cache->volatileSets));
    DFDLStringHashMapEntry* entry = DFDLStringHashMap_put(cache->compiledSets, scanner->listKey, set, false);
    if (set->isVolatile) ArrayList_addPointer(cache->volatileSets, entry);
}

CompiledMarkupSet* setOfList(Scanner* scanner, const MarkupSource& source, bool ownsKey) {
    auto* set = static_cast<CompiledMarkupSet*>(
        DFDLStringHashMap_get(scanner->literalCache->compiledSets, keyOf(scanner, source)));
    if (set != nullptr) return set;
    set = compileList(scanner, source);
    if (set == nullptr) return nullptr;
    // A list that was worked out may never come again.
    set->isVolatile = set->isVolatile || !ownsKey;
    keep(scanner, set);
    return set;
}

// By row and property, whose names differ in their first letter: not by address, which is another in every
// run.
MarkupListLookup* lookupOf(Scanner* scanner, const MarkupSource& source) {
    constexpr size_t LISTS_OF_ROW = 4;
    const auto row = static_cast<size_t>(source.element->rowIndex);
    const char first = source.propertyName == nullptr ? 0 : source.propertyName[0];
    const size_t property = static_cast<size_t>(first) % LISTS_OF_ROW;
    return &scanner->lookups[(LISTS_OF_ROW * row + property) % MARKUP_LIST_LOOKUPS];
}

bool isFor(const MarkupListLookup& lookup, const MarkupSource& source) {
    return lookup.list == source.list && lookup.encodingIndex == source.encodingIndex &&
           lookup.ignoreCase == source.ignoreCase;
}

}  // namespace

CompiledMarkupSet* DelimitedScannerBytes_setMarkupSet(DelimitedScannerBytes* this_, int32_t markupSetId,
                                                      ContextItem* item) {
    const bool forSimple = item != nullptr && ContextItem_isSimpleElement(item);
    if (markupSetId != -1 && markupSetId == this_->markupSetId && serves(this_->markupSet, forSimple)) {
        return this_->markupSet;
    }
    this_->markupSet = nullptr;
    this_->markupSetId = -1;
    if (markupSetId == -1) return nullptr;
    CompiledMarkupSet* set = ScannerDataCache_get(this_->cache, markupSetId, forSimple);
    if (set == nullptr) set = compile(this_, markupSetId, item, forSimple);
    if (set == nullptr) return nullptr;
    this_->markupSet = set;
    this_->markupSetId = markupSetId;
    return set;
}

CompiledMarkupSet* DelimitedScannerBytes_scanTerminatingMarkup(DelimitedScannerBytes* this_,
                                                               int32_t markupSetId) {
    return DelimitedScannerBytes_setMarkupSet(this_, markupSetId, nullptr);
}

CompiledMarkupSet* DelimitedScannerBytes_scanToNextTerminatingMarkup(DelimitedScannerBytes* this_,
                                                                     int32_t markupSetId) {
    return DelimitedScannerBytes_scanTerminatingMarkup(this_, markupSetId);
}

CompiledMarkupSet* DelimitedScannerBytes_setMarkupSetWithGroupMemberRow(DelimitedScannerBytes* this_,
                                                                        const DFDLUString* list,
                                                                        const GroupMemberTableRow* row,
                                                                        bool ownsKey,
                                                                        const char* propertyName) {
    this_->markupSet = nullptr;
    this_->markupSetId = -1;
    if (list == nullptr) return nullptr;
    const MarkupSource source = sourceOf(list, row, propertyName);
    MarkupListLookup* lookup = lookupOf(this_, source);
    if (ownsKey && isFor(*lookup, source)) return this_->markupSet = lookup->set;
    CompiledMarkupSet* set = setOfList(this_, source, ownsKey);
    if (set != nullptr && ownsKey && !set->isVolatile) {
        *lookup = {list, set, source.encodingIndex, source.ignoreCase};
    }
    return this_->markupSet = set;
}
