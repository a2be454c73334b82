#include "keys/system_defined_event.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

constexpr int kAuxiliaryButtons = 8;
constexpr std::uint64_t kShift = 0x20000;
constexpr std::uint64_t kOption = 0x80000;
constexpr std::uint64_t kCommand = 0x100000;

// The data word of an auxiliary button: key, state, repeat flag.
constexpr std::int64_t word(int key, int state, bool repeated = false) {
    return (static_cast<std::int64_t>(key) << 16) | (state << 8) | (repeated ? 1 : 0);
}

MediaKeyEvent press(int key, bool repeated = false, bool fine = false) {
    return MediaKeyEvent{.key = key, .pressed = true, .repeated = repeated, .fine = fine};
}

MediaKeyEvent release(int key) {
    return MediaKeyEvent{.key = key, .pressed = false, .repeated = false, .fine = false};
}

TEST(SystemDefinedEventTest, EveryMediaKeyGoingDownIsAPress) {
    for (int key : {kSoundUp, kSoundDown, kBrightnessUp, kBrightnessDown, kMute}) {
        EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, word(key, 0x0A), 0), press(key)) << key;
    }
}

TEST(SystemDefinedEventTest, EveryMediaKeyGoingUpIsARelease) {
    for (int key : {kSoundUp, kSoundDown, kBrightnessUp, kBrightnessDown, kMute}) {
        EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, word(key, 0x0B), 0), release(key)) << key;
    }
}

TEST(SystemDefinedEventTest, TheLowestBitMarksARepeat) {
    EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, word(kMute, 0x0A, true), 0), press(kMute, true));
    EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, word(kSoundUp, 0x0A, true), 0), press(kSoundUp, true));
}

TEST(SystemDefinedEventTest, ShiftAndOptionTogetherMakeTheFineStep) {
    const std::int64_t soundUp = word(kSoundUp, 0x0A);
    EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, soundUp, kShift | kOption), press(kSoundUp, false, true));
    EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, soundUp, kShift | kOption | kCommand),
              press(kSoundUp, false, true));
    EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, soundUp, kShift), press(kSoundUp));
    EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, soundUp, kOption), press(kSoundUp));
}

TEST(SystemDefinedEventTest, OtherSubtypesAreNotOurs) {
    EXPECT_FALSE(decodeSystemDefinedEvent(0, word(kSoundUp, 0x0A), 0).has_value());
    EXPECT_FALSE(decodeSystemDefinedEvent(7, word(kMute, 0x0A), 0).has_value());
    EXPECT_FALSE(decodeSystemDefinedEvent(9, word(kBrightnessUp, 0x0B), 0).has_value());
}

TEST(SystemDefinedEventTest, OtherKeysPassOn) {
    // Keyboard illumination, play and the eject key are the system's.
    for (int key : {4, 5, 6, 8, 14, 16, 21, 0xFFFF}) {
        EXPECT_FALSE(decodeSystemDefinedEvent(kAuxiliaryButtons, word(key, 0x0A), 0).has_value()) << key;
    }
}

TEST(SystemDefinedEventTest, AnyStateButDownOfOurKeyIsSwallowedAsARelease) {
    // The system must never see half of a key we act on, whatever state it reports.
    for (int state : {0x00, 0x01, 0x0C, 0xFF}) {
        EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, word(kSoundDown, state), 0), release(kSoundDown))
            << state;
    }
}

TEST(SystemDefinedEventTest, BitsOutsideTheFieldsAreIgnored) {
    // Bits above the low 32 and the unused bits 1 to 7 carry nothing of ours.
    const std::int64_t stray = std::int64_t{0x7ABC} << 32 | 0xFE;
    EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, word(kBrightnessDown, 0x0A) | stray, 0),
              press(kBrightnessDown));
    EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, word(kBrightnessDown, 0x0A, true) | stray, 0),
              press(kBrightnessDown, true));
    EXPECT_FALSE(decodeSystemDefinedEvent(kAuxiliaryButtons, word(4, 0x0A) | stray, 0).has_value());
    // A negative word, as the signed field may be read, still gives its low 32 bits.
    const std::int64_t negative = static_cast<std::int64_t>(0xFFFFFFFF00000000ULL) | word(kMute, 0x0A);
    EXPECT_EQ(decodeSystemDefinedEvent(kAuxiliaryButtons, negative, 0), press(kMute));
}

TEST(KeyCodeEventTest, TheBrightnessKeyCodesAreOurs) {
    EXPECT_EQ(decodeKeyCodeEvent(true, 144, false, 0), press(kBrightnessUp));
    EXPECT_EQ(decodeKeyCodeEvent(true, 145, true, 0), press(kBrightnessDown, true));
    EXPECT_EQ(decodeKeyCodeEvent(true, 144, false, kShift | kOption), press(kBrightnessUp, false, true));
}

TEST(KeyCodeEventTest, TheirKeyUpIsSwallowedAsARelease) {
    EXPECT_EQ(decodeKeyCodeEvent(false, 144, false, 0), release(kBrightnessUp));
    EXPECT_EQ(decodeKeyCodeEvent(false, 145, false, 0), release(kBrightnessDown));
}

TEST(KeyCodeEventTest, OtherKeyCodesPassOn) {
    for (std::int64_t keyCode : {0, 72, 73, 74, 143, 146}) {
        EXPECT_FALSE(decodeKeyCodeEvent(true, keyCode, false, 0).has_value()) << keyCode;
        EXPECT_FALSE(decodeKeyCodeEvent(false, keyCode, false, 0).has_value()) << keyCode;
    }
}

}  // namespace
}  // namespace vantle
