#include "dfdl/foundation/dfdlstringtokenizer.h"

#include "dfdl/foundation/dfdlustringunits.h"

namespace {

bool isDelimiter(const DFDLStringTokenizer* tokenizer, UChar unit) {
    if (tokenizer->singleDelimiter != 0) return unit == tokenizer->delimiter;
    const UChar* candidate = tokenizer->delimiterList;
    while (*candidate != 0 && *candidate != unit) ++candidate;
    return *candidate != 0;
}

// The end of the run of units from `position` on that are delimiters, or of those that are none.
int32_t runEnd(const DFDLStringTokenizer* tokenizer, int32_t position, bool delimiters) {
    while (position < tokenizer->end && isDelimiter(tokenizer, tokenizer->text[position]) == delimiters) {
        ++position;
    }
    return position;
}

void start(DFDLStringTokenizer* tokenizer, const DFDLUString* text) {
    tokenizer->text = DFDLUString_view(text).data();
    tokenizer->end = DFDLUString_length(text);
    tokenizer->position = 0;
}

}  // namespace

DFDLStringTokenizer* new_DFDLStringTokenizer(DFDLHeapAdapter* heap, bool returnDelimiters) {
    auto* this_ = DFDLHeapAdapter_new<DFDLStringTokenizer>(heap);
    this_->singleDelimiter = 1;
    this_->returnDelimiters = returnDelimiters ? 1U : 0U;
    return this_;
}

void delete_DFDLStringTokenizer(DFDLStringTokenizer* this_) {
    if (this_ != nullptr) DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void DFDLStringTokenizer_setString(DFDLStringTokenizer* this_, const DFDLUString* text, UChar delimiter) {
    this_->singleDelimiter = 1;
    this_->delimiter = delimiter;
    start(this_, text);
}

void DFDLStringTokenizer_setString_delimList(DFDLStringTokenizer* this_, const DFDLUString* text,
                                             const UChar* delimiterList) {
    this_->singleDelimiter = 0;
    this_->delimiterList = delimiterList;
    start(this_, text);
}

std::u16string_view DFDLStringTokenizer_next(DFDLStringTokenizer* this_) {
    const bool keeps = this_->returnDelimiters != 0;
    const int32_t first = keeps ? this_->position : runEnd(this_, this_->position, true);
    this_->position = runEnd(this_, first, false);
    if (keeps && this_->position == first && first < this_->end) ++this_->position;
    return {this_->text + first, static_cast<size_t>(this_->position - first)};
}

UChar* DFDLStringTokenizer_getNextToken(DFDLStringTokenizer* this_, int32_t* length) {
    const std::u16string_view token = DFDLStringTokenizer_next(this_);
    *length = static_cast<int32_t>(token.size());
    return token.empty() ? nullptr : DFDLUStringUnits_copy(this_->heap, token.data(), *length);
}

void DFDLStringTokenizer_releaseToken(DFDLStringTokenizer* this_, UChar* token) {
    DFDLBufferFactory_FreeUBuffer(this_->heap->bufferFactory, token);
}

DFDLUString* DFDLStringTokenizer_getNextTokenAsDFDLUString(DFDLStringTokenizer* this_) {
    const std::u16string_view token = DFDLStringTokenizer_next(this_);
    return token.empty() ? nullptr : DFDLUStringPooler_getDFDLUStringFromView(this_->heap, token);
}

bool DFDLStringTokenizer_hasMoreTokens(const DFDLStringTokenizer* this_) {
    DFDLStringTokenizer ahead = *this_;
    return !DFDLStringTokenizer_next(&ahead).empty();
}

int32_t DFDLStringTokenizer_numberOfTokens(const DFDLStringTokenizer* this_) {
    DFDLStringTokenizer ahead = *this_;
    int32_t count = 0;
    while (!DFDLStringTokenizer_next(&ahead).empty()) ++count;
    return count;
}
