#include <unicode/numfmt.h>

#include <algorithm>
#include <bit>

#include "dfdl/foundation/dfdldecimal.h"
#include "dfdl/foundation/dfdlicu.h"

namespace {

constexpr uint64_t INFINITE = 0x7FF0000000000000;
constexpr uint64_t SIGN = 0x8000000000000000;

uint64_t sizeBits(double value) { return std::bit_cast<uint64_t>(value) & ~SIGN; }

}  // namespace

int32_t dfdl_parseDecimal(const UNumberFormat* format, const UChar* characters, int32_t length,
                          int32_t* position, char* buffer, int32_t capacity, UErrorCode* status) {
    icu::Formattable value;
    parseDFDLRes(&value, format, characters, length, position, status, nullptr);
    if (U_FAILURE(*status)) return 0;
    const icu::StringPiece number = value.getDecimalNumber(*status);
    if (U_FAILURE(*status)) return 0;
    const int32_t count = std::min(static_cast<int32_t>(number.length()), capacity);
    std::copy_n(number.data(), count, buffer);
    return count;
}

int64_t dfdl_parseInt64(const UNumberFormat* format, const UChar* characters, int32_t length,
                        int32_t* position, DFDLDecimal* target, UErrorCode* status, int32_t* type) {
    icu::Formattable value;
    parseDFDLRes(&value, format, characters, length, position, status, type);
    if (U_FAILURE(*status)) return 0;
    if (*type == icu::Formattable::kInt64 || *type == icu::Formattable::kLong) return value.getInt64(*status);
    if (*type != icu::Formattable::kDouble) return 0;
    const icu::StringPiece number = value.getDecimalNumber(*status);
    if (U_SUCCESS(*status))
        DFDLDecimal_setString(target, number.data(), static_cast<int32_t>(number.length()));
    return 0;
}

int32_t dfdl_formatDecimal(const UNumberFormat* format, bool asDecimal, const char* text, int32_t length,
                           UChar* characters, int32_t capacity, UErrorCode* status) {
    const auto* formatter = reinterpret_cast<const icu::NumberFormat*>(format);
    const icu::StringPiece number(text, length);
    icu::UnicodeString result;
    if (asDecimal) {
        const icu::Formattable value(number, *status);
        icu::FieldPosition place;
        formatter->format(value, result, place, *status);
    } else {
        formatter->format(number, result, nullptr, *status);
    }
    const int32_t units = result.extract(characters, capacity, *status);
    return U_FAILURE(*status) ? 0 : units;
}

double dfdl_getTimeInMillis(const UCalendar* calendar, UErrorCode* status) {
    const double time = ucal_getMillis(calendar, status);
    return U_FAILURE(*status) ? 0.0 : time;
}

double dfdl_getNaN() { return std::bit_cast<double>(uint64_t{0x7FF8000000000000}); }
double dfdl_getInfinity() { return std::bit_cast<double>(INFINITE); }
bool dfdl_isNaN(double value) { return sizeBits(value) > INFINITE; }
bool dfdl_isInfinity(double value) { return sizeBits(value) == INFINITE; }
bool dfdl_isPosInfinity(double value) { return std::bit_cast<uint64_t>(value) == INFINITE; }
bool dfdl_isNegInfinity(double value) { return std::bit_cast<uint64_t>(value) == (INFINITE | SIGN); }
