#include "dfdl/converters/dfdlcharsetutils.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

namespace {

// Pages are named by their number behind a hyphen ("ZOV-437"). Those that the IANA registry lists have their
// registered forms besides, without the hyphen and with the registry's zeros.
constexpr std::string_view UTF16_BASED_ENCODINGS = "UTF-16 UTF16";
constexpr int32_t UTF16_COMPATIBLE_CCSIDS[] = {
    1200,  1201,  1202,  1203,  1204,  1205,  13488, 13489, 13490, 13491, 17584, 17585, 17586, 17587,
    21680, 21681, 21682, 21683, 25776, 25777, 25778, 25779, 29872, 29873, 29874, 29875, 61955, 61956};

constexpr std::string_view ASCII_COMPATIBLE_ENCODINGS =
    "UTF-8 SCSU CESU-8 ISO_8859-1:1987 ISO-8859-1 CP819 LATIN1 CSISOLATIN1 ISO-IR-100 L1 "
    "ANSI_X3.4-1968 US-ASCII ASCII ANSI_X3.4-1986 ISO_646.IRV:1991 ISO646-US US CSASCII ISO-IR-6 "
    "CP367 GB18030 ISO_8859-2:1987 ISO-8859-2 LATIN2 CSISOLATIN2 ISO-IR-101 L2 ISO_8859-3:1988 "
    "ISO-8859-3 LATIN3 CSISOLATIN3 ISO-IR-109 L3 ISO_8859-4:1988 ISO-8859-4 LATIN4 CSISOLATIN4 "
    "ISO-IR-110 L4 ISO_8859-5:1988 ISO-8859-5 CYRILLIC CSISOLATINCYRILLIC ISO-IR-144 ISO_8859-6:1987 "
    "ISO-8859-6 ARABIC CSISOLATINARABIC ISO-IR-127 ECMA-114 ASMO-708 ISO-8859-6-I ISO-8859-6-E "
    "ISO_8859-7:1987 ISO-8859-7 GREEK GREEK8 ELOT_928 ECMA-118 CSISOLATINGREEK ISO-IR-126 "
    "ISO_8859-8:1988 ISO-8859-8 HEBREW CSISOLATINHEBREW ISO-IR-138 ISO-8859-8-I ISO-8859-8-E "
    "ISO_8859-9:1989 ISO-8859-9 LATIN5 CSISOLATIN5 ISO-IR-148 L5 ISO-8859-10 ISO-IR-157 L6 "
    "ISO_8859-10:1992 CSISOLATIN6 LATIN6 ISO-8859-13 ISO-8859-14 ISO-IR-199 ISO_8859-14:1998 LATIN8 "
    "ISO-CELTIC L8 ISO-8859-15 LATIN-9 SHIFT_JIS MS_KANJI CSSHIFTJIS WINDOWS-31J CSWINDOWS31J "
    "EXTENDED_UNIX_CODE_PACKED_FORMAT_FOR_JAPANESE EUC-JP CSEUCPKDFMTJAPANESE BIG5 CSBIG5 BIG5-HKSCS "
    "GBK CP936 MS936 WINDOWS-936 GB2312 CSGB2312 EUC-KR CSEUCKR KS_C_5601-1987 KS_C_5601-1989 "
    "KSC_5601 CSKSC56011987 KOREAN ISO-IR-149 TIS-620 CP437 437 CSPC8CODEPAGE437 CP775 CSPC775BALTIC "
    "CP850 850 CSPC850MULTILINGUAL CP851 851 CSPC851 CP852 852 CSPCP852 CP855 855 CP857 857 "
    "CCSID00858 CP00858 PC-MULTILINGUAL-850+EURO CP860 860 CP861 861 CP-IS CP862 862 "
    "CSPC862LATINHEBREW CP863 863 CP864 CP865 865 CP866 866 CP868 CP-AR CP869 869 CP-GR KOI8-R "
    "CSKOI8R KOI8-U WINDOWS-1250 WINDOWS-1251 WINDOWS-1252 WINDOWS-1253 WINDOWS-1254 WINDOWS-1255 "
    "WINDOWS-1256 WINDOWS-1257 WINDOWS-1258 MACINTOSH MAC CSMACINTOSH HP-ROMAN8 ROMAN8 R8 CSHPROMAN8 "
    "ISO-2022-JP CSISO2022JP JIS_ENCODING CSJISENCODING ISO-2022-JP-2 CSISO2022JP2 ISO-2022-CN "
    "ISO-2022-CN-EXT DEC-MCS DEC CSDECMCS KZ-1048 STRK1048-2002 RK1048 CSKZ1048 ISO-8859-16 "
    "ISO-IR-226 ISO_8859-16:2001 LATIN10 L10";
constexpr int32_t ASCII_COMPATIBLE_CCSIDS[] = {
    367,  437,   720,   737,   775,   806,   808,   813,   819,   848,  849,  850,  851,  852,  855,
    856,  857,   858,   859,   860,   861,   862,   863,   864,   865,  866,  867,  868,  869,  872,
    874,  878,   901,   902,   912,   913,   914,   915,   916,   920,  921,  922,  923,  932,  942,
    948,  950,   954,   964,   970,   1004,  1006,  1008,  1046,  1051, 1089, 1098, 1100, 1124, 1125,
    1127, 1129,  1131,  1133,  1161,  1162,  1163,  1167,  1168,  1174, 1208, 1209, 1212, 1213, 1250,
    1251, 1252,  1253,  1254,  1255,  1256,  1257,  1258,  1350,  1373, 1375, 1381, 1383, 1386, 1392,
    4902, 4909,  4948,  4951,  4952,  5012,  5039,  5054,  5104,  5304, 5305, 5346, 5347, 5348, 5349,
    5350, 5351,  5352,  5353,  5354,  5471,  9005,  9048,  9056,  9061, 9066, 9238, 9400, 9447, 9448,
    9449, 13140, 13496, 13497, 17248, 17592, 17593, 21344, 25546, 65025};
constexpr std::string_view ASCII_REGISTERED_PAGES =
    "437 775 850 851 852 855 857 00858 860 861 862 863 864 865 866 868 869 819 367";
constexpr std::string_view ASCII_CS_PAGES = "855 857 860 861 863 864 865 866 868 869";

// The Thai page is registered by its language, and two pages have a second form.
constexpr std::string_view EBCDIC_BASED_ENCODINGS =
    "EBCDIC-CP-US EBCDIC-CP-CA EBCDIC-CP-WT EBCDIC-CP-NL CP273 EBCDIC-CP-DK EBCDIC-CP-NO EBCDIC-CP-FI "
    "EBCDIC-CP-SE CP280 EBCDIC-CP-IT CP284 EBCDIC-CP-ES CP285 EBCDIC-CP-GB CP290 EBCDIC-JP-KANA CP297 "
    "EBCDIC-CP-FR CP420 EBCDIC-CP-AR1 CP424 EBCDIC-CP-HE CP500 EBCDIC-CP-BE EBCDIC-CP-CH CP870 "
    "EBCDIC-CP-ROECE EBCDIC-CP-YU EBCDIC-CP-IS CP871 CP918 EBCDIC-CP-AR2 CP1026 CCSID01140 CP01140 "
    "EBCDIC-US-37+EURO CCSID01141 CP01141 EBCDIC-DE-273+EURO CCSID01142 CP01142 EBCDIC-DK-277+EURO "
    "EBCDIC-NO-277+EURO CCSID01143 CP01143 EBCDIC-FI-278+EURO EBCDIC-SE-278+EURO CCSID01144 CP01144 "
    "EBCDIC-IT-280+EURO CCSID01145 CP01145 EBCDIC-ES-284+EURO CCSID01146 CP01146 EBCDIC-GB-285+EURO "
    "CCSID01147 CP01147 EBCDIC-FR-297+EURO CCSID01148 CP01148 EBCDIC-INTERNATIONAL-500+EURO "
    "CCSID01149 CP01149 EBCDIC-IS-871+EURO EBCDIC-BE CP274 EBCDIC-BR CP275 EBCDIC-AT-DE-A "
    "CSEBCDICATDEA CP880 EBCDIC-CYRILLIC CP905 EBCDIC-CP-TR CCSID00924 CP00924 EBCDIC-LATIN9--EURO "
    "ZOV-THAI CSZOVTHAI ZOV-037 ZOV-1122";
constexpr int32_t EBCDIC_BASED_CCSIDS[] = {
    37,   256,  273,  274,  275,   277,   278,   280,   284,   285,   286,  290,  297,  300,  420,  424,
    425,  500,  803,  834,  835,   837,   838,   870,   871,   875,   880,  905,  918,  924,  930,  931,
    933,  935,  937,  939,  1025,  1026,  1047,  1097,  1112,  1123,  1130, 1132, 1137, 1140, 1141, 1142,
    1143, 1144, 1145, 1146, 1147,  1148,  1149,  1153,  1154,  1155,  1156, 1157, 1158, 1160, 1164, 1165,
    1166, 1364, 1371, 1388, 1390,  1399,  4517,  4899,  4930,  4933,  4971, 5026, 5035, 5123, 8482, 8612,
    9027, 9030, 9067, 9580, 12712, 13218, 13676, 16684, 16804, 20780, 33058};
constexpr std::string_view EBCDIC_REGISTERED_PAGES =
    "037 273 274 275 277 278 280 284 285 290 297 420 424 500 870 871 880 905 918 1026 1047 00924 "
    "01140 01141 01142 01143 01144 01145 01146 01147 01148 01149";
constexpr std::string_view EBCDIC_CS_PAGES =
    "037 273 274 275 277 278 280 284 285 290 297 420 424 500 870 871 880 905 918 1026";

constexpr std::string_view UTF32_NAMES = "UTF32 UTF-32";
constexpr std::string_view UCS2_NAMES = "UCS2 UCS-2 CSUNICODE ISO-10646-UCS-2";

using Names = std::string_view;  // words between blanks
using Numbers = std::span<const int32_t>;

struct NameTable {
    Names names;
    Numbers numbers;
    Names registered;  // digits behind "ZOV"
    Names withCs;      // digits behind "CSZOV"
};

constexpr NameTable UTF16_TABLE = {UTF16_BASED_ENCODINGS, UTF16_COMPATIBLE_CCSIDS, {}, {}};
constexpr NameTable ASCII_TABLE = {ASCII_COMPATIBLE_ENCODINGS, ASCII_COMPATIBLE_CCSIDS,
                                   ASCII_REGISTERED_PAGES, ASCII_CS_PAGES};
constexpr NameTable EBCDIC_TABLE = {EBCDIC_BASED_ENCODINGS, EBCDIC_BASED_CCSIDS, EBCDIC_REGISTERED_PAGES,
                                    EBCDIC_CS_PAGES};

// Takes the first word off.
std::string_view nextWord(Names* names) {
    const std::string_view word = names->substr(0, names->find(' '));
    names->remove_prefix(std::min(word.size() + 1, names->size()));
    return word;
}

size_t countWords(Names names) {
    size_t count = 0;
    for (; !names.empty(); nextWord(&names)) ++count;
    return count;
}

bool holds(Names names, const char* name) {
    const size_t length = std::strlen(name);
    while (!names.empty()) {
        const std::string_view word = nextWord(&names);
        if (word.size() == length && strncasecmp(word.data(), name, length) == 0) return true;
    }
    return false;
}

bool holds(Numbers numbers, int64_t number) {
    for (const int32_t entry : numbers) {
        if (entry == number) return true;
    }
    return false;
}

bool isAllDigits(const char* text) {
    return *text != 0 && std::strspn(text, "0123456789") == std::strlen(text);
}

// The number that the digits say, if they are its plain form; -1 otherwise.
int64_t plainNumber(const char* digits) {
    return isAllDigits(digits) && (digits[0] != '0' || digits[1] == 0) ? std::strtoll(digits, nullptr, 10)
                                                                       : -1;
}

// What stands behind a prefix; null if the text does not begin with it.
const char* behind(const char* text, const char* prefix) {
    const size_t length = std::strlen(prefix);
    return strncasecmp(text, prefix, length) == 0 ? text + length : nullptr;
}

bool isPageName(const NameTable& table, const char* name) {
    if (const char* digits = behind(name, "ZOV-"); digits != nullptr) {
        return holds(table.numbers, plainNumber(digits));
    }
    if (const char* digits = behind(name, "CSZOV"); digits != nullptr) return holds(table.withCs, digits);
    if (const char* digits = behind(name, "ZOV"); digits != nullptr) return holds(table.registered, digits);
    return false;
}

bool isIn(const NameTable& table, const char* name) {
    if (holds(table.names, name) || isPageName(table, name)) return true;
    return isAllDigits(name) && holds(table.numbers, std::strtoll(name, nullptr, 10));
}

int32_t rows(const NameTable& table) {
    return static_cast<int32_t>(countWords(table.names) + table.numbers.size() +
                                countWords(table.registered) + countWords(table.withCs));
}

}  // namespace

bool DFDLCharsetUtils_isEncodingUTF16(const char* name) { return isIn(UTF16_TABLE, name); }
bool DFDLCharsetUtils_isEncodingASCIICompatible(const char* name) { return isIn(ASCII_TABLE, name); }
bool DFDLCharsetUtils_isEncodingEBCDIC(const char* name) { return isIn(EBCDIC_TABLE, name); }
bool DFDLCharsetUtils_isEncodingUTF32(const char* name) { return holds(UTF32_NAMES, name); }
bool DFDLCharsetUtils_isEncodingUCS2(const char* name) { return holds(UCS2_NAMES, name); }
bool DFDLCharsetUtils_encodingIsNumeric(const char* name) { return isAllDigits(name); }

int32_t DFDLCharsetUtils_countNames(CharsetNameTable table) {
    constexpr const NameTable* TABLES[] = {&UTF16_TABLE, &ASCII_TABLE, &EBCDIC_TABLE};
    return rows(*TABLES[table]);
}
