#include "dfdl/framework/dfdlstringliteral.h"

#include <unicode/utf16.h>

#include <string_view>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/dfdlustringbuffer.h"
#include "dfdl/foundation/guard.h"

namespace {

constexpr std::u16string_view newLines = u"\n\r\u0085\u2028";
constexpr std::u16string_view whiteSpace =
    u"\t\n\v\f\r \u0085\u00A0\u1680\u180E\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A"
    u"\u2028\u2029\u202F\u205F\u3000";
constexpr uint32_t beyondUnicode = 0x110000;
constexpr UChar32 replacementCharacter = 0xFFFD;

// An entity is known by its first letters; what follows them is not looked at. The first entry that fits
// counts, so that a longer beginning stands before a shorter one. A length other than 0 must be the name's.
struct NamedCharacter {
    std::u16string_view beginning;
    size_t length;
    UChar character;
};
constexpr NamedCharacter namedCharacters[] = {
    {u"NU", 0, 0x00},   {u"SO", 2, 0x0E},  {u"SO", 0, 0x01}, {u"ST", 0, 0x02}, {u"ETB", 0, 0x17},
    {u"ET", 0, 0x03},   {u"EO", 0, 0x04},  {u"EN", 0, 0x05}, {u"EM", 0, 0x19}, {u"ES", 0, 0x1B},
    {u"AC", 0, 0x06},   {u"BE", 0, 0x07},  {u"BS", 0, 0x08}, {u"HT", 0, 0x09}, {u"LF", 0, 0x0A},
    {u"LS", 0, 0x2028}, {u"VT", 0, 0x0B},  {u"FF", 0, 0x0C}, {u"FS", 0, 0x1C}, {u"CR", 0, 0x0D},
    {u"CA", 0, 0x18},   {u"SI", 0, 0x0F},  {u"DL", 0, 0x10}, {u"DE", 0, 0x7F}, {u"DC1", 0, 0x11},
    {u"DC2", 0, 0x12},  {u"DC3", 0, 0x13}, {u"DC", 0, 0x14}, {u"NA", 0, 0x15}, {u"SY", 0, 0x16},
    {u"SU", 0, 0x1A},   {u"GS", 0, 0x1D},  {u"RS", 0, 0x1E}, {u"US", 0, 0x1F}, {u"SP", 0, 0x20},
    {u"NB", 0, 0xA0},   {u"NE", 0, 0x85},
};

const NamedCharacter* findNamed(std::u16string_view name) {
    for (const NamedCharacter& entry : namedCharacters) {
        if (name.starts_with(entry.beginning) && (entry.length == 0 || entry.length == name.size())) {
            return &entry;
        }
    }
    return nullptr;
}

struct Parse {
    DFDLStringLiteral* literal;
    DFDLUStringBuffer* text;  // plain text that has not become a part yet
};

void addPart(DFDLStringLiteral* literal, StringPart* part) { ArrayList_addPointer(literal->parts, part); }

void flush(const Parse& parse) {
    const std::u16string_view text = DFDLUStringBuffer_view(parse.text);
    if (text.empty()) return;
    addPart(parse.literal, new_StringPart(parse.literal->heap, text, PART_TEXT));
    DFDLUStringBuffer_reset(parse.text);
}

void appendText(const Parse& parse, std::u16string_view text) {
    DFDLUStringBuffer_appendUChars(parse.text, text.data(), static_cast<int32_t>(text.size()));
}

uint32_t number(std::u16string_view digits, int32_t radix) {
    auto length = static_cast<int32_t>(digits.size());
    return DFDLStringLiteral_format(digits.data(), &length, radix);
}

void appendCodePoint(const Parse& parse, uint32_t value) {
    const UChar32 codePoint = value < beyondUnicode ? static_cast<UChar32>(value) : replacementCharacter;
    if (codePoint > 0xFFFF) DFDLUStringBuffer_appendUChar(parse.text, U16_LEAD(codePoint));
    DFDLUStringBuffer_appendUChar(parse.text,
                                  codePoint > 0xFFFF ? U16_TRAIL(codePoint) : static_cast<UChar>(codePoint));
}

bool addNumeric(const Parse& parse, std::u16string_view name) {
    if (name.starts_with(u"#x")) {
        appendCodePoint(parse, number(name.substr(2), 16));
        return true;
    }
    if (!name.starts_with(u"#r")) {
        appendCodePoint(parse, number(name.substr(1), 10));
        return true;
    }
    const std::u16string_view digits = name.substr(2);
    if (digits.size() > 2) return false;
    flush(parse);
    addPart(parse.literal,
            new_StringPartForByte(parse.literal->heap, static_cast<uint8_t>(number(digits, 16))));
    return true;
}

bool addClass(const Parse& parse, std::u16string_view members, StringPartKind kind) {
    flush(parse);
    addPart(parse.literal, new_StringPart(parse.literal->heap, members, kind));
    return true;
}

bool addWhiteSpace(const Parse& parse, std::u16string_view name) {
    if (name.size() == 3) return addClass(parse, whiteSpace, PART_WHITE_SPACE);
    if (name.size() != 2) {
        const bool star = name.size() > 3 && name[3] == u'*';
        return addClass(parse, whiteSpace, star ? PART_WHITE_SPACE_STAR : PART_WHITE_SPACE_PLUS);
    }
    flush(parse);
    return true;
}

bool addEntity(const Parse& parse, std::u16string_view name) {
    if (name.starts_with(u'#')) return addNumeric(parse, name);
    if (name.starts_with(u'W')) return addWhiteSpace(parse, name);
    if (name.starts_with(u"NL")) return addClass(parse, newLines, PART_NEW_LINE);
    if (name == u"ES") {
        parse.literal->hasEmptyString = true;
        return addClass(parse, {}, PART_EMPTY_STRING);
    }
    const NamedCharacter* named = findNamed(name);
    if (named == nullptr) return false;
    DFDLUStringBuffer_appendUChar(parse.text, named->character);
    return true;
}

// What stands behind a percent sign, up to the next one. Takes what it reads off the text.
bool addEscape(const Parse& parse, std::u16string_view* text) {
    if (text->starts_with(u'%')) {
        DFDLUStringBuffer_appendUChar(parse.text, u'%');
        text->remove_prefix(1);
        return true;
    }
    const std::u16string_view token = text->substr(0, text->find(u'%'));
    const size_t end = token.find(u';');
    if (end == std::u16string_view::npos || !addEntity(parse, token.substr(0, end))) return false;
    appendText(parse, token.substr(end + 1));
    text->remove_prefix(token.size());
    return true;
}

bool addAll(const Parse& parse, std::u16string_view text) {
    if (text.starts_with(u"{{")) text.remove_prefix(1);
    while (!text.empty()) {
        const std::u16string_view plain = text.substr(0, text.find(u'%'));
        appendText(parse, plain);
        text.remove_prefix(plain.size());
        if (text.empty()) break;
        text.remove_prefix(1);
        if (!addEscape(parse, &text)) return false;
    }
    flush(parse);
    return true;
}

// Made when the literal is parsed, so that it can be read by several threads afterwards.
void setUnicodeValue(const Parse& parse) {
    DFDLUStringBuffer_reset(parse.text);
    for (int32_t i = 0; i < DFDLStringLiteral_partCount(parse.literal); ++i) {
        const StringPart* part = DFDLStringLiteral_part(parse.literal, i);
        if (part->kind != PART_TEXT) return;
        DFDLUStringBuffer_appendDFDLUString(parse.text, part->value);
    }
    parse.literal->unicodeValue = DFDLUStringBuffer_toDFDLUString(parse.text);
}

int32_t digitValue(UChar unit) {
    if (unit >= u'0' && unit <= u'9') return unit - u'0';
    if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
    if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
    return INT32_MAX;
}

}  // namespace

DFDLStringLiteral* new_DFDLStringLiteral(DFDLHeapAdapter* heap, const DFDLUString* source) {
    auto* this_ = DFDLHeapAdapter_new<DFDLStringLiteral>(heap);
    if (source != nullptr) this_->source = new_DFDLUStringFromDFDLUString(source, heap);
    this_->parts = new_ArrayListOfPointers(heap, 10);
    return this_;
}

void delete_DFDLStringLiteral(DFDLStringLiteral* this_) {
    if (this_ == nullptr) return;
    for (int32_t i = 0; i < ArrayList_size(this_->parts); ++i) {
        delete_StringPart(ArrayList_getPointer<StringPart>(this_->parts, i));
    }
    delete_ArrayList(this_->parts);
    delete_DFDLUString(this_->unicodeValue);
    delete_DFDLUString(this_->source);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

bool DFDLStringLiteral_parse(DFDLStringLiteral* this_) {
    const Owned<DFDLUStringBuffer, delete_DFDLUStringBuffer> text(new_DFDLUStringBuffer(this_->heap));
    const Parse parse{this_, text.get()};
    if (!addAll(parse, DFDLUString_view(this_->source))) return false;
    setUnicodeValue(parse);
    return true;
}

const DFDLUString* DFDLStringLiteral_getUnicodeString(const DFDLStringLiteral* this_) {
    return this_->unicodeValue;
}

UChar DFDLStringLiteral_getCharacterValue(const DFDLStringLiteral* this_) {
    for (int32_t i = 0; i < DFDLStringLiteral_partCount(this_); ++i) {
        const StringPart* part = DFDLStringLiteral_part(this_, i);
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
    for (; used < *length && digitValue(digits[used]) < radix; ++used) {
        if (value >= beyondUnicode) continue;
        value = value * static_cast<uint32_t>(radix) + static_cast<uint32_t>(digitValue(digits[used]));
    }
    *length = used;
    return value;
}

int32_t DFDLStringLiteral_partCount(const DFDLStringLiteral* this_) { return ArrayList_size(this_->parts); }

const StringPart* DFDLStringLiteral_part(const DFDLStringLiteral* this_, int32_t index) {
    return ArrayList_getPointer<StringPart>(this_->parts, index);
}
