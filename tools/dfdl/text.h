#ifndef DFDL_TOOLS_TEXT_H
#define DFDL_TOOLS_TEXT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The library speaks UTF-16, terminals and files speak UTF-8.

void appendUtf8(std::string& out, char32_t codePoint);
// A lone surrogate becomes U+FFFD.
void appendUtf8(std::string& out, std::u16string_view text);
// Nothing if `text` is not well-formed UTF-8.
std::optional<std::u16string> toUtf16(std::string_view text);

// The code point at `index`, which moves behind it; a lone surrogate is returned as it is.
char32_t nextCodePoint(std::u16string_view text, size_t& index);
constexpr bool isSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// A zero-terminated string of the library; null is the empty one.
std::u16string_view viewOf(const char16_t* text);
std::u16string_view viewOf(const char16_t* text, int32_t length);

void appendHex(std::string& out, const uint8_t* bytes, size_t length);  // upper case
// The shortest text that reads back as the same number.
void appendNumber(std::string& out, float value);
void appendNumber(std::string& out, double value);
void appendNumber(std::string& out, int64_t value);
void appendNumber(std::string& out, uint64_t value);

#endif
