#ifndef DFDL_PIFITERATOR_PLAINRECORDRUN_H
#define DFDL_PIFITERATOR_PLAINRECORDRUN_H

#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "dfdl/pifiterator/plaintextrun.h"
#include "dfdl/pifiterator/rowplan.h"
#include "dfdl/processor/dochandlereventbuffer.h"

// Occurrences of a complex element whose members are all plain. Each is an attempt of the event buffer alone:
// what is taken before a member that needs the general road is undone, and that road takes the record from
// its start.
//
// A run has the iterator, `position` and `end` of the bytes at hand and tells the bit it stands at;
// `takeContent` takes what is inside of one record, and is false if it cannot take the whole of it.

// Attempts that are left out after one that has been in vain.
inline constexpr int32_t SPARED_RECORDS = 15;

template <class Run, class Content>
bool PlainRecordRun_take(Run* run, const GroupMemberTableRow* row, const Content& takeContent) {
    DocHandlerEventBuffer* events = run->iterator->eventBuffer;
    const PlainElement* element = &run->iterator->plans[row->rowIndex].plainElement;
    const Run start = *run;
    const DHRecordMark mark = DocHandlerEventBuffer_startRecord(events, element, run->bit());
    if (takeContent(run)) {
        DocHandlerEventBuffer_endRecord(events, element, run->bit());
        return true;
    }
    DocHandlerEventBuffer_dropRecord(events, mark);
    *run = start;
    return false;
}

// Takes as many records as there may be; how many.
template <class Run, class Content>
int32_t PlainRecordRun_takeAll(Run* run, ContextItemForParser* member, const Content& takeContent) {
    const GroupMemberTableRow* row = member->row;
    int32_t taken = 0;
    while (run->position < run->end && member->occurrences < MAX_PLAIN_OCCURRENCES &&
           (row->effectiveMaxOccurs < 0 || member->occurrences < row->effectiveMaxOccurs)) {
        const int64_t start = run->bit();
        if (!PlainRecordRun_take(run, row, takeContent)) {
            member->plan->sparedRecords = SPARED_RECORDS;
            break;
        }
        ContextItem_incrementOccurrences(member);
        member->occurrenceStart = start;
        ++taken;
    }
    return taken;
}

// The item that counts the records, the selected child of the group.
inline ContextItemForParser* PlainRecordRun_member(PIFIteratorForParser* iterator,
                                                   ContextItemForParser* group,
                                                   const GroupMemberTableRow* row) {
    if (group->selectedChild == nullptr || group->selectedChild->row != row)
        ContextItemForParser_setOrderedChild(group, PIFIteratorForParser_createContextItem(iterator, row));
    return group->selectedChild;
}

// Leaves the walk behind the records, where the general road asks anew whether the array goes on, or before
// the one that could not be taken.
inline void PlainRecordRun_leave(ContextItemForParser* group, int32_t taken, int64_t bit) {
    ContextItemForParser* member = group->selectedChild;
    if (taken == 0) return PlainTextRun_resumeAt(member->iterator, group, member->row, false);
    member->emptyOccurrences = 0;
    group->afterMember = bit;
}

#endif
