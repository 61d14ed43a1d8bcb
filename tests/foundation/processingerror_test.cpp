#include "dfdl/foundation/processingerror.h"

#include <gtest/gtest.h>

#include <string>

#include "dfdl/foundation/arraylist.h"
#include "dfdl/foundation/dfdlstring.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "support/testheap.h"

namespace {

using Record = Owned<ProcessingError, delete_ProcessingError>;

template <class... Arguments>
void raise(ProcessingError* record, const char* format, Arguments... arguments) {
    ProcessingError_setValues(record, __FILE__, __LINE__, "CTDP3002E", ERROR_PROCESSING, SUBKIND_NONE, format,
                              arguments...);
}

std::u16string textOf(const ProcessingError* record, const char16_t* messageTemplate,
                      int32_t capacity = 8192) {
    std::u16string text(static_cast<size_t>(capacity) + 1, u'#');
    const int32_t length = ProcessingError_formatMessage(record, messageTemplate, capacity, text.data());
    EXPECT_EQ(text[static_cast<size_t>(length)], u'\0');
    EXPECT_EQ(text.back(), u'#') << "written behind the capacity";
    text.resize(static_cast<size_t>(length));
    return text;
}

struct InsertCase {
    const char* name;
    void (*raise)(ProcessingError* record);
    const char16_t* expected;  // of the template "[{0}][{1}]"
};

const uint8_t BYTES[] = {0x0F, 0xA5, 0xFF};

const InsertCase INSERTS[] = {
    {"64 bits", [](auto* r) { raise(r, "%lld%lld", INT64_MIN, int64_t{5000000000}); },
     u"[-9223372036854775808][5000000000]"},
    {"a data byte", [](auto* r) { raise(r, "%lld%02hX", int64_t{7}, 0x0A); }, u"[7][0A]"},
    {"32 bits where a long would be read", [](auto* r) { raise(r, "%ld%d", -5, 6); }, u"[-5][6]"},
    {"no sign for u, x and o", [](auto* r) { raise(r, "%u%x", -1, -2); }, u"[4294967295][fffffffe]"},
    {"16 bits for h", [](auto* r) { raise(r, "%hd%hu", 0x1FFFF, 0x1FFFF); }, u"[-1][65535]"},
    {"width and flags", [](auto* r) { raise(r, "%+5d%-4i", 42, 7); }, u"[  +42][7   ]"},
    {"three digits of exponent", [](auto* r) { raise(r, "%E%f", 1.5, 0.25); }, u"[1.500000E+000][0.250000]"},
    {"largest double", [](auto* r) { raise(r, "%.0f%d", 1e40, 1); },
     u"[10000000000000000000000000000000000000000][1]"},
    {"UTF-16 and one unit", [](auto* r) { raise(r, "%S%C", u"n\u00e9", u'\u20ac'); }, u"[n\u00e9][\u20ac]"},
    {"null texts", [](auto* r) { raise(r, "%Z%s", nullptr, nullptr); }, u"[][]"},
    {"UTF-8 bytes", [](auto* r) { raise(r, "%s%c", "\xE2\x82\xAC", 'x'); }, u"[\u20ac][x]"},
    {"bytes that are no UTF-8", [](auto* r) { raise(r, "%s%c", "a\xFF", 0xF0); }, u"[a\uFFFD][\uFFFD]"},
    {"hexadecimal", [](auto* r) { raise(r, "%B%B", BYTES, 3, BYTES, 0); }, u"[0FA5FF][(null)]"},
    {"bits from inside a byte", [](auto* r) { raise(r, "%b%B", BYTES, 10, 5, nullptr, 3); },
     u"[1111010010][(null)]"},
    {"literal text before the first piece", [](auto* r) { raise(r, "at %d%s", 3, "x"); }, u"[3][x]"},
    {"unknown letter", [](auto* r) { raise(r, "%q%d", 9); }, u"[<UNKNOWN INSERT 0>][9]"},
    {"letters of trace", [](auto* r) { raise(r, "%d%V", 9); }, u"[9][<UNKNOWN INSERT 1>]"},
    {"piece that is only a percent sign", [](auto* r) { raise(r, "%%d", 4); }, u"[<UNKNOWN INSERT 0>][4]"},
    {"piece with text inside", [](auto* r) { raise(r, "%d or x%d", 4, 5); }, u"[<UNKNOWN INSERT 0>][5]"},
    {"no format", [](auto* r) { raise(r, nullptr); }, u"[<MISSING INSERT 0>][<MISSING INSERT 1>]"},
};

TEST(ProcessingError, capturesInserts) {
    TestAdapter engine;
    const Record record(new_ProcessingError(engine.adapter));
    for (const InsertCase& one : INSERTS) {
        one.raise(record.get());
        EXPECT_EQ(textOf(record.get(), u"[{0}][{1}]"), one.expected) << one.name;
        ProcessingError_reset(record.get());
    }
}

struct TemplateCase {
    const char16_t* messageTemplate;
    int32_t capacity;
    const char16_t* expected;
};

const TemplateCase TEMPLATES[] = {
    {u"{1}{0}{1}", 100, u"bab"},
    {u"{5}", 100, u"<MISSING INSERT 5>"},
    {u"{99999999999999999999}", 100, u"<MISSING INSERT 214748364>"},
    {u"{ 1st }", 100, u"b"},
    {u"{}", 100, u"a"},
    {u"}{{1}x", 100, u"}bx"},
    {u"x{1", 100, u"x"},
    {u"it's {0}", 100, u"it's a"},
    {u"1234567", 12, u"1234567"},
    {u"12345678", 12, u"1234567 ..."},
    {u"123456{2}", 12, u"123456 ..."},
    {u"12345{2}", 12, u"12345\U0001F600"},
    {u"{3}", 12, u"xxxxxxx ..."},
    {u"{3}{0}", 10, u"xxxxx ..."},
    {u"a", 5, u" ..."},
    {u"a", 4, u""},
    {u"a", 1, u""},
    {nullptr, 100, u""},
};

TEST(ProcessingError, formatsTemplates) {
    TestAdapter engine;
    const Record record(new_ProcessingError(engine.adapter));
    const std::string tall(9000, 'x');
    raise(record.get(), "%s%s%S%s", "a", "b", u"\U0001F600", tall.c_str());
    for (const TemplateCase& one : TEMPLATES) {
        EXPECT_EQ(textOf(record.get(), one.messageTemplate, one.capacity), one.expected)
            << "capacity " << one.capacity;
    }
    const std::u16string full = textOf(record.get(), u"{3}");
    EXPECT_EQ(full.size(), 8191U);
    EXPECT_EQ(full.substr(8186), u"x ...");
}

TEST(ProcessingError, firstErrorStandsUntilReset) {
    TestAdapter engine;
    const Record record(new_ProcessingError(engine.adapter));
    EXPECT_FALSE(ProcessingError_isSet(record.get()));
    raise(record.get(), "%d", 1);
    ProcessingError_setValues(record.get(), "", 0, "CTDP3000E", ERROR_SCHEMA_DEFINITION, SUBKIND_LACK_OF_DATA,
                              "%d", 2);
    EXPECT_TRUE(ProcessingError_hasKey(record.get(), std::string("CTDP3002E").c_str()));
    EXPECT_EQ(record->kind, ERROR_PROCESSING);
    EXPECT_EQ(textOf(record.get(), u"{0}{1}"), u"1<MISSING INSERT 1>");

    record->traced = 1;
    record->row = reinterpret_cast<const GroupMemberTableRow*>(record.get());
    ProcessingError_reset(record.get());
    EXPECT_EQ(record->key, nullptr);
    EXPECT_EQ(record->kind, ERROR_KIND_NONE);
    EXPECT_EQ(record->subKind, SUBKIND_NONE);
    EXPECT_EQ(record->traced, 0U);
    EXPECT_EQ(record->row, nullptr);
    EXPECT_EQ(textOf(record.get(), u"{0}"), u"<MISSING INSERT 0>");
}

TEST(ProcessingError, cloneOutlivesItsSource) {
    TestAdapter engine;
    TestAdapter other;
    const Record record(new_ProcessingError(engine.adapter));
    raise(record.get(), "%S%lld%E", u"text", int64_t{-3}, 2.5);
    record->traced = 1;
    const Record clone(ProcessingError_clone(record.get(), other.adapter));
    ProcessingError_reset(record.get());
    EXPECT_EQ(textOf(clone.get(), u"{0} {1} {2}"), u"text -3 2.500000E+000");
    EXPECT_EQ(clone->traced, 1U);
    EXPECT_TRUE(ProcessingError_hasKey(clone.get(), "CTDP3002E"));
    EXPECT_EQ(ProcessingError_clone(nullptr, other.adapter), nullptr);
}

TEST(ProcessingError, kindsThatStopAParse) {
    TestAdapter engine;
    const Record record(new_ProcessingError(engine.adapter));
    EXPECT_FALSE(ProcessingError_isFailure(record.get()));
    const bool stops[] = {true, true, true, false, true, false, true, false};
    for (int32_t kind = 0; kind < 8; ++kind) {
        ProcessingError_setValues(record.get(), "", 0, "CTDP3002E", kind, SUBKIND_NONE, nullptr);
        EXPECT_EQ(ProcessingError_isFailure(record.get()), stops[kind]) << kind;
        ProcessingError_reset(record.get());
    }
}

TEST(ProcessingError, costsNoHeapOncePoolsAreFilled) {
    TestAdapter engine;
    const Record record(new_ProcessingError(engine.adapter));
    const auto speculate = [&record] {
        raise(record.get(), "%S%lld%s%B%b%E%c", u"name", int64_t{1}, "encoding", BYTES, 3, BYTES, 8, 0, 1.0,
              'x');
        ProcessingError_reset(record.get());
    };
    speculate();
    const long before = engine.heap.allocations;
    for (int round = 0; round < 100; ++round) speculate();
    EXPECT_EQ(engine.heap.allocations, before);
}

TEST(ProcessingError, anyAllocationMayFail) {
    const int failures = sweepFailingAllocations([](const DFDLHeapImpl& heap) {
        const Owned<DFDLHeapAdapter, delete_DFDLHeapAdapter> adapter(new_DFDLHeapAdapterFromHeap(&heap));
        ProcessingError* record = new_ProcessingError(adapter.get());
        raise(record, "%S%s%d", u"name", "text", 3);
        ProcessingError* clone = ProcessingError_clone(record, adapter.get());
        EXPECT_EQ(textOf(clone, u"{0} {1} {2}"), u"name text 3");
        delete_ProcessingError(clone);
        delete_ProcessingError(record);
    });
    EXPECT_GT(failures, 5);
}

}  // namespace
