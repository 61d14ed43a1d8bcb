#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

const std::string TOOL = DFDL_BINARY_DIR "/out/dfdl";
const std::string USTAR = DFDL_SOURCE_DIR "/examples/ustar.txt";

struct Ran {
    int status;
    std::string out;
    std::string err;
};

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

// A folder of its own for each test, and the tool run in it by a shell.
struct ToolTest : testing::Test {
    void SetUp() override {
        std::string name = std::filesystem::temp_directory_path() / "dfdl_tool_XXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    // `$T` in a command is the tool.
    Ran run(const std::string& command) const {
        const std::string all =
            "cd " + folder.string() + " && T=" + TOOL + " && { " + command + "; } >out 2>err </dev/null";
        const int status = std::system(all.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(folder / "out"),
                contentOf(folder / "err")};
    }
    void write(const char* name, const std::string& content) const {
        std::ofstream(folder / name, std::ios::binary) << content;
    }
    std::string read(const char* name) const { return contentOf(folder / name); }

    // A grammar with the global element "m" of one text field "f" of four bytes, blanks on its right trimmed,
    // and the external variables "s" (a string) and "n" (a short).
    void makeGrammar() const {
        write("g.txt", R"(
            pif_globals_table { row { PIFVersion: 40 } }
            simple_type_table { row { simple_type_id: 0 pifSimpleTypeName: "STRING" } }
            group_table { row { group_id: 1 iGroupKind: COMPLEX_TYPE } row { group_id: 2 iGroupKind: SEQUENCE_ORDERED } }
            element_table { row { element_id: 1 name: "m" group_id: 1 } row { element_id: 2 name: "f" simple_type_id: 0 } }
            text_encoding_table { row { iByteOrder: BYTEOR_BIG_ENDIAN iEncoding: "UTF-8" iEncodingASCIICompatible: true } }
            text_string_table { row { iTextTrimKind: TRIM_KIND_PAD_CHAR iTextPadCharacter: "%SP;" iTextEncodingIndex: 0 } }
            length_scheme_table { row { iLengthKind: IMPLICIT } row { iLengthKind: EXPLICIT iLengthUnits: BYTES iLength: 4 } }
            group_member_table {
              row { child_element_id: 1 child_group_id: 1 min_occurs: 1 max_occurs: 1 iPhysicalType: COMPLEX_ELEMENT
                    iDfdlRepresentation: REPRESENTATION_TEXT iLengthSchemeId: 1 iTextEncodingIndex: 0 }
              row { parent_group_id: 1 sequence_number: 1 child_group_id: 2 min_occurs: 1 max_occurs: 1
                    iPhysicalType: GROUP_SEQUENCE iDfdlRepresentation: REPRESENTATION_TEXT iTextEncodingIndex: 0 }
              row { parent_group_id: 2 sequence_number: 1 child_element_id: 2 min_occurs: 1 max_occurs: 1
                    iPhysicalType: TEXT_STRING iDfdlRepresentation: REPRESENTATION_TEXT iLengthSchemeId: 2
                    iTextStringIndex: 0 iTextEncodingIndex: 0 }
            }
            variables_table { row { iName: "s" iSimpleType: "STRING" iIsExternal: true iID: 0 }
                              row { iName: "n" iNamespace: "urn:v" iSimpleType: "SHORT" iIsExternal: true iID: 1 }
                              row { iName: "d" iSimpleType: "DATE" iIsExternal: true iID: 2 } }
            variable_actions_table { row { iVariableId: 0 iAction: ACTION_DEFINE } row { iVariableId: 1 iAction: ACTION_DEFINE }
                                     row { iVariableId: 2 iAction: ACTION_DEFINE } }
        )");
        ASSERT_EQ(run("$T grammar encode g.txt -o g.pif").status, 0) << read("err");
    }

    std::filesystem::path folder;
};

TEST_F(ToolTest, ExitStatusTellsWhatWentWrong) {
    makeGrammar();
    write("four", "abcd");
    write("three", "abc");
    write("five", "abcde");
    write("empty", "");
    write("junk", "\xFF\xFF\xFF");
    const struct {
        const char* command;
        int status;
        const char* error;  // a part of what must be on standard error; empty: nothing may be there
    } cases[] = {
        {"$T parse -g g.pif -r m four", 0, ""},
        {"$T parse -g g.pif -r m <four", 0, ""},
        {"$T parse -g g.pif -r m - <four", 0, ""},
        {"$T parse -g g.pif -r m --step --chunk 1 four", 0, ""},
        {"$T parse -g g.pif -r m three", 1, ": "},
        {"$T parse -g g.pif -r m five", 1, "CTDP3002E: "},
        {"$T parse -g g.pif -r m --ignore-trailing-data five", 0, ""},
        {"$T parse -g g.pif -r nowhere four", 1, "CTDP3001E: "},
        {"$T parse -g g.pif -r m -n urn:x four", 1, "CTDP3001E: "},
        {"$T parse -g g.pif -r m --repeat empty", 0, ""},
        {"$T parse -g g.pif -r m --repeat --chunk 3 </dev/null", 0, ""},
        {"$T parse -g g.pif -r m --repeat five", 1, ": "},
        {"$T", 2, "subcommand"},
        {"$T nothing", 2, ""},
        {"$T parse -r m four", 2, "--grammar"},
        {"$T parse -g g.pif -r m --chunk 0 four", 2, "--chunk"},
        {"$T parse -g g.pif -r m --chunk -1 four", 2, "--chunk"},
        {"$T parse -g g.pif -r m -f html four", 2, "--format"},
        {"$T parse -g g.pif -r m --trace all four", 2, "--trace"},
        {"$T parse -g g.pif -r m --language xx four", 2, "xx"},
        {"$T parse -g g.pif -r m missing", 2, "missing"},
        {"$T parse -g g.pif -r m .", 2, "."},
        {"$T parse -g g.pif -r m -o no/such/file four", 2, "no/such/file"},
        {"$T parse -g missing.pif -r m four", 3, "(code 6)"},
        {"$T parse -g junk -r m four", 3, "(code 5)"},
        {"$T grammar encode missing.txt", 2, "missing.txt"},
        {"$T grammar decode missing.pif", 3, "missing.pif"},
        {"$T grammar show junk", 3, "junk"},
        {"$T --help", 0, ""},
        {"$T --version", 0, ""},
    };
    for (const auto& c : cases) {
        const Ran ran = run(c.command);
        EXPECT_EQ(ran.status, c.status) << c.command << '\n' << ran.err;
        EXPECT_NE(ran.err.find(c.error), std::string::npos) << c.command << '\n' << ran.err;
        EXPECT_EQ(ran.err.empty(), c.status == 0) << c.command << '\n' << ran.err;
    }
}

TEST_F(ToolTest, AMistakeInAGrammarsTextTellsItsPlace) {
    write("bad.txt", "element_table {\n  row { element_id: 1 nme: \"x\" }\n}\n");
    const Ran ran = run("$T grammar encode bad.txt -o bad.pif");
    EXPECT_EQ(ran.status, 2);
    EXPECT_EQ(ran.err.substr(0, ran.err.find(' ')), "bad.txt:2:26:");
    EXPECT_FALSE(std::filesystem::exists(folder / "bad.pif"));
}

TEST_F(ToolTest, ReferencesLeftOutAreNone) {
    write("a.txt",
          "element_table { row { name: \"x\" element_id: 7 } }"
          "group_member_table { row { min_occurs: 1 iTextMarkupId: 0 } }");
    ASSERT_EQ(run("$T grammar encode a.txt -o a.pif").status, 0);
    // Without our knowledge of what is a reference.
    const Ran raw =
        run("protoc --proto_path=" DFDL_SOURCE_DIR "/src/dfdl/pif --decode=PIF.MPIF pif.proto <a.pif");
    ASSERT_EQ(raw.status, 0) << raw.err;
    for (const char* set : {"element_id: 7", "simple_type_id: -1", "group_id: -1", "defaultValueIndex: -1",
                            "scd_id: -1", "parent_group_id: -1", "child_element_id: -1", "iTextMarkupId: 0",
                            "iLengthSchemeId: -1", "iNilSchemeIndex: -1", "iOuputValueCalcExprIndex: -1"}) {
        EXPECT_NE(raw.out.find(std::string(set) + '\n'), std::string::npos) << set;
    }
    for (const char* absent : {"iChoiceDispatchKeyIndex", "iChoiceBranchKeyIndex", "max_occurs", "iFlags"}) {
        EXPECT_EQ(raw.out.find(absent), std::string::npos) << absent;
    }
}

TEST_F(ToolTest, WhatDecodeWritesEncodesToTheSameGrammar) {
    ASSERT_EQ(run("$T grammar encode " + USTAR + " -o a.pif").status, 0);
    ASSERT_EQ(run("$T grammar decode a.pif -o a.txt && $T grammar encode a.txt -o b.pif").status, 0);
    EXPECT_EQ(read("a.pif"), read("b.pif"));
    // An absent reference of the compiled form is row 0, and must not turn into none.
    write("raw.txt", "element_table { row { name: \"x\" } }");
    ASSERT_EQ(run("protoc --proto_path=" DFDL_SOURCE_DIR
                  "/src/dfdl/pif --encode=PIF.MPIF pif.proto <raw.txt >r.pif")
                  .status,
              0);
    EXPECT_NE(run("$T grammar decode r.pif").out.find("simple_type_id: 0\n"), std::string::npos);
}

TEST_F(ToolTest, ShowsACircularGrammarOnce) {
    write("c.txt", R"(
        group_table { row { group_id: 1 iGroupKind: COMPLEX_TYPE } row { group_id: 2 iGroupKind: CHOICE } }
        element_table { row { element_id: 1 name: "tree" group_id: 1 } }
        group_member_table {
          row { child_element_id: 1 child_group_id: 1 min_occurs: 1 max_occurs: 1 }
          row { parent_group_id: 1 child_group_id: 2 min_occurs: 1 max_occurs: 1 }
          row { parent_group_id: 2 child_element_id: 1 child_group_id: 1 max_occurs: -1 }
        })");
    ASSERT_EQ(run("$T grammar encode c.txt -o c.pif").status, 0);
    EXPECT_EQ(run("$T grammar show c.pif").out,
              "tree: complex [1..1]\n  <choice>\n    tree: complex [0..*] (as above)\n");
}

TEST_F(ToolTest, ShowsTypesLengthsDelimitersAndOccurrences) {
    write("s.txt", R"(
        simple_type_table { row { simple_type_id: 0 pifSimpleTypeName: "STRING" } }
        element_table { row { element_id: 1 name: "a" namespace: "urn:x" simple_type_id: 0 } }
        text_encoding_table { row { iEncoding: "UTF-8" } }
        length_scheme_table { row { iLengthKind: EXPLICIT iLengthUnits: CHARACTERS iLengthExprIndex: 0 } }
        expressions_table { row { iMessage: "{../n}" } }
        string_part_table { row { iStringPart: "<" } row { iStringPart: "%NL;" } }
        string_literal_table { row { iStringPartIndex: 0 } row { iStringPartIndex: 1 } }
        text_markup_table { row { iInitiatorIndex: 0 iTerminatorIndex: 1 } }
        occurs_scheme_table { row { iOccursCountKind: OCK_PARSED } }
        group_member_table {
          row { child_element_id: 1 max_occurs: -1 iLengthSchemeId: 1 iTextMarkupId: 1 iTextEncodingIndex: 0
                iDfdlRepresentation: REPRESENTATION_TEXT iOccursSchemeTableIndex: 0 }
        })");
    ASSERT_EQ(run("$T grammar encode s.txt -o s.pif").status, 0);
    EXPECT_EQ(run("$T grammar show s.pif").out,
              "a {urn:x}: string as text [0..*] parsed, explicit {../n} characters, UTF-8, initiator \"<\", "
              "terminator \"%NL;\"\n");
}

TEST_F(ToolTest, RepeatReadsMessageAfterMessageHoweverTheInputComes) {
    makeGrammar();
    std::string input;
    std::string expected;
    for (int i = 0; i < 1000; i++) {
        const std::string value = std::to_string(1000 + i);
        input += value;
        expected +=
            R"({"event":"startDocument"})"
            "\n"
            R"({"event":"startElement","name":"m","namespace":"","id":1,"namespaceId":1,"scd":"","start":0})"
            "\n"
            R"({"event":"startElement","name":"f","namespace":"","id":2,"namespaceId":1,"scd":"","start":0})"
            "\n"
            R"({"event":"value","call":"elementStringValue","type":0,"value":")" +
            value +
            "\"}\n"
            R"({"event":"endElement","end":32})"
            "\n"
            R"({"event":"endElement","end":32})"
            "\n"
            R"({"event":"endDocument","bytes":4})"
            "\n";
    }
    write("in", input);
    for (const char* road : {"in", "<in", "--chunk 1 in", "--chunk 3 in", "--chunk 7 <in",
                             "--chunk 100000 in", "--step in", "--step --chunk 5 <in", "--step <in"}) {
        const Ran ran = run(std::string("$T parse -g g.pif -r m -f events --repeat ") + road);
        EXPECT_EQ(ran.status, 0) << road << '\n' << ran.err;
        EXPECT_TRUE(ran.out == expected) << road << '\n' << ran.out.substr(0, 2000);
    }
}

TEST_F(ToolTest, XmlGivesEachMessageADocument) {
    makeGrammar();
    write("in", "a<  b\xC3\xA4 ");
    const Ran ran = run("$T parse -g g.pif -r m --repeat in -o result && cat result");
    EXPECT_EQ(ran.status, 0) << ran.err;
    const std::string start = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<m>\n  <f>";
    EXPECT_EQ(ran.out, start + "a&lt;</f>\n</m>\n" + start + "bä</f>\n</m>\n");
}

TEST_F(ToolTest, VariablesAreReadAsTheirType) {
    makeGrammar();
    write("in", "abcd");
    const struct {
        const char* set;
        int status;
        const char* error;
    } cases[] = {
        {"s=any text = this", 0, ""},
        {"s=", 0, ""},
        {"{urn:v}n=-32768", 0, ""},
        {"{urn:v}n=+7", 0, ""},
        {"{urn:v}n=32768", 2, "the value is no SHORT"},
        {"{urn:v}n=7x", 2, "the value is no SHORT"},
        {"{urn:v}n=", 2, "the value is no SHORT"},
        {"n=7", 2, "CTDP3098E: "},
        {"d=2020-01-01", 2, "calendars cannot be set from text"},
        {"=x", 2, "NAME=VALUE"},
        {"s", 2, "NAME=VALUE"},
        {"{urn:v=x", 2, "NAME=VALUE"},
    };
    for (const auto& c : cases) {
        const Ran ran = run(std::string("$T parse -g g.pif -r m --set '") + c.set + "' in");
        EXPECT_EQ(ran.status, c.status) << c.set << '\n' << ran.err;
        EXPECT_NE(ran.err.find(c.error), std::string::npos) << c.set << '\n' << ran.err;
    }
    EXPECT_EQ(run("$T parse -g g.pif -r m --set s=a --set {urn:v}n=1 in").status, 0);
}

TEST_F(ToolTest, AReaderThatGoesAwayEndsItQuietly) {
    makeGrammar();
    // Endless input: the tool stops only if it notices.
    const Ran ran = run("yes abc | timeout 60 $T parse -g g.pif -r m -f events --repeat | head -n 1");
    EXPECT_EQ(ran.out, R"({"event":"startDocument"})"
                       "\n");
    EXPECT_EQ(ran.err, "");
}

TEST_F(ToolTest, TraceGoesToStandardError) {
    makeGrammar();
    write("in", "abcd");
    const Ran plain = run("$T parse -g g.pif -r m in");
    for (const auto& [kind, line] : {std::pair("user", "CTDP5020: "), {"service", "setInputDocument: "}}) {
        const Ran ran = run(std::string("$T parse -g g.pif -r m in --trace ") + kind);
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(ran.out, plain.out);
        EXPECT_NE(std::string::npos, ran.err.find(line)) << ran.err;
    }
}

}  // namespace
