#include "dfdl/pifiterator/plaintextrun.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <algorithm>
#include <bit>
#include <span>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

constexpr UChar ASCII = 0x80;  // and beyond, other characters

struct Text {
    const UChar* chars;
    int32_t length;
};

// Without the padding. A byte beyond ASCII is not a character.
template <class Char>
std::span<const Char> trim(const RowPlan& plan, const Char* start, int64_t length) {
    const Char* end = start + length;
    const UChar pad = plan.padCharacter[0];
    if (plan.trim == TRIM_CHARACTER && (sizeof(Char) > 1 || pad < ASCII)) {
        if (plan.trimLeading != 0) start = std::find_if(start, end, [pad](Char unit) { return unit != pad; });
        if (plan.trimTrailing != 0) {
            while (end > start && end[-1] == pad) --end;
        }
    }
    return {start, end};
}

#if defined(__SSE2__)

// Of a block, `last` excluded.
struct Extent {
    int32_t first;
    int32_t last;
};

// What of the block's first bytes is no padding.
Extent trimBlock(const RowPlan& plan, __m128i block, int64_t count) {
    const __m128i pads = _mm_cmpeq_epi8(block, _mm_set1_epi8(static_cast<char>(plan.padCharacter[0])));
    const uint32_t own = (1U << count) - 1;
    const uint32_t kept = ~static_cast<uint32_t>(_mm_movemask_epi8(pads)) & own;
    int32_t first = 0;
    auto last = static_cast<int32_t>(count);
    if (plan.trimLeading != 0) first = kept == 0 ? last : std::countr_zero(kept);
    if (plan.trimTrailing != 0) last = kept == 0 ? first : 32 - std::countl_zero(kept);
    return {first, last};
}

std::span<const uint8_t> trimBytes(const RowPlan& plan, const PlainBytes& bytes) {
    if (bytes.count > PLAIN_BLOCK || bytes.loaded < PLAIN_BLOCK || plan.trim != TRIM_CHARACTER ||
        plan.padCharacter[0] >= ASCII) {
        return trim(plan, bytes.start, bytes.count);
    }
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.start));
    const Extent kept = trimBlock(plan, block, bytes.count);
    return {bytes.start + kept.first, bytes.start + kept.last};
}

// Most texts are shorter than a block: they are decoded, and their padding is found, in one look at it. False
// if the text is not of this kind.
bool decodeBlock(const RowPlan& plan, const DFDLCharset* charset, const PlainBytes& bytes, UChar* target,
                 Text* text) {
    if (bytes.count > PLAIN_BLOCK || bytes.loaded < PLAIN_BLOCK || charset->road != ROAD_ASCII) return false;
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.start));
    const uint32_t own = (1U << bytes.count) - 1;
    const UChar pad = plan.padCharacter[0];
    const bool trims = plan.trim == TRIM_CHARACTER;
    if ((static_cast<uint32_t>(_mm_movemask_epi8(block)) & own) != 0 || (trims && pad >= ASCII)) return false;
    const Extent kept =
        trims ? trimBlock(plan, block, bytes.count) : Extent{0, static_cast<int32_t>(bytes.count)};
    const __m128i zero = _mm_setzero_si128();
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target), _mm_unpacklo_epi8(block, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + 8), _mm_unpackhi_epi8(block, zero));
    target[kept.last] = 0;
    *text = {target + kept.first, kept.last - kept.first};
    return true;
}

#else

std::span<const uint8_t> trimBytes(const RowPlan& plan, const PlainBytes& bytes) {
    return trim(plan, bytes.start, bytes.count);
}

bool decodeBlock(const RowPlan&, const DFDLCharset*, const PlainBytes&, UChar*, Text*) { return false; }

#endif

// Bytes that are ASCII are read as they lie. Where the encoding has a table, they are decoded first.
bool readValue(PIFIteratorForParser* iterator, const RowPlan& plan, DFDLCharset* charset,
               const PlainBytes& bytes, PlainValue* value) {
    ParserRegionHandler* handler = iterator->parserRegionHandler;
    if (charset->road == ROAD_ASCII) {
        const std::span<const uint8_t> text = trimBytes(plan, bytes);
        return PlainTextValue_readBytes(&plan.textValue, handler, text,
                                        bytes.loaded - (text.data() - bytes.start), value);
    }
    UChar* const target = iterator->plainText;
    if (!DFDLCharset_decodeDirectly(charset, bytes.start, bytes.count, target)) return false;
    const std::span<const UChar> text = trim<UChar>(plan, target, bytes.count);
    return PlainTextValue_read(&plan.textValue, handler, {text.data(), text.size()}, value);
}

bool deliverValue(PIFIteratorForParser* iterator, const RowPlan& plan, DFDLCharset* charset,
                  const PlainBytes& bytes, const BitRange& place) {
    PlainValue value{};
    if (!readValue(iterator, plan, charset, bytes, &value)) return false;
    DocHandlerEventBuffer_plainWord(iterator->eventBuffer, &plan.plainElement, value, place.start, place.end);
    return true;
}

}  // namespace

DFDLCharset* PlainTextRun_changeEncoding(BufferManager* buffer, const RowPlan& plan) {
    if (!BufferManager_initializeEncoderDecoders(buffer, plan.encodingIndex, nullptr) ||
        buffer->currentEncodingIndex != plan.encodingIndex) {
        return nullptr;
    }
    return PlainTextRun_useEncoding(buffer, plan);
}

UChar* PlainTextRun_target(PIFIteratorForParser* iterator, int64_t units) {
    return DocHandlerEventBuffer_holds(iterator->eventBuffer)
               ? DocHandlerEventBuffer_roomForText(iterator->eventBuffer, units + PLAIN_BLOCK)
               : iterator->plainText;
}

bool PlainTextRun_deliver(PIFIteratorForParser* iterator, const RowPlan& plan, DFDLCharset* charset,
                          const PlainBytes& bytes, const BitRange& place) {
    if (bytes.count > MOST_PLAIN_TEXT) return false;
    if (plan.textValue.row != nullptr) return deliverValue(iterator, plan, charset, bytes, place);
    UChar* target = PlainTextRun_target(iterator, bytes.count);
    Text text{};
    if (!decodeBlock(plan, charset, bytes, target, &text)) {
        if (!DFDLCharset_decodeDirectly(charset, bytes.start, bytes.count, target)) return false;
        const std::span<const UChar> kept = trim<UChar>(plan, target, bytes.count);
        text = {kept.data(), static_cast<int32_t>(kept.size())};
        target[kept.data() + kept.size() - target] = 0;
    }
    DocHandlerEventBuffer_plainText(iterator->eventBuffer, &plan.plainElement, text.chars, text.length,
                                    place.start, place.end);
    return true;
}

void PlainTextRun_resumeAt(PIFIteratorForParser* iterator, ContextItemForParser* group,
                           const GroupMemberTableRow* row, bool moved) {
    // What a converter that cannot be opened has left is raised again, in its own words, by the general road.
    ProcessingError_reset(iterator->context->currentError);
    // The question for the next member changes what it looks at, so its answer is kept.
    group->resumeRow = row;
    group->hasResumeRow = 1;
    if (moved) ContextItemForParser_setOrderedChild(group, nullptr);
}
