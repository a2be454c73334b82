#include "display/ddc/ddc_matching_linux.h"

#include <gtest/gtest.h>

namespace vantle::ddc {
namespace {

std::vector<std::uint8_t> edid(std::uint8_t seed, std::size_t size = 128) {
    std::vector<std::uint8_t> bytes(size, seed);
    bytes[0] = 0;
    return bytes;
}

std::vector<std::uint32_t> matchedIds(const std::vector<DdcMatch>& matches) {
    std::vector<std::uint32_t> ids;
    for (const auto& match : matches) {
        ids.push_back(match.displayId);
    }
    return ids;
}

TEST(DdcMatchingTest, DisplaysMatchMonitorsByTheFirstEdidBlock) {
    auto longer = edid(2, 256);
    longer[200] = 0x55;  // Extension blocks do not take part.
    const auto matches = matchDisplays({{1, edid(1), "DP-1"}, {2, longer, "DP-2"}, {3, edid(3), "DP-3"}},
                                       {{10, edid(2), ""}, {11, edid(1), ""}});
    ASSERT_EQ(matchedIds(matches), (std::vector<std::uint32_t>{1, 2}));
    EXPECT_EQ(matches[0].monitor.token, 11u);
    EXPECT_EQ(matches[1].monitor.token, 10u);
}

TEST(DdcMatchingTest, ShortOrMissingEdidNeverMatches) {
    EXPECT_TRUE(matchDisplays({{1, edid(1, 64), "DP-1"}, {2, {}, "DP-2"}}, {{10, edid(1, 64), "card0-DP-1"}, {11, {}, "card0-DP-2"}}).empty());
}

TEST(DdcMatchingTest, IdenticalEdidsArePairedByConnector) {
    const auto matches = matchDisplays({{1, edid(1), "DP-2"}, {2, edid(1), "DP-1"}},
                                       {{10, edid(1), "card0-DP-1"}, {11, edid(1), "card0-DP-2"}});
    ASSERT_EQ(matches.size(), 2u);
    EXPECT_EQ(matches[0].monitor.token, 11u);
    EXPECT_EQ(matches[1].monitor.token, 10u);
}

TEST(DdcMatchingTest, IdenticalEdidsWithoutUsableConnectorsMatchNothing) {
    EXPECT_TRUE(matchDisplays({{1, edid(1), "DP-1"}, {2, edid(1), "DP-2"}},
                              {{10, edid(1), ""}, {11, edid(1), ""}}).empty());
    // One of two identical displays answers DDC, but the library cannot say which.
    EXPECT_TRUE(matchDisplays({{1, edid(1), "DP-1"}, {2, edid(1), "DP-2"}}, {{10, edid(1), ""}}).empty());
    // Both displays claim the same connector.
    EXPECT_TRUE(matchDisplays({{1, edid(1), "DP-1"}, {2, edid(1), "DP-1"}},
                              {{10, edid(1), "card0-DP-1"}, {11, edid(1), "card0-DP-2"}}).empty());
}

TEST(DdcMatchingTest, OneIdenticalDisplayAnsweringDdcIsFoundByConnector) {
    const auto matches = matchDisplays({{1, edid(1), "DP-1"}, {2, edid(1), "DP-2"}}, {{10, edid(1), "card0-DP-2"}});
    EXPECT_EQ(matchedIds(matches), (std::vector<std::uint32_t>{2}));
}

}  // namespace
}  // namespace vantle::ddc
