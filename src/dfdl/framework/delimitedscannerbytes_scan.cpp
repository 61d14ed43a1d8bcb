// The search for the next delimiter: a state machine over the bytes.
#include <algorithm>
#include <limits>

#include "dfdl/buffer/buffermanager.h"
#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/compileddfdlstringliteral.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/framework/linkedlistcompileddfdlstringliteral.h"
#include "dfdl/framework/markupmatch.h"
#include "dfdl/framework/scanwindow.h"
#include "dfdl/pif/escapeschemetable.h"
#include "dfdl/pif/groupmembertable.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"

namespace {

// Positions are bits in 64 bits. Where neither a limit nor the end of the data is known the scan runs until
// the data end, however far that is.
constexpr int64_t NO_LIMIT = std::numeric_limits<int64_t>::max() >> 4;

enum ScanState {
    STATE_SCAN,
    STATE_MATCH,
    STATE_ESCAPE_ESCAPE,
    STATE_ESCAPE,
    STATE_BLOCK_START,
    STATE_IN_BLOCK,
    STATE_END_OF_DATA,
    STATE_ZERO_LENGTH,
    STATE_RECORD,
    STATE_FINISHED,
    STATE_COUNT
};

// One scan. Positions are bytes of the stream.
struct Scan {
    DelimitedScannerBytes* scanner;
    const CompiledMarkupSet* set;
    ScanWindow window;
    int64_t start;
    int64_t position;
    int64_t limit;
    int64_t contentLength;
    int64_t matchedLength;
    const CompiledDFDLStringLiteral* matched;
    const GroupMemberTableRow* element;
    int32_t encodingIndex;
    bool atPositionOnly;
    bool record;
    bool found;
    bool useEscapeChar;
    bool escapedEscape;  // an escape-escape stands right before the position
    bool failed;
};

int64_t limitOf(const BufferManager* buffer) {
    if (buffer->bitLimit >= 0) return buffer->bitLimit >> 3;
    return buffer->documentBitLength > 0 ? buffer->documentBitLength >> 3 : NO_LIMIT;
}

// Whether so many bytes from the position on lie within the limit and are there. When they are not, the data
// have ended and their end is the new limit, so that input in pieces is judged as input in one piece.
bool fits(Scan* scan, int64_t count) {
    if (count > scan->limit - scan->position) return false;
    if (count == 0 || ScanWindow_reach(&scan->window, scan->position + count - 1)) return true;
    const BufferManager* buffer = scan->scanner->buffer;
    scan->limit = std::min(limitOf(buffer), buffer->totalBytesLoaded);
    return false;
}

bool standsAt(Scan* scan, int64_t position, const EscapeString& text) {
    return MarkupMatch_bytes(&scan->window, scan->limit, position, text.bytes, text.length);
}

uint8_t byteAt(Scan* scan) { return *ScanWindow_pointer(&scan->window, scan->position); }

// Whether the byte at the position is a character of its own, in encodings where a look can tell.
bool isOneByteCharacter(DFDLCharset* charset, uint8_t byte) {
    if (charset == nullptr || !DFDLCharset_hasDirectRoad(charset)) return false;
    return charset->road == ROAD_TABLE ? charset->table[byte] != NOT_IN_TABLE : byte < 0x80;
}

// How many bytes the character at the position takes, told by moving the buffer and putting it back.
int64_t characterWidth(Scan* scan) {
    BufferManager* buffer = scan->scanner->buffer;
    DFDLBufferMarker* marker = BufferManager_mark(buffer);
    const int64_t scanned = scan->position - scan->start;
    const uint32_t bomChecked = buffer->bomChecked;
    int64_t width = 0;
    if (BufferManager_skipBytes(buffer, scanned, scan->element) == scanned) {
        const int64_t before = buffer->bitPosition;
        BufferManager_skipCharacters(buffer, scan->encodingIndex, 1, scan->element);
        width = (buffer->bitPosition - before) >> 3;
    }
    // What is no character, or is cut off, is the business of whoever reads it.
    ProcessingError_reset(scan->scanner->context->currentError);
    BufferManager_reset(buffer, marker);
    BufferManager_release(buffer, marker);
    buffer->bomChecked = bomChecked;  // a look ahead is not the look for a mark
    scan->window = ScanWindow_open(buffer);
    return width;
}

// An escaped character is passed over whole and never looked at as a delimiter.
void skipCharacter(Scan* scan) {
    if (!fits(scan, 1)) return;
    DFDLCharset* charset = CharsetManager_getDFDLEncoding(scan->scanner->charsetManager, scan->encodingIndex);
    scan->position += isOneByteCharacter(charset, byteAt(scan)) ? 1 : characterWidth(scan);
}

// What stands at the position is no delimiter.
ScanState goOn(Scan* scan) {
    if (!scan->atPositionOnly) {
        ++scan->position;
        return STATE_SCAN;
    }
    return scan->set->zeroLengthLiteral == nullptr ? STATE_FINISHED : STATE_ZERO_LENGTH;
}

// The data end at the position. Before anything has been passed over, a delimiter that needs no data stands
// there all the same.
ScanState end(const Scan* scan) {
    const bool isFirst = scan->position == scan->start && scan->set->zeroLengthLiteral != nullptr;
    return isFirst ? STATE_ZERO_LENGTH : STATE_END_OF_DATA;
}

// Passes over what can start nothing, as far as the bytes lie together.
ScanState scanBytes(Scan* scan) {
    const CompiledMarkupSet* set = scan->set;
    if (!fits(scan, 1)) return end(scan);
    if (scan->atPositionOnly && set->firstBytes[byteAt(scan)] == 0) return goOn(scan);
    const int64_t there = std::min(scan->limit, scan->window.start + scan->window.size) - scan->position;
    const int64_t plain =
        ByteFinder_find(&set->finder, ScanWindow_pointer(&scan->window, scan->position), there);
    scan->position += plain;
    if (plain == there) return STATE_SCAN;
    if (scan->useEscapeChar) return STATE_ESCAPE_ESCAPE;
    return set->usesEscapeBlock && scan->position == scan->start ? STATE_BLOCK_START : STATE_MATCH;
}

void win(Scan* scan, const CompiledDFDLStringLiteral* literal, int64_t length) {
    scan->matched = literal;
    scan->matchedLength = length;
    scan->contentLength = scan->position - scan->start;
    scan->found = true;
}

// The longest wins, of the longest the innermost.
void tryAll(Scan* scan, const LinkedListCompiledDFDLStringLiteral* list) {
    for (; list != nullptr; list = list->next) {
        const int64_t end = MarkupMatch_literal(&scan->window, scan->limit, scan->position, list->literal);
        if (end < 0) continue;
        const int64_t length = end - scan->position;
        if (!scan->found || length > scan->matchedLength ||
            (length == scan->matchedLength && list->literal->level < scan->matched->level)) {
            win(scan, list->literal, length);
        }
        // In a sorted list nothing later is longer than a literal of fixed length.
        if (!scan->set->hasVariableLength) return;
    }
}

ScanState match(Scan* scan) {
    if (!fits(scan, 1)) return end(scan);
    const uint8_t byte = byteAt(scan);
    const CompiledDFDLStringLiteral* sole = scan->set->sole[byte];
    if (sole == nullptr) {
        tryAll(scan, scan->set->lists[byte]);
    } else if (sole->byteLength == 1 || MarkupMatch_bytes(&scan->window, scan->limit, scan->position,
                                                          sole->exactBytes, sole->byteLength)) {
        win(scan, sole, sole->byteLength);
    }
    if (!scan->found) return goOn(scan);
    return scan->record ? STATE_RECORD : STATE_FINISHED;
}

ScanState escapeEscape(Scan* scan) {
    const EscapeString& text = scan->set->escapeEscapeCharacter;
    if (!fits(scan, text.length)) return STATE_MATCH;
    scan->escapedEscape = text.length > 0 && standsAt(scan, scan->position, text);
    if (scan->escapedEscape) scan->position += text.length;
    return STATE_ESCAPE;
}

ScanState escape(Scan* scan) {
    const EscapeString& text = scan->set->escapeCharacter;
    if (!fits(scan, text.length)) return STATE_MATCH;
    const bool escaped = scan->escapedEscape;
    scan->escapedEscape = false;
    if (standsAt(scan, scan->position, text)) {
        scan->position += text.length;
        if (!escaped) skipCharacter(scan);
        return STATE_SCAN;
    }
    if (!escaped || !scan->set->escapeEscapeSame) return STATE_MATCH;
    // What was taken for an escape of an escape was an escape.
    skipCharacter(scan);
    return STATE_SCAN;
}

ScanState raiseOpenBlock(Scan* scan) {
    ProcessingError* error = scan->scanner->context->currentError;
    ProcessingError_reset(error);
    ProcessingError_setValues(error, __FILE__, __LINE__, DFDLParser_noEscapeBlockEndMatched, ERROR_PROCESSING,
                              SUBKIND_NONE, "%Z%Z", scan->set->escapeSchemeRow->iEscapeSchemeName,
                              GroupMemberTableRow_getElementName(scan->element));
    scan->failed = true;
    return STATE_FINISHED;
}

ScanState blockStart(Scan* scan) {
    const EscapeString& text = scan->set->blockStart;
    if (text.length == 0 || !fits(scan, text.length) || !standsAt(scan, scan->position, text)) {
        return STATE_MATCH;
    }
    scan->position += text.length;
    return fits(scan, 1) ? STATE_IN_BLOCK : raiseOpenBlock(scan);
}

// Whether the end of the block at the position is hidden; the position moves to that end if it is. Data may
// end behind an escape of this kind, which then is none.
bool isHiddenEnd(Scan* scan) {
    const EscapeString& hides = scan->set->escapeEscapeCharacter;
    const EscapeString& end = scan->set->blockEnd;
    if (hides.length == 0 || !standsAt(scan, scan->position, hides) ||
        !standsAt(scan, scan->position + hides.length, end)) {
        return false;
    }
    scan->position += hides.length;
    return true;
}

// Moves to the next byte that can start the end of a block, or what hides it.
void passBlock(Scan* scan) {
    const int64_t there = std::min(scan->limit, scan->window.start + scan->window.size) - scan->position;
    scan->position +=
        ByteFinder_find(&scan->set->blockFinder, ScanWindow_pointer(&scan->window, scan->position), there);
}

ScanState inBlock(Scan* scan) {
    const EscapeString& end = scan->set->blockEnd;
    while (end.length > 0 && fits(scan, end.length)) {
        // The window may stand at the last byte that was looked at.
        if (!ScanWindow_reach(&scan->window, scan->position)) break;
        if (isHiddenEnd(scan)) {
            scan->position += end.length;
        } else if (standsAt(scan, scan->position, end)) {
            scan->position += end.length;
            return STATE_MATCH;
        } else {
            ++scan->position;
        }
        if (fits(scan, end.length) && ScanWindow_reach(&scan->window, scan->position)) passBlock(scan);
    }
    return raiseOpenBlock(scan);
}

// What the scanner tells of its last scan. The iterator asks it where the delimiter stands.
void publish(const Scan* scan) {
    DelimitedScannerBytes* scanner = scan->scanner;
    scanner->matchedLiteral = scan->matched;
    scanner->matchedLength = scan->matchedLength;
    scanner->contentLength = scan->contentLength;
    scanner->scanPosition = scan->position;
    scanner->scanLimit = scan->limit;
    scanner->found = scan->found ? 1 : 0;
}

ScanState endOfData(Scan* scan) {
    DelimitedScannerBytes* scanner = scan->scanner;
    scan->matched = scanner->endOfDataLiteral;
    scan->contentLength = std::max<int64_t>(scan->limit - scan->start, 0);
    scan->matchedLength = 0;
    if (!scan->record) return STATE_FINISHED;
    const GroupMemberTableRow* owner = scanner->buffer->limitingElement;
    if (owner == nullptr) return STATE_RECORD;
    publish(scan);
    PIFIteratorForParser_setScannedMarkup(scanner->iterator, owner, scan->matched, 0);
    return STATE_FINISHED;
}

ScanState zeroLength(Scan* scan) {
    win(scan, scan->set->zeroLengthLiteral, 0);
    return scan->record ? STATE_RECORD : STATE_FINISHED;
}

ScanState record(Scan* scan) {
    publish(scan);
    PIFIteratorForParser_setScannedMarkupWithLevel(scan->scanner->iterator, scan->matched->level,
                                                   scan->matched, scan->matchedLength);
    return STATE_FINISHED;
}

constexpr ScanState (*ACTIONS[])(Scan*) = {scanBytes, match,     escapeEscape, escape, blockStart,
                                           inBlock,   endOfData, zeroLength,   record};
static_assert(std::size(ACTIONS) == STATE_FINISHED);

ScanState firstState(const Scan* scan) {
    if (scan->position < scan->limit) return scan->record ? STATE_SCAN : STATE_MATCH;
    return end(scan);
}

// Where something has been passed over nothing can be found at the position any more.
bool isPast(const Scan* scan) { return scan->atPositionOnly && scan->position != scan->start; }

void run(Scan* scan) {
    ScanState state = firstState(scan);
    while (state != STATE_FINISHED) {
        state = ACTIONS[state](scan);
        if (scan->found || state >= STATE_END_OF_DATA) continue;
        if (isPast(scan)) return;
        if (scan->position >= scan->limit) state = STATE_END_OF_DATA;
    }
}

// What most scans come to: some plain bytes, then the only delimiter that starts with its byte, all of it in
// the current buffer. False if it takes more than that; `plain` bytes have been passed over all the same.
bool findAtOnce(DelimitedScannerBytes* scanner, const CompiledMarkupSet* set, int64_t start, int64_t* plain) {
    const DFDLByteBufferImpl* buffer = scanner->buffer->currentBuffer;
    *plain = 0;
    if (buffer == nullptr || start < buffer->streamStart || start > buffer->streamEnd) return false;
    scanner->scanLimit = limitOf(scanner->buffer);
    const int64_t there = std::min(scanner->scanLimit, buffer->streamEnd + 1) - start;
    if (there <= 0) return false;
    const uint8_t* bytes = buffer->data + (start - buffer->streamStart);
    *plain = ByteFinder_find(&set->finder, bytes, there);
    if (*plain == there) return false;
    const CompiledDFDLStringLiteral* sole = set->sole[bytes[*plain]];
    if (sole == nullptr || sole->byteLength > there - *plain) return false;
    for (int32_t i = 1; i < sole->byteLength; ++i) {
        if (bytes[*plain + i] != sole->exactBytes[i]) return false;
    }
    scanner->matchedLiteral = sole;
    scanner->matchedLength = sole->byteLength;
    scanner->contentLength = *plain;
    scanner->scanPosition = start + *plain;
    scanner->found = 1;
    return true;
}

// `plain` bytes are known to start nothing.
int64_t scanStepByStep(Scan* scan, int64_t plain) {
    DelimitedScannerBytes* scanner = scan->scanner;
    scan->window = ScanWindow_open(scanner->buffer);
    scan->position = scan->start + plain;
    scan->limit = limitOf(scanner->buffer);
    scan->useEscapeChar = scan->set->usesEscapeCharacter && scan->set->escapeCharacter.length > 0;
    run(scan);
    scanner->matchedLiteral = scan->matched;
    scanner->matchedLength = scan->matchedLength;
    scanner->contentLength = scan->contentLength;
    scanner->scanPosition = scan->position;
    scanner->scanLimit = scan->limit;
    scanner->found = scan->found ? 1 : 0;
    return scan->failed ? -1 : scan->contentLength;
}

}  // namespace

int64_t DelimitedScannerBytes_scanForMarkup(DelimitedScannerBytes* this_, bool atPositionOnly,
                                            int32_t encodingIndex, bool record,
                                            const GroupMemberTableRow* element) {
    const CompiledMarkupSet* set = this_->markupSet != nullptr ? this_->markupSet : this_->emptySet;
    const int64_t start = BufferManager_bytePosition(this_->buffer);
    int64_t plain = 0;
    if (record && !atPositionOnly && findAtOnce(this_, set, start, &plain)) {
        PIFIteratorForParser_setScannedMarkupWithLevel(this_->iterator, this_->matchedLiteral->level,
                                                       this_->matchedLiteral, this_->matchedLength);
        return this_->contentLength;
    }
    Scan scan{};
    scan.scanner = this_;
    scan.set = set;
    scan.start = start;
    scan.element = element;
    scan.encodingIndex = encodingIndex;
    scan.atPositionOnly = atPositionOnly;
    scan.record = record;
    return scanStepByStep(&scan, plain);
}
