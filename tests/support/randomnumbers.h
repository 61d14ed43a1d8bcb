#ifndef DFDL_TESTS_SUPPORT_RANDOMNUMBERS_H
#define DFDL_TESTS_SUPPORT_RANDOMNUMBERS_H

#include <random>
#include <string>

#include "support/grammarbuilder.h"

// For tests that hold the short roads against the general one: text numbers of all types and common patterns.
inline int belowOf(std::mt19937* random, int bound) {
    return static_cast<int>((*random)() % static_cast<uint32_t>(bound));
}

inline GrammarHandle addRandomNumber(GrammarHandle parent, const std::string& name, std::mt19937* random) {
    static constexpr const char* KINDS[] = {"INT",     "LONG",   "SHORT",        "UNSIGNEDBYTE",
                                            "INTEGER", "DOUBLE", "UNSIGNEDLONG", "DECIMAL",
                                            "FLOAT",   "BYTE",   "UNSIGNEDINT",  "NONNEGATIVEINTEGER"};
    static constexpr const char* PATTERNS[] = {"#0", "#,##0.###", "000", "#0.00", "+0;-0", "0.0E0", "#0%"};
    GrammarHandle number = parent.textNumber(name, KINDS[belowOf(random, 12)], PATTERNS[belowOf(random, 7)]);
    if (belowOf(random, 3) == 0)
        number.numberRow().set_inumbercheckpolicy(PIF::MPIFEnums::NUMBER_CHECKPOLICY_LAX);
    if (belowOf(random, 4) == 0) number.numberRow().set_idecimalsigned(false);
    if (belowOf(random, 8) == 0) number.numberRow().set_inumberzerorep("x");
    return number;
}

inline GrammarHandle addRandomCalendar(GrammarHandle parent, const std::string& name, std::mt19937* random) {
    struct Kind {
        const char* kind;
        const char* pattern;
    };
    static constexpr Kind KINDS[] = {{"DATE", "yyyyMMdd"},    {"DATE", "dd/MM/yy"},
                                     {"TIME", "HHmmss"},      {"DATETIME", "yyyyMMddHHmmss"},
                                     {"DATE", "dd MMM yyyy"}, {"DATETIME", "yyyy-MM-dd'T'HH:mm:ss.SSSZ"}};
    const Kind& kind = KINDS[belowOf(random, 6)];
    return parent.textCalendar(name, kind.kind, kind.pattern);
}

inline std::string randomStamp(std::mt19937* random) {
    static constexpr const char* TEXTS[] = {"20261123",       "23/11/26",    "235959",
                                            "20260228123000", "01 Jan 1999", "2026-02-28T12:30:00.250+0530",
                                            "20260230",       "99/99/99",    "15820101"};
    return TEXTS[belowOf(random, 9)];
}

inline std::string randomDigits(std::mt19937* random) {
    static constexpr const char* TEXTS[] = {
        "0",     "7",   "-12", "255",  "1,234.5", "00012", "+3",          "3.14",     "1000000",   "-0",
        "65536", "1E3", "5%",  "-0.5", "12.",     "1,23",  "99999999999", "0.000001", "0.0000001", "128"};
    return TEXTS[belowOf(random, belowOf(random, 3) == 0 ? 20 : 4)];
}

#endif
