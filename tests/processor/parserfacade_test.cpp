// The parser as its caller sees it: settings, refusals, and what is said when something is missing.
#include <dfdl/dfdl.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/grammarbuilder.h"

namespace {

using Parser = std::unique_ptr<DFDLParser, decltype(&delete_DFDLParser)>;
using ErrorHandler = std::unique_ptr<DFDLErrorHandler, decltype(&delete_DFDLErrorHandler)>;
using DocHandler = std::unique_ptr<DFDLDocHandler, decltype(&delete_DFDLDocHandler)>;
using Grammar = std::unique_ptr<DFDLGrammar, decltype(&delete_DFDLGrammar)>;

std::string narrow(const DFDLChar* text) {
    std::string result;
    for (; *text != 0; ++text) result.push_back(static_cast<char>(*text));
    return result;
}

class ParserFacade : public testing::Test {
  protected:
    ParserFacade()
        : parser(new_DFDLParser(nullptr), delete_DFDLParser),
          errors(new_DFDLErrorHandler(), delete_DFDLErrorHandler),
          documents(new_DFDLDocHandler(), delete_DFDLDocHandler),
          grammar(oneField(), delete_DFDLGrammar) {
        DFDLErrorHandler_setContextObject(errors.get(), this);
        DFDLErrorHandler_setProcessingErrorCallback(errors.get(), record);
        DFDLErrorHandler_setWarningCallback(errors.get(), record);
        DFDLErrorHandler_setSchemaDefinitionErrorCallback(errors.get(), record);
        DFDLParser_setErrorHandler(parser.get(), errors.get());
        DFDLDocHandler_setContextObject(documents.get(), this);
        DFDLDocHandler_setElementStringValueCallback(documents.get(), recordValue);
        DFDLDocHandler_setEndDocumentCallback(documents.get(), recordEnd);
        DFDLParser_setDocumentHandler(parser.get(), documents.get());
    }

    static DFDLGrammar* oneField() {
        GrammarBuilder builder;
        builder.complexElement("root").text("a").bytes(3).encoding("UTF-8");
        return builder.load();
    }

    static void record(DFDLErrorHandler* handler, const DFDLDiagnostic* diagnostic) {
        auto* test = static_cast<ParserFacade*>(DFDLErrorHandler_getContextObject(handler));
        test->codes.push_back(narrow(DFDLDiagnostic_getCode(diagnostic)));
        const DFDLChar* summary = nullptr;
        int32_t length = 0;
        DFDLDiagnostic_getSummary(diagnostic, &summary, &length);
        test->summary = narrow(summary);
    }
    static void recordValue(DFDLDocHandler* handler, const DFDLChar* characters, int32_t, uint32_t) {
        static_cast<ParserFacade*>(DFDLDocHandler_getContextObject(handler))
            ->values.push_back(narrow(characters));
    }
    static void recordEnd(DFDLDocHandler* handler, DFDLWORD bytes) {
        static_cast<ParserFacade*>(DFDLDocHandler_getContextObject(handler))->ends.push_back(bytes);
    }

    void useGrammar() {
        ASSERT_EQ(0, DFDLParser_setGrammar(parser.get(), grammar.get()));
        ASSERT_EQ(0, DFDLParser_setRootElement(parser.get(), u"root", nullptr));
    }
    void useDocument(const std::string& text) {
        document = text;
        ASSERT_EQ(0,
                  DFDLParser_setInputDocument(parser.get(), reinterpret_cast<const uint8_t*>(document.data()),
                                              static_cast<DFDLWORD>(document.size())));
    }

    Parser parser;
    ErrorHandler errors;
    DocHandler documents;
    Grammar grammar;
    std::string document;
    std::vector<std::string> codes;
    std::string summary;
    std::vector<std::string> values;
    std::vector<DFDLWORD> ends;
};

using Codes = std::vector<std::string>;

TEST_F(ParserFacade, RefusesToParseWithoutGrammarOrRoot) {
    int result = -1;
    EXPECT_EQ(0, DFDLParser_parseAll(parser.get(), &result));
    EXPECT_EQ(2, result);
    EXPECT_EQ(1, DFDLParser_setGrammar(parser.get(), nullptr));
    ASSERT_EQ(0, DFDLParser_setGrammar(parser.get(), grammar.get()));
    EXPECT_EQ(0, DFDLParser_hasNext(parser.get(), &result));
    EXPECT_EQ(2, result);
    EXPECT_EQ((Codes{"CTDP3064E", "CTDP3067E"}), codes);
}

TEST_F(ParserFacade, NamesTheRootElementThatTheGrammarLacks) {
    useGrammar();
    DFDLParser_setRootElement(parser.get(), u"absent", nullptr);
    int result = -1;
    EXPECT_EQ(0, DFDLParser_parseAll(parser.get(), &result));
    EXPECT_EQ(1, result);
    EXPECT_EQ(Codes{"CTDP3001E"}, codes);
    EXPECT_NE(std::string::npos, summary.find("absent"));
}

TEST_F(ParserFacade, WarnsAndParsesWithoutDocumentHandler) {
    useGrammar();
    DFDLParser_setDocumentHandler(parser.get(), nullptr);
    useDocument("abc");
    EXPECT_EQ(1, DFDLParser_parseAll(parser.get(), nullptr));
    EXPECT_EQ(Codes{"CTDP3063E"}, codes);
}

TEST_F(ParserFacade, ReadsMessageAfterMessageOfOneDocument) {
    useGrammar();
    useDocument("abcdefghi");
    DFDLParser_setFeature(parser.get(), DFDL_FEATURE_IGNORE_TRAILING_DATA, 1);
    int result = -1;
    for (int message = 0; message < 3; ++message) EXPECT_EQ(1, DFDLParser_parseAll(parser.get(), &result));
    EXPECT_EQ((Codes{"abc", "def", "ghi"}), values);
    EXPECT_EQ((std::vector<DFDLWORD>{3, 3, 3}), ends);
    EXPECT_TRUE(codes.empty());
}

TEST_F(ParserFacade, TellsTheFirstByteOfUnknownData) {
    useGrammar();
    useDocument("abc\xF0");
    int result = -1;
    EXPECT_EQ(0, DFDLParser_parseAll(parser.get(), &result));
    EXPECT_EQ(1, result);
    EXPECT_EQ(Codes{"CTDP3002E"}, codes);
    EXPECT_NE(std::string::npos, summary.find("F0")) << summary;
    EXPECT_NE(std::string::npos, summary.find("3")) << summary;
    EXPECT_TRUE(ends.empty());
}

TEST_F(ParserFacade, StepsAndHoldsOffWhileStepping) {
    useGrammar();
    useDocument("abc");
    int result = -1;
    ASSERT_EQ(1, DFDLParser_hasNext(parser.get(), &result));
    ASSERT_EQ(1, DFDLParser_parseNext(parser.get(), &result));
    EXPECT_TRUE(values.empty());
    EXPECT_EQ(2, DFDLParser_setRootElement(parser.get(), u"other", nullptr));
    EXPECT_EQ(2, DFDLParser_setFeature(parser.get(), "unknown", 1));
    EXPECT_EQ(0, DFDLParser_parseAll(parser.get(), &result));
    EXPECT_EQ(2, result);
    while (DFDLParser_hasNext(parser.get(), &result) == 1)
        ASSERT_EQ(1, DFDLParser_parseNext(parser.get(), &result));
    EXPECT_EQ(Codes{"abc"}, values);
    EXPECT_EQ(0, DFDLParser_parseAll(parser.get(), &result)) << "stepped to the end, but not reset";
    EXPECT_EQ(0, DFDLParser_resetParser(parser.get()));
    EXPECT_EQ(1, DFDLParser_parseAll(parser.get(), &result));
}

TEST_F(ParserFacade, ParsesTheRestOfASteppedMessage) {
    useGrammar();
    useDocument("abc");
    int result = -1;
    ASSERT_EQ(1, DFDLParser_parseNext(parser.get(), &result));
    EXPECT_EQ(1, DFDLParser_parseRemaining(parser.get(), &result));
    EXPECT_EQ(Codes{"abc"}, values);
    EXPECT_EQ(0, DFDLParser_setRootElement(parser.get(), u"root", u"")) << "the parse has been reset";
}

TEST_F(ParserFacade, KnowsFeaturesByTheirExactNames) {
    DFDLBoolean value = 7;
    for (const char* feature :
         {DFDL_FEATURE_VALIDATION, DFDL_FEATURE_IGNORE_TRAILING_DATA, DFDL_FEATURE_FAST_SMALL_INTEGERS}) {
        EXPECT_EQ(0, DFDLParser_getFeature(parser.get(), feature, &value));
        EXPECT_EQ(0, value) << feature;
        EXPECT_EQ(0, DFDLParser_setFeature(parser.get(), feature, 1));
        EXPECT_EQ(0, DFDLParser_getFeature(parser.get(), feature, &value));
        EXPECT_EQ(1, value) << feature;
        EXPECT_EQ(3, DFDLParser_setFeature(parser.get(), (std::string(feature) + "s").c_str(), 1));
    }
}

TEST_F(ParserFacade, KnowsLanguagesWithoutRegardToCase) {
    const std::pair<const char*, int> cases[] = {
        {"EN", 0}, {"zh_cn", 0}, {"en_US", 7}, {"", 7}, {nullptr, 7}};
    for (const auto& [language, expected] : cases) {
        EXPECT_EQ(expected, DFDLParser_setTraceAndErrorLanguage(parser.get(), language));
    }
}

TEST_F(ParserFacade, SetsExternalVariables) {
    EXPECT_EQ(2, DFDLParser_setVariableInt(parser.get(), u"v", nullptr, 1)) << "no grammar yet";
    GrammarBuilder builder;
    builder.complexElement("root").text("a").bytes(3).encoding("UTF-8");
    builder.variable("n", "UNSIGNEDBYTE", true);
    builder.variable("inner", "INT", false);
    const Grammar withVariables(builder.load(), delete_DFDLGrammar);
    ASSERT_EQ(0, DFDLParser_setGrammar(parser.get(), withVariables.get()));
    EXPECT_EQ(1, DFDLParser_setVariableUByte(parser.get(), u"n", nullptr, 5))
        << "the one with the other sense";
    EXPECT_EQ(0, DFDLParser_setVariableDouble(parser.get(), u"n", nullptr, 255.0));
    EXPECT_TRUE(codes.empty());
    EXPECT_EQ(1, DFDLParser_setVariableDouble(parser.get(), u"n", nullptr, 255.5));
    EXPECT_EQ(1, DFDLParser_setVariableString(parser.get(), u"n", nullptr, u"5", 1));
    EXPECT_EQ(1, DFDLParser_setVariableInt(parser.get(), u"inner", nullptr, 1));
    EXPECT_EQ(1, DFDLParser_setVariableInt(parser.get(), u"absent", nullptr, 1));
    EXPECT_EQ(0, DFDLParser_setVariableDecimal(parser.get(), u"n", nullptr, "1x", 2));
    EXPECT_EQ((Codes{"CTDP3095E", "CTDP3096E", "CTDP3105E", "CTDP3098E", "CTDP3039E"}), codes);
    delete_DFDLParser(parser.release());
}

TEST(BuildInformation, IsFixed) {
    int version[4] = {};
    DFDL_getBuildVRMF(&version[0], &version[1], &version[2], &version[3]);
    EXPECT_STREQ("1.1.2.0", DFDL_getBuildVersion());
    EXPECT_EQ((std::vector<int>{1, 1, 2, 0}), (std::vector<int>(version, version + 4)));
    EXPECT_EQ(64, DFDL_getBuildBits());
}

}  // namespace
