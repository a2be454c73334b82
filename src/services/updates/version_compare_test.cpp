#include "services/updates/version_compare.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

bool newer(std::string_view left, std::string_view right) {
    return compareVersions(left, right) > 0;
}

bool same(std::string_view left, std::string_view right) {
    return compareVersions(left, right) == 0;
}

TEST(VersionCompareTest, NumbersCompareByValueNotByText) {
    EXPECT_TRUE(newer("1.10", "1.9"));
    EXPECT_TRUE(newer("2.0", "1.99"));
    EXPECT_TRUE(newer("1.0.10", "1.0.9"));
    EXPECT_FALSE(newer("1.9", "1.10"));
}

TEST(VersionCompareTest, EqualVersionsAreTheSame) {
    EXPECT_TRUE(same("1.2.3", "1.2.3"));
    EXPECT_TRUE(same("261122.1", "261122.1"));
}

TEST(VersionCompareTest, MissingTrailingZerosDoNotMakeAVersionNewer) {
    EXPECT_TRUE(same("1.0", "1.0.0"));
    EXPECT_TRUE(same("2", "2.0.0.0"));
    EXPECT_TRUE(newer("1.0.1", "1.0"));
}

TEST(VersionCompareTest, LeadingZerosDoNotChangeANumber) {
    EXPECT_TRUE(same("1.01", "1.1"));
    EXPECT_TRUE(newer("1.010", "1.9"));
}

TEST(VersionCompareTest, NumbersLongerThanAnyMachineIntegerStillCompare) {
    EXPECT_TRUE(newer("1.123456789012345678901234567890", "1.123456789012345678901234567889"));
    EXPECT_TRUE(newer("99999999999999999999999", "9999999999999999999999"));
}

TEST(VersionCompareTest, PreReleasesComeBeforeTheirRelease) {
    EXPECT_TRUE(newer("1.0", "1.0b1"));
    EXPECT_TRUE(newer("1.0", "1.0-beta"));
    EXPECT_TRUE(newer("1.0", "1.0.0rc1"));
    EXPECT_TRUE(newer("1.0rc1", "1.0b2"));
    EXPECT_TRUE(newer("1.0b2", "1.0a9"));
    EXPECT_TRUE(newer("1.0b10", "1.0b2"));
}

TEST(VersionCompareTest, ANumberAfterTheCommonPartIsNewerThanAPreRelease) {
    EXPECT_TRUE(newer("1.0.1", "1.0b1"));
    EXPECT_TRUE(newer("1.1", "1.1beta"));
}

TEST(VersionCompareTest, LettersIgnoreCase) {
    EXPECT_TRUE(same("1.0RC1", "1.0rc1"));
}

TEST(VersionCompareTest, SeparatorsOnlySplitTheParts) {
    EXPECT_TRUE(same("1-2_3", "1.2.3"));
    EXPECT_TRUE(same("1.0 beta 2", "1.0beta2"));
}

TEST(VersionCompareTest, BuildNumbersMadeOfDatesCompareInDateOrder) {
    EXPECT_TRUE(newer("261201.1", "261122.1"));
    EXPECT_TRUE(newer("261122.2", "261122.1"));
    EXPECT_TRUE(newer("261122.10", "261122.9"));
}

TEST(VersionCompareTest, EmptyVersionsAreTheOldest) {
    EXPECT_TRUE(same("", ""));
    EXPECT_TRUE(same("", "0"));
    EXPECT_TRUE(newer("0.1", ""));
}

}  // namespace
}  // namespace vantle
