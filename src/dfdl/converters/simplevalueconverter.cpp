#include "dfdl/converters/simplevalueconverter.h"

#include <string_view>

#include "dfdl/converters/textnumberformatmgr.h"
#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/framework/dfdlstringliteral.h"
#include "dfdl/framework/stringliteralcache.h"

namespace {

constexpr int32_t BUCKETS = 16;

using OwnedText = Owned<DFDLUString, delete_DFDLUString>;

void deleteText(DFDLHeapAdapter* /*heap*/, void* text) {
    delete_DFDLUString(static_cast<DFDLUString*>(text));
}

std::u16string_view textOf(const StringPart* part, const DFDLUString* newLine) {
    switch (part->kind) {
        case PART_NEW_LINE:
            return DFDLUString_view(newLine);
        case PART_WHITE_SPACE:
        case PART_WHITE_SPACE_PLUS:
            return u" ";
        case PART_WHITE_SPACE_STAR:
        case PART_EMPTY_STRING:
            return u"";
        default:
            return DFDLUString_view(part->value);
    }
}

}  // namespace

SimpleValueConverter* new_SimpleValueConverter(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<SimpleValueConverter>(heap);
    this_->literals = new_StringLiteralCache(heap, nullptr);
    this_->literalStrings = new_DFDLStringHashMap(heap, BUCKETS, deleteText);
    return this_;
}

void delete_SimpleValueConverter(SimpleValueConverter* this_) {
    if (this_ == nullptr) return;
    delete_DFDLStringHashMap(this_->literalStrings);
    delete_StringLiteralCache(this_->literals);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

const DFDLStringLiteral* SimpleValueConverter_getDFDLStringLiteral(SimpleValueConverter* this_,
                                                                   const DFDLUString* literal) {
    return StringLiteralCache_getDFDLStringLiteral(this_->literals, literal);
}

DFDLUString* SimpleValueConverter_resolveDFDLStringLiteral(SimpleValueConverter* this_,
                                                           const DFDLUString* literal,
                                                           const DFDLUString* newLine,
                                                           DFDLHeapAdapter* heap) {
    const DFDLStringLiteral* parsed = SimpleValueConverter_getDFDLStringLiteral(this_, literal);
    if (parsed == nullptr) return nullptr;
    OwnedText text(DFDLUStringPooler_getDFDLUString(heap));
    for (int32_t i = 0; i < DFDLStringLiteral_partCount(parsed); ++i) {
        const StringPart* part = DFDLStringLiteral_part(parsed, i);
        OwnedText line;
        if (part->kind == PART_NEW_LINE) {
            line.reset(SimpleValueConverter_resolveDFDLStringLiteral(this_, newLine, nullptr, heap));
            if (line == nullptr) return nullptr;
        }
        const std::u16string_view written = textOf(part, line.get());
        text.reset(DFDLUString_concatWithUChars(text.get(), written.data(),
                                                static_cast<int32_t>(written.size()), heap));
    }
    return text.release();
}

const DFDLUString* SimpleValueConverter_formatCharBasedDFDLStringLiteral(SimpleValueConverter* this_,
                                                                         const DFDLUString* literal,
                                                                         const DFDLUString* newLine) {
    OwnedText key(DFDLUString_concat(literal, newLine, this_->heap));
    if (void* known = DFDLStringHashMap_get(this_->literalStrings, key.get()))
        return static_cast<DFDLUString*>(known);
    OwnedText text(SimpleValueConverter_resolveDFDLStringLiteral(this_, literal, newLine, this_->heap));
    if (text == nullptr) return nullptr;
    DFDLStringHashMap_put(this_->literalStrings, key.get(), text.get(), false);
    return text.release();
}

DFDLUString* SimpleValueConverter_reformatPattern(DFDLHeapAdapter* heap,
                                                  const NumberFormatProperties& properties) {
    VirtualPoints points;
    if (!NumberFormatProperties_findVirtualPoints(&properties, &points)) return nullptr;
    DFDLUString* pattern =
        DFDLUStringPooler_getDFDLUStringFromView(heap, DFDLUString_view(properties.pattern));
    DFDLUString_setAt(pattern, points.positive, u'.');
    if (points.negative != -1) DFDLUString_setAt(pattern, points.negative, u'.');
    return pattern;
}
