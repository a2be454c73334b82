// The whole program as a real process: tray icon, popover, preview, relaunch wait, end of the
// session, and the screenshots of the artefacts.
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>
#include <sstream>

#include <QImage>

#include "program_fixture.h"

namespace vantle::testing {
namespace {

using Clock = std::chrono::steady_clock;

// A private session bus, whose daemon tells which signals its clients listen for.
class PrivateSessionBus {
public:
    PrivateSessionBus() {
        const ChildResult started =
            runChild("/usr/bin/dbus-daemon", {"--session", "--fork", "--print-address=1", "--print-pid=1"});
        std::istringstream lines(started.standardOutput);
        std::string pid;
        std::getline(lines, address_);
        std::getline(lines, pid);
        pid_ = std::atoi(pid.c_str());
    }
    ~PrivateSessionBus() {
        if (pid_ > 0) {
            ::kill(pid_, SIGTERM);
        }
    }
    PrivateSessionBus(const PrivateSessionBus&) = delete;
    PrivateSessionBus& operator=(const PrivateSessionBus&) = delete;

    const std::string& address() const { return address_; }

    // Runs dbus-send against the bus and returns what it printed.
    std::string send(const std::vector<std::string>& arguments) const {
        ChildOptions options;
        options.environment["DBUS_SESSION_BUS_ADDRESS"] = address_;
        std::vector<std::string> all{"--session", "--print-reply", "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return runChild("/usr/bin/dbus-send", all, options).standardOutput;
    }

    // Every match rule that a client of the bus has added, as dbus-send prints them.
    std::string matchRules() const { return send({"org.freedesktop.DBus.Debug.Stats.GetAllMatchRules"}); }
    bool hasOwner(const std::string& name) const {
        return send({"org.freedesktop.DBus.NameHasOwner", "string:" + name}).find("boolean true") != std::string::npos;
    }

private:
    std::string address_;
    int pid_ = 0;
};


TEST_F(ProgramTest, ShowsItsTrayIconAndOpensThePopoverOnAClick) {
    auto program = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(openPopoverOnceTheIconShows());
    const Geometry shown = *popover();
    EXPECT_GE(shown.width, 420);
    screenshot("popover", Geometry{shown.x - 10, 0, shown.width + 20, shown.height + shown.y + 10});
    // A click on the volume slider's groove moves it, and the sound server follows.
    clickAt(shown.x + shown.width / 4, shown.y + 100);
    EXPECT_TRUE(waitFor([] { return sinkLevel("studio") < 0.49f; }, 3s)) << sinkLevel("studio");
}

TEST_F(ProgramTest, ClickOnTheTrayIconWhileThePopoverIsOpenClosesIt) {
    auto program = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(openPopoverOnceTheIconShows());
    clickTrayIcon();
    EXPECT_TRUE(waitFor([] { return !popover().has_value(); }, 3s));
    // It stays closed: the press that closed it does not reach the icon a second time.
    std::this_thread::sleep_for(1s);
    EXPECT_FALSE(popover().has_value());
    // The next click opens it again.
    clickTrayIcon();
    EXPECT_TRUE(waitFor([] { return popover().has_value(); }, 6s));
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

TEST_F(ProgramTest, PreviewListensForNoChangeOfTheDesktopsScheme) {
    const PrivateSessionBus bus;
    ASSERT_FALSE(bus.address().empty());
    const std::map<std::string, std::optional<std::string>> environment{{"DBUS_SESSION_BUS_ADDRESS", bus.address()}};
    auto portal = start({}, environment, STAND_IN_PORTAL);
    ASSERT_TRUE(waitFor([&bus] { return bus.hasOwner("org.freedesktop.portal.Desktop"); }, 5s));
    auto preview = start({"--preview-localization"}, environment);
    ASSERT_TRUE(waitFor([] { return windowNamed(L("s025")).has_value(); }, 5s));
    EXPECT_EQ(bus.matchRules().find("SettingChanged"), std::string::npos) << bus.matchRules();
    preview->killAndWait(SIGTERM);
    // The program itself does listen, which shows that such a rule would be seen.
    auto program = start({"--suppress-keyboard-invitation"}, environment);
    EXPECT_TRUE(waitFor([&bus] { return bus.matchRules().find("SettingChanged") != std::string::npos; }, 10s))
        << bus.matchRules();
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
    ASSERT_TRUE(openPopoverOnceTheIconShows());
    const Geometry shown = *popover();
    screenshot("popover-six-displays", Geometry{shown.x - 10, 0, shown.width + 20, shown.height + shown.y + 10});
    // Two displays make a popover of about 300 points; each row of a display adds about 55.
    EXPECT_GT(shown.height, 480);
}

TEST_F(ProgramTest, OpenPopoverIsMadeAgainWithoutTheRowOfADisplayThatWent) {
    auto program = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(openPopoverOnceTheIconShows());
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

// A volume step that leaves the mute memory as it is has nothing to save: the settings file is
// not written, let alone flushed to the disk.
TEST_F(ProgramTest, VolumeKeysLeaveTheSettingsFileAlone) {
    auto program = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(waitFor(muteKeyTaken, 10s));
    std::this_thread::sleep_for(1s);  // whatever the start writes is written by now
    const auto identity = [this] {
        struct stat status {};
        if (::stat(settingsFile().c_str(), &status) != 0) {
            return std::string("absent");
        }
        return std::to_string(status.st_ino) + "@" + std::to_string(status.st_mtim.tv_sec) + "." +
               std::to_string(status.st_mtim.tv_nsec);
    };
    const std::string before = identity();
    key("XF86AudioRaiseVolume");
    ASSERT_TRUE(waitFor([] { return sinkLevel("studio") > 0.55f; }, 5s));
    key("XF86AudioLowerVolume");
    ASSERT_TRUE(waitFor([] { return sinkLevel("studio") < 0.51f; }, 5s));
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(identity(), before);
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

// The settings window of a preview on a session bus without a settings portal, with the
// desktop's GTK settings file in the user's configuration folder.
class DesktopSchemeProgramTest : public ProgramTest {
protected:
    // The lightness (0 to 255) of the window's background at its bottom left corner, read from a
    // screenshot, with the GTK settings saying settingsIni.
    int backgroundLightnessWithGtkSettings(const std::string& settingsIni, const std::string& artefact) {
        const PrivateSessionBus bus;
        writeFile(configHome() / "gtk-3.0" / "settings.ini", settingsIni);
        auto preview = start({"--preview-localization"}, {{"DBUS_SESSION_BUS_ADDRESS", bus.address()},
                                                          {"VANTLE_COLOR_SCHEME", std::nullopt},
                                                          {"GTK_THEME", std::nullopt},
                                                          {"XDG_CURRENT_DESKTOP", std::nullopt}});
        if (!waitFor([] { return windowNamed(L("s025")).has_value(); }, 5s)) {
            ADD_FAILURE() << "no settings window";
            return -1;
        }
        std::this_thread::sleep_for(500ms);
        screenshot(artefact, windowNamed(L("s025")));
        const QImage shot(QString::fromStdString(std::string(VANTLE_ARTEFACTS) + "/" + artefact + ".png"));
        return shot.isNull() ? -1 : shot.pixelColor(3, shot.height() - 3).lightness();
    }
};

TEST_F(DesktopSchemeProgramTest, WithoutAPortalTheDesktopsGtkSettingsChooseDark) {
    EXPECT_LT(backgroundLightnessWithGtkSettings("[Settings]\ngtk-application-prefer-dark-theme=1\n",
                                                 "settings-dark-from-gtk-settings"),
              100);
}

TEST_F(DesktopSchemeProgramTest, WithoutAPortalTheDesktopsGtkSettingsKeepItLight) {
    EXPECT_GT(backgroundLightnessWithGtkSettings("[Settings]\ngtk-theme-name=Adwaita\n",
                                                 "settings-light-from-gtk-settings"),
              180);
}

}  // namespace
}  // namespace vantle::testing
