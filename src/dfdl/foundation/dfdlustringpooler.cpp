#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/dfdlustringunits.h"

namespace {

void* createString(DFDLHeapAdapter* heap) { return new_DFDLUString(heap); }

void destroyString(void* record) {
    auto* string = static_cast<DFDLUString*>(record);
    string->pooled = 0;
    delete_DFDLUString(string);
}

constexpr PoolTraits TRAITS = {20, 100, createString, destroyString};

// Empty, with nothing to free. Its heap is the one that the pool belongs to, not the message's.
DFDLUString* get(DFDLHeapAdapter* heap) {
    ObjectPool* pool = DFDLPoolingFactory_pool(heap->poolingFactory, POOL_USTRING, &TRAITS);
    auto* string = static_cast<DFDLUString*>(ObjectPool_get(pool));
    string->bufferHeap = heap;
    string->pooled = 1;
    return string;
}

}  // namespace

DFDLUString* DFDLUStringPooler_getDFDLUString(DFDLHeapAdapter* heap) { return get(heap); }

DFDLUString* DFDLUStringPooler_getDFDLUStringUseUChars(DFDLHeapAdapter* heap, UChar* chars, int32_t length) {
    if (length < 0) DFDLHeapAdapter_refuse(heap);
    DFDLUString* string = get(heap);
    chars[length] = 0;
    string->chars = chars;
    string->length = length;
    string->external = 0;
    return string;
}

DFDLUString* DFDLUStringPooler_getDFDLUStringFromUChars(DFDLHeapAdapter* heap, const UChar* chars,
                                                        int32_t length) {
    return DFDLUStringPooler_getDFDLUStringUseUChars(heap, DFDLUStringUnits_copy(heap, chars, length),
                                                     length);
}

DFDLUString* DFDLUStringPooler_getDFDLUStringFromCString(DFDLHeapAdapter* heap, UConverter* converter,
                                                         const char* text, int32_t length) {
    int32_t units = 0;
    UChar* chars = DFDLUStringUnits_convert(heap, converter, text, length, &units);
    return chars == nullptr ? nullptr : DFDLUStringPooler_getDFDLUStringUseUChars(heap, chars, units);
}

void DFDLUStringPooler_releaseDFDLUString(DFDLUString* string) {
    if (string == nullptr) return;
    if (string->pooled == 0) return delete_DFDLUString(string);
    DFDLUStringUnits_set(string, DFDLUStringUnits_empty(), 0, true);
    ObjectPool_release(DFDLPoolingFactory_pool(string->heap->poolingFactory, POOL_USTRING, &TRAITS), string);
}
