#include "display/brightness_control.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "display/testing/fake_displays.h"
#include "localization/localization.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"
#include "services/testing/recording_workspace.h"

namespace vantle {
namespace {

using testing::FakeNativeBrightness;
using testing::FakeScreenSystem;
using testing::FakeShadeFactory;

class BrightnessControlTest : public ::testing::Test {
protected:
    BrightnessControlTest() { defaults.registerDefaults({{"linked", true}}); }

    const std::string& lastMessage() const { return messages.reports.back(); }

    FakeScreenSystem screenSystem;
    FakeShadeFactory shadeFactory;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    FakeNativeBrightness native;
    Brightness brightness{native.functions(), screenSystem, shadeFactory, defaults, {}};
    testing::RecordingMessageLine messages;
    testing::RecordingWorkspace workspace;
    int refreshes = 0;
    BrightnessControl control{brightness, defaults, messages, workspace, [this] { ++refreshes; }};
};

TEST_F(BrightnessControlTest, LinkedStepBringsEveryDisplayToTheFirstLevel) {
    screenSystem.add(2, "B");
    screenSystem.add(1, "A");
    native.levels = {{1, 0.2f}, {2, 0.6f}};
    control.adjustBrightness(0.1f);
    EXPECT_NEAR(native.levels[1], 0.3f, 1e-6);
    EXPECT_NEAR(native.levels[2], 0.3f, 1e-6);
    EXPECT_EQ(lastMessage(), L("s105"));
    EXPECT_EQ(refreshes, 1);
}

TEST_F(BrightnessControlTest, UnlinkedStepMovesEachFromItsOwnLevel) {
    screenSystem.add(1, "A");
    screenSystem.add(2, "B");
    native.levels = {{1, 0.2f}, {2, 0.6f}};
    control.saveLinked(false);
    control.adjustBrightness(0.1f);
    EXPECT_NEAR(native.levels[1], 0.3f, 1e-6);
    EXPECT_NEAR(native.levels[2], 0.7f, 1e-6);
}

TEST_F(BrightnessControlTest, SevenDisplaysAreRefused) {
    for (std::uint32_t id = 1; id <= 7; ++id) {
        screenSystem.add(id, "D" + std::to_string(id));
        native.levels[id] = 0.5f;
    }
    control.adjustBrightness(0.1f);
    EXPECT_EQ(lastMessage(), L("s103"));
    EXPECT_EQ(refreshes, 0);
    EXPECT_EQ(native.levels[1], 0.5f);
}

TEST_F(BrightnessControlTest, NoDisplayIsRefused) {
    control.adjustBrightness(0.1f);
    EXPECT_EQ(lastMessage(), L("s103"));
}

TEST_F(BrightnessControlTest, NothingReadableSaysSo) {
    screenSystem.add(1, "A");
    control.adjustBrightness(0.1f);
    EXPECT_EQ(lastMessage(), L("s104"));
    EXPECT_EQ(refreshes, 0);
}

TEST_F(BrightnessControlTest, UnreadableDisplayIsLeftOutAndReported) {
    screenSystem.add(1, "A");
    screenSystem.add(2, "B");
    screenSystem.add(3, "C");
    native.levels = {{1, 0.5f}, {3, 0.1f}};
    control.saveLinked(false);
    control.adjustBrightness(0.2f);
    EXPECT_NEAR(native.levels[1], 0.7f, 1e-6);
    EXPECT_NEAR(native.levels[3], 0.3f, 1e-6);
    EXPECT_EQ(native.levels.count(2), 0u);
    EXPECT_EQ(lastMessage(), L("s106"));
}

TEST_F(BrightnessControlTest, FailedWriteDoesNotStopTheOthers) {
    screenSystem.add(1, "A");
    screenSystem.add(2, "B");
    native.levels = {{1, 0.5f}, {2, 0.5f}};
    native.rejectSet = {1};
    control.adjustBrightness(0.1f);
    EXPECT_NEAR(native.levels[2], 0.6f, 1e-6);
    EXPECT_EQ(lastMessage(), L("s106"));
}

TEST_F(BrightnessControlTest, SliderWritesOnlyItsDisplay) {
    screenSystem.add(1, "A");
    screenSystem.add(2, "B");
    native.levels = {{1, 0.5f}, {2, 0.5f}};
    control.setBrightness(2, 25);
    EXPECT_EQ(native.levels[2], 0.25f);
    EXPECT_EQ(native.levels[1], 0.5f);
    EXPECT_EQ(lastMessage(), L("s101"));
    control.setBrightness(-1, 25);
    EXPECT_EQ(lastMessage(), L("s102"));
    control.setBrightness(std::int64_t{1} << 32, 25);
    EXPECT_EQ(lastMessage(), L("s102"));
}

TEST_F(BrightnessControlTest, TypedPercentages) {
    EXPECT_NEAR(*parsePercentage("55,5"), 0.555f, 1e-6);
    EXPECT_EQ(parsePercentage("100"), 1.0f);
    EXPECT_EQ(parsePercentage("0"), 0.0f);
    EXPECT_EQ(parsePercentage("-0"), 0.0f);
    EXPECT_EQ(parsePercentage("+40"), 0.4f);
    for (const char* rejected : {"101", "-1", "abc", "", " 5", "5 ", "5%", "1,2,3", "nan", "inf", "+-3"}) {
        EXPECT_FALSE(parsePercentage(rejected).has_value()) << rejected;
    }
}

TEST_F(BrightnessControlTest, NegativeZeroPercentageGivesAPositiveZeroLevel) {
    for (const char* zero : {"-0", "-0,0", "-0.000", "-0e5"}) {
        const std::optional<float> level = parsePercentage(zero);
        ASSERT_TRUE(level.has_value()) << zero;
        EXPECT_FALSE(std::signbit(*level)) << zero;
    }
}

TEST_F(BrightnessControlTest, PercentageTooSmallForAFloatReadsAsZeroAndTooLargeIsRejected) {
    const std::string manyZeros = "0," + std::string(60, '0') + "1";
    for (const std::string& tiny :
         {std::string("1e-50"), std::string("-1e-60"), manyZeros, std::string("0.1e-99999999999")}) {
        const std::optional<float> level = parsePercentage(tiny);
        ASSERT_TRUE(level.has_value()) << tiny;
        EXPECT_EQ(*level, 0.0f) << tiny;
        EXPECT_FALSE(std::signbit(*level)) << tiny;
    }
    EXPECT_NEAR(*parsePercentage("1e-40"), 1e-42f, 1e-44f);
    for (const char* huge : {"1e39", "1000e99999999999", "0,001e50"}) {
        EXPECT_FALSE(parsePercentage(huge).has_value()) << huge;
    }
}

TEST_F(BrightnessControlTest, RejectedPercentageKeepsTheFieldAndWritesNothing) {
    screenSystem.add(1, "A");
    native.levels = {{1, 0.5f}};
    EXPECT_FALSE(control.setBrightnessPercent(1, "abc"));
    EXPECT_EQ(lastMessage(), L("s098"));
    EXPECT_EQ(refreshes, 1);
    EXPECT_EQ(native.levels[1], 0.5f);
    EXPECT_TRUE(control.setBrightnessPercent(1, "55,5"));
    EXPECT_NEAR(native.levels[1], 0.555f, 1e-6);
    EXPECT_EQ(lastMessage(), L("s099"));
    EXPECT_TRUE(control.setBrightnessPercent(9, "10"));
    EXPECT_EQ(lastMessage(), L("s100"));
}

TEST_F(BrightnessControlTest, SoftwareSwitchRemovesAllShadesEitherWay) {
    screenSystem.add(1, "A");
    screenSystem.add(2, "B");
    control.softwareChanged(true);
    brightness.write(1, 0.3f);
    brightness.write(2, 0.4f);
    control.softwareChanged(true);
    EXPECT_TRUE(brightness.shades().empty());
    EXPECT_EQ(brightness.read(1), 1.0f);
    brightness.write(1, 0.3f);
    control.softwareChanged(false);
    EXPECT_TRUE(brightness.shades().empty());
    EXPECT_FALSE(brightness.read(1).has_value());
    EXPECT_FALSE(defaults.boolean("softwareBrightness"));
}

TEST_F(BrightnessControlTest, UnpluggedDimmedDisplayLosesItsShadeAndTheOthersAreLaidAgain) {
    screenSystem.add(1, "A", {0, 0, 1920, 1080});
    screenSystem.add(2, "B", {1920, 0, 1280, 1024});
    control.softwareChanged(true);
    brightness.write(1, 0.3f);
    brightness.write(2, 0.4f);
    screenSystem.list.erase(screenSystem.list.begin() + 1);
    screenSystem.list[0].frame = {0, 0, 2560, 1440};
    control.screensChanged();
    EXPECT_EQ(brightness.shades().count(2), 0u);
    EXPECT_EQ(brightness.softwareLevels().count(2), 0u);
    EXPECT_TRUE(shadeFactory.latest(2).destroyed);
    EXPECT_EQ(shadeFactory.latest(1).frame, (ScreenFrame{0, 0, 2560, 1440}));
    EXPECT_EQ(brightness.softwareLevels().at(1), 0.3f);
}

TEST_F(BrightnessControlTest, SettingsButtonsOpenTheDesktopsDisplayAndSoundSettings) {
    control.openDisplaySettings();
    control.openMIDI();
    EXPECT_EQ(workspace.opened, (std::vector<SettingsPlace>{SettingsPlace::Displays, SettingsPlace::Sound}));
}

}  // namespace
}  // namespace vantle
