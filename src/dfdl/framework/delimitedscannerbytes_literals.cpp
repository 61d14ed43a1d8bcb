// Delimiters of the schema as bytes of an encoding.
#include <unicode/utf16.h>

#include "dfdl/converters/charsetmanager.h"
#include "dfdl/converters/dfdlcharset.h"
#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/framework/dfdlstringliteral.h"
#include "dfdl/framework/stringliteralcache.h"
#include "dfdl/helpers/listvaluedproperty.h"
#include "dfdl/pif/spif.h"

namespace {

using Literal = CompiledDFDLStringLiteral;

// One literal being compiled.
struct Build {
    DelimitedScannerBytes* scanner;
    const MarkupSource* source;
    UConverter* converter;
    const DFDLUString* encodingName;
    Literal* literal;
    bool firsts[256];  // the bytes that it can start with
    bool atStart;      // only parts that may be missing have come
};

// Bytes of a text, at least one; null where the encoding lacks a character.
struct Encoded {
    uint8_t* bytes;
    int32_t count;
};

void release(const Build* build, const Encoded& encoded) {
    if (encoded.bytes != nullptr) DFDLHeapAdapter_arrayDeallocate(build->scanner->heap, encoded.bytes);
}

Encoded encode(const Build* build, std::u16string_view text) {
    Encoded encoded{};
    encoded.bytes =
        CharsetManager_convertTo(build->scanner->heap, text.data(), static_cast<int32_t>(text.size()),
                                 &encoded.count, build->converter);
    if (encoded.count > 0) return encoded;
    // ICU leaves out, without a word, characters that are for show only and that the encoding lacks. A
    // delimiter of no bytes would be found everywhere, over and over.
    release(build, encoded);
    return {};
}

bool refuse(const Build* build, const DFDLUString* text) {
    ProcessingError_setValues(build->scanner->context->currentError, __FILE__, __LINE__,
                              DFDLParser_characterEncodingError, ERROR_PROCESSING, SUBKIND_NONE, "%Z%Z", text,
                              build->encodingName);
    return false;
}

void startWith(Build* build, const Encoded& encoded) {
    if (build->atStart) build->firsts[encoded.bytes[0]] = true;
}

bool addExact(Build* build, const DFDLUString* text) {
    const Encoded encoded = encode(build, DFDLUString_view(text));
    if (encoded.bytes == nullptr) return refuse(build, text);
    startWith(build, encoded);
    CompiledDFDLStringLiteral_addByteMarkupPart(build->literal, encoded.bytes, encoded.count);
    return true;
}

Encoded encodeForm(const Build* build, const DFDLUString* text,
                   DFDLUString* (*form)(const DFDLUString*, DFDLHeapAdapter*)) {
    DFDLUString* changed = form(text, build->scanner->heap);
    const Encoded encoded = encode(build, DFDLUString_view(changed));
    delete_DFDLUString(changed);
    return encoded;
}

// Data are compared with both forms byte by byte. A text whose forms differ in length, or of which the
// encoding has but one, can only be taken as it is written.
bool addAnyCase(Build* build, const DFDLUString* text) {
    const Encoded lower = encodeForm(build, text, DFDLUString_toLower);
    const Encoded upper = encodeForm(build, text, DFDLUString_toUpper);
    if (lower.bytes == nullptr || upper.bytes == nullptr || lower.count != upper.count) {
        release(build, lower);
        release(build, upper);
        return addExact(build, text);
    }
    startWith(build, lower);
    startWith(build, upper);
    CompiledDFDLStringLiteral_addCharMarkupPart(build->literal, lower.bytes, upper.bytes, upper.count);
    return true;
}

bool addText(Build* build, const DFDLUString* text) {
    if (DFDLUString_length(text) == 0) return true;
    return build->source->ignoreCase ? addAnyCase(build, text) : addExact(build, text);
}

void addByte(Build* build, int32_t value) {
    auto* byte = DFDLHeapAdapter_newArray<uint8_t>(build->scanner->heap, 1);
    *byte = static_cast<uint8_t>(value);
    startWith(build, {byte, 1});
    build->literal->isCharacterText = false;
    CompiledDFDLStringLiteral_addByteMarkupPart(build->literal, byte, 1);
}

// What the encoding cannot say cannot stand in the data.
void addAlternative(Build* build, ArrayList* alternatives, std::u16string_view text) {
    const Encoded encoded = encode(build, text);
    if (encoded.bytes == nullptr) return;
    startWith(build, encoded);
    ArrayList_addPointer(alternatives, new_MnemonicPart(build->scanner->heap, encoded.bytes, encoded.count));
}

void addClass(Build* build, const StringPart* part) {
    const std::u16string_view members = DFDLUString_view(part->value);
    ArrayList* alternatives =
        new_ArrayListOfPointers(build->scanner->heap, static_cast<int32_t>(members.size()) + 1);
    if (part->kind == PART_NEW_LINE) addAlternative(build, alternatives, u"\r\n");
    for (size_t i = 0; i < members.size(); ++i) addAlternative(build, alternatives, members.substr(i, 1));
    CompiledDFDLStringLiteral_addMarkupPart(
        build->literal, alternatives, part->kind == PART_WHITE_SPACE_STAR,
        part->kind == PART_WHITE_SPACE_PLUS || part->kind == PART_WHITE_SPACE_STAR);
}

bool addPart(Build* build, const StringPart* part) {
    bool good = true;
    if (part->kind == PART_TEXT) {
        good = addText(build, part->value);
    } else if (part->kind == PART_BYTE) {
        addByte(build, part->byteValue);
    } else {
        addClass(build, part);
    }
    build->atStart = build->atStart && part->kind == PART_WHITE_SPACE_STAR;
    return good;
}

bool isRuntimeEncoding(const Build* build) {
    const TextEncodingTableRow* row =
        Table_row(build->scanner->pif->textEncodingTable, build->source->encodingIndex);
    return row != nullptr && row->iEncodingExprIndex != -1;
}

// A literal that has started with nothing but parts that may be missing needs no data at all.
void enter(const Build* build, CompiledMarkupSet* set) {
    for (int32_t byte = 0; byte < 256; ++byte) {
        if (build->firsts[byte]) {
            CompiledMarkupSet_addCompiledDFDLStringLiteral(set, static_cast<uint8_t>(byte), build->literal);
        }
    }
    if (build->atStart) CompiledMarkupSet_setZeroLengthLiteral(set, build->literal);
}

// Whether something can be entered at all: a class that the encoding has nothing of starts with no byte.
bool isEmpty(const Build* build) {
    if (build->atStart) return false;
    for (const bool first : build->firsts) {
        if (first) return false;
    }
    return true;
}

bool addParts(Build* build, const DFDLStringLiteral* literal) {
    for (int32_t i = 0; i < DFDLStringLiteral_partCount(literal); ++i) {
        if (!addPart(build, DFDLStringLiteral_part(literal, i))) return false;
    }
    return true;
}

bool addStringLiteral(Build* build, CompiledMarkupSet* set, const DFDLStringLiteral* literal) {
    if (ArrayList_size(set->allLiterals) >= MOST_LITERALS) {
        ProcessingError_setValues(build->scanner->context->currentError, __FILE__, __LINE__,
                                  DFDLParser_unsupportedConstruct, ERROR_SCHEMA_DEFINITION, SUBKIND_NONE,
                                  "%Z%s", literal->source, "more delimiters in scope than 4096");
        return false;
    }
    build->literal =
        new_CompiledDFDLStringLiteral(set->heap, literal->source, build->source->encodingIndex, false);
    build->literal->kind = build->source->kind;
    build->literal->hasRuntimeEncoding = isRuntimeEncoding(build);
    build->atStart = true;
    std::fill(std::begin(build->firsts), std::end(build->firsts), false);
    const bool good = addParts(build, literal);
    if (good && !isEmpty(build)) {
        enter(build, set);
    } else {
        delete_CompiledDFDLStringLiteral(build->literal);
    }
    return good;
}

// An empty text is nothing to look for, and nor is what says that there may be nothing.
bool isDelimiter(const DFDLStringLiteral* literal) {
    return !literal->hasEmptyString && DFDLStringLiteral_partCount(literal) > 0;
}

const DFDLStringLiteral* fetch(const Build* build, const DFDLUString* value) {
    const DFDLStringLiteral* literal =
        StringLiteralCache_getDFDLStringLiteral(build->scanner->literalCache, value);
    if (literal != nullptr) return literal;
    ProcessingError* error = build->scanner->context->currentError;
    const DFDLUString* name = GroupMemberTableRow_getElementName(build->source->element);
    ProcessingError_reset(error);
    ProcessingError_setValues(error, __FILE__, __LINE__, TEXT_INVALID_MNEMONIC, ERROR_SCHEMA_DEFINITION,
                              SUBKIND_NONE, "%Z%S%s", value, name == nullptr ? u"" : name->chars,
                              build->source->propertyName);
    return nullptr;
}

bool addAll(Build* build, CompiledMarkupSet* set, const ListValuedProperty* values) {
    for (int32_t i = 0; i < ListValuedProperty_size(values); ++i) {
        const DFDLStringLiteral* literal = fetch(build, ListValuedProperty_get(values, i));
        if (literal == nullptr) return false;
        if (isDelimiter(literal) && !addStringLiteral(build, set, literal)) return false;
    }
    return true;
}

}  // namespace

bool DelimitedScannerBytes_addDelimiterValuesToScannerData(DelimitedScannerBytes* this_,
                                                           CompiledMarkupSet* set,
                                                           const MarkupSource& source) {
    if (DFDLUString_length(source.list) == 0) return true;
    DFDLCharset* charset = CharsetManager_getDFDLEncoding(this_->charsetManager, source.encodingIndex);
    UConverter* converter = charset == nullptr ? nullptr : DFDLCharset_getConverter(charset);
    if (converter == nullptr) return false;
    Build build{this_, &source, converter, charset->name, nullptr, {}, true};
    ListValuedProperty* values = new_ListValuedProperty(this_->heap, source.list, false);
    ListValuedProperty_buildProperties(values);
    const bool good = addAll(&build, set, values);
    delete_ListValuedProperty(values);
    return good;
}
