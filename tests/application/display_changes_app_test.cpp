// The running application while displays come and go (with stand-in DDC/CI monitors) and while
// other programs change its displays' gamma ramps, on the private X server: what it shows and what
// it writes, without a restart.
#include <chrono>
#include <cmath>

#include "display/testing/synthetic_edid.h"
#include "in_process_app_fixture.h"
#include "stand_in_monitors_platform.h"

namespace vantle::testing {
namespace {

using Clock = std::chrono::steady_clock;

const std::string kDot = " \xC2\xB7 ";
// The ramp's top at level 0.5: 0.15 + 0.85 × 0.5 of the identity ramp.
const std::uint16_t kHalfDimmedTop = static_cast<std::uint16_t>(std::lround(65535 * 0.575));

class DisplayChangesAppTest : public InProcessAppTest {
protected:
    void launchOnStandInMonitors() {
        static int argc = 1;
        static char name[] = "display_changes_app_test";
        static char* argv[] = {name, nullptr};
        platform = std::make_unique<StandInMonitorsPlatform>(argc, argv, defaults, ddcBus);
        hal = std::make_unique<PulseAudioHal>();
        app = std::make_unique<App>(*platform, *hal, std::vector<std::string>{"--suppress-keyboard-invitation"});
        app->applicationDidFinishLaunching();
        pump(300ms);
    }

    Brightness& brightness() { return platform->displays().brightness(); }

    std::shared_ptr<ddc::testing::StandInDdcBus> ddcBus =
        std::make_shared<ddc::testing::StandInDdcBus>(std::vector<ddc::testing::StandInMonitor>{});
};

TEST_F(DisplayChangesAppTest, StandInDdcMonitorPluggedInWhileRunningShowsItsLevelAndStopsWhenUnplugged) {
    launchOnStandInMonitors();
    app->togglePopover();
    pump(200ms);

    // Plugged in: the X server shows a new monitor with its EDID, and its DDC/CI bus appears.
    const std::vector<std::uint8_t> edid = syntheticEdid("VANTLE DDC", 18);
    const std::size_t monitor = ddcBus->attach({edid, "card0-DP-3", 37, 100});
    setOutputEdid(edid);
    run("/usr/bin/xrandr", {"--delmonitor", "LEFT"});
    run("/usr/bin/xrandr", {"--setmonitor", "PLUGGED", "1920/508x1080/286+0+0", "screen"});
    EXPECT_TRUE(pump(6s, [] { return labelShows("VANTLE DDC" + kDot + "37 %"); }))
        << "the popover does not show the plugged monitor's level";
    EXPECT_EQ(ddcBus->opens(monitor), 1);

    // Unplugged while the search for the display that takes its place hangs in the library: the
    // monitor's thread ends all the same.
    ddcBus->holdSearches();
    const Clock::time_point unplugged = Clock::now();
    ddcBus->detach(monitor);
    removeOutputEdid();
    run("/usr/bin/xrandr", {"--delmonitor", "PLUGGED"});
    run("/usr/bin/xrandr", {"--setmonitor", "*LEFT", "1920/508x1080/286+0+0", "screen"});
    EXPECT_TRUE(pump(1s, [&] { return ddcBus->closes(monitor) == 1; }));
    EXPECT_LT(Clock::now() - unplugged, 1s);
    ddcBus->releaseSearches();
    EXPECT_EQ(brightness().nativeRead(leftDisplayId()), std::nullopt);
}

TEST_F(DisplayChangesAppTest, RampResetByAnotherClientIsDimmedAgainWithinOneTick) {
    defaults.set("softwareBrightness", true);
    launch();
    ASSERT_TRUE(brightness().write(leftDisplayId(), 0.5f));
    ASSERT_EQ(gammaTop(), kHalfDimmedTop);

    for (int reset = 0; reset < 2; ++reset) {
        setGammaTop(65535);
        EXPECT_TRUE(pump(2500ms, [] { return gammaTop() == kHalfDimmedTop; }))
            << "reset " << reset << ": the ramp's top is " << gammaTop();
    }
}

TEST_F(DisplayChangesAppTest, RampChangedByAnotherClientAtFullBrightnessIsLeftAlone) {
    defaults.set("softwareBrightness", true);
    launch();
    ASSERT_TRUE(brightness().write(leftDisplayId(), 0.5f));
    ASSERT_TRUE(brightness().write(leftDisplayId(), 1.0f));
    ASSERT_EQ(gammaTop(), 65535);

    setGammaTop(40000);
    // More than a tick, and the other program's ramp stays.
    EXPECT_FALSE(pump(2500ms, [] { return gammaTop() != 40000; })) << "the ramp's top is " << gammaTop();
}

}  // namespace
}  // namespace vantle::testing
