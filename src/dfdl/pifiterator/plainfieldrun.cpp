// The short road of fields between separators: their delimiters are found, and their texts are decoded, in
// the buffer where they lie.
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <algorithm>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/framework/bytefinder.h"
#include "dfdl/framework/compileddfdlstringliteral.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/plaintextrun.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

// The bytes at hand. `position` stands behind the last field that was taken, at its delimiter.
struct Run {
    PIFIteratorForParser* iterator;
    const ContextItemForParser* group;
    const uint8_t* position;
    const uint8_t* end;
    int64_t positionByte;                        // in the document
    const CompiledDFDLStringLiteral* delimiter;  // at position; null before the first field
    int32_t separatorLength;                     // to be passed before the next field
    DFDLCharset* charset;                        // of the last field
    int32_t encodingIndex;                       // of the charset
};

bool standsAt(const CompiledDFDLStringLiteral* literal, const uint8_t* bytes) {
    const auto* part = ArrayList_getPointer<CompiledStringPart>(literal->parts, 0);
    return std::equal(bytes, bytes + part->byteCount, part->exactBytes);
}

// The field's bytes end where a delimiter in scope begins, if that can be told from the bytes alone: null if
// not, because an escape, a class of characters or the end of what is loaded comes first.
const uint8_t* findDelimiter(const CompiledMarkupSet* set, const uint8_t* start, const uint8_t* end,
                             const CompiledDFDLStringLiteral** delimiter) {
    for (const uint8_t* at = start; at < end; ++at) {
        at += ByteFinder_find(&set->finder, at, end - at);
        if (at == end) return nullptr;
        const CompiledDFDLStringLiteral* literal = set->sole[*at];
        if (literal != nullptr) {
            if (literal->byteLength > end - at) return nullptr;
            if (literal->byteLength == 1 || standsAt(literal, at)) {
                *delimiter = literal;
                return at;
            }
        } else if (set->lists[*at] != nullptr || set->usesEscapeCharacter || at == start) {
            return nullptr;
        }
    }
    return nullptr;
}

const CompiledMarkupSet* markupSetOf(const Run& run, const RowPlan& plan) {
    const bool known = plan.isPlainField != 0 && plan.memoParentSetId == run.group->markupSetId &&
                       plan.compiledSet != nullptr && plan.compiledSetId == plan.memoMarkupSetId;
    return known ? plan.compiledSet : nullptr;
}

// The encoding of the field, if its bytes can be decoded here. Null otherwise.
DFDLCharset* charsetOf(Run* run, const RowPlan& plan) {
    if (run->charset != nullptr && run->encodingIndex == plan.encodingIndex) return run->charset;
    run->charset = PlainTextRun_useEncoding(run->iterator->bufferManager, plan);
    run->encodingIndex = plan.encodingIndex;
    return run->charset;
}

// False, with nothing done, if the field needs the general road.
bool deliverEmpty(const Run* run, const RowPlan& plan, int64_t startBit) {
    if (plan.emptyField == EMPTY_IS_NIL)
        DocHandlerEventBuffer_plainText(run->iterator->eventBuffer, &plan.plainText, nullptr, NIL_TEXT,
                                        startBit, startBit);
    return plan.emptyField != EMPTY_IS_GENERAL;
}

bool deliver(Run* run, const RowPlan& plan, const uint8_t* bytes, int64_t length, int64_t startBit) {
    if (length == 0) return deliverEmpty(run, plan, startBit);
    DFDLCharset* charset = charsetOf(run, plan);
    return charset != nullptr && PlainTextRun_deliver(run->iterator, plan, charset, bytes, length, startBit);
}

#if defined(__SSE2__)

// Most fields are shorter than a block: their end is found, and their text is decoded, in one look at it. The
// delimiter that ends the field; null, with nothing done, if the field is not of this kind.
const CompiledDFDLStringLiteral* takeShortField(Run* run, const RowPlan& plan, const CompiledMarkupSet* set,
                                                const uint8_t* start, int64_t startBit, int64_t* length) {
    if (set->finder.distinct > 4 || run->end - start < PLAIN_BLOCK) return nullptr;
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(start));
    __m128i hits = _mm_cmpeq_epi8(block, _mm_set1_epi8(static_cast<char>(set->finder.wanted[0])));
    for (int i = 1; i < set->finder.distinct; ++i) {
        const __m128i wanted = _mm_set1_epi8(static_cast<char>(set->finder.wanted[i]));
        hits = _mm_or_si128(hits, _mm_cmpeq_epi8(block, wanted));
    }
    const auto mask = static_cast<uint32_t>(_mm_movemask_epi8(hits));
    if (mask == 0) return nullptr;
    const int end = __builtin_ctz(mask);
    const CompiledDFDLStringLiteral* delimiter = set->sole[start[end]];
    if (delimiter == nullptr || delimiter->byteLength != 1) return nullptr;
    const auto notASCII = static_cast<uint32_t>(_mm_movemask_epi8(block)) & ((1U << end) - 1);
    const DFDLCharset* charset = charsetOf(run, plan);
    if (notASCII != 0 || charset == nullptr || charset->road != ROAD_ASCII) return nullptr;
    UChar* target = PlainTextRun_target(run->iterator, end);
    const __m128i zero = _mm_setzero_si128();
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target), _mm_unpacklo_epi8(block, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + 8), _mm_unpackhi_epi8(block, zero));
    PlainTextRun_deliverDecoded(run->iterator, plan, target, end, startBit);
    *length = end;
    return delimiter;
}

#else

const CompiledDFDLStringLiteral* takeShortField(Run*, const RowPlan&, const CompiledMarkupSet*,
                                                const uint8_t*, int64_t, int64_t*) {
    return nullptr;
}

#endif

// Takes one field. False, with nothing moved, if it needs the general road.
bool takeField(Run* run, const RowPlan& plan) {
    const CompiledMarkupSet* set = markupSetOf(*run, plan);
    if (set == nullptr || run->end - run->position <= run->separatorLength) return false;
    const uint8_t* start = run->position + run->separatorLength;
    const int64_t startByte = run->positionByte + run->separatorLength;
    int64_t length = 0;
    const CompiledDFDLStringLiteral* delimiter = set->sole[*start];
    if (delimiter != nullptr && delimiter->byteLength == 1) {
        if (!deliverEmpty(run, plan, 8 * startByte)) return false;
    } else if (delimiter = takeShortField(run, plan, set, start, 8 * startByte, &length);
               delimiter == nullptr) {
        const uint8_t* end = findDelimiter(set, start, run->end, &delimiter);
        if (end == nullptr) return false;
        length = end - start;
        if (!deliver(run, plan, start, length, 8 * startByte)) return false;
    }
    run->positionByte = startByte + length;
    run->position = start + length;
    run->delimiter = delimiter;
    run->separatorLength = delimiter->byteLength;
    return true;
}

bool isOwnSeparator(const CompiledDFDLStringLiteral* literal) {
    return literal->kind == MARKUP_SEPARATOR && literal->level == 1;
}

// What must be passed before the next field: nothing before the first, else the separator that was seen.
// False if something else stands here, or it is not known what.
bool findStart(Run* run) {
    const ContextItemForParser* group = run->group;
    if (group->firstMember != 0) return true;
    const MarkupInfo* markup = PIFIteratorForParser_getScannedMarkup(run->iterator);
    if (markup == nullptr || markup->row != group->row || markup->literal->kind != MARKUP_SEPARATOR)
        return false;
    run->separatorLength = static_cast<int32_t>(markup->length);
    return true;
}

Run startRun(PIFIteratorForParser* iterator, const ContextItemForParser* group) {
    const BufferManager* buffer = iterator->bufferManager;
    const uint8_t* position = BufferManager_peekBytes(buffer, 0);
    Run run{iterator, group, position, position, BufferManager_bytePosition(buffer), nullptr, 0, nullptr, -1};
    if (position == nullptr || buffer->charTrackerCount != 0) return run;
    int64_t loaded = DFDLByteBufferImpl_remaining(buffer->currentBuffer);
    if (buffer->bitLimit >= 1) loaded = std::min(loaded, (buffer->bitLimit - buffer->bitPosition) >> 3);
    run.end = position + std::max<int64_t>(loaded, 0);
    return run;
}

// Moves the walk to where the run stands, with the delimiter that was seen there.
void commit(const Run& run) {
    PIFIteratorForParser* iterator = run.iterator;
    BufferManager* buffer = iterator->bufferManager;
    const int64_t bytes = run.positionByte - BufferManager_bytePosition(buffer);
    buffer->currentBuffer->position += bytes;
    buffer->bitPosition += 8 * bytes;
    buffer->charPosition += bytes;
    const ContextItem* owner = run.group;
    for (int32_t level = run.delimiter->level; level > 1 && owner->parent != nullptr; --level)
        owner = owner->parent;
    iterator->markupInfo = {owner->row, run.delimiter, run.delimiter->byteLength};
    iterator->scannedMarkup = &iterator->markupInfo;
    iterator->scannedAt = run.positionByte;
}

}  // namespace

void PIFIteratorForParser_runPlainFields(PIFIteratorForParser* this_, ContextItemForParser* group) {
    if (this_->hiddenDepth != 0 || this_->eventBuffer->adapter == nullptr || group->scopeClosed != 0) return;
    Run run = startRun(this_, group);
    if (run.end == run.position || !findStart(&run)) return;
    const GroupMemberTableRow* first = PIFIteratorForParser_nextCandidate(this_, group);
    const GroupMemberTableRow* row = first;
    while (row != nullptr && takeField(&run, this_->plans[row->rowIndex])) {
        row = row->nextSibling;
        if (!isOwnSeparator(run.delimiter)) break;
    }
    if (row != first) {
        commit(run);
        group->firstMember = 0;
    }
    PlainTextRun_resumeAt(this_, group, row, row != first);
}
