// The short road of members without separators between them.
#include <algorithm>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/plaintextrun.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

// Attempts that are left out after one that has been in vain.
constexpr int32_t SPARED_RECORDS = 15;

// The bytes at hand. The buffer is moved once, when the run ends.
struct Run {
    PIFIteratorForParser* iterator;
    const uint8_t* position;
    const uint8_t* end;
    int64_t bit;         // of the position, in the document
    int64_t characters;  // that have been counted: those of texts
};

// A member's bytes among them.
struct Field {
    const uint8_t* bytes;  // the content
    int64_t length;        // of the content
    BitRange place;        // with the prefix
};

// No scope may end within the bytes, and no count of characters be open.
Run startRun(PIFIteratorForParser* iterator) {
    const BufferManager* buffer = iterator->bufferManager;
    const uint8_t* position = BufferManager_peekBytes(buffer, 0);
    Run run{iterator, position, position, buffer->bitPosition, 0};
    if (position == nullptr || buffer->charTrackerCount != 0) return run;
    int64_t loaded = DFDLByteBufferImpl_remaining(buffer->currentBuffer);
    if (buffer->bitLimit >= 1) loaded = std::min(loaded, (buffer->bitLimit - buffer->bitPosition) >> 3);
    run.end = position + std::max<int64_t>(loaded, 0);
    return run;
}

void commit(const Run& run) {
    BufferManager* buffer = run.iterator->bufferManager;
    buffer->currentBuffer->position += (run.bit - buffer->bitPosition) >> 3;
    buffer->bitPosition = run.bit;
    buffer->charPosition += run.characters;
}

// The length of content behind a prefix; 0 if the general road has to look at it.
int64_t readLength(const Run& run, const PlainMember& member) {
    int64_t length = 0;
    if (run.end - run.position < member.prefix.bytes ||
        !PlainNumber_read(&member.prefix, run.position, &length)) {
        return 0;
    }
    return member.prefixIncludesItself ? length - member.prefix.bytes : length;
}

bool findField(const Run& run, const RowPlan& plan, Field* field) {
    const PlainMember& member = plan.plainMember;
    const bool prefixed = member.prefix.form != PLAIN_FORM_NONE;
    const int64_t prefix = prefixed ? member.prefix.bytes : 0;
    field->length = prefixed ? readLength(run, member) : plan.length;
    if (field->length < 1 || field->length > run.end - run.position - prefix) return false;
    field->bytes = run.position + prefix;
    field->place = {run.bit, run.bit + 8 * (prefix + field->length)};
    return true;
}

// All: false, with nothing delivered, if the content needs the general road.
bool deliverText(Run* run, const RowPlan& plan, const Field& field) {
    DFDLCharset* charset = PlainTextRun_useEncoding(run->iterator->bufferManager, plan);
    if (charset == nullptr ||
        !PlainTextRun_deliver(run->iterator, plan, charset,
                              {field.bytes, field.length, run->end - field.bytes}, field.place)) {
        return false;
    }
    run->characters += field.length;
    return true;
}

bool deliverOpaque(const Run& run, const RowPlan& plan, const Field& field) {
    DocHandlerEventBuffer* events = run.iterator->eventBuffer;
    if (DocHandlerEventBuffer_holds(events)) return false;
    DocHandlerAdapter_plainBytes(events->adapter, &plan.plainElement, field.bytes, field.length,
                                 field.place.start, field.place.end);
    return true;
}

bool deliverWord(const Run& run, const RowPlan& plan, const Field& field) {
    int64_t word = 0;
    if (!PlainNumber_read(&plan.plainMember.number, field.bytes, &word)) return false;
    DocHandlerEventBuffer_plainWord(run.iterator->eventBuffer, &plan.plainElement, word, field.place.start,
                                    field.place.end);
    return true;
}

bool deliver(Run* run, const RowPlan& plan, const Field& field) {
    switch (plan.plainMember.content) {
        case PLAIN_TEXT:
            return deliverText(run, plan, field);
        case PLAIN_WORD:
            return deliverWord(*run, plan, field);
        case PLAIN_OPAQUE:
            return deliverOpaque(*run, plan, field);
        default:
            return false;
    }
}

// False, with nothing moved, if the member needs the general road.
bool takeMember(Run* run, const RowPlan& plan) {
    Field field;
    if (!findField(*run, plan, &field) || !deliver(run, plan, field)) return false;
    run->position = field.bytes + field.length;
    run->bit = field.place.end;
    return true;
}

// Takes members from the row on; the first that is left, null if there is none.
const GroupMemberTableRow* takeMembers(Run* run, const GroupMemberTableRow* row) {
    const RowPlan* plans = run->iterator->plans;
    while (row != nullptr) {
        const RowPlan& plan = plans[row->rowIndex];
        if (plan.plainMember.content == PLAIN_NO_CONTENT || !takeMember(run, plan)) break;
        row = row->nextSibling;
    }
    return row;
}

// Takes one record, or nothing: what has been taken before a member that needs the general road is undone.
bool takeRecord(Run* run, const GroupMemberTableRow* row, const GroupMemberTableRow* firstMember) {
    DocHandlerEventBuffer* events = run->iterator->eventBuffer;
    const ElementTableRow* element = row->elementRow;
    const Run start = *run;
    DHCheckPoint* attempt = DocHandlerEventBuffer_getCheckPoint(events);
    DocHandlerEventBuffer_startElement(events, element->element_id, element->name, element->namespaceId,
                                       element->namespace_, row->scdText, run->bit);
    const bool whole = takeMembers(run, firstMember) == nullptr;
    if (whole) {
        DocHandlerEventBuffer_endElement(events, run->bit);
    } else {
        DocHandlerEventBuffer_restoreToCheckPoint(events, attempt);
        *run = start;
    }
    DocHandlerEventBuffer_releaseCheckPoint(events, attempt);
    return whole;
}

// How many records have been taken.
int32_t takeRecords(Run* run, ContextItemForParser* member) {
    const GroupMemberTableRow* row = member->row;
    int32_t taken = 0;
    while (run->position < run->end && member->occurrences < MAX_PLAIN_OCCURRENCES &&
           (row->effectiveMaxOccurs < 0 || member->occurrences < row->effectiveMaxOccurs)) {
        const int64_t start = run->bit;
        if (!takeRecord(run, row, member->plan->recordMembers)) {
            member->plan->sparedRecords = SPARED_RECORDS;
            break;
        }
        ContextItem_incrementOccurrences(member);
        member->occurrenceStart = start;
        ++taken;
    }
    return taken;
}

void runRecords(Run* run, ContextItemForParser* group, const GroupMemberTableRow* row) {
    PIFIteratorForParser* iterator = run->iterator;
    if (group->selectedChild == nullptr || group->selectedChild->row != row)
        ContextItemForParser_setOrderedChild(group, PIFIteratorForParser_createContextItem(iterator, row));
    ContextItemForParser* member = group->selectedChild;
    if (takeRecords(run, member) == 0) return PlainTextRun_resumeAt(iterator, group, row, false);
    // The general road asks anew whether the array goes on.
    commit(*run);
    member->emptyOccurrences = 0;
    group->afterMember = run->bit;
}

// Records that are seldom plain are tried seldom.
bool isWorthTrying(RowPlan* plan) {
    if (plan->recordMembers == nullptr) return false;
    if (plan->sparedRecords == 0) return true;
    --plan->sparedRecords;
    return false;
}

}  // namespace

void PIFIteratorForParser_runPlainMembers(PIFIteratorForParser* this_, ContextItemForParser* group) {
    if (this_->hiddenDepth != 0 || this_->eventBuffer->adapter == nullptr) return;
    const GroupMemberTableRow* first = PIFIteratorForParser_nextCandidate(this_, group);
    Run run = startRun(this_);
    if (first != nullptr && isWorthTrying(&this_->plans[first->rowIndex]))
        return runRecords(&run, group, first);
    const GroupMemberTableRow* row = takeMembers(&run, first);
    if (row != first) commit(run);
    PlainTextRun_resumeAt(this_, group, row, row != first);
}
