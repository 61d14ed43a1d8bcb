#ifndef DFDL_PIFITERATOR_CONTEXTITEM_H
#define DFDL_PIFITERATOR_CONTEXTITEM_H

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct Context;
struct DFDLConstants;
struct DFDLUString;
struct GroupMemberTableRow;

// A frame of a walk along the grammar: one open element or group. One item serves all occurrences of its
// member. The parser's and the serializer's items extend it.
struct ContextItem {
    DFDLHeapAdapter* heap;
    Context* context;
    DFDLConstants* constants;
    const GroupMemberTableRow* row;
    int32_t occurrences;  // opened so far
    ContextItem* parent;
    ContextItem* child;           // the item pushed above this one
    int64_t occurrenceStart;      // bits; where the last occurrence started, for the test of progress
    int64_t afterMember;          // bits; group: behind the last member
    int64_t representationStart;  // bits
    int64_t representationEnd;    // bits
    int64_t contentStart;         // bytes, simple content
    int64_t contentEnd;           // bytes
    DFDLUString* xpath;           // made when asked for; dropped when occurrences or parent change
    int32_t effectiveMinOccurs;
    int32_t effectiveMaxOccurs;  // -1 unbounded
    int64_t imposedLength;       // of the scope that this item imposed; -1 none
};

void ContextItem_setValues(ContextItem* this_, Context* context, DFDLConstants* constants,
                           const GroupMemberTableRow* row);
void ContextItem_setParent(ContextItem* this_, ContextItem* parent);
void ContextItem_setChild(ContextItem* this_, ContextItem* child);
void ContextItem_dropXPath(ContextItem* this_);
void ContextItem_incrementOccurrences(ContextItem* this_);
void ContextItem_decrementOccurrences(ContextItem* this_);

bool ContextItem_isElement(const ContextItem* this_);
bool ContextItem_isGroup(const ContextItem* this_);
bool ContextItem_isSimpleElement(const ContextItem* this_);
bool ContextItem_isComplexElement(const ContextItem* this_);
// The nearest item at or below this one that is an element; null if there is none.
const ContextItem* ContextItem_getEnclosingElement(const ContextItem* this_);
const GroupMemberTableRow* ContextItem_getNextRequiredOccurrence(const ContextItem* this_);
const GroupMemberTableRow* ContextItem_getNextBoundedOccurrence(const ContextItem* this_);
// Whether `count` occurrences stay within the row's bound.
bool ContextItem_checkMaxOccursWithRow(const ContextItem* this_, const GroupMemberTableRow* row,
                                       int32_t count);

int64_t ContextItem_getRepresentationLength(const ContextItem* this_);  // bits
int64_t ContextItem_getContentLength(const ContextItem* this_);         // bytes

// The path of the present occurrence, such as /root[1]/record[3]; owned by the item.
const DFDLUString* ContextItem_getXPath(ContextItem* this_);
DFDLUString* ContextItem_getXPathStepExpression(const ContextItem* this_);  // pooled, the caller's
// "namespace:name", or the name alone; pooled, the caller's.
DFDLUString* ContextItem_toString(const ContextItem* this_);

#endif
