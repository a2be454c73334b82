#include "keys/keyboard_permission.h"

namespace vantle {

KeyboardPermissionFlow::Action KeyboardPermissionFlow::request(bool explicitly, bool settingsRunning) {
    if (dialogVisible) {
        return Action::none;
    }
    if (!settingsRunning && !settingsRequested) {
        if (!explicitly && invitationShown) {
            return Action::none;
        }
        invitationShown = true;
        dialogVisible = true;
        return Action::invite;
    }
    invitationShown = true;
    return explicitly ? Action::openSettings : Action::none;
}

bool KeyboardPermissionFlow::beginRepair() {
    if (dialogVisible) {
        return false;
    }
    invitationShown = true;
    dialogVisible = true;
    return true;
}

void KeyboardUpdateState::registerLaunch(const std::string& build, bool legacyInstall) {
    if ((!seenBuild && legacyInstall) || (seenBuild && *seenBuild != build)) {
        pendingBuild = build;
    }
    seenBuild = build;
}

}  // namespace vantle
