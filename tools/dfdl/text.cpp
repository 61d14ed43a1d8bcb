#include "text.h"

#include <charconv>
#include <cmath>

namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;

template <class Number>
void append(std::string& out, Number value) {
    char digits[40];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    out.append(digits, end);
}

template <class Float>
void appendFloat(std::string& out, Float value) {
    if (std::isnan(value)) {
        out += "NaN";
    } else if (std::isinf(value)) {
        out += value < 0 ? "-INF" : "INF";
    } else {
        append(out, value);
    }
}

// Length of the sequence that `lead` begins, 0 for a byte that begins none.
size_t sequenceLength(uint8_t lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead < 0xE0) return 2;
    if (lead >= 0xE0 && lead < 0xF0) return 3;
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

bool decode(std::string_view sequence, char32_t& codePoint) {
    static constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const size_t length = sequence.size();
    const auto lead = static_cast<uint8_t>(sequence[0]);
    codePoint = length == 1 ? lead : lead & (0x7Fu >> length);
    for (size_t i = 1; i < length; i++) {
        const auto next = static_cast<uint8_t>(sequence[i]);
        if ((next & 0xC0) != 0x80) return false;
        codePoint = codePoint << 6 | (next & 0x3Fu);
    }
    return codePoint >= smallest[length] && codePoint <= 0x10FFFF && !isSurrogate(codePoint);
}

void appendUtf16(std::u16string& out, char32_t c) {
    if (c < 0x10000) {
        out += static_cast<char16_t>(c);
    } else {
        out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
        out += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
    }
}

}  // namespace

void appendUtf8(std::string& out, char32_t c) {
    const auto tail = [&out](char32_t bits) { out += static_cast<char>(0x80 | (bits & 0x3F)); };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | c >> 6);
        tail(c);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | c >> 12);
        tail(c >> 6);
        tail(c);
    } else {
        out += static_cast<char>(0xF0 | c >> 18);
        tail(c >> 12);
        tail(c >> 6);
        tail(c);
    }
}

void appendUtf8(std::string& out, std::u16string_view text) {
    for (size_t i = 0; i < text.size();) {
        const char32_t c = nextCodePoint(text, i);
        appendUtf8(out, isSurrogate(c) ? REPLACEMENT : c);
    }
}

std::optional<std::u16string> toUtf16(std::string_view text) {
    std::u16string result;
    for (size_t i = 0; i < text.size();) {
        const size_t length = sequenceLength(static_cast<uint8_t>(text[i]));
        char32_t codePoint = 0;
        if (length == 0 || length > text.size() - i || !decode(text.substr(i, length), codePoint)) return {};
        appendUtf16(result, codePoint);
        i += length;
    }
    return result;
}

char32_t nextCodePoint(std::u16string_view text, size_t& index) {
    const char32_t first = text[index++];
    if (first < 0xD800 || first > 0xDBFF || index == text.size()) return first;
    const char32_t second = text[index];
    if (second < 0xDC00 || second > 0xDFFF) return first;
    index++;
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

std::u16string_view viewOf(const char16_t* text) {
    return text == nullptr ? std::u16string_view() : std::u16string_view(text);
}

std::u16string_view viewOf(const char16_t* text, int32_t length) {
    if (text == nullptr || length <= 0) return {};
    return {text, static_cast<size_t>(length)};
}

void appendHex(std::string& out, const uint8_t* bytes, size_t length) {
    static constexpr char digits[] = "0123456789ABCDEF";
    for (size_t i = 0; i < length; i++) {
        out += digits[bytes[i] >> 4];
        out += digits[bytes[i] & 15];
    }
}

void appendNumber(std::string& out, float value) { appendFloat(out, value); }
void appendNumber(std::string& out, double value) { appendFloat(out, value); }
void appendNumber(std::string& out, int64_t value) { append(out, value); }
void appendNumber(std::string& out, uint64_t value) { append(out, value); }
