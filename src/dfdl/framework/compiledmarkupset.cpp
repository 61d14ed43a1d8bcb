#include "dfdl/framework/compiledmarkupset.h"

#include <algorithm>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/framework/compileddfdlstringliteral.h"
#include "dfdl/framework/linkedlistcompileddfdlstringliteral.h"

namespace {

constexpr int32_t LITERALS_CAPACITY = 30;

CompiledDFDLStringLiteral* literalAt(const CompiledMarkupSet* set, int32_t index) {
    return ArrayList_getPointer<CompiledDFDLStringLiteral>(set->allLiterals, index);
}

// Its index; it is added if it is not there. One literal is entered under all of its bytes before the next.
int32_t indexOf(CompiledMarkupSet* set, CompiledDFDLStringLiteral* literal) {
    const int32_t count = ArrayList_size(set->allLiterals);
    if (count == 0 || literalAt(set, count - 1) != literal) ArrayList_addPointer(set->allLiterals, literal);
    return ArrayList_size(set->allLiterals) - 1;
}

// Classes whose length in the data is not that of the literal.
bool isVariable(const CompiledDFDLStringLiteral* literal) {
    const std::u16string_view text = DFDLUString_view(literal->text);
    const auto has = [text](std::u16string_view part) { return text.find(part) != text.npos; };
    return has(u"%WSP*;") || has(u"%WSP+;") || has(u"%NL;");
}

const CompiledDFDLStringLiteral* soleOf(const LinkedListCompiledDFDLStringLiteral* list) {
    if (list == nullptr || list->next != nullptr || list->literal->exactBytes == nullptr) return nullptr;
    return list->literal;
}

void dropSole(CompiledMarkupSet* set, const EscapeString& escape) {
    if (escape.length > 0) set->sole[escape.bytes[0]] = nullptr;
}

void copyZeroLengthLiteral(CompiledMarkupSet* copy, const CompiledMarkupSet* from) {
    if (from->zeroLengthLiteral == nullptr) return;
    if (from->ownsZeroLengthLiteral) {
        copy->zeroLengthLiteral =
            CompiledDFDLStringLiteral_createDeepCopyAndIncrementLevel(from->zeroLengthLiteral, copy->heap);
        copy->ownsZeroLengthLiteral = true;
        return;
    }
    copy->zeroLengthLiteral =
        literalAt(copy, ArrayList_indexOfPointer(from->allLiterals, from->zeroLengthLiteral));
}

}  // namespace

CompiledMarkupSet* new_CompiledMarkupSet(DFDLHeapAdapter* heap) {
    auto* this_ = DFDLHeapAdapter_new<CompiledMarkupSet>(heap);
    this_->id = -1;
    this_->allLiterals = new_ArrayListOfPointers(heap, LITERALS_CAPACITY);
    CompiledMarkupSet_finish(this_);
    return this_;
}

void delete_CompiledMarkupSet(CompiledMarkupSet* this_) {
    if (this_ == nullptr) return;
    CompiledMarkupSet_setupEmptyEscapeScheme(this_);
    for (LinkedListCompiledDFDLStringLiteral* list : this_->lists) {
        delete_LinkedListCompiledDFDLStringLiteral(list);
    }
    if (this_->ownsZeroLengthLiteral) delete_CompiledDFDLStringLiteral(this_->zeroLengthLiteral);
    while (!ArrayList_isEmpty(this_->allLiterals)) {
        delete_CompiledDFDLStringLiteral(ArrayList_popPointer<CompiledDFDLStringLiteral>(this_->allLiterals));
    }
    delete_ArrayList(this_->allLiterals);
    DFDLHeapAdapter_objectDeallocate(this_->heap, this_);
}

void CompiledMarkupSetDeleteFunction(DFDLHeapAdapter* /*heap*/, void* set) {
    delete_CompiledMarkupSet(static_cast<CompiledMarkupSet*>(set));
}

CompiledMarkupSet* CompiledMarkupSet_createDeepCopyAndIncrementLevels(const CompiledMarkupSet* this_) {
    CompiledMarkupSet* copy = new_CompiledMarkupSet(this_->heap);
    for (int32_t i = 0; i < ArrayList_size(this_->allLiterals); ++i) {
        ArrayList_addPointer(copy->allLiterals, CompiledDFDLStringLiteral_createDeepCopyAndIncrementLevel(
                                                    literalAt(this_, i), copy->heap));
    }
    for (int32_t byte = 0; byte < 256; ++byte) {
        copy->lists[byte] =
            LinkedListCompiledDFDLStringLiteral_clone(this_->lists[byte], copy->heap, copy->allLiterals);
        copy->firstBytes[byte] = copy->lists[byte] != nullptr;
    }
    copyZeroLengthLiteral(copy, this_);
    copy->hasVariableLength = this_->hasVariableLength;
    copy->isVolatile = this_->isVolatile;
    return copy;
}

void CompiledMarkupSet_addCompiledDFDLStringLiteral(CompiledMarkupSet* this_, uint8_t firstByte,
                                                    CompiledDFDLStringLiteral* literal) {
    const int32_t index = indexOf(this_, literal);
    LinkedListCompiledDFDLStringLiteral*& list = this_->lists[firstByte];
    list = LinkedListCompiledDFDLStringLiteral_addToList(list, this_->heap, literal, index);
    list = LinkedListCompiledDFDLStringLiteral_sortList(list);
    this_->firstBytes[firstByte] = 1;
    this_->hasVariableLength = this_->hasVariableLength || isVariable(literal);
    this_->isVolatile = this_->isVolatile || literal->hasRuntimeEncoding;
}

void CompiledMarkupSet_setZeroLengthLiteral(CompiledMarkupSet* this_, CompiledDFDLStringLiteral* literal) {
    if (this_->ownsZeroLengthLiteral) delete_CompiledDFDLStringLiteral(this_->zeroLengthLiteral);
    const int32_t count = ArrayList_size(this_->allLiterals);
    this_->zeroLengthLiteral = literal;
    this_->ownsZeroLengthLiteral = count == 0 || literalAt(this_, count - 1) != literal;
}

void CompiledMarkupSet_finish(CompiledMarkupSet* this_) {
    std::transform(std::begin(this_->lists), std::end(this_->lists), std::begin(this_->sole), soleOf);
    for (const EscapeString& escape :
         {this_->escapeCharacter, this_->escapeEscapeCharacter, this_->blockStart}) {
        dropSole(this_, escape);
    }
    ByteFinder_init(&this_->finder, this_->firstBytes);
    ByteFinder_init(&this_->blockFinder, this_->blockBytes);
}

const CompiledDFDLStringLiteral* CompiledMarkupSet_findSameDelimiterInEnclosingLevel(
    const CompiledMarkupSet* this_, const CompiledDFDLStringLiteral* literal) {
    const CompiledDFDLStringLiteral* nearest = nullptr;
    for (int32_t i = 0; i < ArrayList_size(this_->allLiterals); ++i) {
        const CompiledDFDLStringLiteral* other = literalAt(this_, i);
        if (other->level < 1 || !CompiledDFDLStringLiteral_isSameStringLiteral(other, literal)) continue;
        if (nearest == nullptr || other->level < nearest->level) nearest = other;
    }
    return nearest;
}
