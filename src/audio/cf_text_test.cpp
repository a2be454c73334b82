#include "audio/cf_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace vantle {
namespace {

TEST(CfTextTest, BufferHoldsTheWorstCasePlusTheTerminator) {
    EXPECT_EQ(terminatedUtf8BufferSize(0), std::optional<std::size_t>(1));
    EXPECT_EQ(terminatedUtf8BufferSize(36), std::optional<std::size_t>(37));
}

TEST(CfTextTest, ReportedOverflowGivesNoBuffer) {
    EXPECT_EQ(terminatedUtf8BufferSize(-1), std::nullopt);
    EXPECT_EQ(terminatedUtf8BufferSize(std::numeric_limits<std::int64_t>::min()), std::nullopt);
}

TEST(CfTextTest, TextBeyondThirtyTwoBitSizesGivesNoBuffer) {
    constexpr std::int64_t kLargest = std::numeric_limits<std::uint32_t>::max();
    EXPECT_EQ(terminatedUtf8BufferSize(kLargest), std::optional<std::size_t>(static_cast<std::size_t>(kLargest) + 1));
    EXPECT_EQ(terminatedUtf8BufferSize(kLargest + 1), std::nullopt);
    EXPECT_EQ(terminatedUtf8BufferSize(std::numeric_limits<std::int64_t>::max()), std::nullopt);
}

TEST(CfTextTest, TextEndsAtTheFirstTerminator) {
    const char buffer[] = "Speakers\0\0garbage";
    EXPECT_EQ(textBeforeTerminator(buffer, sizeof(buffer)), "Speakers");
}

TEST(CfTextTest, BufferWithoutTerminatorIsTakenWhole) {
    const char buffer[4] = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(textBeforeTerminator(buffer, sizeof(buffer)), "abcd");
}

TEST(CfTextTest, EmptyOrAbsentBufferIsEmptyText) {
    const char buffer[] = "";
    EXPECT_EQ(textBeforeTerminator(buffer, sizeof(buffer)), "");
    EXPECT_EQ(textBeforeTerminator(nullptr, 8), "");
}

TEST(CfTextTest, MultiByteCharactersSurviveTheConversion) {
    const char buffer[] = "Lautsprecher f\xC3\xBCr Studio";
    EXPECT_EQ(textBeforeTerminator(buffer, sizeof(buffer)), "Lautsprecher f\xC3\xBCr Studio");
}

TEST(CfTextTest, TextThatFitsIsKeptWhole) {
    EXPECT_EQ(wholeCharacterPrefixLength("Studio", 6), 6u);
    EXPECT_EQ(wholeCharacterPrefixLength("Studio", 100), 6u);
    EXPECT_EQ(wholeCharacterPrefixLength("", 0), 0u);
}

TEST(CfTextTest, CutFallsBeforeACharacterItWouldSplit) {
    // "f" then U+00FC (two bytes) then "r".
    const std::string_view text = "f\xC3\xBCr";
    EXPECT_EQ(wholeCharacterPrefixLength(text, 1), 1u);
    EXPECT_EQ(wholeCharacterPrefixLength(text, 2), 1u);
    EXPECT_EQ(wholeCharacterPrefixLength(text, 3), 3u);
}

TEST(CfTextTest, CutBeforeAFourByteCharacterKeepsNoneOfIt) {
    // U+1F50A, a speaker symbol, after "a".
    const std::string_view text = "a\xF0\x9F\x94\x8A";
    EXPECT_EQ(wholeCharacterPrefixLength(text, 4), 1u);
    EXPECT_EQ(wholeCharacterPrefixLength(text, 5), 5u);
    EXPECT_EQ(wholeCharacterPrefixLength(text, 0), 0u);
}

}  // namespace
}  // namespace vantle
