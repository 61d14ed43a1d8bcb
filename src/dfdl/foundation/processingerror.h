#ifndef DFDL_FOUNDATION_PROCESSINGERROR_H
#define DFDL_FOUNDATION_PROCESSINGERROR_H

#include <unicode/utypes.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"
#include "dfdl/foundation/messagekeys.h"

struct ArrayList;
struct GroupMemberTableRow;

enum ErrorKind : int32_t {
    ERROR_KIND_NONE = -1,
    ERROR_PROCESSING = 0,
    ERROR_VALIDATION = 3,
    ERROR_SCHEMA_DEFINITION = 4,
    ERROR_WARNING = 5,
    ERROR_INTERNAL = 6,
    ERROR_RECOVERABLE = 7
};

enum ErrorSubKind : int32_t { SUBKIND_NONE = -1, SUBKIND_ASSERT = 1, SUBKIND_LACK_OF_DATA = 2 };

// One failure: a message key and the values its text will need, captured when it happened, since text is made
// only for those few errors that are delivered. The first error stands until the record is reset.
struct ProcessingError {
    DFDLHeapAdapter* heap;
    const char* key;  // message id, a constant of messagekeys.h; null: no error
    int32_t kind;     // ErrorKind
    uint32_t traced;  // already written to user trace
    int32_t subKind;  // ErrorSubKind
    const GroupMemberTableRow* row;
    ArrayList* inserts;  // of CapturedInsert: format piece and value
};

ProcessingError* new_ProcessingError(DFDLHeapAdapter* heap);
void delete_ProcessingError(ProcessingError* this_);  // null is ignored
// For a record inside another object, whose `heap` is set.
void ProcessingError_ctor(ProcessingError* this_);
void ProcessingError_dtor(ProcessingError* this_);

// Does nothing if a key stands already. Letters of the format: see insertformat.h. `key` must be one of the
// constants of messagekeys.h, and the format a constant too: the pointers are kept. The source place is for
// the reader of the call.
void ProcessingError_setValues(ProcessingError* this_, const char* sourceFile, int sourceLine,
                               const char* key, int32_t kind, int32_t subKind, const char* format, ...);
void ProcessingError_reset(ProcessingError* this_);
ProcessingError* ProcessingError_clone(const ProcessingError* this_, DFDLHeapAdapter* heap);

inline bool ProcessingError_isSet(const ProcessingError* this_) { return this_->key != nullptr; }
// Kinds 0, 1, 2, 4 and 6 stop a parse; validation errors, warnings and recoverable errors do not.
inline bool ProcessingError_isFailure(const ProcessingError* this_) {
    return this_->key != nullptr && this_->kind >= 0 && this_->kind <= 6 && ((87 >> this_->kind) & 1) != 0;
}
// Keys are compared by their text, so that it does not matter which copy of a constant was stored.
bool ProcessingError_hasKey(const ProcessingError* this_, const char* key);

// Inserts as pooled strings, the caller's to release; the list is made if it is null.
ArrayList* ProcessingError_argumentsAsText(const ProcessingError* this_, ArrayList* list);
// Writes at most `capacity` units with terminator; returns the number of units without it.
int32_t ProcessingError_formatMessage(const ProcessingError* this_, const UChar* messageTemplate,
                                      int32_t capacity, UChar* target);

#endif
