#include "dfdl/framework/stringliteralcache.h"

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/messagekeys.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/dfdlstringliteral.h"
#include "dfdl/helpers/listvaluedproperty.h"

namespace {

constexpr int32_t BUCKETS = 16;
constexpr int32_t VOLATILE_CAPACITY = 10;

void deleteLiteral(DFDLHeapAdapter* /*heap*/, void* literal) {
    delete_DFDLStringLiteral(static_cast<DFDLStringLiteral*>(literal));
}

void deleteList(DFDLHeapAdapter* /*heap*/, void* list) {
    delete_ListValuedProperty(static_cast<ListValuedProperty*>(list));
}

}  // namespace

StringLiteralCache* new_StringLiteralCache(DFDLHeapAdapter* heap,
                                           void (*deleteCompiledSet)(DFDLHeapAdapter*, void*)) {
    auto* this_ = DFDLHeapAdapter_new<StringLiteralCache>(heap);
    this_->compiledSets = new_DFDLStringHashMap(heap, BUCKETS, deleteCompiledSet);
    this_->literals = new_DFDLStringHashMap(heap, BUCKETS, deleteLiteral);
    this_->lists = new_DFDLStringHashMap(heap, BUCKETS, deleteList);
    this_->volatileSets = new_ArrayListOfPointers(heap, VOLATILE_CAPACITY);
    return this_;
}

void delete_StringLiteralCache(StringLiteralCache* this_) {
    if (this_ == nullptr) return;
    delete_ArrayList(this_->volatileSets);
    delete_DFDLStringHashMap(this_->compiledSets);
    delete_DFDLStringHashMap(this_->literals);
    delete_DFDLStringHashMap(this_->lists);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

DFDLStringLiteral* StringLiteralCache_getDFDLStringLiteral(StringLiteralCache* this_,
                                                           const DFDLUString* text) {
    auto* known = static_cast<DFDLStringLiteral*>(DFDLStringHashMap_get(this_->literals, text));
    if (known != nullptr) return known;
    DFDLStringLiteral* literal = new_DFDLStringLiteral(this_->heap, text);
    if (!DFDLStringLiteral_parse(literal)) {
        delete_DFDLStringLiteral(literal);
        ProcessingError_setValues(this_->heap->context->currentError, __FILE__, __LINE__,
                                  TEXT_INVALID_MNEMONIC, ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z%S%s", text, u"",
                                  "");
        return nullptr;
    }
    if (literal->source == nullptr) literal->source = new_DFDLUString(this_->heap);
    DFDLStringHashMap_put(this_->literals, literal->source, literal, true);
    return literal;
}

ListValuedProperty* StringLiteralCache_getDFDLStringLiteralList(StringLiteralCache* this_,
                                                                const DFDLUString* text) {
    auto* known = static_cast<ListValuedProperty*>(DFDLStringHashMap_get(this_->lists, text));
    if (known != nullptr) return known;
    ListValuedProperty* list = new_ListValuedProperty(this_->heap, text, true);
    ListValuedProperty_buildProperties(list);
    if (list->source == nullptr) list->source = new_DFDLUString(this_->heap);
    DFDLStringHashMap_put(this_->lists, list->source, list, true);
    return list;
}

void StringLiteralCache_reset(StringLiteralCache* this_) {
    while (!ArrayList_isEmpty(this_->volatileSets)) {
        auto* entry = ArrayList_popPointer<DFDLStringHashMapEntry>(this_->volatileSets);
        DFDLStringHashMap_removeDirect(this_->compiledSets, entry);
    }
}

bool matchStringLiteralList(StringLiteralCache* cache, const ListValuedProperty* list, bool ignoreCase,
                            const DFDLUString* text) {
    const int32_t count = list == nullptr ? 0 : ListValuedProperty_size(list);
    for (int32_t index = 0; index < count; ++index) {
        const DFDLStringLiteral* literal =
            StringLiteralCache_getDFDLStringLiteral(cache, ListValuedProperty_get(list, index));
        if (literal == nullptr) return false;
        const DFDLUString* value = DFDLStringLiteral_getUnicodeString(literal);
        if (value == nullptr) continue;
        if (ignoreCase ? DFDLUString_equalsIgnoreCase(value, text) : DFDLUString_equals(value, text))
            return true;
    }
    return false;
}
