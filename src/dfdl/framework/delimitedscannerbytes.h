#ifndef DFDL_FRAMEWORK_DELIMITEDSCANNERBYTES_H
#define DFDL_FRAMEWORK_DELIMITEDSCANNERBYTES_H

#include <cstddef>
#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"
#include "dfdl/framework/compileddfdlstringliteral.h"

struct BufferManager;
struct CharsetManager;
struct CompiledMarkupSet;
struct Context;
struct ContextItem;
struct DFDLUString;
struct ExpressionEvaluator;
struct GroupMemberTableRow;
struct PIFIteratorForParser;
struct ScannerDataCache;
struct StringLiteralCache;
struct sPIF;

// The set of a list of the grammar, found again by where the list lies.
struct MarkupListLookup {
    const DFDLUString* list;
    CompiledMarkupSet* set;
    int32_t encodingIndex;
    bool ignoreCase;
};

inline constexpr size_t MARKUP_LIST_LOOKUPS = 256;  // a power of two

// Finds delimiters in the bytes of the data without decoding them: what stands at this very position, and
// where the next delimiter in scope begins. It never moves the buffer; who consumes does. Belongs to its
// parser and lives as long.
struct DelimitedScannerBytes {
    DFDLHeapAdapter* heap;
    Context* context;
    BufferManager* buffer;
    PIFIteratorForParser* iterator;
    ExpressionEvaluator* evaluator;  // null: none
    CharsetManager* charsetManager;
    StringLiteralCache* literalCache;
    const sPIF* pif;
    ScannerDataCache* cache;
    CompiledMarkupSet* markupSet;                     // current; null: none
    CompiledMarkupSet* emptySet;                      // what is scanned with where no set is current
    DFDLUString* listKey;                             // scratch
    MarkupListLookup lookups[MARKUP_LIST_LOOKUPS];    // by row and property
    const CompiledDFDLStringLiteral* matchedLiteral;  // of the last scan, as is what follows
    CompiledDFDLStringLiteral* endOfDataLiteral;
    int64_t matchedLength;  // bytes of the delimiter
    int64_t contentLength;  // bytes before it
    int32_t markupSetId;    // -1: none, or a set of one list
    int64_t scanPosition;   // byte
    int64_t scanLimit;      // byte; what lies beyond is not looked at
    uint32_t found;         // a delimiter, not the end of the data
};

DelimitedScannerBytes* new_DelimitedScannerBytes(DFDLHeapAdapter* heap, Context* context);
void delete_DelimitedScannerBytes(DelimitedScannerBytes* this_);  // null is ignored
// Another grammar: what was compiled for the last one goes, in the literal cache too.
void DelimitedScannerBytes_setPIF(DelimitedScannerBytes* this_, const sPIF* pif);
// Between documents: sets that hold for one document go, and no set is current.
void DelimitedScannerBytes_reset(DelimitedScannerBytes* this_);

// Makes the set of an id current, compiling it at its first use. Null with an error, or if the grammar has no
// such set (-1 among them): then no set is current, and a scan runs to the end of its scope.
CompiledMarkupSet* DelimitedScannerBytes_setMarkupSet(DelimitedScannerBytes* this_, int32_t markupSetId,
                                                      ContextItem* item);
// The same where no element is at hand, and so no escape scheme; the two names mean one thing.
CompiledMarkupSet* DelimitedScannerBytes_scanTerminatingMarkup(DelimitedScannerBytes* this_,
                                                               int32_t markupSetId);
CompiledMarkupSet* DelimitedScannerBytes_scanToNextTerminatingMarkup(DelimitedScannerBytes* this_,
                                                                     int32_t markupSetId);
// Makes a set of one list of delimiters current: of an initiator, a terminator, nil literals. `ownsKey`: the
// list is the grammar's and outlives the document. `propertyName` is for messages.
CompiledMarkupSet* DelimitedScannerBytes_setMarkupSetWithGroupMemberRow(DelimitedScannerBytes* this_,
                                                                        const DFDLUString* list,
                                                                        const GroupMemberTableRow* row,
                                                                        bool ownsKey,
                                                                        const char* propertyName);

// Scans from the buffer's position with the current set. `record` reports the find, or the end of the data,
// to the iterator. The bytes before the find; -1 with an error.
int64_t DelimitedScannerBytes_scanForMarkup(DelimitedScannerBytes* this_, bool atPositionOnly,
                                            int32_t encodingIndex, bool record,
                                            const GroupMemberTableRow* element);
// Whether a delimiter of the current set begins at the position.
bool DelimitedScannerBytes_checkForMarkupAtCurrentPosition(DelimitedScannerBytes* this_,
                                                           int32_t encodingIndex, bool record,
                                                           const GroupMemberTableRow* element);
// Whether the literal stands at scanPosition, which moves behind it.
bool DelimitedScannerBytes_matchMarkup(DelimitedScannerBytes* this_, const CompiledDFDLStringLiteral* literal,
                                       const GroupMemberTableRow* element);
// Whether an enclosing level has the same delimiter, which then is reported to the iterator.
bool DelimitedScannerBytes_getAlternativeScannedMarkup(DelimitedScannerBytes* this_,
                                                       const CompiledDFDLStringLiteral* literal);

// ---- For the scanner's own files ------------------------------------------------------------------------

// Where delimiters are taken from, and what they are taken for.
struct MarkupSource {
    const DFDLUString* list;  // of literals, with white space between them
    MarkupKind kind;
    int32_t encodingIndex;
    bool ignoreCase;
    const GroupMemberTableRow* element;  // for messages, as is what follows; may be null
    const char* propertyName;
};

// Enters the delimiters of a list. False with an error.
bool DelimitedScannerBytes_addDelimiterValuesToScannerData(DelimitedScannerBytes* this_,
                                                           CompiledMarkupSet* set,
                                                           const MarkupSource& source);

#endif
