#include "localization/text_case.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(TextCaseTest, MatchesWhateverTheCase) {
    EXPECT_TRUE(containsIgnoringCase("Studio Display Speakers", "Studio Display"));
    EXPECT_TRUE(containsIgnoringCase("LG STUDIO DISPLAY audio", "Studio Display"));
    EXPECT_TRUE(containsIgnoringCase("studio display", "Studio Display"));
    EXPECT_FALSE(containsIgnoringCase("Studio Speakers", "Studio Display"));
    EXPECT_FALSE(containsIgnoringCase("", "Studio Display"));
}

TEST(TextCaseTest, FoldsBeyondAscii) {
    EXPECT_TRUE(containsIgnoringCase("GROSSE STRASSE", "straße"));
    EXPECT_TRUE(containsIgnoringCase("Écran ÉTUDE", "étude"));
}

}  // namespace
}  // namespace vantle
