#include "dfdl/foundation/dfdlconstants.h"

#include <cstring>
#include <string_view>

#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"

namespace {

struct NumberConstant {
    DFDLDecimal* DFDLConstants::*field;
    const char* text;
};

constexpr NumberConstant NUMBERS[] = {{&DFDLConstants::maxSignedQ, "9223372036854775807"},
                                      {&DFDLConstants::minSignedQ, "-9223372036854775808"},
                                      {&DFDLConstants::maxUnsignedQ, "18446744073709551615"},
                                      {&DFDLConstants::zero, "0"}};

struct TextConstant {
    DFDLUString* DFDLConstants::*field;
    std::u16string_view text;
};

constexpr TextConstant TEXTS[] = {{&DFDLConstants::ieee, u"ieee"},
                                  {&DFDLConstants::zov390Hex, u"zov390Hex"},
                                  {&DFDLConstants::zeroOffset, u"+00:00"},
                                  {&DFDLConstants::utc, u"UTC"},
                                  {&DFDLConstants::gmt, u"GMT"},
                                  {&DFDLConstants::z, u"Z"},
                                  {&DFDLConstants::newLineEntity, u"%NL;"},
                                  {&DFDLConstants::whitespaceEntity, u"%WSP;"},
                                  {&DFDLConstants::anyWhitespaceEntity, u"%WSP*;"},
                                  {&DFDLConstants::someWhitespaceEntity, u"%WSP+;"},
                                  {&DFDLConstants::positiveInfinity, u"INF"},
                                  {&DFDLConstants::negativeInfinity, u"-INF"},
                                  {&DFDLConstants::notANumber, u"NaN"},
                                  {&DFDLConstants::digitZero, u"0"},
                                  {&DFDLConstants::digitOne, u"1"},
                                  {&DFDLConstants::trueText, u"true"},
                                  {&DFDLConstants::falseText, u"false"},
                                  {&DFDLConstants::empty, u""}};

// By CalendarPattern.
constexpr std::u16string_view PATTERNS[CALENDAR_PATTERN_COUNT] = {u"yyyy-MM-dd",
                                                                  u"yyyy-MM-ddXXX",
                                                                  u"HH:mm:ss",
                                                                  u"HH:mm:ssXXX",
                                                                  u"HH:mm:ss.SSSSSS",
                                                                  u"HH:mm:ss.SSSSSSXXX",
                                                                  u"yyyy-MM-dd'T'HH:mm:ss",
                                                                  u"yyyy-MM-dd'T'HH:mm:ssXXX",
                                                                  u"yyyy-MM-dd'T'HH:mm:ss.SSSSSS",
                                                                  u"yyyy-MM-dd'T'HH:mm:ss.SSSSSSXXX"};

DFDLUString* newString(DFDLHeapAdapter* heap, std::u16string_view literal) {
    return new_DFDLUStringUseUChars(heap, literal.data(), static_cast<int32_t>(literal.size()));
}

UDateFormat* openDateFormat(std::u16string_view pattern) {
    const auto length = static_cast<int32_t>(pattern.size());
    UErrorCode status = U_ZERO_ERROR;
    Owned<UDateFormat, udat_close> format(
        udat_open(UDAT_PATTERN, UDAT_PATTERN, nullptr, nullptr, 0, pattern.data(), length, &status));
    if (U_FAILURE(status)) return nullptr;
    udat_applyPattern(format.get(), false, pattern.data(), length);
    return format.release();
}

}  // namespace

DFDLConstants* new_DFDLConstants(DFDLHeapAdapter* heap) {
    Owned<DFDLConstants, delete_DFDLConstants> this_(DFDLHeapAdapter_new<DFDLConstants>(heap));
    UErrorCode status = U_ZERO_ERROR;
    this_->defaultConverter = ucnv_open(nullptr, &status);
    if (this_->defaultConverter == nullptr) DFDLHeapAdapter_refuse(heap);
    for (const NumberConstant& number : NUMBERS) {
        (*this_).*number.field = new_DFDLDecimalFromChar(heap, this_.get(), number.text,
                                                         static_cast<int32_t>(std::strlen(number.text)));
    }
    for (const TextConstant& text : TEXTS) (*this_).*text.field = newString(heap, text.text);
    for (int32_t i = 0; i < CALENDAR_PATTERN_COUNT; ++i) {
        this_->calendarPatterns[i] = newString(heap, PATTERNS[i]);
    }
    return this_.release();
}

void delete_DFDLConstants(DFDLConstants* this_) {
    if (this_ == nullptr) return;
    for (UDateFormat* format : this_->dateFormats) udat_close(format);
    for (DFDLUString* pattern : this_->calendarPatterns) delete_DFDLUString(pattern);
    for (const TextConstant& text : TEXTS) delete_DFDLUString(this_->*text.field);
    for (const NumberConstant& number : NUMBERS) delete_DFDLDecimal(this_->*number.field);
    ucnv_close(this_->defaultConverter);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

UDateFormat* DFDLConstants_getDateFormat(DFDLConstants* this_, CalendarPattern pattern) {
    UDateFormat*& format = this_->dateFormats[pattern];
    if (format == nullptr) format = openDateFormat(PATTERNS[pattern]);
    return format;
}
