#include "app/language_relaunch.h"

#include <gtest/gtest.h>

#include "keys/testing/keyboard_world.h"
#include "localization/localization.h"
#include "services/settings_keys.h"

namespace vantle {
namespace {

class ScriptedRelaunchHost final : public RelaunchHost {
public:
    void startInstance(const std::vector<std::string>& arguments,
                       std::function<void(std::optional<std::string>)> done) override {
        started.push_back(arguments);
        pending = std::move(done);
    }
    void disableLanguageMenu() override { menuDisabled = true; }
    void report(const std::string& text) override { reports.push_back(text); }
    void rebuild() override {
        ++rebuilds;
        menuDisabled = false;
    }
    void alert(const std::string& text) override { alerts.push_back(text); }
    void terminate() override { ++terminations; }

    // The start reports back, as the process runner would on the main thread.
    void finish(std::optional<std::string> error) {
        auto done = std::move(pending);
        done(std::move(error));
    }

    std::vector<std::vector<std::string>> started;
    std::function<void(std::optional<std::string>)> pending;
    bool menuDisabled = false;
    std::vector<std::string> reports;
    std::vector<std::string> alerts;
    int rebuilds = 0;
    int terminations = 0;
};

class LanguageRelaunchTest : public ::testing::Test, public testing::KeyboardWorld {
protected:
    ScriptedRelaunchHost relaunchHost;
    LanguageRelaunch relaunch{defaults, keys, relaunchHost, 4242, false};
};

TEST_F(LanguageRelaunchTest, ChoosingTheSavedLanguageDoesNotRelaunch) {
    relaunch.changeLanguage("auto");  // nothing saved reads as "auto"
    defaults.set(settings::kLanguagePreference, "fr");
    relaunch.changeLanguage("fr");
    EXPECT_TRUE(relaunchHost.started.empty());
}

TEST_F(LanguageRelaunchTest, NoChoiceDoesNothing) {
    relaunch.changeLanguage(std::nullopt);
    EXPECT_TRUE(relaunchHost.started.empty());
}

TEST_F(LanguageRelaunchTest, NewChoiceIsSavedBeforeTheNewInstanceStarts) {
    keys.startKeys();
    relaunch.changeLanguage("de");
    EXPECT_EQ(defaults.string(settings::kLanguagePreference), "de");
    EXPECT_EQ(defaults.stringArray(settings::kAppleLanguages), (std::vector<std::string>{"de"}));
    ASSERT_EQ(relaunchHost.started.size(), 1u);
    EXPECT_EQ(relaunchHost.started[0], (std::vector<std::string>{"--show-settings", "--relaunch-parent", "4242"}));
    EXPECT_TRUE(relaunchHost.menuDisabled);
    EXPECT_EQ(relaunchHost.reports.back(), L("s136"));
    EXPECT_FALSE(keys.keyboardEnabled());  // two instances never hold the keys at once
    EXPECT_EQ(relaunch.languageBeforeRelaunch, "auto");
}

TEST_F(LanguageRelaunchTest, StartedInstanceEndsThisOneWithoutAsking) {
    relaunch.changeLanguage("de");
    relaunchHost.finish(std::nullopt);
    EXPECT_TRUE(relaunch.relaunchingForLanguage);
    EXPECT_EQ(relaunchHost.terminations, 1);
}

TEST_F(LanguageRelaunchTest, SecondQuickChoiceIsIgnored) {
    relaunch.changeLanguage("de");
    relaunch.changeLanguage("it");
    EXPECT_EQ(relaunchHost.started.size(), 1u);
    EXPECT_EQ(defaults.string(settings::kLanguagePreference), "de");
}

TEST_F(LanguageRelaunchTest, FailedStartPutsAutoBackExactly) {
    keys.startKeys();
    relaunch.changeLanguage("de");
    relaunchHost.finish("No such file or directory");
    // As saving "auto" leaves them: the choice reads "auto" and no language list is kept.
    EXPECT_EQ(defaults.string(settings::kLanguagePreference), "auto");
    EXPECT_FALSE(defaults.object(settings::kAppleLanguages));
    EXPECT_FALSE(keys.relaunchPending);
    EXPECT_FALSE(relaunch.languageBeforeRelaunch);
    EXPECT_TRUE(keys.keyboardEnabled());
    EXPECT_EQ(relaunchHost.rebuilds, 1);
    EXPECT_EQ(relaunchHost.reports.back(), "No such file or directory");
    ASSERT_EQ(relaunchHost.alerts.size(), 1u);
    EXPECT_EQ(relaunchHost.alerts[0], L("s138", "No such file or directory"));
    EXPECT_EQ(relaunchHost.terminations, 0);
}

TEST_F(LanguageRelaunchTest, FailedStartPutsAnEarlierChoiceBackExactly) {
    Localization::savePreference("it", defaults);
    const PlistValue::Dictionary before = store.values;
    relaunch.changeLanguage("ru");
    relaunchHost.finish("refused");
    EXPECT_EQ(store.values, before);
}

TEST_F(LanguageRelaunchTest, RelaunchDuringARepairSuppressesTheInvitation) {
    keys.repairInProgress = true;
    relaunch.restartForLanguage();
    ASSERT_EQ(relaunchHost.started.size(), 1u);
    EXPECT_EQ(relaunchHost.started[0].back(), "--suppress-keyboard-invitation");
}

TEST_F(LanguageRelaunchTest, PreviewAndAnInvitationAlreadyShownCarryOver) {
    LanguageRelaunch preview{defaults, keys, relaunchHost, 7, true};
    keys.keyboardFlow.invitationShown = true;
    EXPECT_EQ(preview.relaunchArguments(),
              (std::vector<std::string>{"--show-settings", "--relaunch-parent", "7", "--suppress-keyboard-invitation",
                                        "--preview-localization"}));
}

}  // namespace
}  // namespace vantle
