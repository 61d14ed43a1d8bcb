#ifndef DFDL_TESTS_SUPPORT_BINARYRECORDS_H
#define DFDL_TESTS_SUPPORT_BINARYRECORDS_H

#include <dfdl/dfdl.h>

#include <span>
#include <string>

// A file of any number of binary records, for tests of what many of them cost. Its root is "file".
struct BinaryRecords {
    const char* name;
    DFDLGrammar* (*grammar)(DFDLHeap* heap);  // the caller's; null if the heap refuses
    std::string (*record)();                  // the bytes of one, or of a few
    int fields;                               // simple elements in them, nil ones too
};

std::span<const BinaryRecords> binaryRecords();

#endif
