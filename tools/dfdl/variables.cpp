#include "variables.h"

#include <charconv>
#include <fstream>
#include <string_view>

#include "pif.pb.h"
#include "text.h"

namespace {

struct Assignment {
    std::u16string name;
    std::u16string namespaceUri;
    std::string value;
};

enum class Result { OK, MALFORMED, REFUSED };

Result fromLibrary(int code) { return code == 0 ? Result::OK : Result::REFUSED; }

bool parseNumber(std::string_view text, auto& number) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

// A schema knows three special numbers under names of its own, and no others.
template <class Float>
bool parseFloat(std::string_view text, Float& number) {
    if (text == "NaN") {
        number = std::numeric_limits<Float>::quiet_NaN();
    } else if (text == "INF" || text == "-INF") {
        number = std::numeric_limits<Float>::infinity() * (text[0] == '-' ? -1 : 1);
    } else {
        return text.find_first_not_of("0123456789+-.eE") == text.npos && parseNumber(text, number);
    }
    return true;
}

template <auto Set, class Number>
Result setNumber(DFDLParser* parser, const Assignment& a) {
    Number number{};
    bool good = false;
    if constexpr (std::is_floating_point_v<Number>) {
        good = parseFloat(a.value, number);
    } else {
        good = parseNumber(a.value, number);
    }
    if (!good) return Result::MALFORMED;
    return fromLibrary(Set(parser, a.name.c_str(), a.namespaceUri.c_str(), number));
}

Result setUByte(DFDLParser* parser, const Assignment& a) {
    uint8_t number = 0;
    if (!parseNumber(a.value, number)) return Result::MALFORMED;
    const int done = DFDLParser_setVariableUByte(parser, a.name.c_str(), a.namespaceUri.c_str(), number);
    return done == 1 ? Result::OK : Result::REFUSED;
}

Result setDecimal(DFDLParser* parser, const Assignment& a) {
    const std::string_view text = a.value;
    const size_t sign = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
    const std::string_view digits = text.substr(sign);
    const bool good = digits.find_first_of("0123456789") != digits.npos &&
                      digits.find_first_not_of("0123456789.") == digits.npos &&
                      digits.find('.') == digits.rfind('.');
    if (!good) return Result::MALFORMED;
    return fromLibrary(DFDLParser_setVariableDecimal(parser, a.name.c_str(), a.namespaceUri.c_str(),
                                                     text.data(), static_cast<int32_t>(text.size())));
}

Result setInteger(DFDLParser* parser, const Assignment& a) {
    return a.value.find('.') == std::string::npos ? setDecimal(parser, a) : Result::MALFORMED;
}

Result setBoolean(DFDLParser* parser, const Assignment& a) {
    const bool yes = a.value == "true" || a.value == "1";
    if (!yes && a.value != "false" && a.value != "0") return Result::MALFORMED;
    return fromLibrary(
        DFDLParser_setVariableBoolean(parser, a.name.c_str(), a.namespaceUri.c_str(), yes ? 1 : 0));
}

Result setString(DFDLParser* parser, const Assignment& a) {
    const auto text = toUtf16(a.value);
    if (!text) return Result::MALFORMED;
    return fromLibrary(DFDLParser_setVariableString(parser, a.name.c_str(), a.namespaceUri.c_str(),
                                                    text->c_str(), static_cast<int32_t>(text->size())));
}

Result setBinary(DFDLParser* parser, const Assignment& a) {
    if (a.value.size() % 2 != 0) return Result::MALFORMED;
    std::vector<uint8_t> bytes(a.value.size() / 2);
    for (size_t i = 0; i < bytes.size(); i++) {
        const char* pair = a.value.data() + 2 * i;
        if (std::from_chars(pair, pair + 2, bytes[i], 16).ptr != pair + 2) return Result::MALFORMED;
    }
    return fromLibrary(DFDLParser_setVariableBinary(parser, a.name.c_str(), a.namespaceUri.c_str(),
                                                    bytes.data(), static_cast<DFDLWORD>(bytes.size())));
}

struct Kind {
    std::string_view name;  // as grammars write it
    Result (*set)(DFDLParser*, const Assignment&);
};
constexpr Kind KINDS[] = {
    {"STRING", setString},
    {"BOOLEAN", setBoolean},
    {"HEXBINARY", setBinary},
    {"FLOAT", setNumber<DFDLParser_setVariableFloat, float>},
    {"DOUBLE", setNumber<DFDLParser_setVariableDouble, double>},
    {"DECIMAL", setDecimal},
    {"INTEGER", setInteger},
    {"NONNEGATIVEINTEGER", setInteger},
    {"LONG", setNumber<DFDLParser_setVariableLong, int64_t>},
    {"INT", setNumber<DFDLParser_setVariableInt, int32_t>},
    {"SHORT", setNumber<DFDLParser_setVariableShort, int16_t>},
    {"BYTE", setNumber<DFDLParser_setVariableByte, int8_t>},
    {"UNSIGNEDLONG", setNumber<DFDLParser_setVariableULong, uint64_t>},
    {"UNSIGNEDINT", setNumber<DFDLParser_setVariableUInt, uint32_t>},
    {"UNSIGNEDSHORT", setNumber<DFDLParser_setVariableUShort, uint16_t>},
    {"UNSIGNEDBYTE", setUByte},
};

bool split(const std::string& text, Assignment& result) {
    size_t start = 0;
    std::string namespaceUri;
    if (text.starts_with('{')) {
        const size_t end = text.find('}');
        if (end == text.npos) return false;
        namespaceUri = text.substr(1, end - 1);
        start = end + 1;
    }
    const size_t equals = text.find('=', start);
    if (equals == text.npos || equals == start) return false;
    const auto name = toUtf16(text.substr(start, equals - start));
    const auto uri = toUtf16(namespaceUri);
    if (!name || !uri) return false;
    result = {*name, *uri, text.substr(equals + 1)};
    return true;
}

// The type's name; empty for a variable that the grammar does not have.
std::string typeOf(const PIF::MPIF& grammar, const Assignment& wanted) {
    for (const auto& row : grammar.variables_table().row()) {
        if (toUtf16(row.iname()) == wanted.name && toUtf16(row.inamespace()) == wanted.namespaceUri) {
            return row.isimpletype();
        }
    }
    return {};
}

Result set(DFDLParser* parser, const std::string& type, const Assignment& assignment, std::string& message) {
    if (type == "DATE" || type == "TIME" || type == "DATETIME") {
        message = "the variable is a calendar, and calendars cannot be set from text";
        return Result::REFUSED;
    }
    for (const Kind& kind : KINDS) {
        if (kind.name != type) continue;
        const Result result = kind.set(parser, assignment);
        if (result == Result::MALFORMED) message = "the value is no " + type;
        return result;
    }
    return setString(parser, assignment);  // the library says that there is no such variable
}

}  // namespace

bool setVariables(DFDLParser* parser, const std::string& grammarPath,
                  const std::vector<std::string>& assignments, std::string& message) {
    if (assignments.empty()) return true;
    PIF::MPIF grammar;
    std::ifstream file(grammarPath, std::ios::binary);
    grammar.ParsePartialFromIstream(&file);  // the library has loaded it before, and judged it
    for (const std::string& text : assignments) {
        Assignment assignment;
        if (!split(text, assignment)) {
            message = "--set " + text + ": write NAME=VALUE or {NAMESPACE}NAME=VALUE";
            return false;
        }
        std::string reason;
        if (set(parser, typeOf(grammar, assignment), assignment, reason) == Result::OK) continue;
        if (!reason.empty()) message = "--set " + text + ": " + reason;
        return false;
    }
    return true;
}
