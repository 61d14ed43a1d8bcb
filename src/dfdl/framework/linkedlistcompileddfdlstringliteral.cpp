#include "dfdl/framework/linkedlistcompileddfdlstringliteral.h"

#include <utility>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/framework/compileddfdlstringliteral.h"

namespace {

LinkedListOfLiterals* newNode(DFDLHeapAdapter* heap, CompiledDFDLStringLiteral* literal, int32_t tag) {
    auto* node = DFDLHeapAdapter_new<LinkedListOfLiterals>(heap);
    node->literal = literal;
    node->tag = tag;
    return node;
}

// Cuts a list of two or more behind its middle; the second half.
LinkedListOfLiterals* cut(LinkedListOfLiterals* head) {
    LinkedListOfLiterals* slow = head;
    for (const LinkedListOfLiterals* fast = head->next; fast != nullptr && fast->next != nullptr;
         fast = fast->next->next) {
        slow = slow->next;
    }
    return std::exchange(slow->next, nullptr);
}

}  // namespace

LinkedListOfLiterals* LinkedListCompiledDFDLStringLiteral_addToList(LinkedListOfLiterals* head,
                                                                    DFDLHeapAdapter* heap,
                                                                    CompiledDFDLStringLiteral* literal,
                                                                    int32_t tag) {
    LinkedListOfLiterals* node = newNode(heap, literal, tag);
    LinkedListOfLiterals** end = &head;
    while (*end != nullptr) end = &(*end)->next;
    *end = node;
    return head;
}

LinkedListOfLiterals* LinkedListCompiledDFDLStringLiteral_sortList(LinkedListOfLiterals* head) {
    if (head == nullptr || head->next == nullptr) return head;
    LinkedListOfLiterals* second = cut(head);
    return LinkedListCompiledDFDLStringLiteral_merge(LinkedListCompiledDFDLStringLiteral_sortList(head),
                                                     LinkedListCompiledDFDLStringLiteral_sortList(second));
}

LinkedListOfLiterals* LinkedListCompiledDFDLStringLiteral_merge(LinkedListOfLiterals* a,
                                                                LinkedListOfLiterals* b) {
    LinkedListOfLiterals* head = nullptr;
    LinkedListOfLiterals** end = &head;
    while (a != nullptr && b != nullptr) {
        LinkedListOfLiterals** first =
            CompiledDFDLStringLiteral_compareTo(a->literal, b->literal) < 0 ? &a : &b;
        *end = *first;
        *first = (*first)->next;
        end = &(*end)->next;
    }
    *end = a != nullptr ? a : b;
    return head;
}

LinkedListOfLiterals* LinkedListCompiledDFDLStringLiteral_clone(const LinkedListOfLiterals* head,
                                                                DFDLHeapAdapter* heap,
                                                                const ArrayList* literals) {
    LinkedListOfLiterals* copy = nullptr;
    LinkedListOfLiterals** end = &copy;
    for (; head != nullptr; head = head->next) {
        *end = newNode(heap, ArrayList_getPointer<CompiledDFDLStringLiteral>(literals, head->tag), head->tag);
        end = &(*end)->next;
    }
    return copy;
}

void delete_LinkedListCompiledDFDLStringLiteral(LinkedListOfLiterals* head) {
    while (head != nullptr) {
        LinkedListOfLiterals* next = head->next;
        DFDLHeapAdapter_objectDeallocate(head->heap, head);
        head = next;
    }
}
