// What fuzzers have found: grammars that are wrong in some number, with data. Each file is the number of
// data, in one byte, the data, and the grammar; its name is that of the example it was made from, and its
// root.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/examples.h"
#include "support/parserrun.h"

namespace {

namespace fs = std::filesystem;

TEST(Finds, EndAlikeByEveryRoad) {
    int count = 0;
    for (const auto& entry : fs::directory_iterator(DFDL_SOURCE_DIR "/tests/formats/finds")) {
        const std::string input = exampleFile(entry.path().string());
        const std::string name = entry.path().filename().string();
        const std::string root = name.substr(name.find('-') + 1);
        ASSERT_GT(input.size(), 1U + static_cast<unsigned char>(input[0])) << name;
        const size_t data = static_cast<unsigned char>(input[0]);
        const std::string pif = input.substr(1 + data);
        int code = -1;
        const Grammar grammar(new_DFDLGrammarFromByteArray(nullptr, pif.data(), pif.size(), nullptr, &code),
                              delete_DFDLGrammar);
        ASSERT_NE(grammar, nullptr) << name << ": " << code;
        SCOPED_TRACE(name);
        runEverywhere(grammar.get(), std::u16string(root.begin(), root.end()), input.substr(1, data));
        ++count;
    }
    EXPECT_GE(count, 6);
}

}  // namespace
