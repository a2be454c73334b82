#include "services/updates/curl_library_linux.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(CurlLibraryTest, AMissingLibraryIsReportedByName) {
    const CurlLoad loaded = loadCurl({"libvantle-absent-curl.so.4"});
    EXPECT_FALSE(loaded.functions);
    EXPECT_NE(loaded.error.find("libcurl could not be loaded"), std::string::npos) << loaded.error;
    EXPECT_NE(loaded.error.find("libvantle-absent-curl.so.4"), std::string::npos) << loaded.error;
}

TEST(CurlLibraryTest, ALibraryWithoutCurlsFunctionsIsRefused) {
    const CurlLoad loaded = loadCurl({"libvantle-absent-curl.so.4", "libc.so.6"});
    EXPECT_FALSE(loaded.functions);
    EXPECT_NE(loaded.error.find("libc.so.6 lacks curl_global_init"), std::string::npos) << loaded.error;
}

TEST(CurlLibraryTest, TheSystemsLibraryLoadsOnceWithEveryFunction) {
    const CurlLoad& loaded = processCurl();
    ASSERT_TRUE(loaded.functions) << loaded.error;
    EXPECT_NE(loaded.functions->multiWakeup, nullptr);
    EXPECT_EQ(&processCurl(), &loaded);
}

}  // namespace
}  // namespace vantle
