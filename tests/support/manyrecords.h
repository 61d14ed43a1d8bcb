#ifndef DFDL_TESTS_SUPPORT_MANYRECORDS_H
#define DFDL_TESTS_SUPPORT_MANYRECORDS_H

#include <dfdl/dfdl.h>

#include <functional>
#include <span>
#include <string>

// A file of any number of records of numbers and calendars, binary or as texts, for tests of what many of
// them cost. Its root is "file".
struct ManyRecords {
    const char* name;
    std::function<DFDLGrammar*(DFDLHeap* heap)> grammar;  // the caller's; null if the heap refuses
    std::string record;                                   // the bytes of one, or of a few
    int fields;                                           // simple elements in them, nil ones too
};

std::span<const ManyRecords> manyRecords();

#endif
