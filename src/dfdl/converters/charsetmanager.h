#ifndef DFDL_CONVERTERS_CHARSETMANAGER_H
#define DFDL_CONVERTERS_CHARSETMANAGER_H

#include <unicode/ucnv.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct ArrayList;
struct Context;
struct DFDLCharset;
struct DFDLConstants;
struct DFDLStringHashMap;
struct DFDLUString;
struct ExpressionEvaluator;
struct GroupMemberTableRow;
struct sPIF;

// Finds the charset of a row of the text encoding table, and decodes and encodes with its converter. A decode
// stops at the first problem and tells how many bytes were bad, so that its caller decides what that means.
// Belongs to its engine, as do the charsets.
struct CharsetManager {
    DFDLHeapAdapter* heap;
    Context* context;
    DFDLConstants* constants;
    ArrayList* rowEncodings;              // DFDLCharset*, by row; owned
    DFDLStringHashMap* runtimeEncodings;  // by standard name; owner of its values; made at the first need
    const sPIF* pif;
    ExpressionEvaluator* evaluator;  // of the engine; null: none
    char* encodeScratch;
    int32_t encodeScratchSize;
    uint32_t defaultBigEndian;
    int32_t badByteCount;  // of the sequence that the last decode stopped at
};

CharsetManager* new_CharsetManager(DFDLHeapAdapter* heap, DFDLConstants* constants, Context* context);
void delete_CharsetManager(CharsetManager* this_);  // null is ignored
void CharsetManager_setPif(CharsetManager* this_, const sPIF* pif);
// Between documents what is not fixed is forgotten; with `all`, everything.
void CharsetManager_reset(CharsetManager* this_, bool all);
// Null without such a row, or with an error.
DFDLCharset* CharsetManager_getDFDLEncoding(CharsetManager* this_, int32_t rowIndex);

// Decodes at most `maxUnits` units. A character cut off by the end of the data is no error with `allowTrunc`
// while fewer than `maxBytes` bytes of it are there; without `strict`, bad data end the text quietly. Null is
// an error, with *status; also a good result may bear a status. `*consumed` leaves out bad bytes. Pooled.
DFDLUString* CharsetManager_decodeWithIgnoreTruncIgnoreMalformed(CharsetManager* this_, const uint8_t* source,
                                                                 int64_t length, int32_t maxUnits,
                                                                 int64_t* consumed, UConverter* converter,
                                                                 UErrorCode* status, bool allowTrunc,
                                                                 int32_t maxBytes, bool strict, bool flush);

// Terminated bytes in the manager's scratch, valid until the next encode; null and 0 with an error.
const char* CharsetManager_encode(CharsetManager* this_, const DFDLUString* text, int32_t* bytes,
                                  UConverter* converter, const GroupMemberTableRow* element,
                                  const DFDLUString* encoding);
const char* CharsetManager_encode_UChar(CharsetManager* this_, const UChar* units, int32_t length,
                                        int32_t* bytes, UConverter* converter,
                                        const GroupMemberTableRow* element, const DFDLUString* encoding);
// The same; `rejectSurrogates` refuses what UCS-2 cannot hold.
const char* CharsetManager_encodeValue(CharsetManager* this_, UConverter* converter, const DFDLUString* text,
                                       bool rejectSurrogates, int32_t* bytes,
                                       const GroupMemberTableRow* element, const DFDLUString* encoding);
const char* CharsetManager_encodeValue_UChar(CharsetManager* this_, UConverter* converter, const UChar* units,
                                             int32_t length, bool rejectSurrogates, int32_t* bytes,
                                             const GroupMemberTableRow* element, const DFDLUString* encoding);

// An array of exactly the bytes, the caller's, from `heap`; null and 0 if the encoding lacks a character.
uint8_t* CharsetManager_convertTo(DFDLHeapAdapter* heap, const UChar* units, int32_t length, int32_t* bytes,
                                  UConverter* converter);
uint8_t* CharsetManager_convertUCharTo(DFDLHeapAdapter* heap, const UChar* unit, int32_t* bytes,
                                       UConverter* converter);

// Notes in its CharsetManager, given as context, how long a bad sequence is; the conversion stops.
void dfdlToUCallback(const void* context, UConverterToUnicodeArgs* args, const char* codeUnits,
                     int32_t length, UConverterCallbackReason reason, UErrorCode* status);

#endif
