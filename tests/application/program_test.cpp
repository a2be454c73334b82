// The whole program as a real process: tray icon, popover, preview, relaunch wait, end of the
// session, and the screenshots of the artefacts.
#include <sys/wait.h>

#include "program_fixture.h"

namespace vantle::testing {
namespace {

using Clock = std::chrono::steady_clock;


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

TEST_F(ProgramTest, OpenPopoverIsMadeAgainWithoutTheRowOfADisplayThatWent) {
    auto program = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(waitFor(trayIconShown, 5s));
    std::this_thread::sleep_for(600ms);
    clickTrayIcon();
    ASSERT_TRUE(waitFor([] { return popover().has_value(); }, 6s));
    const int withTwoDisplays = popover()->height;
    run("/usr/bin/xrandr", {"--delmonitor", "RIGHT"});
    // A display's row is about 55 points high.
    EXPECT_TRUE(waitFor(
        [withTwoDisplays] {
            const std::optional<Geometry> shown = popover();
            return shown && shown->height < withTwoDisplays - 30;
        },
        5s))
        << withTwoDisplays << " then " << (popover() ? popover()->height : 0);
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

// Escape and the close box of an alert mean its first button. The quit alert's first button
// keeps the program, so Escape must never be what ends it.
TEST_F(ProgramTest, EscapeOnTheQuitAlertKeepsTheProgramRunning) {
    auto program = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(waitFor(muteKeyTaken, 10s));
    ASSERT_TRUE(waitFor(trayIconShown, 5s));
    std::this_thread::sleep_for(600ms);  // the tray settles the icon's place
    // The main menu opens on the icon's context click; Up from no item reaches its last, Quit.
    run("/usr/bin/xdotool", {"mousemove", "1908", "12", "click", "3"});
    std::this_thread::sleep_for(500ms);
    key("Up");
    key("Return");
    ASSERT_TRUE(waitFor([] { return windowsTitled(L("s025")) == 1; }, 5s)) << "no quit alert";
    std::this_thread::sleep_for(300ms);
    key("Escape");
    EXPECT_TRUE(waitFor([] { return windowsTitled(L("s025")) == 0; }, 5s)) << "the alert stayed";
    EXPECT_FALSE(program->waitForExit(1500ms).has_value()) << "Escape quit the program";
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
