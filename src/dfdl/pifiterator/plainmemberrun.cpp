// The short road of members without separators between them.
#include <algorithm>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/pif/elementtable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/plainrecordrun.h"
#include "dfdl/pifiterator/plaintextrun.h"
#include "dfdl/processor/dochandlereventbuffer.h"

namespace {

// The bytes at hand. The buffer is moved once, when the run ends.
struct Run {
    PIFIteratorForParser* iterator;
    const uint8_t* position;
    const uint8_t* end;
    int64_t bitPosition;  // in the document
    int64_t characters;   // that have been counted: those of texts

    int64_t bit() const { return bitPosition; }
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
    buffer->currentBuffer->position += (run.bitPosition - buffer->bitPosition) >> 3;
    buffer->bitPosition = run.bitPosition;
    buffer->charPosition += run.characters;
}

// The length of content behind a prefix; 0 if the general road has to look at it.
int64_t readLength(const Run& run, const PlainMember& member) {
    int64_t length = 0;
    if (run.end - run.position < member.prefix.bytes ||
        !PlainNumber_read(&member.prefix, run.position, &length)) {
        return 0;
    }
    return member.prefixIncludesItself && length > 0 ? length - member.prefix.bytes : length;
}

bool findField(const Run& run, const RowPlan& plan, Field* field) {
    const PlainMember& member = plan.plainMember;
    const bool prefixed = member.prefix.form != PLAIN_FORM_NONE;
    const int64_t prefix = prefixed ? member.prefix.bytes : 0;
    field->length = prefixed ? readLength(run, member) : plan.length;
    if (field->length < 1 || field->length > run.end - run.position - prefix) return false;
    field->bytes = run.position + prefix;
    field->place = {run.bitPosition, run.bitPosition + 8 * (prefix + field->length)};
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
    DocHandlerEventBuffer_plainWord(run.iterator->eventBuffer, &plan.plainElement,
                                    {word, plan.plainMember.number.places}, field.place.start,
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
    run->bitPosition = field.place.end;
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

void runRecords(Run* run, ContextItemForParser* group, const GroupMemberTableRow* row) {
    ContextItemForParser* member = PlainRecordRun_member(run->iterator, group, row);
    const GroupMemberTableRow* first = member->plan->recordMembers;
    const int32_t taken = PlainRecordRun_takeAll(
        run, member, [first](Run* record) { return takeMembers(record, first) == nullptr; });
    if (taken > 0) commit(*run);
    PlainRecordRun_leave(group, taken, run->bitPosition);
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
    if (first != nullptr && isWorthTrying(&this_->plans[first->rowIndex])) {
        if (this_->plans[first->rowIndex].recordModel != nullptr)
            return PIFIteratorForParser_runPlainLines(this_, group, first);
        return runRecords(&run, group, first);
    }
    const GroupMemberTableRow* row = takeMembers(&run, first);
    if (row != first) commit(run);
    PlainTextRun_resumeAt(this_, group, row, row != first);
}
