#include "support/examples.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "inputs.h"
#include "support/parserrun.h"
#include "text.h"

namespace {

namespace fs = std::filesystem;

constexpr char END_OF_ITEM = '\x1E';

std::string contentOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream.good()) << path;
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

// A folder that goes with its owner.
struct Folder {
    fs::path path;

    Folder() {
        std::string name = fs::temp_directory_path() / "dfdl_formats_XXXXXX";
        EXPECT_NE(mkdtemp(name.data()), nullptr);
        path = name;
    }
    ~Folder() { fs::remove_all(path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
};

void run(const std::string& command) { EXPECT_EQ(std::system(command.c_str()), 0) << command; }

// What one of the scripts in tests/formats writes when it reads the bytes.
std::string outputOf(const std::string& script, const std::string& bytes) {
    const Folder folder;
    std::ofstream(folder.path / "in", std::ios::binary) << bytes;
    run("cd " + folder.path.string() + " && /usr/bin/python3 " DFDL_SOURCE_DIR "/tests/formats/" + script +
        " <in >out");
    return contentOf(folder.path / "out");
}

// The document handler behind an outline.
struct Outline {
    std::string text;

    static Outline* of(DFDLDocHandler* handler) {
        return static_cast<Outline*>(DFDLDocHandler_getContextObject(handler));
    }
    static void start(DFDLDocHandler* handler, int32_t, const DFDLChar* name, int32_t, const DFDLChar*,
                      const DFDLChar*, DFDLWORD) {
        appendUtf8(of(handler)->text, viewOf(name));
        of(handler)->text += END_OF_ITEM;
    }
    // The value comes right behind the start.
    static void value(DFDLDocHandler* handler, const DFDLChar* characters, int32_t length, uint32_t) {
        std::string& text = of(handler)->text;
        text.back() = '=';
        appendUtf8(text, viewOf(characters, length));
        text += END_OF_ITEM;
    }
    static void nil(DFDLDocHandler* handler) { value(handler, nullptr, 0, 0); }
};

}  // namespace

std::string exampleFile(const std::string& name) {
    return contentOf(fs::path(DFDL_SOURCE_DIR "/examples") / name);
}

std::string examplePif(const std::string& name, const std::function<void(PIF::MPIF*)>& edit) {
    const Folder folder;
    const fs::path compiled = folder.path / "grammar.pif";
    run(DFDL_BINARY_DIR "/out/dfdl grammar encode " DFDL_SOURCE_DIR "/examples/" + name + ".txt -o " +
        compiled.string());
    PIF::MPIF pif;
    EXPECT_TRUE(pif.ParseFromString(contentOf(compiled))) << name;
    if (edit) edit(&pif);
    return pif.SerializeAsString();
}

Grammar exampleGrammar(const std::string& name, const std::function<void(PIF::MPIF*)>& edit) {
    const std::string bytes = examplePif(name, edit);
    int result = -1;
    Grammar grammar(new_DFDLGrammarFromByteArray(nullptr, bytes.data(), bytes.size(), nullptr, &result),
                    delete_DFDLGrammar);
    EXPECT_NE(grammar, nullptr) << name << ": " << result;
    return grammar;
}

std::string fromPython(const std::string& command, const std::string& bytes) {
    return outputOf("expected.py " + command, bytes);
}

std::string sampleFromPython(const std::string& format, unsigned seed) {
    return outputOf("samples.py " + format + " " + std::to_string(seed), {});
}

void expectAsPython(const ExampleFormat& format, DFDLGrammar* grammar, const std::string& bytes) {
    const char* const command = format.command != nullptr ? format.command : format.example;
    ParserOptions options;
    options.ignoreTrailingData = format.onlyTheBeginning;
    const ParserRun run = runEverywhere(grammar, format.root, bytes, options);
    EXPECT_TRUE(run.parsed) << command << ": " << bytes << '\n' << run;
    EXPECT_EQ(run.outline(), fromPython(command, bytes)) << command << ": " << bytes << '\n' << run;
}

void expectSampleAsPython(const ExampleFormat& format) {
    const Grammar grammar = exampleGrammar(format.example, format.edit);
    ASSERT_NE(grammar, nullptr);
    expectAsPython(format, grammar.get(), exampleFile(format.file));
}

void expectRandomAsPython(const ExampleFormat& format, unsigned seed, unsigned rounds) {
    const Grammar grammar = exampleGrammar(format.example, format.edit);
    ASSERT_NE(grammar, nullptr);
    const std::string command = format.command != nullptr ? format.command : format.example;
    for (unsigned round = 0; round < rounds; ++round)
        expectAsPython(format, grammar.get(), sampleFromPython(command, seed + round));
}

std::string outlineOf(DFDLGrammar* grammar, std::u16string_view root, const std::string& bytes,
                      size_t piece) {
    Outline outline;
    DFDLDocHandler* document = new_DFDLDocHandler();
    DFDLDocHandler_setContextObject(document, &outline);
    DFDLDocHandler_setStartElementCallback(document, Outline::start);
    DFDLDocHandler_setElementStringValueCallback(document, Outline::value);
    DFDLDocHandler_setElementNilValueCallback(document, Outline::nil);
    DFDLParser* parser = new_DFDLParser(nullptr);
    EXPECT_EQ(DFDLParser_setGrammar(parser, grammar), 0);
    EXPECT_EQ(DFDLParser_setDocumentHandler(parser, document), 0);
    EXPECT_EQ(DFDLParser_setRootElement(parser, std::u16string(root).c_str(), nullptr), 0);
    Input input;
    Input_set(&input, reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), piece);
    Input_attach(&input, parser);
    EXPECT_EQ(DFDLParser_parseAll(parser, nullptr), 1);
    delete_DFDLParser(parser);
    Input_close(&input);
    delete_DFDLDocHandler(document);
    return outline.text;
}
