// The whole program as a real process on the private X server, with a tray host, and the
// private sound server. Screenshots go to the build folder's test-artefacts.
#include <sys/wait.h>
#include <xcb/xcb.h>

#include <chrono>
#include <fstream>
#include <csignal>
#include <sstream>
#include <thread>

#include "desktop_fixture.h"
#include "localization/localization.h"
#include "support/child_process.h"

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

struct Geometry {
    int x = 0, y = 0, width = 0, height = 0;
};

class ProgramTest : public DesktopTest {
protected:
    ProgramTest() {
        startTrayHost();
        pactl({"set-default-sink", "studio"});
        setSinkLevel("studio", 0.5f);
    }

    std::unique_ptr<RunningChild> start(std::vector<std::string> arguments,
                                         std::map<std::string, std::optional<std::string>> environment = {}) {
        ChildOptions options;
        options.environment = std::move(environment);
        return std::make_unique<RunningChild>(VANTLE_PROGRAM, arguments, options);
    }

    static std::string windowTree() { return runChild("/usr/bin/xwininfo", {"-root", "-tree"}).standardOutput; }

    // The tray icon: a window of ours inside the tray host's panel.
    static bool trayIconShown() {
        const std::string tree = windowTree();
        const std::string ours = R"("vantle-control": ("vantle-control" "vantle-control"))";
        for (std::size_t at = tree.find(ours); at != std::string::npos; at = tree.find(ours, at + 1)) {
            const std::size_t size = tree.find_first_not_of(' ', at + ours.size());
            if (size != std::string::npos && (tree.compare(size, 5, "22x22") == 0 || tree.compare(size, 5, "24x24") == 0)) {
                return true;
            }
        }
        return false;
    }

    static bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds atMost) {
        const auto deadline = Clock::now() + atMost;
        while (Clock::now() < deadline) {
            if (condition()) {
                return true;
            }
            std::this_thread::sleep_for(50ms);
        }
        return condition();
    }

    // The geometry of the visible window of ours named name (an exact title), or of the popup
    // (no title) when name is empty.
    static std::optional<Geometry> windowNamed(const std::string& name) {
        // xdotool's pattern may not know UTF-8: every run of non-ASCII bytes matches as ".*".
        std::string pattern = "^";
        for (std::size_t index = 0; index < name.size(); ++index) {
            if (static_cast<unsigned char>(name[index]) < 0x80) {
                pattern += name[index];
            } else if (pattern.size() < 2 || pattern.substr(pattern.size() - 2) != ".*") {
                pattern += ".*";
            }
        }
        const ChildResult found = runChild("/usr/bin/xdotool", {"search", "--onlyvisible", "--name", pattern + "$"});
        std::istringstream ids(found.standardOutput);
        for (std::string id; std::getline(ids, id);) {
            const std::string info = runChild("/usr/bin/xdotool", {"getwindowgeometry", "--shell", id}).standardOutput;
            // Lines of NAME=value; the four we need are numbers.
            const auto value = [&info](const std::string& key) {
                const std::size_t at = info.find("\n" + key + "=");
                return at == std::string::npos ? 0 : std::atoi(info.c_str() + at + key.size() + 2);
            };
            const Geometry geometry{value("X"), value("Y"), value("WIDTH"), value("HEIGHT")};
            if (geometry.width > 100) {
                return geometry;
            }
        }
        return std::nullopt;
    }

    static std::optional<Geometry> popover() { return windowNamed("Vantle Control"); }

    static void clickAt(int x, int y) { run("/usr/bin/xdotool", {"mousemove", std::to_string(x), std::to_string(y), "click", "1"}); }

    // The tray icon sits at the right end of the tray host's panel, at the top right of LEFT.
    static void clickTrayIcon() { clickAt(1908, 12); }

    static void screenshot(const std::string& name, const std::optional<Geometry>& area = std::nullopt) {
        std::filesystem::create_directories(VANTLE_ARTEFACTS);
        std::vector<std::string> arguments = {std::string(VANTLE_ARTEFACTS) + "/" + name + ".png"};
        if (area) {
            for (int value : {area->x, area->y, area->width, area->height}) {
                arguments.push_back(std::to_string(value));
            }
        }
        run(SCREENSHOT_TOOL, arguments);
    }

    // Whether some program holds the mute key: our own grab of it is then refused.
    static bool muteKeyTaken() {
        xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        const xcb_keycode_t mute = 121;  // XF86AudioMute in the X server's default keymap
        xcb_generic_error_t* error = xcb_request_check(
            connection, xcb_grab_key_checked(connection, 1, root, 0, mute, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        const bool taken = error != nullptr;
        std::free(error);
        xcb_disconnect(connection);
        return taken;
    }

    static long residentKilobytes(int pid) {
        std::ifstream status("/proc/" + std::to_string(pid) + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.rfind("VmRSS:", 0) == 0) {
                return std::stol(line.substr(6));
            }
        }
        return -1;
    }
};

TEST_F(ProgramTest, ShowsItsTrayIconAndOpensThePopoverOnAClick) {
    auto program = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(waitFor(trayIconShown, 5s));
    std::this_thread::sleep_for(600ms);  // the tray settles the icon's place
    clickTrayIcon();
    ASSERT_TRUE(waitFor([] { return popover().has_value(); }, 6s));
    const Geometry shown = *popover();
    EXPECT_GE(shown.width, 420);
    screenshot("popover", Geometry{shown.x - 10, 0, shown.width + 20, shown.height + shown.y + 10});
    // A click on the volume slider's groove moves it, and the sound server follows.
    clickAt(shown.x + shown.width / 4, shown.y + 100);
    EXPECT_TRUE(waitFor([] { return sinkLevel("studio") < 0.49f; }, 3s)) << sinkLevel("studio");
}

// Resident memory says something only about the optimised program: the address
// sanitizer keeps freed blocks in quarantine and grows by design.
#if !defined(__SANITIZE_ADDRESS__)
TEST_F(ProgramTest, SurvivesTimerTicksWithoutGrowing) {
    auto program = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(waitFor(trayIconShown, 5s));
    std::this_thread::sleep_for(4s);
    const long before = residentKilobytes(program->pid());
    std::this_thread::sleep_for(30s);  // fifteen ticks of the 2 s watchdog
    const long after = residentKilobytes(program->pid());
    ASSERT_GT(before, 0);
    EXPECT_LT(after - before, 1024) << before << " kB, then " << after << " kB";
}
#endif

TEST_F(ProgramTest, PreviewShowsTheSettingsAndTakesNoKeys) {
    auto program = start({"--preview-localization"});
    ASSERT_TRUE(waitFor([] { return windowNamed(L("s025")).has_value(); }, 5s));
    screenshot("settings-general-en", windowNamed(L("s025")));
    // No key is taken: another program may have them, and volume keys change nothing of ours.
    EXPECT_FALSE(muteKeyTaken());
    key("XF86AudioLowerVolume");
    std::this_thread::sleep_for(500ms);
    EXPECT_NEAR(sinkLevel("studio"), 0.5f, 0.002f);
}

TEST_F(ProgramTest, PreviewPagesInFrenchForTheArtefacts) {
    auto program = start({"--preview-localization"}, {{"LANGUAGE", "fr"}, {"LANG", "fr_FR.UTF-8"}});
    const std::string title = Localization::text("s025", Localization::table("fr"), Localization::table("en"));
    ASSERT_TRUE(waitFor([&] { return windowNamed(title).has_value(); }, 5s));
    const Geometry window = *windowNamed(title);
    for (int page = 0; page < 4; ++page) {
        // The page selector spans the stack's width under the header.
        clickAt(window.x + 26 + 628 * (2 * page + 1) / 8, window.y + 85);
        std::this_thread::sleep_for(500ms);
        screenshot("settings-page" + std::to_string(page) + "-fr", windowNamed(title));
    }
    EXPECT_TRUE(windowNamed(title).has_value());
}

TEST_F(ProgramTest, SixPretendDisplaysGiveSixRowsInThePopover) {
    auto program = start({"--preview-localization", "--preview-six-displays"});
    ASSERT_TRUE(waitFor(trayIconShown, 5s));
    std::this_thread::sleep_for(600ms);
    clickTrayIcon();
    ASSERT_TRUE(waitFor([] { return popover().has_value(); }, 6s));
    const Geometry shown = *popover();
    screenshot("popover-six-displays", Geometry{shown.x - 10, 0, shown.width + 20, shown.height + shown.y + 10});
    // Two displays make a popover of about 300 points; each row of a display adds about 55.
    EXPECT_GT(shown.height, 480);
}

TEST_F(ProgramTest, RelaunchParentThatLivesIsWaitedFor) {
    RunningChild parent("/bin/sleep", {"3"});
    // Reaped as soon as it ends, as a real parent that exits is: a zombie would still answer probes.
    std::thread reaper([pid = parent.pid()] { ::waitpid(pid, nullptr, 0); });
    const auto started = Clock::now();
    auto program = start({"--relaunch-parent", std::to_string(parent.pid()), "--suppress-keyboard-invitation"});
    std::this_thread::sleep_for(1500ms);
    EXPECT_FALSE(trayIconShown());
    EXPECT_TRUE(waitFor(trayIconShown, 8s));
    EXPECT_GE(Clock::now() - started, 2500ms);
    reaper.join();
}

TEST_F(ProgramTest, RelaunchParentThatIsNoProcessIdStartsAtOnce) {
    for (const char* value : {"0", "-5", "abc"}) {
        auto program = start({"--relaunch-parent", value, "--suppress-keyboard-invitation"});
        EXPECT_TRUE(waitFor(trayIconShown, 4s)) << value;  // far below the ten seconds of a wait
        program->killAndWait(SIGTERM);
        waitFor([] { return !trayIconShown(); }, 2s);
    }
}

TEST_F(ProgramTest, EndOfSessionWhileMutedGivesTheLevelsBackFirst) {
    auto program = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(waitFor(muteKeyTaken, 10s));
    key("XF86AudioMute");
    ASSERT_TRUE(waitFor([] { return sinkLevel("studio") < 0.002f; }, 5s));
    program->killAndWait(SIGTERM);
    EXPECT_NEAR(sinkLevel("studio"), 0.5f, 0.002f);
}

TEST_F(ProgramTest, OnScreenDisplayForTheArtefacts) {
    auto program = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(waitFor(muteKeyTaken, 10s));
    key("XF86AudioRaiseVolume");
    std::this_thread::sleep_for(300ms);
    screenshot("osd", Geometry{805, 700, 310, 310});
    EXPECT_TRUE(waitFor([] { return sinkLevel("studio") > 0.55f; }, 5s));
}

TEST_F(ProgramTest, DarkAppearanceForTheArtefacts) {
    auto program = start({"--preview-localization"}, {{"VANTLE_COLOR_SCHEME", "dark"}});
    ASSERT_TRUE(waitFor([] { return windowNamed(L("s025")).has_value(); }, 5s));
    std::this_thread::sleep_for(500ms);
    screenshot("settings-general-dark", windowNamed(L("s025")));
}

}  // namespace
}  // namespace vantle::testing
