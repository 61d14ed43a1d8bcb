#ifndef DFDL_PIFITERATOR_PIFITERATORFORPARSER_H
#define DFDL_PIFITERATOR_PIFITERATORFORPARSER_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlheapadapter.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/markupinfo.h"
#include "dfdl/pifiterator/contextitemforparser.h"
#include "dfdl/pifiterator/rowplan.h"

struct BacktrackingManager;
struct BufferManager;
struct CharsetManager;
struct Context;
struct DFDLConstants;
struct DFDLParserImpl;
struct DFDLRegionHandlerImpl;
struct DFDLUString;
struct DFDLValue;
struct DelimitedScannerBytes;
struct DocHandlerEventBuffer;
struct GroupMemberTableRow;
struct ParserRegionHandler;
struct PIForParserCheckPoint;
struct TraceHandlerAdapter;
struct VariableManager;
struct sPIF;

// Items that may be open at once. A grammar that refers to itself without consuming data would otherwise
// nest until memory ends.
inline constexpr int32_t MAX_STACK_DEPTH = 20000;
// Occurrences of one member that may follow each other without taking anything from the data.
inline constexpr int32_t MAX_EMPTY_OCCURRENCES = 1000000;

// Walks the grammar over the data with a stack of context items, one per open element or group. Each item
// works in steps; a step leaves no failure in the current error record unless the walk is over.
// Belongs to its parser and lives as long.
struct PIFIteratorForParser {
    DFDLHeapAdapter* heap;
    DFDLHeapAdapter* messageHeap;
    Context* context;
    const sPIF* pif;
    DFDLConstants* constants;
    DocHandlerEventBuffer* eventBuffer;  // where events go at present
    ContextItemForParser* rootItem;
    ContextItemForParser* currentItem;  // top of the stack; null when the walk is over
    BufferManager* bufferManager;
    ParserRegionHandler* parserRegionHandler;
    VariableManager* variableManager;
    BacktrackingManager* backtrackingManager;
    DFDLRegionHandlerImpl* userRegionHandler;  // region events are made only if it is there
    TraceHandlerAdapter* traceAdapter;
    CharsetManager* charsetManager;
    DelimitedScannerBytes* delimitedScanner;
    MarkupInfo markupInfo;            // what scannedMarkup points to
    const MarkupInfo* scannedMarkup;  // seen ahead and not consumed; null: nothing
    int64_t scannedAt;                // byte where it stands
    int32_t stackDepth;
    int32_t hiddenDepth;  // open hidden groups
    DFDLParserImpl* parser;
    DFDLUString* extractedText;
    uint8_t* extractedBytes;  // a block of the buffer manager
    int64_t extractedByteCount;
    DFDLUString* rootName;  // of the last root element that was set
    DFDLUString* rootNamespace;
    const GroupMemberTableRow* rootRow;
    RowPlan* plans;  // by row index of the group members
    int32_t planCount;
    uint32_t validationEnabled;
    // The whole message is wanted and nobody looks at regions, trace or facets, so that members may be parsed
    // without items of their own.
    uint32_t runsAhead;
    UChar plainText[MOST_PLAIN_TEXT + PLAIN_BLOCK];  // scratch of the short road
};

PIFIteratorForParser* new_PIFIteratorForParser(DFDLParserImpl* parser, DFDLConstants* constants);
void delete_PIFIteratorForParser(PIFIteratorForParser* this_);
void PIFIteratorForParser_setPIF(PIFIteratorForParser* this_, const sPIF* pif);  // null: none any more
inline const sPIF* PIFIteratorForParser_getPIF(const PIFIteratorForParser* this_) { return this_->pif; }
// Puts an item of the root element on the empty stack; false if the grammar has no such global element.
bool PIFIteratorForParser_setRootElement(PIFIteratorForParser* this_, const DFDLUString* name,
                                         const DFDLUString* namespaceUri);
void PIFIteratorForParser_reset(PIFIteratorForParser* this_);

// One step; true when the walk is over.
bool PIFIteratorForParser_move(PIFIteratorForParser* this_);
const GroupMemberTableRow* PIFIteratorForParser_getPosition(const PIFIteratorForParser* this_);
const DFDLUString* PIFIteratorForParser_getXPath(PIFIteratorForParser* this_);  // null without a position

inline bool PIFIteratorForParser_hasFailed(const PIFIteratorForParser* this_) {
    return ProcessingError_isSet(this_->context->currentError);
}
// Whether everything in the innermost scope, or in the document, has been read. What the input still has is
// loaded first, so that input in pieces and input in one piece end at the same place.
bool PIFIteratorForParser_isScopeExhausted(PIFIteratorForParser* this_);
bool PIFIteratorForParser_isDataExhausted(PIFIteratorForParser* this_);
// If data are left but the scope is at its end, raises that the enclosing structure is too short; true then.
bool PIFIteratorForParser_raiseEndOfScope(PIFIteratorForParser* this_, const GroupMemberTableRow* row);

// The item's path, for a processing error that it raises. Null below an open point of uncertainty, unless
// somebody listens: the failure is undone there, and a path that nobody reads would cost more with each level
// of nesting.
const DFDLUString* PIFIteratorForParser_getPathForError(PIFIteratorForParser* this_,
                                                        ContextItemForParser* item);
// Raises that the walk would go on without the data.
void PIFIteratorForParser_raiseEndless(PIFIteratorForParser* this_, const GroupMemberTableRow* row);

// The delimiter that stands at the present position, if one has been seen; null if not.
inline const MarkupInfo* PIFIteratorForParser_getScannedMarkup(const PIFIteratorForParser* this_) {
    const bool here = this_->scannedAt == BufferManager_bytePosition(this_->bufferManager);
    return here ? this_->scannedMarkup : nullptr;
}
inline void PIFIteratorForParser_forgetScannedMarkup(PIFIteratorForParser* this_) {
    this_->scannedMarkup = nullptr;
}
// Where the scope that made the scanner see the end of the data is gone, there is no such end.
void PIFIteratorForParser_forgetEndOfData(PIFIteratorForParser* this_);
// What the scanner has seen, with the row that owns the delimiter.
void PIFIteratorForParser_setScannedMarkup(PIFIteratorForParser* this_, const GroupMemberTableRow* row,
                                           const CompiledDFDLStringLiteral* literal, int64_t length);
// The owner is the item that lies `level` steps below the top, for the end of the data the root.
void PIFIteratorForParser_setScannedMarkupWithLevel(PIFIteratorForParser* this_, int32_t level,
                                                    const CompiledDFDLStringLiteral* literal, int64_t length);

// What an attempt may change of the walk itself.
void PIFIteratorForParser_getCheckPoint(const PIFIteratorForParser* this_, PIForParserCheckPoint* checkPoint);
void PIFIteratorForParser_restoreToCheckPoint(PIFIteratorForParser* this_,
                                              const PIForParserCheckPoint* checkPoint);

// The stack.
void PIFIteratorForParser_push(PIFIteratorForParser* this_, ContextItemForParser* item);
void PIFIteratorForParser_pop(PIFIteratorForParser* this_);
void PIFIteratorForParser_collapseStack(PIFIteratorForParser* this_);
// Null with an error if no item can be made of the row.
ContextItemForParser* PIFIteratorForParser_createContextItem(PIFIteratorForParser* this_,
                                                             const GroupMemberTableRow* row);
// Removes the scope that the item imposed, without consuming what is left of it.
void PIFIteratorForParser_releaseBufferLimits(PIFIteratorForParser* this_, ContextItemForParser* item);

// Elements.
void PIFIteratorForParser_SimpleElement_open(PIFIteratorForParser* this_, ContextItemForParser* item);
void PIFIteratorForParser_ComplexElement_open(PIFIteratorForParser* this_, ContextItemForParser* item);
void PIFIteratorForParser_ComplexElement_close(PIFIteratorForParser* this_, ContextItemForParser* item);

// Delimiters.
// Finds the item's initiator, or decides what its absence leaves possible. False with an error.
bool PIFIteratorForParser_processElementInitiatorRegion(PIFIteratorForParser* this_,
                                                        ContextItemForParser* item);
void PIFIteratorForParser_raiseMissingInitiator(PIFIteratorForParser* this_, ContextItemForParser* item);
// The same of a row that is part of the item without an item of its own.
void PIFIteratorForParser_raiseMissingInitiatorOf(PIFIteratorForParser* this_, ContextItemForParser* item,
                                                  const GroupMemberTableRow* row);
bool PIFIteratorForParser_processTerminatorRegion(PIFIteratorForParser* this_, ContextItemForParser* item);
// Decides an enclosing point of uncertainty where a found initiator does so.
void PIFIteratorForParser_resolveInitiatedPOI(PIFIteratorForParser* this_, ContextItemForParser* item);
// Moves over a delimiter that stands here. Reads it as text where a limit counts characters.
bool PIFIteratorForParser_consumeMarkup(PIFIteratorForParser* this_, const GroupMemberTableRow* row,
                                        const CompiledDFDLStringLiteral* literal, int64_t length);
// One separator; without one the group may end here, or an error is left.
void PIFIteratorForParser_group_processSeparator(PIFIteratorForParser* this_, ContextItemForParser* group);
bool PIFIteratorForParser_STATE_CHECK_UNEXPECTED_SEPARATOR(PIFIteratorForParser* this_,
                                                           ContextItemForParser* group);

// Groups.
void PIFIteratorForParser_group_open(PIFIteratorForParser* this_, ContextItemForParser* group);
// A group that has been opened is open no longer, whether it has been closed or has failed.
void PIFIteratorForParser_leaveHidden(PIFIteratorForParser* this_, const ContextItemForParser* group);
void PIFIteratorForParser_group_selectNextSequenceMember(PIFIteratorForParser* this_,
                                                         ContextItemForParser* group);
void PIFIteratorForParser_group_selectNextUnorderedMember(PIFIteratorForParser* this_,
                                                          ContextItemForParser* group);
void PIFIteratorForParser_group_beforeGroupMember(PIFIteratorForParser* this_, ContextItemForParser* group);
void PIFIteratorForParser_group_afterGroupMember(PIFIteratorForParser* this_, ContextItemForParser* group);
void PIFIteratorForParser_group_close(PIFIteratorForParser* this_, ContextItemForParser* group);
// The group's point of uncertainty: opened before a member that may be absent, decided, or put back to, which
// undoes what has been parsed since.
void PIFIteratorForParser_STATE_TAKE_CHECKPOINT(PIFIteratorForParser* this_, ContextItemForParser* group);
void PIFIteratorForParser_STATE_RELEASE_CHECKPOINT(PIFIteratorForParser* this_, ContextItemForParser* group);
void PIFIteratorForParser_STATE_BACKTRACK_TO_CHECKPOINT(PIFIteratorForParser* this_,
                                                        ContextItemForParser* group);
// Delivers a validation error at once; the parse goes on.
void PIFIteratorForParser_reportValidationError(PIFIteratorForParser* this_, const char* key,
                                                const GroupMemberTableRow* row, int32_t bound, int32_t count);
// Events go into the buffer from now on, or into the one behind it again.
void PIFIteratorForParser_setDocHandlerProxy(PIFIteratorForParser* this_, DocHandlerEventBuffer* buffer);
void PIFIteratorForParser_removeDocHandlerProxy(PIFIteratorForParser* this_);
bool PIFIteratorForParser_endOfArray(PIFIteratorForParser* this_, ContextItemForParser* group);

// The member that the group would select next; null if there is none.
const GroupMemberTableRow* PIFIteratorForParser_nextCandidate(PIFIteratorForParser* this_,
                                                              ContextItemForParser* group);
// The short road: parses the members that come next as long as they are plain and lie in the current buffer,
// the texts among them without need of a converter. What it leaves, the general road takes up. Both deliver
// the same.
void PIFIteratorForParser_runPlainMembers(PIFIteratorForParser* this_, ContextItemForParser* group);
// The same for delimited texts with infix separators between them.
void PIFIteratorForParser_runPlainFields(PIFIteratorForParser* this_, ContextItemForParser* group);
// The same for occurrences of a complex element that is made of such texts and ends with a terminator.
void PIFIteratorForParser_runPlainLines(PIFIteratorForParser* this_, ContextItemForParser* group,
                                        const GroupMemberTableRow* row);

// Representation.
bool PIFIteratorForParser_processSimpleElementRepresentation(PIFIteratorForParser* this_,
                                                             ContextItemForParser* item);
// 1 with *length; 0 with an error; -1 for a row without a length kind, with an error.
int32_t PIFIteratorForParser_calculateElementLength(PIFIteratorForParser* this_,
                                                    const GroupMemberTableRow* row,
                                                    ContextItemForParser* item, int64_t* length);
bool PIFIteratorForParser_ComplexElement_precalculateLength(PIFIteratorForParser* this_,
                                                            ContextItemForParser* item);
bool PIFIteratorForParser_STATE_SET_LENGTH_FROM_EXPLICIT_LENGTH(PIFIteratorForParser* this_,
                                                                ContextItemForParser* group);
// Leaves extractedText, the caller's to hand on or to release.
bool PIFIteratorForParser_extractTextRepresentation(PIFIteratorForParser* this_, ContextItemForParser* item,
                                                    int64_t length);
// The same with extractedBytes.
bool PIFIteratorForParser_extractBinaryRepresentation(PIFIteratorForParser* this_, ContextItemForParser* item,
                                                      int64_t length);
// The length that the field before the content gives, which is consumed. False with an error, or if the field
// has a terminator.
bool PIFIteratorForParser_calculatePrefixedLength(PIFIteratorForParser* this_, const GroupMemberTableRow* row,
                                                  ContextItemForParser* item, int64_t* length);
bool PIFIteratorForParser_processZeroLengthSimpleContent(PIFIteratorForParser* this_,
                                                         ContextItemForParser* item);
// Whether the literal nil is %ES; too, which zero bytes are.
bool PIFIteratorForParser_isEmptyStringNil(const GroupMemberTableRow* row);
// Whether a field is nil by its literals. It lies between the positions of the two marks, `leading`
// characters or bytes of padding first; afterwards the position is that of `end` again.
struct NilField {
    DFDLBufferMarker* start;
    DFDLBufferMarker* end;
    int64_t leading;     // characters of padding, or bytes where trim is TRIM_BYTE
    int64_t characters;  // kept, where trim is TRIM_CHARACTER
    int64_t bytes;       // kept, otherwise
};
bool PIFIteratorForParser_checkNilLiteralValues(PIFIteratorForParser* this_, ContextItemForParser* item,
                                                const NilField& field);
// Whether the content, which begins here, is made of nothing but the nil character; the position stays.
bool PIFIteratorForParser_checkNilLiteralCharacter(PIFIteratorForParser* this_, ContextItemForParser* item,
                                                   int64_t bytes);
// A literal that is found is all that the content can be; one that is not cannot be it any more.
bool PIFIteratorForParser_decideNil(PIFIteratorForParser* this_, ContextItemForParser* item, bool found);
bool PIFIteratorForParser_checkNilLogicalValue(PIFIteratorForParser* this_, ContextItemForParser* item);
// Decides for a complex element between nil and a value.
void PIFIteratorForParser_checkNilComplexContent(PIFIteratorForParser* this_, ContextItemForParser* item);
bool PIFIteratorForParser_adjustSimpleElementValue(PIFIteratorForParser* this_, ContextItemForParser* item);
bool PIFIteratorForParser_applyLeadingAlignment(PIFIteratorForParser* this_, ContextItemForParser* item);
bool PIFIteratorForParser_applyTrailingAlignment(PIFIteratorForParser* this_, ContextItemForParser* item);
void PIFIteratorForParser_releaseExtractedText(PIFIteratorForParser* this_);
void PIFIteratorForParser_releaseExtractedBytes(PIFIteratorForParser* this_);

// Raises that the grammar asks for something that this parser cannot do.
void PIFIteratorForParser_raiseUnsupported(PIFIteratorForParser* this_, const GroupMemberTableRow* row,
                                           const char* what);
// User trace with the item's position, name, designator and path. The caller has tested userTraceOn.
void PIFIteratorForParser_userTrace(PIFIteratorForParser* this_, ContextItemForParser* item, const char* key,
                                    const char* format, ...);

#endif
