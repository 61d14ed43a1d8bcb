#ifndef DFDL_TESTS_SUPPORT_SCANRIG_H
#define DFDL_TESTS_SUPPORT_SCANRIG_H

#include <deque>
#include <string>
#include <string_view>

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/framework/compiledmarkupset.h"
#include "dfdl/framework/delimitedscannerbytes.h"
#include "dfdl/framework/stringliteralcache.h"
#include "dfdl/pif/spif.h"
#include "dfdl/pifiterator/pifiteratorforparser.h"
#include "support/bufferrig.h"

// What a set has of its own, in the words of a schema.
struct MarkupWords {
    std::u16string_view terminator = {};
    std::u16string_view separator = {};
    bool ignoreCase = false;
    // Escape scheme: a character or, where there is a start, a block.
    std::u16string_view escape = {};
    std::u16string_view blockStart = {};
    std::u16string_view blockEnd = {};
    std::u16string_view escapeEscape = {};
};

// A scanner on a buffer, with markup sets that lie within each other, and a simple element at the innermost.
// Its iterator has as many items as there are sets, so that reports find their rows.
class ScanRig {
  public:
    explicit ScanRig(const char* encoding = "UTF-8", const DFDLHeapImpl* heap = nullptr);
    ~ScanRig();
    ScanRig(const ScanRig&) = delete;
    ScanRig& operator=(const ScanRig&) = delete;

    // A set within the last one; its id. All sets are added before the first is used.
    int32_t within(const MarkupWords& words);
    int32_t withinPlain();  // without markup of its own
    int32_t addSet(int32_t id, int32_t parent, int32_t markupRow);

    // Makes the set current for the innermost item, simple or not.
    CompiledMarkupSet* use(int32_t id, bool simple = true);
    // Makes a set of one list current.
    CompiledMarkupSet* useList(std::u16string_view list, bool ownsKey = true);

    int64_t scan(bool record = true, bool atPositionOnly = false);
    // The find as "content,length,kind level", or the error; "none" where nothing stands at the position.
    std::string find(bool record = true, bool atPositionOnly = false);

    BufferRig rig;
    StringLiteralCache* cache;
    DelimitedScannerBytes* scanner;
    PIFIteratorForParser iterator{};
    std::deque<GroupMemberTableRow> rows;    // of the items, by level
    std::deque<ContextItemForParser> items;  // the innermost first
    int32_t encodingIndex;
    std::deque<DFDLUString*> lists;  // that were made current, as a grammar would keep them

  private:
    void finish();
    DFDLUString* text(std::u16string_view units);
    int32_t literal(std::u16string_view units);
    int32_t scheme(const MarkupWords& words);

    int32_t sets_ = 0;
};

#endif
