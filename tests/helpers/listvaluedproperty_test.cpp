#include "dfdl/helpers/listvaluedproperty.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "support/testheap.h"

namespace {

struct Case {
    std::u16string source;
    std::vector<std::u16string> written;   // in the order of the source
    std::vector<std::u16string> reversed;  // as a sorted list is read
};

std::vector<std::u16string> entries(DFDLHeapAdapter* heap, const std::u16string& source, bool sorted) {
    const Owned<DFDLUString, delete_DFDLUString> text(
        new_DFDLUStringFromUChars(heap, source.data(), static_cast<int32_t>(source.size())));
    const Owned<ListValuedProperty, delete_ListValuedProperty> list(
        new_ListValuedProperty(heap, text.get(), sorted));
    ListValuedProperty_buildProperties(list.get());
    ListValuedProperty_buildProperties(list.get());  // starts again
    std::vector<std::u16string> result;
    for (int32_t i = 0; i < ListValuedProperty_size(list.get()); ++i) {
        result.emplace_back(DFDLUString_view(ListValuedProperty_get(list.get(), i)));
    }
    return result;
}

TEST(ListValuedProperty, splitsAtWhiteSpaceAndReadsLongerTextsFirst) {
    const Case cases[] = {
        {u"", {}, {}},
        {u" \t\n", {}, {}},
        {u"one", {u"one"}, {u"one"}},
        {u" a  ab\tabc\u0085b ", {u"a", u"ab", u"abc", u"b"}, {u"b", u"abc", u"ab", u"a"}},
        {u", ,, ,,,", {u",", u",,", u",,,"}, {u",,,", u",,", u","}},
        {u"x a x", {u"x", u"a", u"x"}, {u"x", u"x", u"a"}},
    };
    TestAdapter heap;
    for (const Case& c : cases) {
        EXPECT_EQ(entries(heap.adapter, c.source, false), c.written);
        EXPECT_EQ(entries(heap.adapter, c.source, true), c.reversed);
    }
}

TEST(ListValuedProperty, splitOfNothingIsNothing) {
    TestAdapter heap;
    EXPECT_EQ(ListValuedProperty_split(nullptr, heap.adapter), nullptr);
    ListValuedProperty_deleteSplit(nullptr);
}

}  // namespace
