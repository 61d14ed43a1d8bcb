#include "dfdl/foundation/resourcecatalog.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unicode/uloc.h>

#include <string>
#include <thread>
#include <vector>

#include "dfdl/foundation/dfdlicu.h"
#include "dfdl/foundation/guard.h"
#include "dfdl/foundation/messagekeys.h"
#include "support/testheap.h"

namespace {

using Catalog = Owned<ResourceCatalog, delete_ResourceCatalog>;

std::u16string textOf(ResourceCatalog* catalog, const char* key) {
    int32_t length = -1;
    const UChar* text = ResourceCatalog_GetStringFromResource(catalog, key, &length);
    return text == nullptr ? u"null" : std::u16string(text, static_cast<size_t>(length));
}

TEST(ResourceCatalog, findsTextsByKey) {
    TestAdapter engine;
    const Catalog catalog(new_ResourceCatalog(engine.adapter, nullptr));
    EXPECT_EQ(textOf(nullptr, LengthUnits_Bits), u"null");
    EXPECT_EQ(textOf(catalog.get(), LengthUnits_Bits), u"null") << "before it is opened";
    ASSERT_TRUE(ResourceCatalog_openResource(catalog.get()));
    const UResourceBundle* first = catalog->bundle;
    EXPECT_TRUE(ResourceCatalog_openResource(catalog.get()));
    EXPECT_EQ(catalog->bundle, first) << "an open bundle stays";
    EXPECT_EQ(textOf(catalog.get(), LengthUnits_Bits), u"bits");
    EXPECT_EQ(textOf(catalog.get(), "CTDP9999E"), u"null");
}

TEST(ResourceCatalog, languageWithoutTextsShowsEnglish) {
    TestAdapter engine;
    const Catalog catalog(new_ResourceCatalog(engine.adapter, nullptr));
    const std::string usual = uloc_getDefault();
    UErrorCode status = U_ZERO_ERROR;
    uloc_setDefault("tlh", &status);
    for (const char* language : {"en", "fr", "pt_BR", "zh_TW", "xx"}) {
        ASSERT_TRUE(ResourceCatalog_setLanguage(catalog.get(), language)) << language;
        EXPECT_EQ(textOf(catalog.get(), LengthUnits_Bits), u"bits") << language;
    }
    uloc_setDefault(usual.c_str(), &status);
}

TEST(ResourceCatalog, saysWhatIsMissing) {
    int32_t status = -1;
    EXPECT_EQ(dfdlICU_openResource("dfdlnosuchbundle", "x", nullptr, &status), nullptr);
    EXPECT_EQ(status, OPEN_RESOURCE_NO_LIBRARY);
    EXPECT_EQ(dfdlICU_openResource(std::string(300, 'x').c_str(), "x", nullptr, &status), nullptr);
    EXPECT_EQ(status, OPEN_RESOURCE_NO_LIBRARY);
    EXPECT_EQ(dfdlICU_openResource("dfdlparserres", "no_such_symbol", nullptr, &status), nullptr);
    EXPECT_EQ(status, OPEN_RESOURCE_NO_SYMBOL);
}

TEST(ResourceCatalog, manyThreadsOpenItAtOnce) {
    std::vector<std::thread> threads;
    std::vector<int> opened(8, 0);
    for (int& count : opened) {
        threads.emplace_back([&count] {
            for (int round = 0; round < 20; ++round) {
                int32_t status = -1;
                UResourceBundle* bundle =
                    dfdlICU_openResource("dfdlparserres", "dfdlparserres_dat", "en", &status);
                if (bundle != nullptr && status == OPEN_RESOURCE_DONE) ++count;
                ures_close(bundle);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(opened, std::vector<int>(8, 20));
}

struct NumberCase {
    const char16_t* text;
    int32_t length;
    int32_t from;
    UErrorCode status;
    int32_t position;
};

TEST(ParseDFDLRes, tellsWhereItStopped) {
    UErrorCode status = U_ZERO_ERROR;
    const Owned<UNumberFormat, unum_close> format(
        static_cast<UNumberFormat*>(unum_open(UNUM_DECIMAL, nullptr, 0, "en_US", nullptr, &status)));
    ASSERT_TRUE(U_SUCCESS(status));
    const NumberCase cases[] = {{u"42", -1, 0, U_ZERO_ERROR, 2},
                                {u"42x", 3, 0, U_ZERO_ERROR, 2},
                                {u"42", 1, 0, U_ZERO_ERROR, 1},
                                {u"ab42", -1, 2, U_ZERO_ERROR, 4},
                                {u"x42", -1, 0, U_PARSE_ERROR, 0}};
    for (const NumberCase& one : cases) {
        icu::Formattable result;
        int32_t position = one.from;
        int32_t type = -1;
        status = U_ZERO_ERROR;
        parseDFDLRes(&result, format.get(), one.text, one.length, &position, &status, &type);
        EXPECT_EQ(status, one.status);
        EXPECT_EQ(position, one.position);
        EXPECT_EQ(type, icu::Formattable::kLong);
    }
}

}  // namespace
