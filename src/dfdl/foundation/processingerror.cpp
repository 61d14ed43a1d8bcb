#include "dfdl/foundation/processingerror.h"

#include <unicode/ustring.h>

#include <cstdarg>
#include <cstring>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlpoolingfactory.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/insertformat.h"

namespace {

constexpr int32_t INSERT_CAPACITY = 10;

CapturedInsert* insertAt(const ProcessingError* record, int32_t index) {
    return static_cast<CapturedInsert*>(ArrayList_get(record->inserts, index));
}

// Room first: a value that is captured has a place at once and is found by the next reset.
CapturedInsert* addInsert(ProcessingError* record) {
    const CapturedInsert empty = {};
    ArrayList_add(record->inserts, &empty);
    return insertAt(record, record->inserts->count - 1);
}

void clearFields(ProcessingError* record) {
    record->key = nullptr;
    record->kind = ERROR_KIND_NONE;
    record->traced = 0;
    record->subKind = SUBKIND_NONE;
    record->row = nullptr;
}

void copyInsert(ProcessingError* target, const CapturedInsert& source) {
    CapturedInsert* insert = addInsert(target);
    insert->piece = source.piece;
    if (source.kind == INSERT_TEXT) {
        const std::u16string_view text = DFDLUString_view(source.value.text);
        insert->value.text = DFDLUStringPooler_getDFDLUStringFromUChars(target->heap, text.data(),
                                                                        static_cast<int32_t>(text.size()));
    } else {
        insert->value = source.value;
    }
    insert->kind = source.kind;
}

}  // namespace

void ProcessingError_ctor(ProcessingError* this_) {
    this_->inserts =
        new_ArrayList(this_->heap, INSERT_CAPACITY, static_cast<int32_t>(sizeof(CapturedInsert)));
    clearFields(this_);
}

void ProcessingError_dtor(ProcessingError* this_) {
    ProcessingError_reset(this_);
    delete_ArrayList(this_->inserts);
}

ProcessingError* new_ProcessingError(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<ProcessingError>(heap);
    ProcessingError_ctor(this_);
    return this_;
}

void delete_ProcessingError(ProcessingError* this_) {
    if (this_ == nullptr) return;
    ProcessingError_dtor(this_);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void ProcessingError_setValues(ProcessingError* this_, const char*, int, const char* key, int32_t kind,
                               int32_t subKind, const char* format, ...) {
    if (this_->key != nullptr) return;
    this_->key = key;
    this_->kind = kind;
    this_->subKind = subKind;
    InsertArguments arguments;
    va_start(arguments.list, format);
    const ScopeExit end([&arguments] { va_end(arguments.list); });
    for (InsertPiece piece; InsertPiece_next(&format, &piece);) {
        CapturedInsert_capture(addInsert(this_), piece, &arguments, this_->heap, ERROR_INSERTS);
    }
}

void ProcessingError_reset(ProcessingError* this_) {
    if (this_->inserts == nullptr) return clearFields(this_);
    while (this_->inserts->count > 0) {
        const CapturedInsert insert = *insertAt(this_, --this_->inserts->count);
        if (insert.kind != INSERT_TEXT) continue;
        DFDLPoolingFactory_releaseDFDLUString(this_->heap->poolingFactory, insert.value.text);
    }
    clearFields(this_);
}

ProcessingError* ProcessingError_clone(const ProcessingError* this_, DFDLHeapAdapter* heap) {
    if (this_ == nullptr) return nullptr;
    ProcessingError* clone = new_ProcessingError(heap);
    clone->key = this_->key;
    clone->kind = this_->kind;
    clone->traced = this_->traced;
    clone->subKind = this_->subKind;
    clone->row = this_->row;
    for (int32_t index = 0; index < this_->inserts->count; ++index)
        copyInsert(clone, *insertAt(this_, index));
    return clone;
}

bool ProcessingError_hasKey(const ProcessingError* this_, const char* key) {
    return this_->key == key || (this_->key != nullptr && key != nullptr && strcmp(this_->key, key) == 0);
}

ArrayList* ProcessingError_argumentsAsText(const ProcessingError* this_, ArrayList* list) {
    if (list == nullptr) list = new_ArrayListOfPointers(this_->heap, INSERT_CAPACITY);
    for (int32_t index = 0; index < this_->inserts->count; ++index) {
        ArrayList_addPointer(
            list, CapturedInsert_toText(insertAt(this_, index), this_->heap, ERROR_INSERTS, index));
    }
    return list;
}

int32_t ProcessingError_formatMessage(const ProcessingError* this_, const UChar* messageTemplate,
                                      int32_t capacity, UChar* target) {
    if (messageTemplate == nullptr) {
        if (capacity > 0) target[0] = 0;
        return 0;
    }
    ArrayList* texts = ProcessingError_argumentsAsText(this_, nullptr);
    const std::u16string_view view(messageTemplate, static_cast<size_t>(u_strlen(messageTemplate)));
    const int32_t length = InsertText_format(view, texts, capacity, target);
    InsertText_release(texts);
    delete_ArrayList(texts);
    return length;
}
