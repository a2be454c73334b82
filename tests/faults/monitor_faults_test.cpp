// Monitors removed and added again while the program dims them: shades follow the monitors
// that are there, the program keeps running, and the dimming can still be undone exactly.
#include <chrono>
#include <thread>

#include "fault_fixture.h"

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;

constexpr const char* kLeft = "1920x1080+0+0";
constexpr const char* kRight = "1280x1024+1920+0";

class MonitorFaultTest : public FaultTest {
protected:
    MonitorFaultTest() { writeFile(settingsFile(), kSoftwareBrightness); }

    static void removeMonitor(const std::string& name) { run("/usr/bin/xrandr", {"--delmonitor", name}); }
    static void addLeft() { run("/usr/bin/xrandr", {"--setmonitor", "*LEFT", "1920/508x1080/286+0+0", "screen"}); }
    static void addRight() { run("/usr/bin/xrandr", {"--setmonitor", "RIGHT", "1280/339x1024/271+1920+0", "none"}); }
};

TEST_F(MonitorFaultTest, ShadeOfARemovedMonitorGoesAndTheOtherStays) {
    startCompositor();
    auto program = startAndWaitForKeys();
    key("XF86MonBrightnessDown");
    ASSERT_TRUE(waitFor([] { return programWindowAt(kLeft) && programWindowAt(kRight); }, 5s));

    removeMonitor("RIGHT");
    EXPECT_TRUE(waitFor([] { return !programWindowAt(kRight); }, 5s));
    EXPECT_TRUE(programWindowAt(kLeft));

    addRight();
    // The monitor comes back undimmed: its level went with it.
    std::this_thread::sleep_for(1s);
    EXPECT_FALSE(programWindowAt(kRight));
    EXPECT_TRUE(programWindowAt(kLeft));
    ASSERT_TRUE(program->running()) << program->standardError();

    // The next step reaches both again.
    key("XF86MonBrightnessDown");
    EXPECT_TRUE(waitFor([] { return programWindowAt(kLeft) && programWindowAt(kRight); }, 5s));
    key("XF86MonBrightnessUp");
    key("XF86MonBrightnessUp");
    EXPECT_TRUE(waitFor([] { return !programWindowAt(kLeft) && !programWindowAt(kRight); }, 5s));
    EXPECT_TRUE(program->running()) << program->standardError();
}

TEST_F(MonitorFaultTest, GammaDimmedMonitorRemovedAndAddedIsStillRestoredExactly) {
    const int undimmed = gammaTopOn(display());
    ASSERT_GT(undimmed, 60000);
    auto program = startAndWaitForKeys();
    key("XF86MonBrightnessDown");
    ASSERT_TRUE(waitFor([undimmed] { return gammaTopOn(display()) < undimmed - 1000; }, 5s));
    const int dimmed = gammaTopOn(display());

    removeMonitor("LEFT");
    std::this_thread::sleep_for(1s);
    removeMonitor("RIGHT");
    addLeft();
    addRight();
    std::this_thread::sleep_for(1s);
    ASSERT_TRUE(program->running()) << program->standardError();
    EXPECT_GE(gammaTopOn(display()), dimmed);

    // Raising the brightness back to full gives back the very ramp from before the dimming,
    // however often the monitors changed in between.
    for (int press = 0; press < 3; ++press) {
        key("XF86MonBrightnessUp");
    }
    EXPECT_TRUE(waitFor([undimmed] { return gammaTopOn(display()) == undimmed; }, 5s)) << gammaTopOn(display());
    EXPECT_TRUE(program->running()) << program->standardError();
}

}  // namespace
}  // namespace vantle::testing
