// Runs the real program as a child process, each time with a private settings folder.
#include <signal.h>

#include <gtest/gtest.h>

#include "localization/localization.h"
#include "services/property_list_codec.h"
#include "support/child_process.h"
#include "support/temporary_directory.h"

namespace vantle {
namespace {

class EntryPointTest : public ::testing::Test {
protected:
    testing::ChildResult run(const std::vector<std::string>& arguments,
                             std::map<std::string, std::optional<std::string>> environment = {}) {
        testing::ChildOptions options;
        // No test may reach the user's own sound server or X server.
        options.environment = {{"XDG_CONFIG_HOME", configHome.path().string()},
                               {"PULSE_SERVER", "unix:" + (configHome.path() / "no-sound-server").string()},
                               {"DISPLAY", std::nullopt},
                               {"LANGUAGE", std::nullopt},
                               {"LC_ALL", std::nullopt},
                               {"LC_MESSAGES", std::nullopt},
                               {"LANG", std::nullopt},
                               {"VANTLE_EXPECT_LANGUAGE", std::nullopt},
                               // Abort quietly: the fatal stop is expected here.
                               {"ASAN_OPTIONS", "handle_abort=0"}};
        for (auto& [name, value] : environment) {
            options.environment[name] = value;
        }
        return testing::runChild(VANTLE_PROGRAM, arguments, options);
    }

    testing::TemporaryDirectory configHome;
};

// The French table's text of the settings title, read from the shipped resources.
std::string settingsTitle(std::string_view code) {
    return Localization::table(code, Bundle(VANTLE_SOURCE_RESOURCES, {})).at("s046");
}

class LocalizationCheckProcessTest : public EntryPointTest, public ::testing::WithParamInterface<std::string_view> {};

TEST_P(LocalizationCheckProcessTest, PassesInTheLanguageOfTheEnvironment) {
    const std::string code(GetParam());
    testing::ChildResult result = run({"--verify-localization"}, {{"LANGUAGE", code}});
    EXPECT_EQ(result.exitStatus, 0) << result.standardError;
    EXPECT_EQ(result.standardOutput,
              "PASS language=" + code + " Sparkle=" + code + " keys=154 settings=" + settingsTitle(code) + "\n");
}

INSTANTIATE_TEST_SUITE_P(Languages, LocalizationCheckProcessTest, ::testing::ValuesIn(Localization::supported),
                         [](const ::testing::TestParamInfo<std::string_view>& parameter) {
                             return std::string(parameter.param);
                         });

TEST_F(EntryPointTest, ExpectingAnotherLanguageStopsFatallyWithoutOutput) {
    testing::ChildResult result =
        run({"--verify-localization"}, {{"LANGUAGE", "fr"}, {"VANTLE_EXPECT_LANGUAGE", "de"}});
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_FALSE(result.exitStatus.has_value());
}

TEST_F(EntryPointTest, ExpectingTheResolvedLanguagePasses) {
    testing::ChildResult result =
        run({"--verify-localization"}, {{"LANG", "ru_RU.UTF-8"}, {"VANTLE_EXPECT_LANGUAGE", "ru"}});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(result.standardOutput.starts_with("PASS language=ru Sparkle=ru keys=154 ")) << result.standardOutput;
}

TEST_F(EntryPointTest, UnsupportedEnvironmentLanguageFallsBackToEnglish) {
    testing::ChildResult result = run({"--verify-localization"}, {{"LANGUAGE", "ja_JP"}, {"LANG", "C.UTF-8"}});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.standardOutput, "PASS language=en Sparkle=en keys=154 settings=" + settingsTitle("en") + "\n");
}

TEST_F(EntryPointTest, SavedLanguageWinsOverTheEnvironment) {
    testing::writeFile(configHome.path() / "vantle-control" / "defaults.plist",
                       serializePropertyListXml(PlistValue(PlistValue::Dictionary{
                           {"AppleLanguages", PlistValue::stringArray({"nl"})},
                           {"VantleLanguagePreference", "nl"}})));
    testing::ChildResult result = run({"--verify-localization"}, {{"LANGUAGE", "de"}});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(result.standardOutput.starts_with("PASS language=nl ")) << result.standardOutput;
}

TEST_F(EntryPointTest, LocalizationCheckWinsOverDiagnose) {
    testing::ChildResult result = run({"--diagnose", "--verify-localization"}, {{"LANGUAGE", "it"}});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.standardOutput, "PASS language=it Sparkle=it keys=154 settings=" + settingsTitle("it") + "\n");
}

TEST_F(EntryPointTest, CorruptSettingsFileIsReportedAndTheCheckStillPasses) {
    const std::filesystem::path file = configHome.path() / "vantle-control" / "defaults.plist";
    testing::writeFile(file, "garbage");
    testing::ChildResult result = run({"--verify-localization"}, {{"LANGUAGE", "es"}});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(result.standardOutput.starts_with("PASS language=es ")) << result.standardOutput;
    EXPECT_NE(result.standardError.find("settings file"), std::string::npos) << result.standardError;
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(EntryPointTest, WithoutAnXServerTheChecksSeeNoScreen) {
    testing::ChildResult osd = run({"--verify-osd"});
    EXPECT_EQ(osd.standardOutput, "FAIL: no OSD panels\n");
    EXPECT_EQ(osd.exitStatus, 1);
    testing::ChildResult controls = run({"--verify-controls"});
    EXPECT_EQ(controls.standardOutput, "");
    EXPECT_EQ(controls.exitStatus, 0);
}

TEST_F(EntryPointTest, NormalStartWithoutAnXDisplaySaysWhereToRunIt) {
    testing::ChildResult result = run({});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_NE(result.standardError.find("no X display"), std::string::npos);
    EXPECT_NE(result.standardError.find("scripts/run.sh"), std::string::npos);
}

}  // namespace
}  // namespace vantle
