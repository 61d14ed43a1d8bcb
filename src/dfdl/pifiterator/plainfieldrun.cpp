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
#include "dfdl/framework/linkedlistcompileddfdlstringliteral.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/plainrecordrun.h"
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
    int32_t delimiterLength;                     // bytes, to be passed before the next field
    DFDLCharset* charset;                        // of the last field
    int32_t encodingIndex;                       // of the charset

    int64_t bit() const { return 8 * positionByte; }
};

bool standsAt(const CompiledDFDLStringLiteral* literal, const uint8_t* bytes) {
    const auto* part = ArrayList_getPointer<CompiledStringPart>(literal->parts, 0);
    return std::equal(bytes, bytes + part->byteCount, part->exactBytes);
}

// The one byte that is a delimiter by itself, which nearly all of them are; null if it is none.
const CompiledDFDLStringLiteral* oneByteDelimiter(const CompiledMarkupSet* set, uint8_t byte) {
    const CompiledDFDLStringLiteral* literal = set->sole[byte];
    return literal != nullptr && literal->byteLength == 1 ? literal : nullptr;
}

// The bytes that a delimiter takes which is one class of characters and nothing more, such as %NL;. 0 if it
// is of another kind, does not stand here, or could go on beyond the bytes at hand.
int32_t lengthOfClass(const CompiledDFDLStringLiteral* literal, const uint8_t* bytes, const uint8_t* end) {
    if (ArrayList_size(literal->parts) != 1 || literal->byteLength > end - bytes) return 0;
    const auto* part = ArrayList_getPointer<CompiledStringPart>(literal->parts, 0);
    if (part->kind != COMPILED_CLASS || part->repeating || part->optional) return 0;
    for (int32_t i = 0; i < ArrayList_size(part->alternatives); ++i) {
        const auto* form = ArrayList_getPointer<MnemonicPart>(part->alternatives, i);
        if (std::equal(form->bytes, form->bytes + form->length, bytes)) return form->length;
    }
    return 0;
}

struct Delimiter {
    const CompiledDFDLStringLiteral* literal;  // null: none that can be told from the bytes alone
    int32_t length;                            // bytes
};

constexpr Delimiter UNKNOWN = {nullptr, 0};

// What begins at a byte that can begin a delimiter or an escape. `plain` is set if nothing does.
Delimiter delimiterAt(const CompiledMarkupSet* set, const uint8_t* at, const uint8_t* end, bool* plain) {
    const CompiledDFDLStringLiteral* literal = set->sole[*at];
    *plain = false;
    if (literal != nullptr) {
        if (literal->byteLength > end - at) return UNKNOWN;
        if (literal->byteLength == 1 || standsAt(literal, at)) return {literal, literal->byteLength};
        *plain = true;
        return UNKNOWN;
    }
    const LinkedListOfLiterals* list = set->lists[*at];
    *plain = list == nullptr;  // an escape, which the caller knows about
    if (list == nullptr || list->next != nullptr || set->usesEscapeCharacter) return UNKNOWN;
    const int32_t length = lengthOfClass(list->literal, at, end);
    return length > 0 ? Delimiter{list->literal, length} : UNKNOWN;
}

// Where the field's bytes end, as far as from a place within it on, if that can be told from the bytes alone:
// null if not, because an escape, a delimiter of varying form or the end of what is loaded comes first.
const uint8_t* findDelimiter(const CompiledMarkupSet* set, const uint8_t* start, const uint8_t* from,
                             const uint8_t* end, Delimiter* delimiter) {
    for (const uint8_t* at = from; at < end; ++at) {
        at += ByteFinder_find(&set->finder, at, end - at);
        if (at == end) return nullptr;
        bool plain = false;
        *delimiter = delimiterAt(set, at, end, &plain);
        if (delimiter->literal != nullptr) return at;
        const bool startsEscape = set->usesEscapeCharacter || (set->usesEscapeBlock && at == start);
        if (!plain || startsEscape) return nullptr;
    }
    return nullptr;
}

const CompiledMarkupSet* markupSetOf(const Run& run, const RowPlan& plan) {
    const bool known = plan.isPlainField != PLAIN_NONE && plan.memoParentSetId == run.group->markupSetId &&
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

// Both: false, with nothing done, if the field needs the general road.
bool deliverEmpty(const Run* run, const RowPlan& plan, EmptyField empty, int64_t startBit) {
    if (empty == EMPTY_IS_NIL)
        DocHandlerEventBuffer_plainText(run->iterator->eventBuffer, &plan.plainElement, nullptr, NIL_ELEMENT,
                                        startBit, startBit);
    return empty != EMPTY_IS_GENERAL;
}

bool deliver(Run* run, const RowPlan& plan, const uint8_t* bytes, int64_t length, int64_t startBit) {
    DFDLCharset* charset = charsetOf(run, plan);
    return charset != nullptr &&
           PlainTextRun_deliver(run->iterator, plan, charset, {bytes, length, run->end - bytes},
                                {startBit, startBit + 8 * length});
}

#if defined(__SSE2__)

// Most fields are shorter than a block: their end is found in one look at it. The
// delimiter that ends the field; null, with nothing done, if the field is not of this kind.
Delimiter takeShortField(Run* run, const RowPlan& plan, const CompiledMarkupSet* set, const uint8_t* start,
                         int64_t startBit, int64_t* length) {
    if (set->finder.distinct > MOST_VECTOR_BYTES || run->end - start < PLAIN_BLOCK) return UNKNOWN;
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(start));
    __m128i hits = _mm_cmpeq_epi8(block, _mm_set1_epi8(static_cast<char>(set->finder.wanted[0])));
    for (int i = 1; i < set->finder.distinct; ++i) {
        const __m128i wanted = _mm_set1_epi8(static_cast<char>(set->finder.wanted[i]));
        hits = _mm_or_si128(hits, _mm_cmpeq_epi8(block, wanted));
    }
    const auto mask = static_cast<uint32_t>(_mm_movemask_epi8(hits));
    if (mask == 0 || (mask & 1) != 0) return UNKNOWN;
    const int end = __builtin_ctz(mask);
    Delimiter delimiter = {oneByteDelimiter(set, start[end]), 1};
    bool plain = false;
    if (delimiter.literal == nullptr) delimiter = delimiterAt(set, start + end, run->end, &plain);
    if (delimiter.literal == nullptr) return UNKNOWN;
    *length = end;
    return deliver(run, plan, start, end, startBit) ? delimiter : UNKNOWN;
}

#else

Delimiter takeShortField(Run*, const RowPlan&, const CompiledMarkupSet*, const uint8_t*, int64_t, int64_t*) {
    return UNKNOWN;
}

#endif

// A block of the usual kind: each of its marks is one byte. Padding is trimmed before escapes are removed.
bool startsBlock(const CompiledMarkupSet* set, const RowPlan& plan, uint8_t first) {
    return set->usesEscapeBlock && set->blockStart.length == 1 && set->blockEnd.length == 1 &&
           set->escapeEscapeCharacter.length <= 1 && first == set->blockStart.bytes[0] &&
           plan.trim == TRIM_NONE && plan.textValue.row == nullptr;
}

// Whether an end of the block stands at a byte that is not the last, but is hidden.
bool isHiddenEnd(const CompiledMarkupSet* set, const uint8_t* at) {
    return set->escapeEscapeCharacter.length == 1 && at[0] == set->escapeEscapeCharacter.bytes[0] &&
           at[1] == set->blockEnd.bytes[0];
}

// The end of the block that begins at `start`; null if it cannot be told from the bytes alone.
const uint8_t* findBlockEnd(const CompiledMarkupSet* set, const uint8_t* start, const uint8_t* end) {
    for (const uint8_t* at = start + 1; at < end; ++at) {
        at += ByteFinder_find(&set->blockFinder, at, end - at);
        if (end - at < 2) return nullptr;
        if (isHiddenEnd(set, at)) {
            ++at;
        } else if (*at == set->blockEnd.bytes[0]) {
            return at;
        }
    }
    return nullptr;
}

// Removes the marks of a block from its decoded text, one unit for each byte. What stands behind it is kept.
int64_t removeMarks(const CompiledMarkupSet* set, const uint8_t* bytes, int64_t blockEnd, int64_t length,
                    UChar* text) {
    int64_t kept = 0;
    for (int64_t at = 1; at < blockEnd; ++at) {
        if (isHiddenEnd(set, bytes + at)) ++at;
        text[kept++] = text[at];
    }
    for (int64_t at = blockEnd + 1; at < length; ++at) text[kept++] = text[at];
    text[kept] = 0;
    return kept;
}

Delimiter takeBlock(Run* run, const RowPlan& plan, const CompiledMarkupSet* set, const uint8_t* start,
                    int64_t startBit, int64_t* length) {
    const uint8_t* blockEnd = findBlockEnd(set, start, run->end);
    if (blockEnd == nullptr) return UNKNOWN;
    Delimiter delimiter = UNKNOWN;
    const uint8_t* end = findDelimiter(set, start, blockEnd + 1, run->end, &delimiter);
    DFDLCharset* charset = charsetOf(run, plan);
    if (end == nullptr || end - start > MOST_PLAIN_TEXT || charset == nullptr) return UNKNOWN;
    *length = end - start;
    UChar* text = PlainTextRun_target(run->iterator, *length);
    if (!DFDLCharset_decodeDirectly(charset, start, *length, text)) return UNKNOWN;
    const int64_t kept = removeMarks(set, start, blockEnd - start, *length, text);
    DocHandlerEventBuffer_plainText(run->iterator->eventBuffer, &plan.plainElement, text,
                                    static_cast<int32_t>(kept), startBit, startBit + 8 * *length);
    return delimiter;
}

// Takes a field that starts with a byte that can begin a delimiter or an escape, or is no short one.
Delimiter takeOtherField(Run* run, const RowPlan& plan, const CompiledMarkupSet* set, EmptyField empty,
                         const uint8_t* start, int64_t startBit, int64_t* length) {
    if (startsBlock(set, plan, *start)) return takeBlock(run, plan, set, start, startBit, length);
    Delimiter delimiter = UNKNOWN;
    const uint8_t* end = findDelimiter(set, start, start, run->end, &delimiter);
    if (end == nullptr) return UNKNOWN;
    *length = end - start;
    const bool delivered = *length == 0 ? deliverEmpty(run, plan, empty, startBit)
                                        : deliver(run, plan, start, *length, startBit);
    return delivered ? delimiter : UNKNOWN;
}

// Takes one field. False, with nothing moved, if it needs the general road.
bool takeField(Run* run, const RowPlan& plan, EmptyField empty) {
    const CompiledMarkupSet* set = markupSetOf(*run, plan);
    if (set == nullptr || run->end - run->position <= run->delimiterLength) return false;
    const uint8_t* start = run->position + run->delimiterLength;
    const int64_t startByte = run->positionByte + run->delimiterLength;
    int64_t length = 0;
    Delimiter delimiter = {oneByteDelimiter(set, *start), 1};
    if (delimiter.literal != nullptr) {
        if (!deliverEmpty(run, plan, empty, 8 * startByte)) return false;
    } else {
        if (set->firstBytes[*start] == 0)
            delimiter = takeShortField(run, plan, set, start, 8 * startByte, &length);
        if (delimiter.literal == nullptr)
            delimiter = takeOtherField(run, plan, set, empty, start, 8 * startByte, &length);
        if (delimiter.literal == nullptr) return false;
    }
    run->positionByte = startByte + length;
    run->position = start + length;
    run->delimiter = delimiter.literal;
    run->delimiterLength = delimiter.length;
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
    run->delimiterLength = static_cast<int32_t>(markup->length);
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

void moveBuffer(const Run& run) {
    BufferManager* buffer = run.iterator->bufferManager;
    const int64_t bytes = run.positionByte - BufferManager_bytePosition(buffer);
    buffer->currentBuffer->position += bytes;
    buffer->bitPosition += 8 * bytes;
    buffer->charPosition += bytes;
}

// Moves the walk to where the run stands, with the delimiter that was seen there.
void commit(const Run& run) {
    PIFIteratorForParser* iterator = run.iterator;
    moveBuffer(run);
    const ContextItem* owner = run.group;
    for (int32_t level = run.delimiter->level; level > 1 && owner->parent != nullptr; --level)
        owner = owner->parent;
    iterator->markupInfo = {owner->row, run.delimiter, run.delimiterLength};
    iterator->scannedMarkup = &iterator->markupInfo;
    iterator->scannedAt = run.positionByte;
}

// Members that occur once each.
const GroupMemberTableRow* takeMembers(Run* run, const GroupMemberTableRow* row) {
    const RowPlan* plans = run->iterator->plans;
    while (row != nullptr && plans[row->rowIndex].isPlainField == PLAIN_SINGLE &&
           takeField(run, plans[row->rowIndex], plans[row->rowIndex].emptyField)) {
        row = row->nextSibling;
        if (!isOwnSeparator(run->delimiter)) break;
    }
    return row;
}

// Occurrences of an array; how many have been taken.
int32_t takeOccurrences(Run* run, ContextItemForParser* member) {
    const GroupMemberTableRow* row = member->row;
    const RowPlan& plan = *member->plan;
    int32_t taken = 0;
    while (member->occurrences < MAX_PLAIN_OCCURRENCES &&
           (row->effectiveMaxOccurs < 0 || member->occurrences < row->effectiveMaxOccurs)) {
        const EmptyField empty = plan.emptyField == EMPTY_IS_GENERAL && member->occurrences >= row->min_occurs
                                     ? EMPTY_IS_ABSENT
                                     : plan.emptyField;
        if (!takeField(run, plan, empty)) break;
        ContextItem_incrementOccurrences(member);
        ++taken;
        if (!isOwnSeparator(run->delimiter)) break;
    }
    return taken;
}

void runOccurrences(Run* run, ContextItemForParser* group, const GroupMemberTableRow* row) {
    PIFIteratorForParser* iterator = run->iterator;
    if (group->selectedChild == nullptr || group->selectedChild->row != row)
        ContextItemForParser_setOrderedChild(group, PIFIteratorForParser_createContextItem(iterator, row));
    ContextItemForParser* member = group->selectedChild;
    if (takeOccurrences(run, member) == 0) return PlainTextRun_resumeAt(iterator, group, row, false);
    // The general road asks anew whether the array goes on.
    member->emptyOccurrences = 0;
    group->firstMember = 0;
    commit(*run);
}

void runMembers(Run* run, ContextItemForParser* group, const GroupMemberTableRow* first) {
    const GroupMemberTableRow* row = takeMembers(run, first);
    if (row != first) {
        commit(*run);
        group->firstMember = 0;
    }
    PlainTextRun_resumeAt(run->iterator, group, row, row != first);
}

// The fields of a line and its terminator, which belongs to the element around the sequence.
bool takeLine(Run* line, const GroupMemberTableRow* first) {
    constexpr int32_t LEVEL_OF_ELEMENT = 2;
    line->delimiter = nullptr;
    line->delimiterLength = 0;
    if (takeMembers(line, first) != nullptr) return false;
    const CompiledDFDLStringLiteral* end = line->delimiter;
    if (end->kind != MARKUP_TERMINATOR || end->level != LEVEL_OF_ELEMENT) return false;
    line->position += line->delimiterLength;
    line->positionByte += line->delimiterLength;
    return true;
}

// An item for the sequence in the element, as the general road would open them.
ContextItemForParser* openSequence(PIFIteratorForParser* iterator, ContextItemForParser* member) {
    ContextItemForParser* sequence =
        PIFIteratorForParser_createContextItem(iterator, member->plan->recordModel);
    ContextItemForParser_setOrderedChild(member, sequence);
    ContextItemForParser_findMarkupSet(member);
    ContextItemForParser_findMarkupSet(sequence);
    return sequence;
}

}  // namespace

void PIFIteratorForParser_runPlainFields(PIFIteratorForParser* this_, ContextItemForParser* group) {
    if (this_->hiddenDepth != 0 || this_->eventBuffer->adapter == nullptr || group->scopeClosed != 0) return;
    Run run = startRun(this_, group);
    if (run.end == run.position || !findStart(&run)) return;
    const GroupMemberTableRow* first = PIFIteratorForParser_nextCandidate(this_, group);
    if (first != nullptr && this_->plans[first->rowIndex].isPlainField == PLAIN_ARRAY)
        return runOccurrences(&run, group, first);
    runMembers(&run, group, first);
}

void PIFIteratorForParser_runPlainLines(PIFIteratorForParser* this_, ContextItemForParser* group,
                                        const GroupMemberTableRow* row) {
    ContextItemForParser* member = PlainRecordRun_member(this_, group, row);
    Run run = startRun(this_, openSequence(this_, member));
    const GroupMemberTableRow* first = member->plan->recordMembers;
    int32_t taken = 0;
    // Before the general road has been here once, the delimiters are not known.
    if (markupSetOf(run, this_->plans[first->rowIndex]) != nullptr)
        taken = PlainRecordRun_takeAll(&run, member, [first](Run* line) { return takeLine(line, first); });
    ContextItemForParser_setOrderedChild(member, nullptr);
    if (taken > 0) moveBuffer(run);
    PlainRecordRun_leave(group, taken, run.bit());
}
