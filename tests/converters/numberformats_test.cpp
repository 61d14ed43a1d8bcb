// Number formats of a serializer: against Python's decimals (numberformats.py), and the rows that none can be
// made from.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "dfdl/converters/simplevalueconverter.h"
#include "dfdl/converters/textnumberformatmgr.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlicu.h"
#include "dfdl/foundation/dfdlustring.h"
#include "support/bufferrig.h"
#include "support/testheap.h"

namespace {

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
    return parts;
}

std::string narrow(std::u16string_view text) { return {text.begin(), text.end()}; }

// A serializer's manager, and a number named "item" with a row that tests fill in.
struct FormatRig {
    BufferRig rig;
    TextNumberTableRow row;
    SimpleValueConverter* converter = new_SimpleValueConverter(rig.heap);
    TextNumberFormatMgr* manager = new_TextNumberFormatMgr(rig.heap, true);

    explicit FormatRig(const DFDLHeapImpl* heap = nullptr) : rig(heap) {
        manager->converter = converter;
        row.id = 1;
        row.iNumberBase = NUMBER_BASE_10;
        rig.item.iPhysicalType = TEXT_NUMBER;
        rig.item.physicalRow = &row;
        rig.item.simpleTypeKind = SIMPLE_DECIMAL;
    }
    ~FormatRig() {
        clear();
        delete_TextNumberFormatMgr(manager);
        delete_SimpleValueConverter(converter);
    }
    FormatRig(const FormatRig&) = delete;
    FormatRig& operator=(const FormatRig&) = delete;

    DFDLUString* text(const std::string& chars) {
        const std::u16string wide(chars.begin(), chars.end());
        return DFDLUStringPooler_getDFDLUStringFromView(rig.heap, wide);
    }
    void clear() {
        for (DFDLUString* one :
             {row.iNumberPattern, row.iNumberGroupingSeparator, row.iNumberDecimalSeparator,
              row.iNumberExponentCharacter, row.iNumberInfinityRep, row.iNumberNaNRep, row.iNumberZeroRep})
            delete_DFDLUString(one);
        row = TextNumberTableRow();
        row.id = 1;
        row.iNumberBase = NUMBER_BASE_10;
    }
    // "name=value" with "|" between them, or "-".
    void describe(const std::string& pattern, const std::string& settings);

    NumberFormatCacheEntry* entry() {
        return TextNumberFormatMgr_getCachedNumberFormat(manager, rig.context->currentError, &rig.item,
                                                         false);
    }
    // A row that has changed.
    NumberFormatCacheEntry* newEntry() {
        TextNumberFormatMgr_reset(manager, false);
        return entry();
    }
};

using Set = std::function<void(FormatRig&, const std::string&)>;

const std::map<std::string, int> MODES = {{"CEILING", ROUND_CEILING},     {"FLOOR", ROUND_FLOOR},
                                          {"DOWN", ROUND_DOWN},           {"UP", ROUND_UP},
                                          {"HALF_EVEN", ROUND_HALF_EVEN}, {"HALF_DOWN", ROUND_HALF_DOWN},
                                          {"HALF_UP", ROUND_HALF_UP}};

Set textInto(DFDLUString* TextNumberTableRow::*field) {
    return [field](FormatRig& it, const std::string& value) { it.row.*field = it.text(value); };
}
Set numberInto(int32_t TextNumberTableRow::*field) {
    return [field](FormatRig& it, const std::string& value) { it.row.*field = std::stoi(value); };
}

const std::map<std::string, Set> SETTINGS = {
    {"-", [](FormatRig&, const std::string&) {}},
    {"grouping", textInto(&TextNumberTableRow::iNumberGroupingSeparator)},
    {"point", textInto(&TextNumberTableRow::iNumberDecimalSeparator)},
    {"exponent", textInto(&TextNumberTableRow::iNumberExponentCharacter)},
    {"infinity", textInto(&TextNumberTableRow::iNumberInfinityRep)},
    {"nan", textInto(&TextNumberTableRow::iNumberNaNRep)},
    {"zero", textInto(&TextNumberTableRow::iNumberZeroRep)},
    {"virtual", numberInto(&TextNumberTableRow::iVirtualDecimalIndex)},
    {"boundary", numberInto(&TextNumberTableRow::iSubPatternBoudaryIndex)},
    {"negative", numberInto(&TextNumberTableRow::iNegativeVirtualDecimalIndex)},
    {"groupingexpression", numberInto(&TextNumberTableRow::iNumberGroupingSepExprIndex)},
    {"pointexpression", numberInto(&TextNumberTableRow::iNumberDecimalSepExprIndex)},
    {"exponentexpression", numberInto(&TextNumberTableRow::iNumberExponentCharExprIndex)},
    {"base", [](FormatRig& it, const std::string&) { it.row.iNumberBase = NUMBER_BASE_16; }},
    {"mode",
     [](FormatRig& it, const std::string& value) {
         it.row.iNumberRoundingMode = static_cast<NumberRoundingModeEnum>(MODES.at(value));
     }},
    {"step",
     [](FormatRig& it, const std::string& value) {
         it.row.iTextNumberRounding = ROUNDING_EXPLICIT;
         it.row.iTextNumberRoundingIncrement = std::stod(value);
     }},
};

void FormatRig::describe(const std::string& pattern, const std::string& settings) {
    clear();
    row.iNumberPattern = text(pattern);
    for (const std::string& setting : split(settings, '|')) {
        const size_t equals = setting.find('=');
        SETTINGS.at(setting.substr(0, equals))(*this,
                                               equals == setting.npos ? "" : setting.substr(equals + 1));
    }
}

std::string write(const NumberFormatCacheEntry* entry, const std::string& kind, const std::string& value) {
    UChar text[100];
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    if (kind == "integer") {
        length = unum_formatInt64(entry->format, std::stoll(value), text, 100, nullptr, &status);
    } else if (kind == "double") {
        length = unum_formatDouble(entry->format, std::stod(value), text, 100, nullptr, &status);
    } else {
        length = dfdl_formatDecimal(entry->format, kind == "decimal", value.data(),
                                    static_cast<int32_t>(value.size()), text, 100, &status);
    }
    return U_FAILURE(status) ? u_errorName(status) : narrow({text, static_cast<size_t>(length)});
}

TEST(WrittenNumber, IsWhatPythonWrites) {
    std::ifstream file(DFDL_SOURCE_DIR "/tests/converters/numberformats.txt");
    FormatRig it;
    std::string described;
    NumberFormatCacheEntry* entry = nullptr;
    int count = 0;
    for (std::string line; std::getline(file, line); ++count) {
        const std::vector<std::string> cells = split(line, '\t');
        ASSERT_EQ(cells.size(), 5U) << line;
        if (described != cells[0] + '\t' + cells[1]) {
            it.describe(cells[0], cells[1]);
            entry = it.newEntry();
            ASSERT_NE(entry, nullptr) << line << ": " << it.rig.takeError();
            described = cells[0] + '\t' + cells[1];
        }
        EXPECT_EQ(write(entry, cells[2], cells[3]), cells[4]) << line;
        if (cells[2] == "decimal") {
            EXPECT_EQ(write(entry, "unwrapped decimal", cells[3]), cells[4]) << line;
        }
    }
    EXPECT_GT(count, 2000);
}

struct Case {
    const char* fault;
    const char* pattern;
    const char* settings;
    const char* kind;
    const char* value;
    const char* text;  // or the error
};

constexpr char NINETY_NINE[] =
    "100000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000";

const Case CASES[] = {
    {"words for numbers without end are not the row's", "0.0", "infinity=oo|nan=none", "double", "inf", "oo"},
    {"one of them loses its sign", "0.0", "infinity=oo|nan=none", "double", "-inf", "-oo"},
    {"words for what is no number are not the row's", "0.0", "infinity=oo|nan=none", "double", "nan", "none"},
    {"a decimal has other words", "0.0", "infinity=oo|nan=none", "decimal", "-Infinity", "-oo"},
    {"a decimal that is none is written as a number", "0.0", "nan=none", "decimal", "NaN", "none"},
    {"a text that is no decimal is written", "0.0", "-", "decimal", "1.2.3", "U_DECIMAL_NUMBER_SYNTAX_ERROR"},
    {"digits are lost behind those of a decimal128", "0.###", "-", "decimal",
     "1234567890123456789012345678901234567890.125", "1234567890123456789012345678901234567890.125"},
    {"a text is cut where the buffer ends", "0", "-", "decimal", "1E+100", "U_BUFFER_OVERFLOW_ERROR"},
    {"a text that fills the buffer is refused", "0", "-", "decimal", "1E+98", NINETY_NINE},
    {"entities are left in words", "0", "nan=a%SP;%WSP+;b%WSP*;c", "double", "nan", "a  bc"},
    {"a zero representation is the zero digit", "000", "zero=Z", "integer", "5", "005"},
    {"a separator that is an entity stays one", "#,##0", "grouping=%HT;", "integer", "1234", "1\t234"},
    {"the base matters", "#,##0", "grouping='|base=16", "integer", "1234", "1'234"},
    {"separators that are the same are refused", "#,##0.0", "grouping=.", "decimal", "1234.5", "1.234.5"},
    {"a character that the pattern has not is looked at", "0", "grouping=ab|point=ab|exponent=ab", "integer",
     "1234", "1234"},
    {"the point of a virtual one is looked at", "0V0", "virtual=1|point=ab", "decimal", "1.5", "15"},
    {"what is not given is not ICU's", "#,##0.0", "-", "decimal", "1234.5", "1,234.5"},
    {"grouping by two characters", "#,##0", "grouping=ab", "integer", "1", "CTDU4018E item"},
    {"grouping by nothing but white space", "#,##0", "grouping=%WSP*;", "integer", "1", "CTDU4018E item"},
    {"a point of two characters", "0.0", "point=ab", "integer", "1", "CTDU4019E item"},
    {"an exponent of two characters", "0.0E0", "exponent=ab", "integer", "1", "CTDU4095E item"},
    {"a separator that is no literal", "#,##0", "grouping=%no;", "integer", "1",
     "CTDV1438E %no; item textStandardGroupingSeparator"},
    {"a word that is no literal", "#,##0", "nan=%no;", "integer", "1",
     "CTDV1438E %no; item textStandardNaNRep"},
    {"grouping by an expression", "#,##0", "groupingexpression=0", "integer", "1",
     "CTDU4900E  grouping separators given by an expression"},
    {"a point by an expression", "0.0", "pointexpression=0", "integer", "1",
     "CTDU4900E  decimal separators given by an expression"},
    {"an exponent by an expression", "0E0", "exponentexpression=0", "integer", "1",
     "CTDU4900E  exponent characters given by an expression"},
    {"a pattern that ICU refuses", "#0;;", "-", "integer", "1", "CTDU4028E item U_UNQUOTED_SPECIAL"},
    {"a V behind the pattern's end", "0V0", "virtual=3", "integer", "1", ""},
    {"a V behind the sign of negative numbers", "0V0;(0V0)", "virtual=1|boundary=1|negative=2", "integer",
     "1", ""},
    {"a V behind the end of what negative numbers have", "0V0;(0V0)", "virtual=1|boundary=3|negative=5",
     "integer", "1", ""},
};

TEST(WrittenNumber, IsAsTheRowHasIt) {
    for (const Case& one : CASES) {
        FormatRig it;
        it.describe(one.pattern, one.settings);
        const NumberFormatCacheEntry* entry = it.entry();
        const std::string outcome = entry == nullptr ? it.rig.takeError() : write(entry, one.kind, one.value);
        EXPECT_EQ(outcome, one.text) << one.fault;
    }
}

TEST(WrittenNumber, HasOneFormatForEachRow) {
    FormatRig it;
    it.describe("#,##0.0", "grouping='");
    const NumberFormatCacheEntry* first = it.entry();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(it.entry(), first);
    TextNumberFormatMgr_reset(it.manager, true);
    EXPECT_EQ(it.entry(), first) << "it stays from one document to the next";
    EXPECT_EQ(first->virtualDecimalDigits, 0);
    it.row.decimalScalingPosition = -2;
    EXPECT_EQ(it.newEntry()->virtualDecimalDigits, -2);
    it.rig.item.physicalRow = nullptr;
    EXPECT_EQ(it.entry(), nullptr);
    EXPECT_EQ(it.rig.takeError(), "");
}

TEST(WrittenNumber, LosesNothingWhenMemoryRunsOut) {
    const int failures = sweepFailingAllocations([](const DFDLHeapImpl& heap) {
        FormatRig it(&heap);
        it.describe("#,##0V0;(0V0)", "virtual=5|boundary=7|negative=2|grouping=%SP;|nan=none|infinity=oo");
        const NumberFormatCacheEntry* entry = it.entry();
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(write(entry, "decimal", "-1234.5"), "(1 2345)");
    });
    EXPECT_GT(failures, 10);
}

struct LiteralCase {
    const char* literal;
    const char* newLine;  // null: none
    const char* text;     // or the error
};

const LiteralCase LITERALS[] = {
    {"", nullptr, ""},
    {"a%%b", nullptr, "a%b"},
    {"a%NL;b", "%CR;%LF;", "a\r\nb"},
    {"a%NL;b", nullptr, "ab"},
    {"%NL;", "x%NL;", "x"},
    {"%WSP;%WSP+;%WSP*;%ES;", "%LF;", "  "},
    {"%#r41;B", nullptr, "AB"},
    {"a%", nullptr, "CTDV1438E a%  "},
    {"%NL;", "%", "CTDV1438E %  "},
};

TEST(WrittenLiteral, IsTextWithoutEntities) {
    FormatRig it;
    for (const LiteralCase& one : LITERALS) {
        DFDLUString* literal = it.text(one.literal);
        DFDLUString* newLine = one.newLine == nullptr ? nullptr : it.text(one.newLine);
        const DFDLUString* text =
            SimpleValueConverter_formatCharBasedDFDLStringLiteral(it.converter, literal, newLine);
        const std::string outcome = text == nullptr ? it.rig.takeError() : narrow(DFDLUString_view(text));
        EXPECT_EQ(outcome, one.text) << one.literal;
        if (text != nullptr) {
            EXPECT_EQ(SimpleValueConverter_formatCharBasedDFDLStringLiteral(it.converter, literal, newLine),
                      text)
                << "worked out twice: " << one.literal;
        }
        delete_DFDLUString(literal);
        delete_DFDLUString(newLine);
    }
}

}  // namespace
