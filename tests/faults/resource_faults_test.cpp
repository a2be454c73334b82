// String tables and help pages missing or damaged in a copy of the installed program: English
// or the keys show, and nothing crashes. The build's own resources are never touched.
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "fault_fixture.h"
#include "localization/localization.h"
#include "services/file_contents.h"
#include "support/child_process.h"

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

// Whether a visible window has exactly this title, which must be plain ASCII.
bool windowTitled(const std::string& title) {
    return runChild("/usr/bin/xdotool", {"search", "--onlyvisible", "--name", "^" + title + "$"}).exitStatus == 0;
}

class ResourceFaultTest : public FaultTest {
protected:
    ResourceFaultTest() {
        fs::create_directories(tree_.path() / "bin");
        fs::copy_file(VANTLE_PROGRAM, program());
        fs::create_directories(resources());
        fs::copy(VANTLE_RESOURCE_DIR, resources(), fs::copy_options::recursive);
    }

    fs::path program() const { return tree_.path() / "bin" / "vantle-control"; }
    fs::path resources() const { return tree_.path() / "share" / "vantle-control"; }
    fs::path table(const std::string& code) const { return resources() / (code + ".lproj") / "Localizable.strings"; }

    // The settings window of the copy, in the given language, looked at without taking anything.
    std::unique_ptr<ProgramProcess> preview(const std::string& language) {
        return std::make_unique<ProgramProcess>(
            program().string(), std::vector<std::string>{"--preview-localization"},
            std::map<std::string, std::optional<std::string>>{{"LANGUAGE", language},
                                                              {"LANG", language + "_XX.UTF-8"}});
    }

    static std::string english(const char* key) {
        return Localization::text(key, Localization::table("en"), StringTable{});
    }

    // The copy's window shows title; the copy still runs and printed no sanitizer report.
    static void expectTitle(ProgramProcess& shown, const std::string& title) {
        EXPECT_TRUE(waitFor([&title] { return windowTitled(title); }, 10s)) << shown.standardError();
        EXPECT_TRUE(shown.running()) << shown.standardError();
        EXPECT_FALSE(hasSanitizerReport(shown.standardError())) << shown.standardError();
    }

    // Opens the help window through the "?" button at the right end of the settings header.
    static void clickHelpButton(ProgramProcess& shown) {
        const std::string title = english("s025");
        ASSERT_TRUE(waitFor([&title] { return windowTitled(title); }, 10s)) << shown.standardError();
        const std::string found =
            runChild("/usr/bin/xdotool", {"search", "--onlyvisible", "--name", "^" + title + "$"}).standardOutput;
        const std::string window = found.substr(0, found.find('\n'));
        const std::string info = runChild("/usr/bin/xdotool", {"getwindowgeometry", "--shell", window}).standardOutput;
        const auto value = [&info](const std::string& key) {
            const std::size_t at = info.find(key + "=");
            return at == std::string::npos ? 0 : std::atoi(info.c_str() + at + key.size() + 1);
        };
        run("/usr/bin/xdotool", {"mousemove", std::to_string(value("X") + value("WIDTH") - 46),
                                 std::to_string(value("Y") + 32), "click", "1"});
    }

    TemporaryDirectory tree_;
};

TEST_F(ResourceFaultTest, MissingFrenchTableShowsEnglish) {
    fs::remove(table("fr"));
    auto shown = preview("fr");
    expectTitle(*shown, english("s025"));
}

TEST_F(ResourceFaultTest, GarbledFrenchTableShowsEnglish) {
    writeFile(table("fr"), std::string("\"s025\" = \"R\xc3\xa9glages\" \"s026\" = ; {{{ \x01\xff"));
    auto shown = preview("fr");
    expectTitle(*shown, english("s025"));
}

TEST_F(ResourceFaultTest, TruncatedFrenchTableShowsEnglish) {
    const std::string whole = readFileContents(table("fr")).value_or("");
    ASSERT_GT(whole.size(), 1000u);
    writeFile(table("fr"), whole.substr(0, whole.size() / 2));
    auto shown = preview("fr");
    expectTitle(*shown, english("s025"));
}

TEST_F(ResourceFaultTest, MissingEnglishTableShowsTheKeys) {
    fs::remove(table("en"));
    auto shown = preview("en");
    expectTitle(*shown, "s025");
}

TEST_F(ResourceFaultTest, GarbledTablesShowTheKeysInEveryLanguage) {
    writeFile(table("en"), "<plist><array><string>s025</string></array></plist>");
    writeFile(table("de"), std::string("\xff\xfe\x00\x01", 4));
    auto shown = preview("de");
    expectTitle(*shown, "s025");
}

TEST_F(ResourceFaultTest, MissingHelpPageShowsAnEmptyHelpWindow) {
    fs::remove(resources() / "Help" / "en.html");
    auto shown = preview("en");
    clickHelpButton(*shown);
    expectTitle(*shown, english("s142"));
}

TEST_F(ResourceFaultTest, GarbledHelpPageStillOpensTheHelpWindow) {
    writeFile(resources() / "Help" / "en.html", std::string("<html><body><a href=\"\xff\xfe<<<\x01"));
    auto shown = preview("en");
    clickHelpButton(*shown);
    expectTitle(*shown, english("s142"));
}

TEST_F(ResourceFaultTest, MissingTablesStillLetTheProgramMuteAndUnmute) {
    fs::remove_all(resources() / "en.lproj");
    ProgramProcess copy(program().string(), {"--suppress-keyboard-invitation"});
    ASSERT_TRUE(waitFor([] { return muteKeyTaken(); }, 15s)) << copy.standardError();
    key("XF86AudioMute");
    EXPECT_TRUE(waitFor([] { return studioNear(0.0f); }, 5s));
    key("XF86AudioMute");
    EXPECT_TRUE(waitFor([] { return studioNear(0.5f); }, 5s));
    EXPECT_TRUE(copy.running()) << copy.standardError();
}

}  // namespace
}  // namespace vantle::testing
