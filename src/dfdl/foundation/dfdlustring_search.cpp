#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>

#include "dfdl/foundation/dfdlustring.h"

namespace {

using View = std::u16string_view;

int32_t index(size_t position) { return position == View::npos ? -1 : static_cast<int32_t>(position); }

int32_t length(View text) { return static_cast<int32_t>(text.size()); }

// Empty for what is no text.
View view(const UChar* chars, int32_t count) {
    return chars == nullptr || count <= 0 ? View() : View(chars, static_cast<size_t>(count));
}

bool sameIgnoringCase(View a, View b) {
    UErrorCode status = U_ZERO_ERROR;
    if (a.empty() || b.empty()) return a.empty() && b.empty();
    return a == b ||
           u_strCaseCompare(a.data(), length(a), b.data(), length(b), U_FOLD_CASE_DEFAULT, &status) == 0;
}

template <class Part>
int32_t find(const DFDLUString* text, Part part, int32_t start) {
    return start < 0 ? -1 : index(DFDLUString_view(text).find(part, static_cast<size_t>(start)));
}

}  // namespace

bool DFDLUString_equals(const DFDLUString* a, const DFDLUString* b) {
    return DFDLUString_view(a) == DFDLUString_view(b);
}

bool DFDLUString_equalsIgnoreCase(const DFDLUString* a, const DFDLUString* b) {
    return sameIgnoringCase(DFDLUString_view(a), DFDLUString_view(b));
}

bool DFDLUString_equalsString(const DFDLUString* this_, const UChar* chars, int32_t count) {
    return count > 0 && DFDLUString_view(this_) == view(chars, count);
}

bool DFDLUString_equalsStringIgnoreCase(const DFDLUString* this_, const UChar* chars, int32_t count) {
    return count > 0 && sameIgnoringCase(DFDLUString_view(this_), view(chars, count));
}

bool DFDLUString_equalsWithUChar(const DFDLUString* this_, UChar unit) {
    return DFDLUString_view(this_) == View(&unit, 1);
}

bool DFDLUString_equalsInLength(const DFDLUString* a, const DFDLUString* b, int32_t count) {
    if (count < 0 || count > DFDLUString_length(a) || count > DFDLUString_length(b)) return false;
    const auto units = static_cast<size_t>(count);
    return DFDLUString_view(a).substr(0, units) == DFDLUString_view(b).substr(0, units);
}

int32_t DFDLUString_compare(const DFDLUString* a, const DFDLUString* b) {
    if (a == nullptr || b == nullptr) return -1;
    return u_strCompare(a->chars, a->length, b->chars, b->length, false);
}

int32_t DFDLUString_findFirst(const DFDLUString* this_, const DFDLUString* part) {
    return find(this_, DFDLUString_view(part), 0);
}

int32_t DFDLUString_findFirstWithStartIndex(const DFDLUString* this_, const DFDLUString* part,
                                            int32_t start) {
    return find(this_, DFDLUString_view(part), start);
}

int32_t DFDLUString_findFirstUChar(const DFDLUString* this_, UChar unit) { return find(this_, unit, 0); }

int32_t DFDLUString_findFirstUCharWithStartIndex(const DFDLUString* this_, UChar unit, int32_t start) {
    return find(this_, unit, start);
}

int32_t DFDLUString_lastIndexOf(const DFDLUString* this_, const DFDLUString* part) {
    return index(DFDLUString_view(this_).rfind(DFDLUString_view(part)));
}

int32_t DFDLUString_lastIndexOfWithUChar(const DFDLUString* this_, UChar unit) {
    return index(DFDLUString_view(this_).rfind(unit));
}

bool DFDLUString_contains(const DFDLUString* this_, const DFDLUString* part) {
    return DFDLUString_findFirst(this_, part) >= 0;
}

bool DFDLUString_containsUChar(const DFDLUString* this_, UChar unit) {
    return DFDLUString_findFirstUChar(this_, unit) >= 0;
}

bool DFDLUString_startsWith(const DFDLUString* this_, const DFDLUString* start) {
    return DFDLUString_view(this_).starts_with(DFDLUString_view(start));
}

bool DFDLUString_startsWithUChar(const DFDLUString* this_, UChar unit) {
    return DFDLUString_view(this_).starts_with(unit);
}

bool DFDLUString_startsWithChars(const DFDLUString* this_, const char* ascii) {
    const std::string_view start = ascii;
    const View text = DFDLUString_view(this_).substr(0, start.size());
    return std::equal(text.begin(), text.end(), start.begin(), start.end(),
                      [](char16_t unit, char letter) { return unit == static_cast<unsigned char>(letter); });
}

bool DFDLUString_startsWithUChars(const DFDLUString* this_, const UChar* chars, int32_t count) {
    return DFDLUString_view(this_).starts_with(view(chars, count));
}

bool DFDLUString_endsWith(const DFDLUString* this_, const DFDLUString* end) {
    return DFDLUString_view(this_).ends_with(DFDLUString_view(end));
}

bool DFDLUString_endsWithUChar(const DFDLUString* this_, UChar unit) {
    return DFDLUString_view(this_).ends_with(unit);
}

int32_t DFDLUString_countOccurrencesOf(const DFDLUString* this_, const DFDLUString* part) {
    const View text = DFDLUString_view(this_);
    const View wanted = DFDLUString_view(part);
    int32_t count = 0;
    if (wanted.empty()) return 0;
    for (size_t at = text.find(wanted); at != View::npos; at = text.find(wanted, at + wanted.size())) ++count;
    return count;
}

int32_t DFDLUString_countCharacters(const DFDLUString* this_) {
    const View text = DFDLUString_view(this_);
    return text.empty() ? 0 : u_countChar32(text.data(), length(text));
}
