#ifndef DFDL_FOUNDATION_INSERTFORMAT_H
#define DFDL_FOUNDATION_INSERTFORMAT_H

#include <unicode/utypes.h>

#include <cstdarg>
#include <cstdint>
#include <string_view>

#include "dfdl/foundation/dfdlheapadapter.h"

struct ArrayList;
struct DFDLUString;

// How the inserts of messages are declared, captured and put into a text. A format such as "%lld%Z" has one
// piece per insert, from a % to the next; the last character of the piece tells the type of the argument.
//
//   B  bytes, int32 length             b  bytes, int32 bits, int32 first bit
//   S  terminated UTF-16               Z  const DFDLUString*          C  one UTF-16 unit
//   s  terminated bytes                z  const DFDLString*           c  one byte
//   d i o u x X  int32, with h int16 (passed as int), with ll int64
//   e E f g G    double
// and in trace only
//   p  pointer      D  int64           V  const DFDLValue*
//
// Formats are constants of this library: what is kept of one is a pointer to it.
struct InsertPiece {
    const char* text;
    int32_t length;  // bytes, at least 1
};

// The next piece of a format, which moves on behind it; what stands before the first % is dropped.
bool InsertPiece_next(const char** format, InsertPiece* piece);
inline char InsertPiece_letter(const InsertPiece& piece) { return piece.text[piece.length - 1]; }

// How texts are captured for one purpose.
struct InsertStyle {
    int32_t limit;                 // units kept of a text
    std::u16string_view cutMark;   // follows a text that was longer
    std::u16string_view nullText;  // stands for a null text
    bool trace;                    // p, D and V are known, and an unknown letter gives nothing
};

// No text of an error is shown beyond this many units, and so none is copied.
inline constexpr InsertStyle ERROR_INSERTS = {8192, u"", u"", false};
inline constexpr InsertStyle TRACE_INSERTS = {507, u" ...", u"(null)", true};

// A va_list that can be handed from function to function.
struct InsertArguments {
    va_list list;
};

enum InsertKind : int32_t { INSERT_UNKNOWN, INSERT_INTEGER, INSERT_REAL, INSERT_TEXT };

// The value of one insert, kept without the object that it came from. A plain record: copying it does not
// copy the text, which is a pooled string of the given heap and belongs to whoever keeps the record.
struct CapturedInsert {
    InsertPiece piece;
    InsertKind kind;
    union {
        int64_t integer;  // sign or zero extended, as the letter has it
        double real;
        DFDLUString* text;
    } value;
};

void CapturedInsert_capture(CapturedInsert* this_, InsertPiece piece, InsertArguments* arguments,
                            DFDLHeapAdapter* heap, const InsertStyle& style);
// A pooled string, the caller's. `number` is the insert's own, from 0.
DFDLUString* CapturedInsert_toText(const CapturedInsert* this_, DFDLHeapAdapter* heap,
                                   const InsertStyle& style, int32_t number);
// A pooled string of at most the style's limit.
DFDLUString* InsertText_new(DFDLHeapAdapter* heap, std::u16string_view text, const InsertStyle& style);

// Writes the template with each {n} replaced by text n of the list. At most capacity - 5 units, then " ..."
// if that was not enough, and a terminator. Returns the units without it.
int32_t InsertText_format(std::u16string_view messageTemplate, const ArrayList* texts, int32_t capacity,
                          UChar* target);
// Gives the strings of a list back and empties it.
void InsertText_release(ArrayList* texts);

#endif
