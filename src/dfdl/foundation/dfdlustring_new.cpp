#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <initializer_list>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/dfdlustringunits.h"

namespace {

using View = std::u16string_view;

DFDLUString* join(DFDLHeapAdapter* heap, std::initializer_list<View> parts) {
    uint64_t total = 0;
    for (const View part : parts) total += part.size();
    const int32_t length = DFDLUStringUnits_length(heap, total);
    UChar* chars = DFDLUStringUnits_new(heap, length);
    UChar* end = chars;
    for (const View part : parts) end = std::copy(part.begin(), part.end(), end);
    return DFDLUStringPooler_getDFDLUStringUseUChars(heap, chars, length);
}

DFDLUString* replaceUpTo(uint64_t limit, View text, View part, View replacement, DFDLHeapAdapter* heap) {
    uint64_t count = 0;
    for (size_t at = 0; !part.empty() && count < limit; ++count, at += part.size()) {
        at = text.find(part, at);
        if (at == View::npos) break;
    }
    // Fewer than 2^31 occurrences of fewer than 2^31 units each: 64 bits hold the sum.
    const uint64_t total = text.size() - count * part.size() + count * replacement.size();
    const int32_t length = DFDLUStringUnits_length(heap, total);
    UChar* chars = DFDLUStringUnits_new(heap, length);
    UChar* end = chars;
    for (; count > 0; --count) {
        const size_t at = text.find(part);
        end = std::copy_n(text.begin(), at, end);
        end = std::copy(replacement.begin(), replacement.end(), end);
        text.remove_prefix(at + part.size());
    }
    std::copy(text.begin(), text.end(), end);
    return DFDLUStringPooler_getDFDLUStringUseUChars(heap, chars, length);
}

using CaseMapping = int32_t (*)(UChar* target, int32_t capacity, const UChar* source, int32_t length,
                                const char* locale, UErrorCode* status);

// A text whose length changes with its case tells so at the first try.
DFDLUString* mapCase(View text, CaseMapping map, DFDLHeapAdapter* heap) {
    int32_t capacity = static_cast<int32_t>(text.size());
    while (capacity > 0) {
        UChar* chars = DFDLUStringUnits_new(heap, capacity);
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length =
            map(chars, capacity, text.data(), static_cast<int32_t>(text.size()), "", &status);
        if (U_SUCCESS(status)) return DFDLUStringPooler_getDFDLUStringUseUChars(heap, chars, length);
        DFDLBufferFactory_FreeUBuffer(heap->bufferFactory, chars);
        if (status != U_BUFFER_OVERFLOW_ERROR || length <= capacity) DFDLHeapAdapter_refuse(heap);
        capacity = length;
    }
    return DFDLUStringPooler_getDFDLUString(heap);
}

// Padding before and behind, in repetitions of the pad string.
DFDLUString* pad(View text, int64_t before, int64_t behind, View filler, DFDLHeapAdapter* heap) {
    const auto count = static_cast<uint64_t>(before + behind);
    const int32_t length = DFDLUStringUnits_length(heap, text.size() + count * filler.size());
    UChar* chars = DFDLUStringUnits_new(heap, length);
    UChar* end = chars;
    while (before-- > 0) end = std::copy(filler.begin(), filler.end(), end);
    end = std::copy(text.begin(), text.end(), end);
    while (behind-- > 0) end = std::copy(filler.begin(), filler.end(), end);
    return DFDLUStringPooler_getDFDLUStringUseUChars(heap, chars, length);
}

// Characters that are wanting; none where there is nothing to fill up with.
int64_t missing(const DFDLUString* text, int32_t width, const DFDLUString* filler) {
    if (DFDLUString_length(filler) == 0) return 0;
    return std::max<int64_t>(static_cast<int64_t>(width) - DFDLUString_countCharacters(text), 0);
}

}  // namespace

DFDLUString* DFDLUString_substring(const DFDLUString* this_, int32_t start, DFDLHeapAdapter* heap) {
    return DFDLUString_substringWithEnd(this_, start, INT32_MAX, heap);
}

DFDLUString* DFDLUString_substringWithEnd(const DFDLUString* this_, int32_t start, int32_t end,
                                          DFDLHeapAdapter* heap) {
    const int32_t length = DFDLUString_length(this_);
    const auto from = static_cast<size_t>(std::clamp(start, 0, length));
    const auto to = static_cast<size_t>(std::clamp(end, static_cast<int32_t>(from), length));
    return join(heap, {DFDLUString_view(this_).substr(from, to - from)});
}

DFDLUString* DFDLUString_concat(const DFDLUString* this_, const DFDLUString* other, DFDLHeapAdapter* heap) {
    return join(heap, {DFDLUString_view(this_), DFDLUString_view(other)});
}

DFDLUString* DFDLUString_concatWithUChar(const DFDLUString* this_, UChar unit, DFDLHeapAdapter* heap) {
    return join(heap, {DFDLUString_view(this_), View(&unit, 1)});
}

DFDLUString* DFDLUString_concatWithUChars(const DFDLUString* this_, const UChar* chars, int32_t length,
                                          DFDLHeapAdapter* heap) {
    if (length < 0) DFDLHeapAdapter_refuse(heap);
    return join(heap, {DFDLUString_view(this_), View(chars, static_cast<size_t>(length))});
}

DFDLUString* DFDLUString_replace(const DFDLUString* this_, const DFDLUString* part,
                                 const DFDLUString* replacement, DFDLHeapAdapter* heap) {
    return replaceUpTo(1, DFDLUString_view(this_), DFDLUString_view(part), DFDLUString_view(replacement),
                       heap);
}

DFDLUString* DFDLUString_replaceAll(const DFDLUString* this_, const DFDLUString* part,
                                    const DFDLUString* replacement, DFDLHeapAdapter* heap) {
    return replaceUpTo(UINT64_MAX, DFDLUString_view(this_), DFDLUString_view(part),
                       DFDLUString_view(replacement), heap);
}

DFDLUString* DFDLUString_replaceAllUChar(const DFDLUString* this_, UChar unit, UChar replacement,
                                         DFDLHeapAdapter* heap) {
    DFDLUString* copy = join(heap, {DFDLUString_view(this_)});
    std::replace(copy->chars, copy->chars + copy->length, unit, replacement);
    return copy;
}

DFDLUString* DFDLUString_replaceAllWithEmpty(const DFDLUString* this_, const DFDLUString* part,
                                             DFDLHeapAdapter* heap) {
    return DFDLUString_replaceAll(this_, part, nullptr, heap);
}

DFDLUString* DFDLUString_toUpper(const DFDLUString* this_, DFDLHeapAdapter* heap) {
    return mapCase(DFDLUString_view(this_), u_strToUpper, heap);
}

DFDLUString* DFDLUString_toLower(const DFDLUString* this_, DFDLHeapAdapter* heap) {
    return mapCase(DFDLUString_view(this_), u_strToLower, heap);
}

// No white space lies outside the basic plane, so units will do.
DFDLUString* DFDLUString_trim(const DFDLUString* this_, UChar unit, DFDLHeapAdapter* heap) {
    View text = DFDLUString_view(this_);
    const auto goes = [unit](UChar c) { return unit == 0 ? u_isUWhiteSpace(c) != 0 : c == unit; };
    while (!text.empty() && goes(text.front())) text.remove_prefix(1);
    while (!text.empty() && goes(text.back())) text.remove_suffix(1);
    return join(heap, {text});
}

DFDLUString* DFDLUString_leftJustify(const DFDLUString* this_, int32_t width, const DFDLUString* filler,
                                     DFDLHeapAdapter* heap) {
    const int64_t count = missing(this_, width, filler);
    return pad(DFDLUString_view(this_), 0, count, DFDLUString_view(filler), heap);
}

DFDLUString* DFDLUString_rightJustify(const DFDLUString* this_, int32_t width, const DFDLUString* filler,
                                      DFDLHeapAdapter* heap) {
    const int64_t count = missing(this_, width, filler);
    return pad(DFDLUString_view(this_), count, 0, DFDLUString_view(filler), heap);
}

DFDLUString* DFDLUString_centerJustify(const DFDLUString* this_, int32_t width, const DFDLUString* filler,
                                       DFDLHeapAdapter* heap) {
    const int64_t count = missing(this_, width, filler);
    return pad(DFDLUString_view(this_), count - count / 2, count / 2, DFDLUString_view(filler), heap);
}
