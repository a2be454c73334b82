#include "display/brightness.h"

#include <gtest/gtest.h>

#include <cmath>

#include "display/testing/fake_displays.h"
#include "services/testing/memory_defaults_store.h"

namespace vantle {
namespace {

using testing::FakeNativeBrightness;
using testing::FakeScreenSystem;
using testing::FakeShadeFactory;

class BrightnessTest : public ::testing::Test {
protected:
    Brightness make(NativeBrightnessFunctions functions = {}, std::vector<std::string> arguments = {}) {
        return Brightness(std::move(functions), screenSystem, shadeFactory, defaults, arguments);
    }
    void softwareOn() { defaults.set("softwareBrightness", true); }

    FakeScreenSystem screenSystem;
    FakeShadeFactory shadeFactory;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    FakeNativeBrightness native;
};

TEST_F(BrightnessTest, FullLevelHidesTheShadeButKeepsIt) {
    screenSystem.add(5, "Left");
    softwareOn();
    Brightness brightness = make();
    ASSERT_TRUE(brightness.write(5, 0.5f));
    EXPECT_TRUE(shadeFactory.latest(5).shown);
    ASSERT_TRUE(brightness.write(5, 1.0f));
    EXPECT_FALSE(shadeFactory.latest(5).shown);
    EXPECT_EQ(brightness.shades().count(5), 1u);
    EXPECT_EQ(shadeFactory.made.at(5).size(), 1u);  // reused, not made again
    EXPECT_EQ(brightness.softwareLevels().at(5), 1.0f);
    EXPECT_EQ(brightness.read(5), 1.0f);
}

TEST_F(BrightnessTest, OutOfRangeLevelsAreClamped) {
    screenSystem.add(5, "Left");
    softwareOn();
    Brightness brightness = make();
    brightness.write(5, 1.7f);
    EXPECT_EQ(brightness.softwareLevels().at(5), 1.0f);
    EXPECT_FALSE(shadeFactory.latest(5).shown);
    for (float level : {-0.3f, std::nanf("")}) {
        brightness.write(5, level);
        EXPECT_EQ(brightness.softwareLevels().at(5), 0.0f);
        EXPECT_DOUBLE_EQ(shadeFactory.latest(5).alpha, static_cast<double>(0.85f));
        EXPECT_TRUE(shadeFactory.latest(5).shown);
    }
}

TEST_F(BrightnessTest, HalfLevelGivesAlphaOfPoint425) {
    screenSystem.add(5, "Left", {100, 0, 1280, 1024});
    softwareOn();
    Brightness brightness = make();
    brightness.write(5, 0.5f);
    EXPECT_NEAR(shadeFactory.latest(5).alpha, 0.425, 1e-7);
    EXPECT_EQ(shadeFactory.latest(5).frame, (ScreenFrame{100, 0, 1280, 1024}));
}

TEST_F(BrightnessTest, SoftwareOffAndNoNativeControlGivesFalseAndNothing) {
    screenSystem.add(5, "Left");
    Brightness brightness = make();
    EXPECT_FALSE(brightness.write(5, 0.5f));
    EXPECT_FALSE(brightness.read(5).has_value());
    EXPECT_TRUE(shadeFactory.made.empty());
}

TEST_F(BrightnessTest, SoftwareOnReadsFullForANeverSetDisplay) {
    screenSystem.add(5, "Left");
    softwareOn();
    EXPECT_EQ(make().read(5), 1.0f);
}

TEST_F(BrightnessTest, NativeGetterWithoutSetterRefusesAndMakesNoShade) {
    screenSystem.add(5, "Panel");
    softwareOn();
    native.levels[5] = 0.4f;
    Brightness brightness = make(native.functions(true, false));
    EXPECT_FALSE(brightness.write(5, 0.7f));
    EXPECT_TRUE(shadeFactory.made.empty());
    EXPECT_EQ(brightness.read(5), 0.4f);
}

TEST_F(BrightnessTest, NativeControlIsUsedAndNeverTouchesShades) {
    screenSystem.add(5, "Panel");
    softwareOn();
    native.levels[5] = 0.4f;
    Brightness brightness = make(native.functions());
    EXPECT_TRUE(brightness.write(5, 0.9f));
    EXPECT_EQ(native.levels[5], 0.9f);
    EXPECT_EQ(brightness.nativeRead(5), 0.9f);
    EXPECT_TRUE(shadeFactory.made.empty());
    EXPECT_TRUE(brightness.softwareLevels().empty());
}

TEST_F(BrightnessTest, NativeAnswersAreAskedAfreshAndClamped) {
    screenSystem.add(5, "Panel");
    Brightness brightness = make(native.functions());
    EXPECT_FALSE(brightness.nativeRead(5).has_value());
    native.levels[5] = 1.3f;
    EXPECT_EQ(brightness.nativeRead(5), 1.0f);
    native.levels[5] = std::nanf("");
    EXPECT_FALSE(brightness.nativeRead(5).has_value());
    native.levels[5] = INFINITY;
    EXPECT_FALSE(brightness.read(5).has_value());
}

TEST_F(BrightnessTest, DisplaysNamedAlikeAreNumberedInIdOrder) {
    screenSystem.add(30, "Dell U2720Q");
    screenSystem.add(10, "Dell U2720Q");
    screenSystem.add(20, "Built-in");
    EXPECT_EQ(make().screens(), (std::vector<DisplayEntry>{
                                    {10, "Dell U2720Q (1)"}, {20, "Built-in"}, {30, "Dell U2720Q (2)"}}));
}

TEST_F(BrightnessTest, InactiveAndUnnumberedScreensAreNotListed) {
    screenSystem.add(10, "On");
    screenSystem.add(11, "Off");
    screenSystem.list.push_back(SystemScreen{std::nullopt, "No number", {}, std::nullopt});
    screenSystem.add(std::int64_t{1} << 33, "Too big");
    screenSystem.add(-4, "Negative");
    screenSystem.inactive.insert(11);
    EXPECT_EQ(make().screens(), (std::vector<DisplayEntry>{{10, "On"}}));
}

TEST_F(BrightnessTest, BothPreviewSwitchesGiveSixPretendDisplays) {
    screenSystem.add(10, "Real");
    const std::vector<DisplayEntry> preview = make({}, {"--preview-six-displays", "--preview-localization"}).screens();
    ASSERT_EQ(preview.size(), 6u);
    EXPECT_EQ(preview.front(), (DisplayEntry{9001, "Preview Display 1"}));
    EXPECT_EQ(preview.back(), (DisplayEntry{9006, "Preview Display 6"}));
    EXPECT_EQ(make({}, {"--preview-six-displays"}).screens(), (std::vector<DisplayEntry>{{10, "Real"}}));
    EXPECT_EQ(make({}, {"--preview-localization"}).screens(), (std::vector<DisplayEntry>{{10, "Real"}}));
}

TEST_F(BrightnessTest, WriteToADisplayWithoutScreenFails) {
    softwareOn();
    EXPECT_FALSE(make().write(77, 0.5f));
}

TEST_F(BrightnessTest, ClearShadesTakesEveryShadeOffAndForgetsLevels) {
    screenSystem.add(5, "Left");
    screenSystem.add(6, "Right");
    softwareOn();
    Brightness brightness = make();
    brightness.write(5, 0.2f);
    brightness.write(6, 0.3f);
    brightness.clearShades();
    EXPECT_TRUE(brightness.shades().empty());
    EXPECT_TRUE(brightness.softwareLevels().empty());
    EXPECT_FALSE(shadeFactory.latest(5).shown);
    EXPECT_TRUE(shadeFactory.latest(6).destroyed);
    EXPECT_EQ(brightness.read(5), 1.0f);
}

TEST_F(BrightnessTest, ReusedShadeFollowsTheScreenFrame) {
    screenSystem.add(5, "Left", {0, 0, 1920, 1080});
    softwareOn();
    Brightness brightness = make();
    brightness.write(5, 0.5f);
    screenSystem.list[0].frame = {0, 0, 2560, 1440};
    brightness.write(5, 0.4f);
    EXPECT_EQ(shadeFactory.made.at(5).size(), 1u);
    EXPECT_EQ(shadeFactory.latest(5).frame, (ScreenFrame{0, 0, 2560, 1440}));
    EXPECT_EQ(shadeFactory.latest(5).setUps, 2);
}

}  // namespace
}  // namespace vantle
