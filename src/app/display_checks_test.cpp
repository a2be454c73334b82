#include "app/display_checks.h"

#include <gtest/gtest.h>

#include "display/testing/fake_displays.h"
#include "services/testing/memory_defaults_store.h"

namespace vantle {
namespace {

using testing::FakeNativeBrightness;
using testing::FakeScreenSystem;
using testing::FakeShadeFactory;

class DisplayChecksTest : public ::testing::Test {
protected:
    FakeScreenSystem screenSystem;
    FakeShadeFactory shadeFactory;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    FakeNativeBrightness native;
    Brightness brightness{native.functions(), screenSystem, shadeFactory, defaults, {}};
};

TEST_F(DisplayChecksTest, DiagnoseShowsOptionalLevelOrNil) {
    screenSystem.add(70, "Built-in Retina");
    screenSystem.add(71, "LG \"UltraFine\"");
    native.levels[70] = 0.75f;
    EXPECT_EQ(diagnoseDisplayLines(brightness),
              (std::vector<std::string>{"DISPLAY 70 Built-in Retina brightness=Optional(0.75)",
                                        "DISPLAY 71 LG \"UltraFine\" brightness=nil"}));
    defaults.set("softwareBrightness", true);
    EXPECT_EQ(diagnoseDisplayLines(brightness).back(), "DISPLAY 71 LG \"UltraFine\" brightness=Optional(1.0)");
}

TEST_F(DisplayChecksTest, RoundTripWritesTheNativeLevelBack) {
    screenSystem.add(70, "Panel");
    native.levels[70] = 0.4f;
    const RoundTripResult result = verifyBrightnessRoundTrip(brightness, defaults);
    EXPECT_TRUE(result.passed);
    EXPECT_EQ(result.lines, std::vector<std::string>{"BRIGHTNESS write/read unchanged 70: true"});
    EXPECT_EQ(native.levels[70], 0.4f);
}

TEST_F(DisplayChecksTest, UnreadableDisplayFailsWithoutALine) {
    screenSystem.add(70, "Panel");
    screenSystem.add(71, "Other");
    native.levels[70] = 0.4f;
    const RoundTripResult result = verifyBrightnessRoundTrip(brightness, defaults);
    EXPECT_FALSE(result.passed);
    EXPECT_EQ(result.lines, std::vector<std::string>{"BRIGHTNESS write/read unchanged 70: true"});
}

TEST_F(DisplayChecksTest, SoftwareDisplayIsTestedAtItsRememberedLevelOrFull) {
    screenSystem.add(70, "A");
    screenSystem.add(71, "B");
    defaults.set("softwareBrightness", true);
    brightness.write(70, 0.3f);
    const RoundTripResult result = verifyBrightnessRoundTrip(brightness, defaults);
    EXPECT_TRUE(result.passed);
    EXPECT_EQ(brightness.softwareLevels().at(70), 0.3f);
    EXPECT_EQ(brightness.softwareLevels().at(71), 1.0f);
    EXPECT_EQ(result.lines.size(), 2u);
}

TEST_F(DisplayChecksTest, RefusedWriteFails) {
    screenSystem.add(70, "Panel");
    native.levels[70] = 0.4f;
    native.rejectSet = {70};
    const RoundTripResult result = verifyBrightnessRoundTrip(brightness, defaults);
    EXPECT_FALSE(result.passed);
    EXPECT_EQ(result.lines, std::vector<std::string>{"BRIGHTNESS write/read unchanged 70: false"});
}

TEST_F(DisplayChecksTest, NoDisplayPrintsNothingAndPasses) {
    const RoundTripResult result = verifyBrightnessRoundTrip(brightness, defaults);
    EXPECT_TRUE(result.passed);
    EXPECT_TRUE(result.lines.empty());
}

}  // namespace
}  // namespace vantle
