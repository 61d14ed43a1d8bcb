#include "dfdl/framework/stringliteralcache.h"

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlstringhashmap.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/framework/dfdlstringliteral.h"
#include "dfdl/helpers/listvaluedproperty.h"

namespace {

constexpr int32_t bucketCount = 16;

template <class T, void (*Delete)(T*)>
void deleteValue(DFDLHeapAdapter*, void* value) {
    Delete(static_cast<T*>(value));
}

}  // namespace

StringLiteralCache* new_StringLiteralCache(DFDLHeapAdapter* heap,
                                           void (*deleteCompiledSet)(DFDLHeapAdapter*, void*)) {
    auto* this_ = DFDLHeapAdapter_new<StringLiteralCache>(heap);
    this_->compiledSets = new_DFDLStringHashMap(heap, bucketCount, deleteCompiledSet);
    this_->literals =
        new_DFDLStringHashMap(heap, bucketCount, deleteValue<DFDLStringLiteral, delete_DFDLStringLiteral>);
    this_->lists =
        new_DFDLStringHashMap(heap, bucketCount, deleteValue<ListValuedProperty, delete_ListValuedProperty>);
    this_->volatileSets = new_ArrayListOfPointers(heap, 10);
    return this_;
}

void delete_StringLiteralCache(StringLiteralCache* this_) {
    if (this_ == nullptr) return;
    delete_ArrayList(this_->volatileSets);
    delete_DFDLStringHashMap(this_->lists);
    delete_DFDLStringHashMap(this_->literals);
    delete_DFDLStringHashMap(this_->compiledSets);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

DFDLStringLiteral* StringLiteralCache_getDFDLStringLiteral(StringLiteralCache* this_,
                                                           const DFDLUString* text) {
    if (void* known = DFDLStringHashMap_get(this_->literals, text)) {
        return static_cast<DFDLStringLiteral*>(known);
    }
    DFDLStringLiteral* literal = new_DFDLStringLiteral(this_->heap, text);
    if (!DFDLStringLiteral_parse(literal)) {
        delete_DFDLStringLiteral(literal);
        ProcessingError_setValues(this_->heap->context->currentError, __FILE__, __LINE__,
                                  TEXT_INVALID_MNEMONIC, ERROR_SCHEMA_DEFINITION, SUBKIND_NONE, "%Z", text);
        return nullptr;
    }
    DFDLStringHashMap_put(this_->literals, literal->source, literal, true);
    return literal;
}

ListValuedProperty* StringLiteralCache_getDFDLStringLiteralList(StringLiteralCache* this_,
                                                                const DFDLUString* text) {
    if (void* known = DFDLStringHashMap_get(this_->lists, text)) {
        return static_cast<ListValuedProperty*>(known);
    }
    ListValuedProperty* list = new_ListValuedProperty(this_->heap, text, true);
    ListValuedProperty_buildProperties(list);
    DFDLStringHashMap_put(this_->lists, list->source, list, true);
    return list;
}

void StringLiteralCache_reset(StringLiteralCache* this_) {
    while (!ArrayList_isEmpty(this_->volatileSets)) {
        DFDLStringHashMap_removeDirect(this_->compiledSets,
                                       ArrayList_popPointer<DFDLStringHashMapEntry>(this_->volatileSets));
    }
}

bool matchStringLiteralList(StringLiteralCache* cache, const ListValuedProperty* list, bool ignoreCase,
                            const DFDLUString* text) {
    const auto equals = ignoreCase ? DFDLUString_equalsIgnoreCase : DFDLUString_equals;
    const int32_t size = list == nullptr ? 0 : ListValuedProperty_size(list);
    for (int32_t i = 0; i < size; ++i) {
        const DFDLStringLiteral* literal =
            StringLiteralCache_getDFDLStringLiteral(cache, ListValuedProperty_get(list, i));
        if (literal == nullptr) return false;
        const DFDLUString* plain = DFDLStringLiteral_getUnicodeString(literal);
        if (plain != nullptr && equals(plain, text)) return true;
    }
    return false;
}
