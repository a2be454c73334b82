// Monitors removed and added again while the program dims them: shades follow the monitors
// that are there, the program keeps running, and the dimming can still be undone exactly.
#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "fault_fixture.h"
#include "services/file_contents.h"
#include "support/child_process.h"
#include "support/temporary_directory.h"

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
    // The toolkit reports a removed monitor in several steps, and the left shade follows its
    // screen's frame at each; under load one of those in-between frames can be seen. What counts
    // is where both shades settle.
    EXPECT_TRUE(waitFor([] { return !programWindowAt(kRight) && programWindowAt(kLeft); }, 5s));

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

// What a folder holds: each file's name and bytes.
std::map<std::string, std::string> folderContents(const std::filesystem::path& folder) {
    std::map<std::string, std::string> contents;
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, error)) {
        if (entry.is_regular_file()) {
            contents[entry.path().lexically_relative(folder).string()] = readFileContents(entry.path()).value_or("");
        }
    }
    return contents;
}

// Only the copy that holds the session undoes the dimming that a crashed copy left: a check mode
// or a second start runs beside a copy that is still dimming, and must leave its ramp and the
// ramps it saved for a crash as they are.
TEST_F(MonitorFaultTest, CheckModesAndASecondStartLeaveTheRunningCopysDimmingAlone) {
    const TemporaryDirectory runtime;
    const std::map<std::string, std::optional<std::string>> environment{{"XDG_RUNTIME_DIR", runtime.path().string()}};
    const int undimmed = gammaTopOn(display());
    ASSERT_GT(undimmed, 60000);
    auto program = start({"--suppress-keyboard-invitation"}, environment);
    ASSERT_TRUE(waitFor([] { return muteKeyTaken(); }, 15s)) << program->standardError();
    key("XF86MonBrightnessDown");
    ASSERT_TRUE(waitFor([undimmed] { return gammaTopOn(display()) < undimmed - 1000; }, 5s));
    const int dimmed = gammaTopOn(display());
    const std::map<std::string, std::string> saved = folderContents(runtime.path());
    ASSERT_FALSE(saved.empty()) << "no ramp saved for a crash";

    ChildOptions options;
    options.environment = environment;
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"--diagnose"}, {"--verify-controls"}, {"--verify-osd"}, {}}) {
        const std::string shown = arguments.empty() ? "a second start" : arguments.front();
        const ChildResult result = runChild(VANTLE_PROGRAM, arguments, options);
        // RIGHT has no gamma ramp of its own, so the round trip of --verify-controls fails there
        // and it ends with 1; every other run ends with 0.
        EXPECT_EQ(result.exitStatus, shown == "--verify-controls" ? 1 : 0)
            << shown << ": " << result.standardOutput << result.standardError;
        EXPECT_FALSE(hasSanitizerReport(result.standardError)) << shown << ": " << result.standardError;
        EXPECT_EQ(gammaTopOn(display()), dimmed) << shown;
        EXPECT_TRUE(folderContents(runtime.path()) == saved) << shown << " changed the ramps saved for a crash";
    }

    ASSERT_TRUE(program->running()) << program->standardError();
    for (int press = 0; press < 3; ++press) {
        key("XF86MonBrightnessUp");
    }
    EXPECT_TRUE(waitFor([undimmed] { return gammaTopOn(display()) == undimmed; }, 5s)) << gammaTopOn(display());
}

}  // namespace
}  // namespace vantle::testing
