#include <gtest/gtest.h>

#include "localization/localization.h"

namespace vantle {
namespace {

using Localization::releaseDate;

TEST(ReleaseDateTest, MediumStyleInEnglishAndFrench) {
    EXPECT_EQ(releaseDate("24/10/2026", "en"), "Oct 24, 2026");
    EXPECT_EQ(releaseDate("24/10/2026", "fr"), "24 oct. 2026");
}

TEST(ReleaseDateTest, EveryLanguageNamesTheYear) {
    for (std::string_view code : Localization::supported) {
        const std::string text = releaseDate("01/02/2026", code);
        EXPECT_NE(text, "01/02/2026") << code;
        EXPECT_NE(text.find("2026"), std::string::npos) << code;
    }
}

TEST(ReleaseDateTest, TextThatIsNotDayMonthYearIsReturnedUnchanged) {
    EXPECT_EQ(releaseDate("", "en"), "");
    EXPECT_EQ(releaseDate("2026-10-24", "en"), "2026-10-24");
    EXPECT_EQ(releaseDate("10/24/2026", "en"), "10/24/2026");
    EXPECT_EQ(releaseDate("24/10/2026 extra", "fr"), "24/10/2026 extra");
    EXPECT_EQ(releaseDate("soon", "de"), "soon");
}

TEST(ReleaseDateTest, DayDoesNotShiftWithTheTimeZone) {
    ::setenv("TZ", "Pacific/Kiritimati", 1);
    EXPECT_EQ(releaseDate("01/01/2027", "en"), "Jan 1, 2027");
    ::unsetenv("TZ");
}

}  // namespace
}  // namespace vantle
