#ifndef DFDL_PIFITERATOR_CONTEXTITEMFORPARSER_H
#define DFDL_PIFITERATOR_CONTEXTITEMFORPARSER_H

#include <cstdint>

#include "dfdl/pifiterator/contextitem.h"

struct BacktrackingCheckPoint;
struct ContextItemForParser;
struct DFDLValue;
struct PIFIteratorForParser;
struct ProcessingError;
struct RowPlan;
struct UnorderedMembers;

enum ContextItemKind : uint32_t {
    ITEM_SIMPLE_ELEMENT = 0,
    ITEM_COMPLEX_ELEMENT = 1,
    ITEM_SEQUENCE = 2,
    ITEM_CHOICE = 3,
    ITEM_UNORDERED = 4,
    ITEM_KIND_COUNT = 5
};

// What the next step of an item is to do.
enum StepState : uint32_t {
    STEP_OPEN = 0,
    STEP_BEFORE_MEMBER = 2,
    STEP_PUSH_MEMBER = 3,
    STEP_AFTER_MEMBER = 4,
    STEP_CLOSE = 5
};

// Readings that the content of an occurrence can still have.
enum PossibleContent : uint32_t { CONTENT_VALUE = 1, CONTENT_EMPTY = 2, CONTENT_NIL = 4, CONTENT_ANY = 15 };

// How an item of one kind works; one table per kind.
struct ContextItemFunctions {
    // Runs the item, which is on top of the stack, until it has been popped.
    void (*processAll)(ContextItemForParser* item);
    void (*processNext)(ContextItemForParser* item);  // one step
    const GroupMemberTableRow* (*getNextSiblingToParse)(ContextItemForParser* item);
    void (*state_open)(ContextItemForParser* item);
    void (*state_processContent)(ContextItemForParser* item);
    void (*state_close)(ContextItemForParser* item);
    void (*state_beforeGroupMember)(ContextItemForParser* item);
    void (*state_afterGroupMember)(ContextItemForParser* item);
};

// An open element or group of a parse. A popped item stays its parent's selectedChild, so that the parent can
// see how it ended, until the parent selects another.
struct ContextItemForParser : ContextItem {
    PIFIteratorForParser* iterator;
    ContextItemForParser* selectedChild;  // owned; pushed only after it has been selected
    BacktrackingCheckPoint* checkPoint;   // the open point of uncertainty
    uint32_t possibleContent;             // PossibleContent bits
    DFDLValue* value;
    int32_t markupSetId;                   // delimiters in scope; -1 none
    uint32_t firstMember;                  // group: the next member takes no infix separator
    int64_t lastSeparatorBytePosition;     // -1 none yet
    uint32_t scopeClosed;                  // group: nothing may follow, an enclosing delimiter was seen
    uint32_t initiatorMissing;             // looked for and not found
    UnorderedMembers* unordered;           // unordered group: what its members have come to so far
    int32_t emptyOccurrences;              // of the last occurrences, how many took nothing from the data
    uint32_t succeeded;                    // cleared when the occurrence fails or is absent
    ProcessingError* retainedError;        // a failed child's error, kept in the context's standby record
    const GroupMemberTableRow* resumeRow;  // group: the next member, where hasResumeRow is set
    uint32_t hasResumeRow;                 // the short road has gone beyond selectedChild
    uint32_t state;                        // StepState
    uint32_t kind;                         // ContextItemKind
    const ContextItemFunctions* functions;
    RowPlan* plan;
};

// From the engine's pool, ready to be opened.
ContextItemForParser* ContextItemForParserPooler_getContextItemForParser(PIFIteratorForParser* iterator,
                                                                         const GroupMemberTableRow* row,
                                                                         uint32_t kind);
// Back to the pool; null is ignored.
void ContextItemForParserPooler_releaseContextItemForParser(ContextItemForParser* item);

void ContextItemForParser_init(ContextItemForParser* this_, uint32_t kind);
// Readies the item for another occurrence; occurrences stay.
void ContextItemForParser_resetForOccurrence(ContextItemForParser* this_);
// Replaces the selected child; the old one goes back to the pool.
void ContextItemForParser_setOrderedChild(ContextItemForParser* this_, ContextItemForParser* child);
// No further member of the group: its next step closes it.
void ContextItemForParser_endGroup(ContextItemForParser* this_);
const GroupMemberTableRow* ContextItemForParser_firstMemberRow(
    const ContextItemForParser* this_);  // may be null
// Ends what an occurrence may have left open.
void ContextItemForParser_close(ContextItemForParser* this_);
// Gives back what an unordered group holds; its events, unless they have been flushed, are lost.
void ContextItemForParser_releaseUnorderedMembers(ContextItemForParser* this_);
// The set of delimiters in scope, from the parent's and the item's own markup.
void ContextItemForParser_findMarkupSet(ContextItemForParser* this_);
// Opens the item's point of uncertainty, or moves it here if it is open.
void ContextItemForParser_createCheckPoint(ContextItemForParser* this_);
// Decides it: what has been parsed since stands.
void ContextItemForParser_releaseCheckPoint(ContextItemForParser* this_);
// Ends the item after a failure that stands in the current error record, and leaves the failure with its
// parent, or current again if there is no parent. The item is popped.
void ContextItemForParser_state_backtrack(ContextItemForParser* this_);
void ContextItemForParser_handleProcessingError(ContextItemForParser* this_);

void ContextItemForParser_runUntilPopped(ContextItemForParser* this_);
void ContextItemForParser_simpleElement_processNext(ContextItemForParser* this_);
void ContextItemForParser_complexElement_processNext(ContextItemForParser* this_);
void ContextItemForParser_sequenceGroup_processNext(ContextItemForParser* this_);
void ContextItemForParser_unorderedGroup_state_beforeGroupMember(ContextItemForParser* this_);
void ContextItemForParser_unorderedGroup_state_afterGroupMember(ContextItemForParser* this_);
void ContextItemForParser_unorderedGroup_state_close(ContextItemForParser* this_);
const GroupMemberTableRow* ContextItemForParser_default_getNextSiblingToParse(ContextItemForParser* this_);

#endif
