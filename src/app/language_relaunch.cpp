#include "app/language_relaunch.h"

#include "localization/localization.h"
#include "services/settings_keys.h"

namespace vantle {

void LanguageRelaunch::changeLanguage(const std::optional<std::string>& code) {
    if (keyboard_.relaunchPending || !code) {
        return;
    }
    const std::string current = defaults_.string(settings::kLanguagePreference).value_or("auto");
    if (*code == current) {
        return;
    }
    languageBeforeRelaunch = current;
    // Every write of the settings reaches the disk before it returns, so the new instance reads
    // the new choice.
    Localization::savePreference(*code, defaults_);
    host_.disableLanguageMenu();
    host_.report(L("s136"));
    restartForLanguage();
}

std::vector<std::string> LanguageRelaunch::relaunchArguments() const {
    std::vector<std::string> arguments = {"--show-settings", "--relaunch-parent", std::to_string(processId_)};
    if (keyboard_.keyboardFlow.invitationShown || keyboard_.repairInProgress) {
        arguments.push_back("--suppress-keyboard-invitation");
    }
    if (preview_) {
        arguments.push_back("--preview-localization");
    }
    return arguments;
}

void LanguageRelaunch::restartForLanguage() {
    if (keyboard_.relaunchPending) {
        return;
    }
    keyboard_.relaunchPending = true;
    // Two instances never hold the keys at once.
    keyboard_.stopKeys();
    host_.startInstance(relaunchArguments(), [this](std::optional<std::string> error) {
        if (error) {
            relaunchFailed(*error);
            return;
        }
        relaunchingForLanguage = true;
        host_.terminate();
    });
}

void LanguageRelaunch::relaunchFailed(const std::string& error) {
    keyboard_.relaunchPending = false;
    keyboard_.repairInProgress = false;
    if (languageBeforeRelaunch) {
        Localization::savePreference(*languageBeforeRelaunch, defaults_);
        languageBeforeRelaunch.reset();
    }
    keyboard_.keyboardAttemptFailed = false;
    host_.rebuild();
    keyboard_.startKeys();
    host_.report(error);
    host_.alert(L("s138", error));
}

}  // namespace vantle
