#include "dfdl/foundation/resourcecatalog.h"

#include "dfdl/foundation/dfdlicu.h"

namespace {

bool open(ResourceCatalog* catalog, const char* language) {
    int32_t status = OPEN_RESOURCE_DONE;
    catalog->bundle = dfdlICU_openResource("dfdlparserres", "dfdlparserres_dat", language, &status);
    return catalog->bundle != nullptr;
}

void close(ResourceCatalog* catalog) {
    ures_close(catalog->bundle);
    catalog->bundle = nullptr;
}

}  // namespace

ResourceCatalog* new_ResourceCatalog(DFDLHeapAdapter* heap, Context* context) {
    auto* this_ = DFDLHeapAdapter_new<ResourceCatalog>(heap);
    this_->context = context;
    return this_;
}

void delete_ResourceCatalog(ResourceCatalog* this_) {
    if (this_ == nullptr) return;
    close(this_);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

bool ResourceCatalog_openResource(ResourceCatalog* this_) {
    return this_->bundle != nullptr || open(this_, nullptr);
}

bool ResourceCatalog_setLanguage(ResourceCatalog* this_, const char* language) {
    close(this_);
    return open(this_, language);
}

const UChar* ResourceCatalog_GetStringFromResource(ResourceCatalog* this_, const char* key, int32_t* length) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t units = 0;
    const UChar* text = nullptr;
    if (this_ != nullptr && this_->bundle != nullptr) {
        text = ures_getStringByKey(this_->bundle, key, &units, &status);
    }
    if (U_FAILURE(status)) text = nullptr;
    if (length != nullptr) *length = text == nullptr ? 0 : units;
    return text;
}
