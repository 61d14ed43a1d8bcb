#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dfdl/foundation/context.h"
#include "dfdl/foundation/dfdldiagnostic.h"
#include "dfdl/foundation/dfdlustring.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/processingerror.h"
#include "dfdl/foundation/resourcecatalog.h"
#include "support/testheap.h"

namespace {

using Diagnostic = Owned<DFDLDiagnosticImpl, delete_DFDLDiagnosticImpl>;

struct Engine : TestAdapter {
    ResourceCatalog* catalog = new_ResourceCatalog(adapter, adapter->context);
    ProcessingError* record = new_ProcessingError(adapter);
    std::vector<UChar> scratch = std::vector<UChar>(DIAGNOSTIC_CAPACITY);

    ~Engine() {
        delete_ProcessingError(record);
        delete_ResourceCatalog(catalog);
    }
    Diagnostic make(int32_t type) {
        return Diagnostic(new_DFDLDiagnosticImplFromProsError(adapter, adapter->context->defaultConverter,
                                                              record, catalog, scratch.data(), type));
    }
};

template <auto Getter>
std::u16string get(const DFDLDiagnostic* diagnostic) {
    const DFDLChar* characters = u"";
    int32_t length = -1;
    Getter(diagnostic, &characters, &length);
    return characters == nullptr ? u"null" : std::u16string(characters, static_cast<size_t>(length));
}

constexpr auto summary = get<DFDLDiagnostic_getSummary>;
constexpr auto codeAndSummary = get<DFDLDiagnostic_getCodeAndSummary>;

TEST(Diagnostic, ofARecord) {
    Engine engine;
    ASSERT_TRUE(ResourceCatalog_openResource(engine.catalog));
    ProcessingError_setValues(engine.record, "", 0, DFDLParser_unknownData, ERROR_PROCESSING, SUBKIND_NONE,
                              "%lld%02hX", int64_t{17}, 0xAB);
    const Diagnostic diagnostic = engine.make(DIAGNOSTIC_VALIDATION_ERROR);
    EXPECT_EQ(DFDLDiagnostic_getType(diagnostic.get()), DFDL_DIAGNOSTIC_VALIDATION_ERROR);
    EXPECT_EQ(std::u16string(DFDLDiagnostic_getCode(diagnostic.get())), u"CTDP3002E");
    const std::u16string text = summary(diagnostic.get());
    EXPECT_NE(text.find(u"17"), std::u16string::npos);
    EXPECT_NE(text.find(u"AB"), std::u16string::npos);
    EXPECT_EQ(codeAndSummary(diagnostic.get()), u"CTDP3002E: " + text);
    EXPECT_EQ(DFDLDiagnostic_getSchemaLocation(diagnostic.get()), nullptr);
}

TEST(Diagnostic, withoutTexts) {
    Engine engine;
    ProcessingError_setValues(engine.record, "", 0, DFDLParser_unknownData, ERROR_PROCESSING, SUBKIND_NONE,
                              nullptr);
    const Diagnostic diagnostic = engine.make(DIAGNOSTIC_PROCESSING_ERROR);
    EXPECT_EQ(summary(diagnostic.get()), u"");
    EXPECT_EQ(codeAndSummary(diagnostic.get()), u"CTDP3002E: ");
}

TEST(Diagnostic, ofAText) {
    Engine engine;
    const Diagnostic diagnostic(new_DFDLDiagnosticImplFromString(
        engine.adapter, engine.adapter->context->defaultConverter, "no bundle"));
    EXPECT_EQ(DFDLDiagnostic_getType(diagnostic.get()), DFDL_DIAGNOSTIC_PROCESSING_ERROR);
    EXPECT_EQ(codeAndSummary(diagnostic.get()), u"CTDP0000E: no bundle");
}

TEST(Diagnostic, survivesWhenMemoryRunsOut) {
    Engine engine;
    const std::string large(1000, 'x');
    const Diagnostic diagnostic(new_DFDLDiagnosticImplFromString(
        engine.adapter, engine.adapter->context->defaultConverter, large.c_str()));
    engine.heap.failAt = engine.heap.allocations;
    EXPECT_EQ(codeAndSummary(diagnostic.get()), u"null");
    EXPECT_EQ(codeAndSummary(diagnostic.get()).size(), 1011U) << "memory is back";
}

TEST(Diagnostic, nullIsNoCrash) {
    EXPECT_EQ(DFDLDiagnostic_getCode(nullptr), nullptr);
    EXPECT_EQ(summary(nullptr), u"null");
    EXPECT_EQ(codeAndSummary(nullptr), u"null");
}

}  // namespace
