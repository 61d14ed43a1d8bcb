#ifndef DFDL_TESTS_SUPPORT_EXAMPLES_H
#define DFDL_TESTS_SUPPORT_EXAMPLES_H

#include <dfdl/dfdl.h>

#include <functional>
#include <memory>
#include <string>

#include "pif.pb.h"

using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;

// The bytes of a file under examples/, or of any file whose path is absolute.
std::string exampleFile(const std::string& name);

// The compiled grammar of examples/NAME.txt, changed by `edit` if there is one.
std::string examplePif(const std::string& name, const std::function<void(PIF::MPIF*)>& edit = {});

// The same loaded; null if it cannot be.
Grammar exampleGrammar(const std::string& name, const std::function<void(PIF::MPIF*)>& edit = {});

// What tests/formats/expected.py, which reads the formats by means of Python alone, says of the bytes. A test
// fails if it cannot be run.
std::string fromPython(const std::string& command, const std::string& bytes);

// Data in a format that tests/formats/samples.py makes at random.
std::string sampleFromPython(const std::string& format, unsigned seed);

// A format that examples/ describes and Python reads.
struct ExampleFormat {
    const char* example;
    const char16_t* root;
    const char* file = nullptr;                 // under examples/; null: there is none
    bool onlyTheBeginning = false;              // the grammar describes no more of the data
    const char* command = nullptr;              // of the scripts; null: the example's name
    std::function<void(PIF::MPIF*)> edit = {};  // of the example's grammar
};

// Parses the bytes by every road and expects what Python says of them.
void expectAsPython(const ExampleFormat& format, DFDLGrammar* grammar, const std::string& bytes);
// The same for the format's own file, and for `rounds` random data from a seed on.
void expectSampleAsPython(const ExampleFormat& format);
void expectRandomAsPython(const ExampleFormat& format, unsigned seed, unsigned rounds);

// What the parser says of them, in the same form: for each element its name, behind "=" its value if it is a
// simple one (a nil one has none), and U+001E behind it. `road` as for runParser.
std::string outlineOf(DFDLGrammar* grammar, std::u16string_view root, const std::string& bytes,
                      size_t piece = 0);

#endif
