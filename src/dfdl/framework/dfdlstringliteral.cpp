#include "dfdl/framework/dfdlstringliteral.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <string_view>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/dfdlustringbuffer.h"
#include "dfdl/framework/entitynames.h"

namespace {

constexpr std::u16string_view NEW_LINES = u"\u000A\u000D\u0085\u2028";
constexpr std::u16string_view WHITE_SPACE =
    u"\u0009\u000A\u000B\u000C\u000D\u0020\u0085\u00A0\u1680\u180E\u2000\u2001\u2002\u2003\u2004\u2005\u2006"
    u"\u2007\u2008\u2009\u200A\u2028\u2029\u202F\u205F\u3000";
constexpr UChar32 LAST_CODE_POINT = 0x10FFFF;

// One pass over the text of a literal.
struct Parse {
    DFDLStringLiteral* literal;
    DFDLUStringBuffer* text;  // plain text that is not yet a part
};

void addPart(Parse& parse, StringPart* part) { ArrayList_addPointer(parse.literal->parts, part); }

void flush(Parse& parse) {
    if (parse.text->length == 0) return;
    const std::u16string_view text(parse.text->chars, static_cast<size_t>(parse.text->length));
    addPart(parse, new_StringPart(parse.literal->heap, text, PART_TEXT));
    parse.text->length = 0;
}

void addCodePoint(Parse& parse, uint32_t codePoint) {
    const auto point = static_cast<UChar32>(codePoint);
    if (point > 0xFFFF) DFDLUStringBuffer_appendUChar(parse.text, U16_LEAD(point));
    DFDLUStringBuffer_appendUChar(parse.text, point > 0xFFFF ? U16_TRAIL(point) : static_cast<UChar>(point));
}

bool addNumeric(Parse& parse, std::u16string_view digits, int32_t radix) {
    auto length = static_cast<int32_t>(digits.size());
    const uint32_t codePoint = DFDLStringLiteral_format(digits.data(), &length, radix);
    if (codePoint > static_cast<uint32_t>(LAST_CODE_POINT)) return false;
    addCodePoint(parse, codePoint);
    return true;
}

bool addByte(Parse& parse, std::u16string_view digits) {
    if (digits.size() > 2) return false;
    flush(parse);
    auto length = static_cast<int32_t>(digits.size());
    const uint32_t byte = DFDLStringLiteral_format(digits.data(), &length, 16);
    addPart(parse, new_StringPartForByte(parse.literal->heap, static_cast<uint8_t>(byte)));
    return true;
}

// "NL", "ES" or a name that begins with W.
void addClass(Parse& parse, std::u16string_view name) {
    DFDLHeapAdapter* heap = parse.literal->heap;
    flush(parse);
    if (name.starts_with(u"NL")) return addPart(parse, new_StringPart(heap, NEW_LINES, PART_NEW_LINE));
    if (name == u"ES") {
        parse.literal->hasEmptyString = true;
        return addPart(parse, new_StringPart(heap, {}, PART_EMPTY_STRING));
    }
    if (name.size() <= 2) return;
    const StringPartKind kind = name.size() == 3  ? PART_WHITE_SPACE
                                : name[3] == u'*' ? PART_WHITE_SPACE_STAR
                                                  : PART_WHITE_SPACE_PLUS;
    addPart(parse, new_StringPart(heap, WHITE_SPACE, kind));
}

bool addNumberSign(Parse& parse, std::u16string_view name) {
    if (name.size() > 1 && name[1] == u'x') return addNumeric(parse, name.substr(2), 16);
    if (name.size() > 1 && name[1] == u'r') return addByte(parse, name.substr(2));
    return addNumeric(parse, name.substr(1), 10);
}

bool addEntity(Parse& parse, std::u16string_view name) {
    if (name.empty()) return false;
    if (name[0] == u'#') return addNumberSign(parse, name);
    const int32_t character = EntityNames_characterOf(name);
    if (character >= 0) {
        addCodePoint(parse, static_cast<uint32_t>(character));
        return true;
    }
    if (character == ENTITY_UNKNOWN) return false;
    addClass(parse, name);
    return true;
}

// What stands behind a percent sign, up to the next one.
bool addToken(Parse& parse, std::u16string_view token) {
    const size_t end = token.find(u';');
    if (end == std::u16string_view::npos || !addEntity(parse, token.substr(0, end))) return false;
    const std::u16string_view rest = token.substr(end + 1);
    DFDLUStringBuffer_appendUChars(parse.text, rest.data(), static_cast<int32_t>(rest.size()));
    return true;
}

bool parseText(Parse& parse, std::u16string_view text) {
    while (!text.empty()) {
        const size_t plain = std::min(text.find(u'%'), text.size());
        DFDLUStringBuffer_appendUChars(parse.text, text.data(), static_cast<int32_t>(plain));
        text.remove_prefix(plain);
        if (text.empty()) break;
        text.remove_prefix(1);
        if (text.empty()) return false;
        if (text[0] == u'%') {
            DFDLUStringBuffer_appendUChar(parse.text, u'%');
            text.remove_prefix(1);
            continue;
        }
        const size_t length = std::min(text.find(u'%'), text.size());
        if (!addToken(parse, text.substr(0, length))) return false;
        text.remove_prefix(length);
    }
    flush(parse);
    return true;
}

// The text of a literal that is nothing but text.
void joinText(DFDLStringLiteral* literal, DFDLUStringBuffer* text) {
    text->length = 0;
    for (int32_t index = 0; index < ArrayList_size(literal->parts); ++index) {
        const StringPart* part = DFDLStringLiteral_part(literal, index);
        if (part->kind != PART_TEXT) return;
        DFDLUStringBuffer_appendDFDLUString(text, part->value);
    }
    literal->unicodeValue = new_DFDLUStringFromUChars(literal->heap, text->chars, text->length);
}

}  // namespace

DFDLStringLiteral* new_DFDLStringLiteral(DFDLHeapAdapter* heap, const DFDLUString* source) {
    auto* this_ = DFDLHeapAdapter_new<DFDLStringLiteral>(heap);
    this_->parts = new_ArrayListOfPointers(heap, 0);
    if (source != nullptr) this_->source = new_DFDLUStringFromDFDLUString(source, heap);
    return this_;
}

void delete_DFDLStringLiteral(DFDLStringLiteral* this_) {
    if (this_ == nullptr) return;
    while (!ArrayList_isEmpty(this_->parts))
        delete_StringPart(ArrayList_popPointer<StringPart>(this_->parts));
    delete_ArrayList(this_->parts);
    delete_DFDLUString(this_->unicodeValue);
    delete_DFDLUString(this_->source);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

bool DFDLStringLiteral_parse(DFDLStringLiteral* this_) {
    std::u16string_view text = DFDLUString_view(this_->source);
    if (text.starts_with(u"{{")) text.remove_prefix(1);  // a literal and no expression
    Parse parse = {this_, new_DFDLUStringBuffer(this_->heap)};
    const bool valid = parseText(parse, text);
    if (valid) joinText(this_, parse.text);
    delete_DFDLUStringBuffer(parse.text);
    return valid;
}

const DFDLUString* DFDLStringLiteral_getUnicodeString(const DFDLStringLiteral* this_) {
    return this_->unicodeValue;
}

UChar DFDLStringLiteral_getCharacterValue(const DFDLStringLiteral* this_) {
    for (int32_t index = 0; index < DFDLStringLiteral_partCount(this_); ++index) {
        const StringPart* part = DFDLStringLiteral_part(this_, index);
        if (part->kind == PART_TEXT && part->value->length == 1) return part->value->chars[0];
    }
    return 0;
}

int32_t DFDLStringLiteral_getByteValue(const DFDLStringLiteral* this_) {
    return DFDLStringLiteral_partCount(this_) == 0 ? -1 : DFDLStringLiteral_part(this_, 0)->byteValue;
}

uint32_t DFDLStringLiteral_format(const UChar* digits, int32_t* length, int32_t radix) {
    uint32_t value = 0;
    int32_t used = 0;
    for (; used < *length; ++used) {
        const int32_t digit = u_digit(digits[used], static_cast<int8_t>(radix));
        if (digit < 0 || digits[used] > 0x7F) break;
        const uint64_t next = uint64_t{value} * static_cast<uint64_t>(radix) + static_cast<uint64_t>(digit);
        value = static_cast<uint32_t>(std::min<uint64_t>(next, LAST_CODE_POINT + 1));
    }
    *length = used;
    return value;
}

int32_t DFDLStringLiteral_partCount(const DFDLStringLiteral* this_) { return ArrayList_size(this_->parts); }

const StringPart* DFDLStringLiteral_part(const DFDLStringLiteral* this_, int32_t index) {
    return ArrayList_getPointer<StringPart>(this_->parts, index);
}
