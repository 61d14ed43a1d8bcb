#include "dfdl/pif/textnumbertable.h"

#include <algorithm>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pif/tabletext.h"

namespace {

void deleteRow(TextNumberTableRow* row) {
    delete_DFDLUString(row->iNumberPattern);
    delete_DFDLUString(row->iNumberGroupingSeparator);
    delete_DFDLUString(row->iNumberDecimalSeparator);
    delete_DFDLUString(row->iNumberExponentCharacter);
    delete_DFDLUString(row->iNumberInfinityRep);
    delete_DFDLUString(row->iNumberNaNRep);
    delete_DFDLUString(row->iNumberZeroRep);
    delete_DFDLUString(row->cleanPattern);
}

bool isSign(UChar unit) { return unit == u'+' || unit == u'-'; }

// Notes rounding digits of the positive subpattern; returns its length.
int32_t scanPositive(TextNumberTableRow* row, std::u16string_view pattern) {
    bool quoted = false;
    int32_t length = 0;
    for (const UChar unit : pattern) {
        if (unit == u'\'') quoted = !quoted;
        if (!quoted && unit == u';') break;
        if (!quoted && unit >= u'1' && unit <= u'9') row->patternHasRoundingDigit = true;
        ++length;
    }
    return length;
}

// The clean pattern never grows, so it is made in a copy of the pattern.
void cleanPattern(TextNumberTableRow* row) {
    const std::u16string_view pattern = DFDLUString_view(row->iNumberPattern);
    int32_t positive = scanPositive(row, pattern);
    int32_t negative = static_cast<int32_t>(pattern.size()) - positive - 1;
    row->cleanPattern = TableText_fromUnits(row->heap, pattern);
    UChar* units = row->cleanPattern->chars;
    const UChar* rest = units + positive;
    row->decimalScalingPosition = TextNumberTableRow_calculateDecimalScalingPosition(units, &positive);
    UChar* end = units + positive;
    if (negative >= 0) {
        UChar* part = std::copy_n(rest, 1, end);
        std::copy_n(rest + 1, negative, part);
        TextNumberTableRow_calculateDecimalScalingPosition(part, &negative);
        end = part + negative;
    }
    *end = 0;
    row->cleanPattern->length = static_cast<int32_t>(end - units);
}

// Removes the `P`s of a part that starts with them, from `start`; counts all digits it passes.
int32_t takeLeading(UChar* part, int32_t* length, int32_t start) {
    int32_t count = 0;
    UChar* kept = part + start;
    const UChar* end = part + *length;
    const UChar* next = kept;
    for (; next != end && (*next == u'P' || *next == u'#' || (*next >= u'0' && *next <= u'9')); ++next) {
        ++count;
        if (*next != u'P') *kept++ = *next;
    }
    *length = static_cast<int32_t>(std::copy(next, end, kept) - part);
    return count;
}

// Removes the `P`s before the part's end and its trailing sign; returns how many.
int32_t takeTrailing(UChar* part, int32_t* length) {
    int32_t last = *length - 1;
    if (last >= 0 && isSign(part[last])) --last;
    int32_t first = last;
    while (first > 0 && part[first] == u'P') --first;
    const int32_t count = last - first;
    if (count > 0) std::copy(part + last + 1, part + *length, part + first + 1);
    *length -= count;
    return count;
}

}  // namespace

TextNumberTable* new_TextNumberTable(DFDLHeapAdapter* heap, sPIF* pif) {
    return Table_new<TextNumberTable, deleteRow>(heap, pif);
}

void delete_TextNumberTable(TextNumberTable* this_) { Table_delete(this_); }

int32_t TextNumberTableRow_calculateDecimalScalingPosition(UChar* part, int32_t* length) {
    const int32_t start = *length > 0 && isSign(part[0]) ? 1 : 0;
    if (start == *length) return 0;
    const int32_t leading = part[start] == u'P' ? takeLeading(part, length, start) : 0;
    return leading - takeTrailing(part, length);
}

void TextNumberTable_finalizeTable(TextNumberTable* this_) {
    for (int32_t index = 0; index < Table_size(this_); ++index) {
        TextNumberTableRow* row = Table_at(this_, index);
        row->id = index + 1;
        if (row->iNumberPattern != nullptr) cleanPattern(row);
    }
}

int32_t TextNumberTable_findRowIndex(const TextNumberTable* this_, int32_t id) {
    return Table_findPosition(this_, id);
}

TextNumberTableRow* TextNumberTable_findRow(const TextNumberTable* this_, int32_t id) {
    return Table_row(this_, TextNumberTable_findRowIndex(this_, id));
}
