// A language change as the user makes it: the language menu of the settings window, a new copy of
// the program started in the chosen language, the old one ending quietly; and a new copy that
// cannot start, which leaves the saved choice exactly as it was.
#include <sys/stat.h>

#include <algorithm>
#include <csignal>

#include "program_fixture.h"
#include "support/temporary_directory.h"

namespace vantle::testing {
namespace {

class LanguageRelaunchProgramTest : public ProgramTest {
protected:
    // Chooses the last language of the settings window's language menu ("Русский") with the keyboard:
    // a click opens the menu's list, End and Return choose its last entry.
    static void chooseLastLanguage(const std::string& windowTitle) {
        const std::optional<Geometry> window = windowNamed(windowTitle);
        ASSERT_TRUE(window.has_value());
        const std::size_t before = visibleWindowsOfOurs();
        clickAt(window->x + 300, window->y + 168);
        // The list is a window of its own; keys sent before it is shown would go elsewhere.
        ASSERT_TRUE(waitFor([before] { return visibleWindowsOfOurs() > before; }, 5s));
        std::this_thread::sleep_for(200ms);
        key("End");
        key("Return");
    }

    static std::size_t visibleWindowsOfOurs() {
        const std::string found =
            runChild("/usr/bin/xdotool", {"search", "--onlyvisible", "--classname", "vantle-control"}).standardOutput;
        return static_cast<std::size_t>(std::count(found.begin(), found.end(), '\n'));
    }

    // The copy of the program that a relaunch started: it names its parent in its arguments.
    static std::optional<int> relaunchedBy(int parent) {
        const ChildResult found = runChild("/usr/bin/pgrep", {"-f", "relaunch-parent " + std::to_string(parent)});
        if (found.exitStatus != 0 || found.standardOutput.empty()) {
            return std::nullopt;
        }
        return std::atoi(found.standardOutput.c_str());
    }

    std::string settingsBytes() const {
        std::ifstream file(settingsFile(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
};

TEST_F(LanguageRelaunchProgramTest, ChosenLanguageStartsANewCopyAndTheOldOneEndsQuietly) {
    auto old = start({"--suppress-keyboard-invitation", "--show-settings"}, {{"LANG", "en_US.UTF-8"}});
    ASSERT_TRUE(waitFor(muteKeyTaken, 10s));
    ASSERT_TRUE(waitFor([] { return windowNamed(L("s025")).has_value(); }, 5s));
    const int oldPid = old->pid();
    chooseLastLanguage(L("s025"));

    // The old copy ends with status 0 and no question; the new one takes over.
    const std::optional<int> oldEnded = old->waitForExit(15s);
    if (!oldEnded) {
        screenshot("language-relaunch-old-copy-stayed");
    }
    EXPECT_EQ(oldEnded, 0);
    const std::optional<int> relaunched = relaunchedBy(oldPid);
    ASSERT_TRUE(relaunched.has_value());
    EXPECT_TRUE(waitFor(muteKeyTaken, 10s));
    EXPECT_EQ(trayIconCount(), 1);
    // Its settings window is shown, titled in Russian.
    const std::string russianTitle = Localization::text("s025", Localization::table("ru"), Localization::english());
    EXPECT_TRUE(waitFor([&] { return windowNamed(russianTitle).has_value(); }, 10s)) << russianTitle;

    const ChildResult check = runChild(VANTLE_PROGRAM, {"--verify-localization"}, {});
    EXPECT_EQ(check.exitStatus, 0);
    EXPECT_EQ(check.standardOutput.rfind("PASS language=ru ", 0), 0u) << check.standardOutput;
    ::kill(*relaunched, SIGTERM);
    waitFor([&] { return !relaunchedBy(oldPid).has_value(); }, 5s);
}

TEST_F(LanguageRelaunchProgramTest, NewCopyThatCannotStartLeavesTheSavedChoiceExactlyAsItWas) {
    // A copy of the program with its resources, whose file is made unrunnable once it runs: the
    // new copy then cannot start.
    TemporaryDirectory tree;
    const std::filesystem::path built = std::filesystem::path(VANTLE_PROGRAM);
    std::filesystem::create_directories(tree.path() / "bin");
    std::filesystem::copy(built.parent_path().parent_path() / "share", tree.path() / "share",
                          std::filesystem::copy_options::recursive);
    const std::filesystem::path program = tree.path() / "bin" / "vantle-control";
    std::filesystem::copy_file(built, program);

    // French was chosen before; a failed change must leave it chosen, in both of its settings.
    std::filesystem::create_directories(settingsFile().parent_path());
    std::ofstream(settingsFile()) << R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>AppleLanguages</key><array><string>fr</string></array>
<key>VantleLanguagePreference</key><string>fr</string>
</dict></plist>
)";
    const std::string frenchTitle = Localization::text("s025", Localization::table("fr"), Localization::english());

    auto old = start({"--suppress-keyboard-invitation", "--show-settings"}, {{"LANG", "en_US.UTF-8"}}, program);
    ASSERT_TRUE(waitFor(muteKeyTaken, 10s));
    ASSERT_TRUE(waitFor([&] { return windowNamed(frenchTitle).has_value(); }, 5s));
    std::this_thread::sleep_for(1500ms);  // past the start's own writes of the settings
    const std::string before = settingsBytes();
    ASSERT_EQ(::chmod(program.c_str(), 0644), 0);

    chooseLastLanguage(frenchTitle);
    // The failure is told in an alert titled like the settings window, and the program stays.
    EXPECT_TRUE(waitFor([&] { return windowsTitled(frenchTitle) == 2; }, 10s));
    screenshot("language-relaunch-failed");
    EXPECT_EQ(settingsBytes(), before);
    EXPECT_NE(before.find("<string>fr</string>"), std::string::npos);
    EXPECT_EQ(old->waitForExit(0ms), std::nullopt);
    EXPECT_FALSE(relaunchedBy(old->pid()).has_value());
}

}  // namespace
}  // namespace vantle::testing
