#include "keys/media_keys_x11.h"

#include <gtest/gtest.h>

#include "keys/media_keys.h"

namespace vantle {
namespace {

TEST(MediaKeyDecodingTest, ShiftAndAltTogetherMakeTheFineStep) {
    constexpr std::uint16_t shift = 1, alt = 8, control = 4, lock = 2;
    EXPECT_TRUE(isFineStep(shift | alt));
    EXPECT_TRUE(isFineStep(shift | alt | control | lock));
    EXPECT_FALSE(isFineStep(shift));
    EXPECT_FALSE(isFineStep(alt));
    EXPECT_EQ(mediaKeyStep(isFineStep(shift | alt)), 0.01f);
    EXPECT_EQ(mediaKeyStep(isFineStep(shift)), 0.0625f);
}

TEST(MediaKeyDecodingTest, OnlyTheFiveMediaKeysAreOurs) {
    EXPECT_EQ(mediaKeyOfKeysym(0x1008FF13), kSoundUp);
    EXPECT_EQ(mediaKeyOfKeysym(0x1008FF11), kSoundDown);
    EXPECT_EQ(mediaKeyOfKeysym(0x1008FF12), kMute);
    EXPECT_EQ(mediaKeyOfKeysym(0x1008FF02), kBrightnessUp);
    EXPECT_EQ(mediaKeyOfKeysym(0x1008FF03), kBrightnessDown);
    // Keyboard illumination and an ordinary letter pass on.
    EXPECT_FALSE(mediaKeyOfKeysym(0x1008FF04).has_value());
    EXPECT_FALSE(mediaKeyOfKeysym('a').has_value());
}

}  // namespace
}  // namespace vantle
