#ifndef DFDL_FOUNDATION_DFDLCONSTANTS_H
#define DFDL_FOUNDATION_DFDLCONSTANTS_H

#include <unicode/ucnv.h>
#include <unicode/udat.h>

#include <cstdint>

#include "dfdl/foundation/dfdlheapadapter.h"

struct DFDLDecimal;
struct DFDLUString;

// The schema's own forms of dates and times, with and without a zone and six digits of a second.
enum CalendarPattern : int32_t {
    CALENDAR_DATE,
    CALENDAR_DATE_ZONE,
    CALENDAR_TIME,
    CALENDAR_TIME_ZONE,
    CALENDAR_TIME_FRACTION,
    CALENDAR_TIME_FRACTION_ZONE,
    CALENDAR_DATE_TIME,
    CALENDAR_DATE_TIME_ZONE,
    CALENDAR_DATE_TIME_FRACTION,
    CALENDAR_DATE_TIME_FRACTION_ZONE,
    CALENDAR_PATTERN_COUNT
};

// Constants of one engine or grammar: decimal bounds, strings, ready date formatters. Made with the engine or
// grammar and deleted with it.
//
// Date formatters are opened at their first use, since opening all of them costs more than most messages take
// to parse. So an engine uses none but its own constants; those of a grammar, which engines in several
// threads share, serve only while the grammar is being loaded.
struct DFDLConstants {
    DFDLHeapAdapter* heap;
    UConverter* defaultConverter;  // of the process's default encoding

    DFDLDecimal* maxSignedQ;    // 2^63 - 1
    DFDLDecimal* minSignedQ;    // -2^63
    DFDLDecimal* maxUnsignedQ;  // 2^64 - 1
    DFDLDecimal* zero;

    DFDLUString* ieee;
    DFDLUString* zov390Hex;
    DFDLUString* zeroOffset;  // "+00:00"
    DFDLUString* utc;
    DFDLUString* gmt;
    DFDLUString* z;
    DFDLUString* newLineEntity;         // "%NL;"
    DFDLUString* whitespaceEntity;      // "%WSP;"
    DFDLUString* anyWhitespaceEntity;   // "%WSP*;"
    DFDLUString* someWhitespaceEntity;  // "%WSP+;"
    DFDLUString* positiveInfinity;      // "INF"
    DFDLUString* negativeInfinity;      // "-INF"
    DFDLUString* notANumber;            // "NaN"
    DFDLUString* digitZero;             // "0"
    DFDLUString* digitOne;              // "1"
    DFDLUString* trueText;
    DFDLUString* falseText;
    DFDLUString* empty;
    DFDLUString* calendarPatterns[CALENDAR_PATTERN_COUNT];

    UDateFormat* dateFormats[CALENDAR_PATTERN_COUNT];  // null until used: DFDLConstants_getDateFormat

    static constexpr UChar UTF[] = u"UTF";
    static constexpr UChar UTF_8[] = u"UTF-8";
    static constexpr UChar UTF8[] = u"UTF8";
    static constexpr UChar UTF_16[] = u"UTF-16";
    static constexpr UChar UTF16[] = u"UTF16";
    static constexpr UChar UTF_16LE[] = u"UTF-16LE";
    static constexpr UChar UTF_16BE[] = u"UTF-16BE";
    static constexpr UChar UTF_32[] = u"UTF-32";
    static constexpr UChar UTF32[] = u"UTF32";
    static constexpr UChar UTF_32LE[] = u"UTF-32LE";
    static constexpr UChar UTF_32BE[] = u"UTF-32BE";
    static constexpr UChar CCSID_1204[] = u"1204";
    static constexpr UChar CCSID_1205[] = u"1205";
    static constexpr UChar CCSID_1236[] = u"1236";
    static constexpr UChar CCSID_1237[] = u"1237";
    static constexpr UChar UCS_2[] = u"UCS-2";
    static constexpr UChar UCS2[] = u"UCS2";
    static constexpr UChar CSUNICODE[] = u"CSUNICODE";
    static constexpr UChar ISO_10646_UCS_2[] = u"ISO-10646-UCS-2";
    static constexpr UChar BIG_ENDIAN_NAME[] = u"bigEndian";
    static constexpr UChar LITTLE_ENDIAN_NAME[] = u"littleEndian";
    static constexpr UChar GMT[] = u"GMT";
    static constexpr UChar OFFSET_ZERO[] = u"+0000";
    static constexpr UChar EPOCH_DATE[] = u"1970-01-01";
    static constexpr UChar PATTERN_DATE_TIME[] = u"yyyy-MM-dd'T'HH:mm:ss";
    static constexpr UChar PATTERN_DATE[] = u"yyyy-MM-dd";
    static constexpr UChar PATTERN_TIME[] = u"HH:mm:ss";
    static constexpr UChar EPOCH_DATE_TIME[] = u"1970-01-01T00:00:00";
    static constexpr UChar TWO_HYPHENS[] = u"--";
    static constexpr UChar THREE_HYPHENS[] = u"---";
    static constexpr UChar DIGIT_ZERO[] = u"0";
    static constexpr UChar DIGIT_ONE[] = u"1";
    static constexpr UChar VARIABLE_ENCODING[] = u"{$dfdl:encoding}";
    static constexpr UChar VARIABLE_BYTE_ORDER[] = u"{$dfdl:byteOrder}";
};

DFDLConstants* new_DFDLConstants(DFDLHeapAdapter* heap);
void delete_DFDLConstants(DFDLConstants* this_);  // null is ignored

// The constants keep it. Null if ICU refuses to open one.
UDateFormat* DFDLConstants_getDateFormat(DFDLConstants* this_, CalendarPattern pattern);

#endif
