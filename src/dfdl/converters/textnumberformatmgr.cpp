#include "dfdl/converters/textnumberformatmgr.h"

#include <algorithm>

#include "dfdl/converters/simplevalueconverter.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/dfdlstringliteral.h"
#include "dfdl/pif/groupmembertable.h"

namespace {

using Entry = NumberFormatCacheEntry;
using OwnedEntry = Owned<Entry, delete_NumberFormatCacheEntry>;
using Text = Owned<DFDLUString, delete_DFDLUString>;
using Literal = Owned<DFDLStringLiteral, delete_DFDLStringLiteral>;

constexpr int32_t CACHE_MARGIN = 11;  // slots beyond the one that is wanted
constexpr int32_t CLASSES = 2;        // of types: integers, and numbers with a point

bool hasPoint(const GroupMemberTableRow* element) {
    const int32_t type = element->simpleTypeKind;
    return type == SIMPLE_FLOAT || type == SIMPLE_DOUBLE || type == SIMPLE_DECIMAL;
}

Entry* entryAt(const TextNumberFormatMgr* manager, int32_t slot) {
    return slot < manager->cache->count ? ArrayList_getPointer<Entry>(manager->cache, slot) : nullptr;
}

void forgetEntries(TextNumberFormatMgr* manager) {
    if (manager->cache == nullptr) return;
    for (int32_t i = 0; i < manager->cache->count; ++i) delete_NumberFormatCacheEntry(entryAt(manager, i));
    delete_ArrayList(manager->cache);
    manager->cache = nullptr;
}

int32_t rowCount(const TextNumberFormatMgr* manager) {
    return manager->table == nullptr ? 0 : Table_size(manager->table);
}

// By NumberRoundingModeEnum, from ROUND_CEILING on; ICU numbers its modes in another order.
constexpr UNumberFormatRoundingMode ROUNDING[] = {
    UNUM_ROUND_CEILING,  UNUM_ROUND_FLOOR,    UNUM_ROUND_DOWN,  UNUM_ROUND_UP,
    UNUM_ROUND_HALFEVEN, UNUM_ROUND_HALFDOWN, UNUM_ROUND_HALFUP};

void setAttributes(UNumberFormat* format, const NumberFormatProperties& properties) {
    if (properties.roundingMode >= ROUND_CEILING && properties.roundingMode <= ROUND_HALF_UP) {
        unum_setAttribute(format, UNUM_ROUNDING_MODE,
                          static_cast<int32_t>(ROUNDING[properties.roundingMode - ROUND_CEILING]));
    }
    if (properties.explicitRounding) {
        unum_setDoubleAttribute(format, UNUM_ROUNDING_INCREMENT, properties.increment);
    } else if (unum_getDoubleAttribute(format, UNUM_ROUNDING_INCREMENT) == -1.0) {
        unum_setDoubleAttribute(format, UNUM_ROUNDING_INCREMENT, 0.0);
    }
    unum_setAttribute(format, UNUM_LENIENT_PARSE, properties.strict ? 0 : 1);
}

// Another locale than the root would bring its own symbols, whatever the process runs under.
UNumberFormat* openFormat(const DFDLUString* pattern, UErrorCode* status) {
    if (pattern == nullptr) return unum_open(UNUM_DECIMAL, nullptr, 0, "", nullptr, status);
    UParseError where;
    return unum_open(UNUM_PATTERN_DECIMAL, pattern->chars, pattern->length, "", &where, status);
}

void raiseInvalidFormat(const TextNumberFormatMgr* manager, ProcessingError* error,
                        const GroupMemberTableRow* element, UErrorCode status) {
    ProcessingError_reset(error);
    if (manager->isSerializer) {
        ProcessingError_setValues(error, __FILE__, __LINE__, DFDLUnParser_invalidNumberFormat,
                                  ERROR_PROCESSING, SUBKIND_NONE, "%Z%s",
                                  GroupMemberTableRow_getElementName(element), u_errorName(status));
    } else {
        ProcessingError_setValues(error, __FILE__, __LINE__, DFDLParser_invalidNumberFormat, ERROR_PROCESSING,
                                  SUBKIND_NONE, "%s", u_errorName(status));
    }
}

bool isRuntime(const TextNumberTableRow* row) {
    return row->iNumberGroupingSepExprIndex != -1 || row->iNumberDecimalSepExprIndex != -1 ||
           row->iNumberExponentCharExprIndex != -1;
}

// A symbol that is written as a literal. Null if it is empty or no literal.
Literal parseSymbol(const TextNumberFormatMgr* manager, const DFDLUString* source) {
    if (DFDLUString_length(source) == 0) return nullptr;
    Literal literal(new_DFDLStringLiteral(manager->literalHeap, source));
    if (!DFDLStringLiteral_parse(literal.get())) return nullptr;
    return literal;
}

void setSymbol(UNumberFormat* format, UNumberFormatSymbol which, const DFDLUString* symbol) {
    UErrorCode status = U_ZERO_ERROR;
    if (symbol == nullptr) {
        unum_setSymbol(format, which, &NULL_PATTERN_SYMBOL, 0, &status);
    } else {
        unum_setSymbol(format, which, symbol->chars, symbol->length, &status);
    }
}

NumberFormatProperties propertiesOf(const TextNumberTableRow* row) {
    return {row->cleanPattern != nullptr ? row->cleanPattern : row->iNumberPattern,
            row->iNumberRoundingMode,
            row->iTextNumberRounding == ROUNDING_EXPLICIT,
            row->iNumberCheckPolicy == NUMBER_CHECKPOLICY_STRICT,
            row->iVirtualDecimalIndex,
            row->iSubPatternBoudaryIndex,
            row->iNegativeVirtualDecimalIndex,
            row->decimalScalingPosition,
            row->iTextNumberRoundingIncrement};
}

std::u16string_view symbolOf(const UNumberFormat* format, UNumberFormatSymbol which, UChar (&units)[8]) {
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = unum_getSymbol(format, which, units, 8, &status);
    return U_SUCCESS(status) ? std::u16string_view(units, static_cast<size_t>(length)) : u"\uFFFF\uFFFF";
}

// A symbol that could be taken for a number, or for a part of one.
bool looksLikeNumber(std::u16string_view symbol) {
    return symbol.find_first_of(u"+-.,0123456789") != symbol.npos;
}

// Asks the format itself, so that nothing is planned that is not so.
void planPlain(Entry* entry, const TextNumberTableRow* row) {
    UChar units[1024];
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = unum_toPattern(entry->format, false, units, 1024, &status);
    UChar grouping[8];
    UChar point[8];
    UChar other[8];
    if (U_FAILURE(status) || symbolOf(entry->format, UNUM_ZERO_DIGIT_SYMBOL, other) != u"0") return;
    for (const UNumberFormatSymbol word : {UNUM_INFINITY_SYMBOL, UNUM_NAN_SYMBOL}) {
        if (looksLikeNumber(symbolOf(entry->format, word, other))) return;
    }
    entry->plain = PlainTextNumber_plan({units, static_cast<size_t>(length)},
                                        symbolOf(entry->format, UNUM_GROUPING_SEPARATOR_SYMBOL, grouping),
                                        symbolOf(entry->format, UNUM_DECIMAL_SEPARATOR_SYMBOL, point),
                                        row->iNumberCheckPolicy == NUMBER_CHECKPOLICY_LAX);
}

// How many digits stand behind the V.
int32_t digitsBehind(std::u16string_view pattern, int32_t virtualIndex) {
    const std::u16string_view rest = pattern.substr(static_cast<size_t>(virtualIndex) + 1);
    const size_t end = rest.find_first_not_of(u"0#");
    return static_cast<int32_t>(std::min(end, rest.size()));
}

struct Roads {
    decltype(&TextNumberFormatMgr_createNumberFormatCacheEntryFromRowForParser) createEntry;
    decltype(&TextNumberFormatMgr_processSeparatorsForParser) processSeparators;
};

constexpr Roads INPUT = {TextNumberFormatMgr_createNumberFormatCacheEntryFromRowForParser,
                         TextNumberFormatMgr_processSeparatorsForParser};
constexpr Roads OUTPUT = {TextNumberFormatMgr_createNumberFormatCacheEntryFromRowForUnparser,
                          TextNumberFormatMgr_processSeparatorsForUnparser};

// The words for numbers that are none or have no end; one that is not given stays ICU's. False with an error.
bool setWords(const TextNumberFormatMgr* manager, ProcessingError* error, UNumberFormat* format,
              const GroupMemberTableRow* element) {
    struct Word {
        DFDLUString* TextNumberTableRow::*literal;
        void (*set)(UNumberFormat*, const DFDLUString*);
        const char* property;
    };
    constexpr Word WORDS[] = {
        {&TextNumberTableRow::iNumberInfinityRep, TextNumberFormatMgr_setInfinity, "textStandardInfinityRep"},
        {&TextNumberTableRow::iNumberNaNRep, TextNumberFormatMgr_setNaN, "textStandardNaNRep"}};
    const TextNumberTableRow* row = GroupMemberTableRow_getTextNumberRow(element);
    for (const Word& word : WORDS) {
        if (DFDLUString_length(row->*word.literal) == 0) continue;
        const DFDLUString* text =
            TextNumberFormatMgr_getWrittenLiteral(manager, error, element, row->*word.literal, word.property);
        if (text == nullptr) return false;
        word.set(format, text);
    }
    return true;
}

}  // namespace

TextNumberFormatMgr* new_TextNumberFormatMgr(DFDLHeapAdapter* heap, bool isSerializer) {
    auto* this_ = DFDLHeapAdapter_new<TextNumberFormatMgr>(heap);
    TextNumberFormatMgr_ctor(this_, heap, isSerializer);
    return this_;
}

void delete_TextNumberFormatMgr(TextNumberFormatMgr* this_) {
    if (this_ == nullptr) return;
    TextNumberFormatMgr_dtor(this_);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void TextNumberFormatMgr_ctor(TextNumberFormatMgr* this_, DFDLHeapAdapter* heap, bool isSerializer) {
    this_->heap = heap;
    this_->literalHeap = heap;
    this_->isSerializer = isSerializer;
}

void TextNumberFormatMgr_dtor(TextNumberFormatMgr* this_) { forgetEntries(this_); }

void TextNumberFormatMgr_reset(TextNumberFormatMgr* this_, bool keepEntries) {
    if (!keepEntries || this_->cache == nullptr) {
        forgetEntries(this_);
        const int32_t slots = CLASSES * rowCount(this_);
        ArrayList* cache = new_ArrayListOfPointers(this_->heap, slots);
        this_->cache = cache;
        for (int32_t i = 0; i < slots; ++i) ArrayList_addPointer(cache, nullptr);
        return;
    }
    for (int32_t i = 0; i < this_->cache->count; ++i) {
        if (Entry* entry = entryAt(this_, i)) entry->separatorsResolved = 0;
    }
}

NumberFormatCacheEntry* TextNumberFormatMgr_getCachedNumberFormat(TextNumberFormatMgr* this_,
                                                                  ProcessingError* error,
                                                                  const GroupMemberTableRow* element,
                                                                  bool forParser) {
    const TextNumberTableRow* row = GroupMemberTableRow_getTextNumberRow(element);
    if (row == nullptr) return nullptr;
    const Roads& roads = forParser ? INPUT : OUTPUT;
    if (this_->cache == nullptr) TextNumberFormatMgr_reset(this_, false);
    const int32_t slot = TextNumberFormatMgr_slotOf(element);
    if (Entry* entry = entryAt(this_, slot)) {
        if (entry->hasRuntimeSeparators != 0 && entry->separatorsResolved == 0)
            roads.processSeparators(this_, error, entry, row, element);
        return entry;
    }
    OwnedEntry entry(roads.createEntry(this_, error, element));
    if (slot >= this_->cache->capacity) ArrayList_ensureCapacity(this_->cache, slot + CACHE_MARGIN);
    ArrayList_setPointer(this_->cache, slot, entry.get());
    return entry.release();
}

int32_t TextNumberFormatMgr_slotOf(const GroupMemberTableRow* element) {
    return CLASSES * (GroupMemberTableRow_getTextNumberRow(element)->id - 1) + (hasPoint(element) ? 1 : 0);
}

NumberFormatCacheEntry* TextNumberFormatMgr_entryInSlot(const TextNumberFormatMgr* this_, int32_t slot) {
    Entry* entry = this_->cache != nullptr ? entryAt(this_, slot) : nullptr;
    return entry != nullptr && entry->hasRuntimeSeparators == 0 ? entry : nullptr;
}

NumberFormatCacheEntry* TextNumberFormatMgr_createNumberFormatCacheEntryFromRowForParser(
    TextNumberFormatMgr* this_, ProcessingError* error, const GroupMemberTableRow* element) {
    const TextNumberTableRow* row = GroupMemberTableRow_getTextNumberRow(element);
    OwnedEntry entry(
        TextNumberFormatMgr_createNumberFormatCacheEntry(this_, error, propertiesOf(row), row, element));
    if (entry == nullptr ||
        !TextNumberFormatMgr_processSeparatorsForParser(this_, error, entry.get(), row, element)) {
        return nullptr;
    }
    if (const Literal infinity = parseSymbol(this_, row->iNumberInfinityRep))
        TextNumberFormatMgr_setInfinity(entry->format, DFDLStringLiteral_getUnicodeString(infinity.get()));
    if (const Literal nan = parseSymbol(this_, row->iNumberNaNRep))
        TextNumberFormatMgr_setNaN(entry->format, DFDLStringLiteral_getUnicodeString(nan.get()));
    if (DFDLUString_length(row->iNumberZeroRep) == 1)
        TextNumberFormatMgr_setZeroDigit(entry->format, row->iNumberZeroRep);
    if (entry->hasRuntimeSeparators == 0) planPlain(entry.get(), row);
    return entry.release();
}

NumberFormatCacheEntry* TextNumberFormatMgr_createNumberFormatCacheEntryFromRowForUnparser(
    TextNumberFormatMgr* this_, ProcessingError* error, const GroupMemberTableRow* element) {
    const TextNumberTableRow* row = GroupMemberTableRow_getTextNumberRow(element);
    NumberFormatProperties properties = propertiesOf(row);
    const bool isVirtual = row->iVirtualDecimalIndex >= 0;
    Text pattern;
    if (isVirtual) {
        pattern.reset(SimpleValueConverter_reformatPattern(this_->heap, properties));
        if (pattern == nullptr) return nullptr;
        properties.pattern = pattern.get();
        properties.strict = true;
        properties.virtualIndex = -1;
        properties.boundary = -1;
    }
    OwnedEntry entry(
        TextNumberFormatMgr_createNumberFormatCacheEntry(this_, error, properties, row, element));
    if (entry == nullptr) return nullptr;
    if (isVirtual) TextNumberFormatMgr_setDecimalSeparator(entry->format, nullptr);
    if (!TextNumberFormatMgr_processSeparatorsForUnparser(this_, error, entry.get(), row, element) ||
        !setWords(this_, error, entry->format, element)) {
        return nullptr;
    }
    return entry.release();
}

NumberFormatCacheEntry* TextNumberFormatMgr_createNumberFormatCacheEntry(
    TextNumberFormatMgr* this_, ProcessingError* error, const NumberFormatProperties& properties,
    const TextNumberTableRow* row, const GroupMemberTableRow* element) {
    OwnedEntry entry(DFDLHeapAdapter_new<Entry>(this_->heap));
    entry->hasRuntimeSeparators = isRuntime(row) ? 1U : 0U;
    Text pattern;
    if (properties.pattern != nullptr) {
        pattern.reset(TextNumberFormatMgr_processPattern(this_, entry.get(), properties));
        if (pattern == nullptr) return nullptr;
    }
    UErrorCode status = U_ZERO_ERROR;
    entry->format = openFormat(pattern.get(), &status);
    if (U_FAILURE(status)) {
        raiseInvalidFormat(this_, error, element, status);
        return nullptr;
    }
    setAttributes(entry->format, properties);
    return entry.release();
}

void delete_NumberFormatCacheEntry(NumberFormatCacheEntry* this_) {
    if (this_ == nullptr) return;
    if (this_->format != nullptr) unum_close(this_->format);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

bool NumberFormatProperties_findVirtualPoints(const NumberFormatProperties* this_, VirtualPoints* points) {
    const int32_t length = DFDLUString_length(this_->pattern);
    const bool split = this_->boundary != -1;
    const int32_t end = split ? this_->boundary : length;
    if (this_->virtualIndex < 0 || this_->virtualIndex >= end || end > length - (split ? 1 : 0)) return false;
    *points = {this_->virtualIndex, -1};
    if (!split || this_->negativeVirtualIndex == -1) return true;
    // Its place is told from behind the ";".
    if (this_->negativeVirtualIndex < 0 || this_->negativeVirtualIndex >= length - end - 1) return false;
    points->negative = end + 1 + this_->negativeVirtualIndex;
    return true;
}

DFDLUString* TextNumberFormatMgr_processPattern(TextNumberFormatMgr* this_, NumberFormatCacheEntry* entry,
                                                const NumberFormatProperties& properties) {
    const std::u16string_view pattern = DFDLUString_view(properties.pattern);
    const auto copy = [this_](std::u16string_view text) {
        return DFDLUStringPooler_getDFDLUStringFromView(this_->heap, text);
    };
    if (properties.virtualIndex == -1) {
        entry->virtualDecimalDigits = properties.scalingPosition;
        return copy(pattern);
    }
    VirtualPoints points;
    if (!NumberFormatProperties_findVirtualPoints(&properties, &points)) return nullptr;
    entry->virtualDecimalDigits = digitsBehind(pattern, points.positive);
    Text result(copy(pattern));
    // From the end, so that the first index stays right.
    if (points.negative != -1) DFDLUString_deleteCharAt(result.get(), points.negative);
    DFDLUString_deleteCharAt(result.get(), points.positive);
    return result.release();
}

void TextNumberFormatMgr_setZeroDigit(UNumberFormat* format, const DFDLUString* symbol) {
    setSymbol(format, UNUM_ZERO_DIGIT_SYMBOL, symbol);
}
void TextNumberFormatMgr_setNaN(UNumberFormat* format, const DFDLUString* symbol) {
    setSymbol(format, UNUM_NAN_SYMBOL, symbol);
}
void TextNumberFormatMgr_setInfinity(UNumberFormat* format, const DFDLUString* symbol) {
    setSymbol(format, UNUM_INFINITY_SYMBOL, symbol);
}
void TextNumberFormatMgr_setExponentSeparator(UNumberFormat* format, const DFDLUString* symbol) {
    setSymbol(format, UNUM_EXPONENTIAL_SYMBOL, symbol);
}
void TextNumberFormatMgr_setDecimalSeparator(UNumberFormat* format, const DFDLUString* symbol) {
    setSymbol(format, UNUM_DECIMAL_SEPARATOR_SYMBOL, symbol);
}
void TextNumberFormatMgr_setGroupingSeparator(UNumberFormat* format, const DFDLUString* symbol) {
    setSymbol(format, UNUM_GROUPING_SEPARATOR_SYMBOL, symbol);
}
