#include "dfdl/decimal/decunits.h"

#include <algorithm>

namespace {

uint32_t unitAt(DecUnits units, int64_t index) {
    return index >= 0 && index < units.count ? units.at[index] : 0;
}

int64_t floorDivide(int64_t value, int64_t by) { return value >= 0 ? value / by : -((by - 1 - value) / by); }

int32_t digitsOfUnit(uint32_t unit) {
    int32_t digits = 0;
    while (digits < DEC_UNIT_DIGITS && unit >= DEC_POWERS[digits]) ++digits;
    return digits;
}

bool anyNotZero(const uint32_t* units, int64_t count) {
    return std::any_of(units, units + count, [](uint32_t unit) { return unit != 0; });
}

// One unit less, and an `upper` that takes the place of a borrow.
uint32_t takeAway(int64_t difference, uint32_t* borrow) {
    *borrow = difference < 0 ? 1 : 0;
    return static_cast<uint32_t>(difference < 0 ? difference + DEC_UNIT_BASE : difference);
}

// The product of units and a single one; the carry that is left.
uint32_t scale(uint32_t* units, int64_t count, uint32_t factor) {
    uint64_t carry = 0;
    for (int64_t i = 0; i < count; ++i) {
        carry += static_cast<uint64_t>(units[i]) * factor;
        units[i] = static_cast<uint32_t>(carry % DEC_UNIT_BASE);
        carry /= DEC_UNIT_BASE;
    }
    return static_cast<uint32_t>(carry);
}

bool divideBySingle(const uint32_t* dividend, int64_t count, uint32_t divisor, uint32_t* quotient) {
    uint64_t remainder = 0;
    for (int64_t i = count - 1; i >= 0; --i) {
        remainder = remainder * DEC_UNIT_BASE + dividend[i];
        quotient[i] = static_cast<uint32_t>(remainder / divisor);
        remainder %= divisor;
    }
    return remainder != 0;
}

// The next unit of a quotient from the top units alone: right or one too large.
uint64_t estimate(const uint32_t* top, const uint32_t* divisorTop) {
    const uint64_t twoUnits = static_cast<uint64_t>(top[0]) * DEC_UNIT_BASE + top[-1];
    uint64_t guess = std::min<uint64_t>(twoUnits / divisorTop[0], DEC_UNIT_BASE - 1);
    uint64_t remainder = twoUnits - guess * divisorTop[0];
    while (remainder < DEC_UNIT_BASE && guess * divisorTop[-1] > remainder * DEC_UNIT_BASE + top[-2]) {
        --guess;
        remainder += divisorTop[0];
    }
    return guess;
}

// Takes `factor` times the divisor from the dividend's count + 1 units; whether that was too much.
bool takeMultiple(uint32_t* dividend, const uint32_t* divisor, int64_t count, uint64_t factor) {
    uint64_t carry = 0;
    uint32_t borrow = 0;
    for (int64_t i = 0; i < count; ++i) {
        carry += factor * divisor[i];
        const auto taken = static_cast<int64_t>(carry % DEC_UNIT_BASE);
        dividend[i] = takeAway(static_cast<int64_t>(dividend[i]) - taken - borrow, &borrow);
        carry /= DEC_UNIT_BASE;
    }
    const int64_t top = static_cast<int64_t>(dividend[count]) - static_cast<int64_t>(carry) - borrow;
    dividend[count] = takeAway(top, &borrow);
    return borrow != 0;
}

void giveBack(uint32_t* dividend, const uint32_t* divisor, int64_t count) {
    uint32_t carry = 0;
    for (int64_t i = 0; i < count; ++i) {
        const uint32_t sum = dividend[i] + divisor[i] + carry;
        carry = sum >= DEC_UNIT_BASE ? 1 : 0;
        dividend[i] = sum - (carry != 0 ? DEC_UNIT_BASE : 0);
    }
    dividend[count] = 0;  // what was borrowed there comes back
}

}  // namespace

int64_t decUnits_digits(DecUnits units) {
    int64_t top = units.count;
    while (top > 0 && units.at[top - 1] == 0) --top;
    return top == 0 ? 0 : (top - 1) * DEC_UNIT_DIGITS + digitsOfUnit(units.at[top - 1]);
}

uint32_t decUnits_window(DecUnits units, int64_t lowest) {
    const int64_t index = floorDivide(lowest, DEC_UNIT_DIGITS);
    const int64_t offset = lowest - index * DEC_UNIT_DIGITS;
    const uint32_t low = unitAt(units, index);
    if (offset == 0) return low;
    const uint32_t high = unitAt(units, index + 1) % DEC_POWERS[offset];
    return low / DEC_POWERS[offset] + high * DEC_POWERS[DEC_UNIT_DIGITS - offset];
}

bool decUnits_anyBelow(DecUnits units, int64_t position) {
    if (position <= 0) return false;
    const int64_t whole = position / DEC_UNIT_DIGITS;
    if (anyNotZero(units.at, std::min(whole, units.count))) return true;
    return unitAt(units, whole) % DEC_POWERS[position % DEC_UNIT_DIGITS] != 0;
}

DecRest decUnits_rest(DecUnits units, int64_t position) {
    const uint32_t first = decUnits_digit(units, position - 1);
    if (first > 5) return DEC_REST_ABOVE_HALF;
    const bool more = decUnits_anyBelow(units, position - 1);
    if (first == 5) return more ? DEC_REST_ABOVE_HALF : DEC_REST_HALF;
    return first != 0 || more ? DEC_REST_BELOW_HALF : DEC_REST_NONE;
}

int64_t decUnits_trailingZeros(DecUnits units, int64_t most) {
    int64_t zeros = 0;
    while (zeros + DEC_UNIT_DIGITS <= most && unitAt(units, zeros / DEC_UNIT_DIGITS) == 0) {
        zeros += DEC_UNIT_DIGITS;
    }
    while (zeros < most && decUnits_digit(units, zeros) == 0) ++zeros;
    return zeros;
}

int32_t decUnits_compareFromTop(DecUnits a, int64_t aDigits, DecUnits b, int64_t bDigits) {
    const int64_t most = std::max(aDigits, bDigits);
    for (int64_t done = DEC_UNIT_DIGITS; done < most + DEC_UNIT_DIGITS; done += DEC_UNIT_DIGITS) {
        const uint32_t ofA = decUnits_window(a, aDigits - done);
        const uint32_t ofB = decUnits_window(b, bDigits - done);
        if (ofA != ofB) return ofA < ofB ? -1 : 1;
    }
    return 0;
}

void decUnits_shift(DecUnits source, int64_t digitsUp, uint32_t* target, int64_t count) {
    for (int64_t i = 0; i < count; ++i) target[i] = decUnits_window(source, i * DEC_UNIT_DIGITS - digitsUp);
}

void decUnits_add(DecUnits a, int64_t aDigitsUp, DecUnits b, int64_t bDigitsUp, uint32_t* target,
                  int64_t count) {
    uint32_t carry = 0;
    for (int64_t i = 0; i < count; ++i) {
        const int64_t lowest = i * DEC_UNIT_DIGITS;
        const uint32_t sum =
            decUnits_window(a, lowest - aDigitsUp) + decUnits_window(b, lowest - bDigitsUp) + carry;
        carry = sum >= DEC_UNIT_BASE ? 1 : 0;
        target[i] = sum - (carry != 0 ? DEC_UNIT_BASE : 0);
    }
}

void decUnits_subtract(DecUnits a, int64_t aDigitsUp, DecUnits b, int64_t bDigitsUp, uint32_t* target,
                       int64_t count) {
    uint32_t borrow = 0;
    for (int64_t i = 0; i < count; ++i) {
        const int64_t lowest = i * DEC_UNIT_DIGITS;
        const auto ofA = static_cast<int64_t>(decUnits_window(a, lowest - aDigitsUp));
        target[i] = takeAway(ofA - decUnits_window(b, lowest - bDigitsUp) - borrow, &borrow);
    }
}

void decUnits_increment(uint32_t* units, int64_t count) {
    for (int64_t i = 0; i < count; ++i) {
        if (++units[i] < DEC_UNIT_BASE) return;
        units[i] = 0;
    }
}

// Long division with the divisor scaled so that its top unit is half of the base or more: then the top units
// tell a unit of the quotient to within one.
bool decUnits_divide(uint32_t* dividend, int64_t dividendCount, uint32_t* divisor, int64_t divisorCount,
                     uint32_t* quotient) {
    if (divisorCount == 1) return divideBySingle(dividend, dividendCount, divisor[0], quotient);
    const uint32_t factor = DEC_UNIT_BASE / (divisor[divisorCount - 1] + 1);
    scale(divisor, divisorCount, factor);
    dividend[dividendCount] = scale(dividend, dividendCount, factor);
    for (int64_t i = dividendCount - divisorCount; i >= 0; --i) {
        uint64_t unit = estimate(dividend + i + divisorCount, divisor + divisorCount - 1);
        if (unit != 0 && takeMultiple(dividend + i, divisor, divisorCount, unit)) {
            giveBack(dividend + i, divisor, divisorCount);
            --unit;
        }
        quotient[i] = static_cast<uint32_t>(unit);
    }
    return anyNotZero(dividend, divisorCount);
}
