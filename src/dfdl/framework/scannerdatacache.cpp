#include "dfdl/framework/scannerdatacache.h"

#include "dfdl/foundation/arraylist.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/pif/markupsettable.h"

namespace {

constexpr int32_t CAPACITY = 100;
constexpr int32_t SPARE = 11;
// Ids are places of the list. A compiler counts them from 0; a file may say anything, and what is beyond is
// placed by row, so that an id cannot ask for memory.
constexpr int32_t MOST_DIRECT_IDS = 4096;

struct Pair {
    CompiledMarkupSet* forOthers;  // or for all
    CompiledMarkupSet* forSimple;
};

int32_t placeOf(const ScannerDataCache* cache, int32_t id) {
    if (id >= 0 && id < MOST_DIRECT_IDS) return id;
    const MarkupSetTableRow* row = MarkupSetTable_findRowByID(cache->table, id);
    return row == nullptr ? -1 : MOST_DIRECT_IDS + Table_indexOf(cache->table, row);
}

Pair* pairAt(const ScannerDataCache* cache, int32_t place) {
    if (place < 0 || place >= ArrayList_size(cache->pairs)) return nullptr;
    return static_cast<Pair*>(ArrayList_get(cache->pairs, place));
}

template <class Condition>
void drop(ScannerDataCache* cache, Condition condition) {
    for (int32_t i = 0; i < ArrayList_size(cache->pairs); ++i) {
        Pair* pair = pairAt(cache, i);
        for (CompiledMarkupSet** set : {&pair->forOthers, &pair->forSimple}) {
            if (*set == nullptr || !condition(*set)) continue;
            delete_CompiledMarkupSet(*set);
            *set = nullptr;
        }
    }
}

}  // namespace

ScannerDataCache* new_ScannerDataCache(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<ScannerDataCache>(heap);
    this_->pairs = new_ArrayList(heap, CAPACITY, static_cast<int32_t>(sizeof(Pair)));
    return this_;
}

void delete_ScannerDataCache(ScannerDataCache* this_) {
    if (this_ == nullptr) return;
    ScannerDataCache_setTable(this_, nullptr);
    delete_ArrayList(this_->pairs);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void ScannerDataCache_setTable(ScannerDataCache* this_, const MarkupSetTable* table) {
    drop(this_, [](const CompiledMarkupSet*) { return true; });
    ArrayList_clear(this_->pairs);
    this_->table = table;
}

CompiledMarkupSet* ScannerDataCache_get(const ScannerDataCache* this_, int32_t markupSetId, bool forSimple) {
    const Pair* pair = pairAt(this_, placeOf(this_, markupSetId));
    if (pair == nullptr) return nullptr;
    if (pair->forOthers != nullptr && pair->forOthers->audience == AUDIENCE_ALL) return pair->forOthers;
    return forSimple ? pair->forSimple : pair->forOthers;
}

void ScannerDataCache_reserve(ScannerDataCache* this_, int32_t markupSetId) {
    const int32_t place = placeOf(this_, markupSetId);
    if (place < ArrayList_size(this_->pairs)) return;
    const Pair none{nullptr, nullptr};
    ArrayList_set(this_->pairs, place + SPARE, &none);
}

void ScannerDataCache_put(ScannerDataCache* this_, CompiledMarkupSet* set) {
    Pair* pair = pairAt(this_, placeOf(this_, set->id));
    (set->audience == AUDIENCE_SIMPLE_ELEMENTS ? pair->forSimple : pair->forOthers) = set;
}

void ScannerDataCache_clearVolatileEntries(ScannerDataCache* this_) {
    drop(this_, [](const CompiledMarkupSet* set) { return set->isVolatile; });
}
