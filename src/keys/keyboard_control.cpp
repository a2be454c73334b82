#include "keys/keyboard_control.h"

#include "localization/localization.h"
#include "services/settings_keys.h"

namespace vantle {

void KeyboardControl::postStatus(const std::string& text) {
    host_.report(text);
    host_.refresh();
}

void KeyboardControl::startKeys() {
    if (busy()) {
        return;
    }
    if (keyboardUpdate.pendingBuild) {
        stopKeys();
        return;
    }
    const bool trusted = trust_.trusted(false);
    if (!previousKeyboardTrust || *previousKeyboardTrust != trusted) {
        previousKeyboardTrust = trusted;
        keyboardAttemptFailed = false;
    }
    if (!trusted) {
        stopKeys();
        return;
    }
    if (tap_.running()) {
        return;
    }
    if (keyboardAttemptFailed) {
        return;
    }
    // A tap the system switched off is only switched back on: the keys were never given up, so
    // there is nothing new to say.
    const bool reenabling = tap_.installed();
    // The callback runs inside the window system's event dispatch: it only decides and queues,
    // so that no device or display is touched while the keyboard waits for us.
    const bool started = tap_.start([this](const MediaKeyEvent& event) {
        if (!event.pressed) {
            return;  // a release of a key we handle is taken from the desktop and does nothing
        }
        host_.queue([this, event] { handler_.handleMediaKey(event.key, event.fine, event.repeated); });
    });
    if (!started) {
        keyboardAttemptFailed = true;
        postStatus(L("s111"));
        return;
    }
    if (!reenabling) {
        postStatus(L("s130"));
    }
}

void KeyboardControl::stopKeys() {
    tap_.stop();
}

void KeyboardControl::enableKeys() {
    if (busy()) {
        return;
    }
    if (!keyboardUpdate.pendingBuild) {
        keyboardAttemptFailed = false;
        stopKeys();
        startKeys();
        if (keyboardEnabled()) {
            postStatus(L("s087"));
        }
    }
    requestKeyboardPermission(true);
}

void KeyboardControl::registerKeyboardBuild() {
    keyboardUpdate.seenBuild = defaults_.string(settings::kKeyboardSeenBuild);
    keyboardUpdate.pendingBuild = defaults_.string(settings::kKeyboardPendingRepairBuild);
    const bool legacyInstall =
        defaults_.object(settings::kKeyboardStatus).has_value() || defaults_.boolean(settings::kLoginSetupDone);
    keyboardUpdate.registerLaunch(build_, legacyInstall);
    if (!trust_.permissionFollowsBuild()) {
        // Here the permission belongs to the user's desktop, not to one build of the program: an
        // update loses nothing, and a repair would be a dialog with nothing to repair.
        keyboardUpdate.repairSucceeded();
    }
    const auto store = [this](std::string_view key, const std::optional<std::string>& value) {
        if (value) {
            defaults_.set(key, *value);
        } else {
            defaults_.remove(key);
        }
    };
    store(settings::kKeyboardSeenBuild, keyboardUpdate.seenBuild);
    store(settings::kKeyboardPendingRepairBuild, keyboardUpdate.pendingBuild);
}

void KeyboardControl::requestKeyboardPermission(bool explicitly) {
    if (busy()) {
        return;
    }
    if (keyboardUpdate.pendingBuild) {
        if (!explicitly && keyboardFlow.invitationShown) {
            return;
        }
        repairKeyboardPermission();
        return;
    }
    if (keyboardEnabled()) {
        return;
    }
    switch (keyboardFlow.request(explicitly, trust_.settingsApplicationRunning())) {
    case KeyboardPermissionFlow::Action::invite: {
        // Trusted yet without keys means another program holds them: say so rather than ask
        // for a permission the process already has.
        const KeyboardAlert alert{L("s147"), trust_.trusted(false) ? L("s111") : L("s148"), L("s149"), L("s150")};
        const bool secondChosen = host_.runAlert(alert);
        keyboardFlow.finishInvitation();
        if (!secondChosen) {
            openKeyboardSettings();
        }
        break;
    }
    case KeyboardPermissionFlow::Action::openSettings:
        openKeyboardSettings();
        break;
    case KeyboardPermissionFlow::Action::none:
        break;
    }
    host_.refresh();
}

void KeyboardControl::repairKeyboardPermission() {
    if (!keyboardUpdate.pendingBuild && !trust_.permissionFollowsBuild()) {
        // Nothing can be reset where the permission does not belong to the program; what stops
        // the keys is another program holding them, which switching the keys on again explains.
        enableKeys();
        return;
    }
    if (busy() || !keyboardFlow.beginRepair()) {
        return;
    }
    const bool due = keyboardUpdate.pendingBuild.has_value();
    const KeyboardAlert alert{due ? L("s152") : L("s007"), due ? L("s153") : L("s008"), L("s124"), L("s009")};
    const bool secondChosen = host_.runAlert(alert);
    keyboardFlow.finishInvitation();
    if (!secondChosen) {
        return;
    }
    repairInProgress = true;
    stopKeys();
    host_.refresh();
    if (!trust_.reset()) {
        repairInProgress = false;
        keyboardAttemptFailed = true;
        openKeyboardSettings();
        postStatus(L("s010"));
        return;
    }
    keyboardUpdate.repairSucceeded();
    defaults_.remove(settings::kKeyboardPendingRepairBuild);
    openKeyboardSettings();
    // The renewed permission applies to a fresh process; repairInProgress stays set until this
    // one ends, so the keys stay off meanwhile.
    host_.relaunch();
}

void KeyboardControl::openKeyboardSettings() {
    const bool opened = host_.openKeyboardSettings();
    keyboardFlow.settingsRequested = opened;
    host_.report(opened ? L("s110") : L("s151"));
}

std::string KeyboardControl::lastMediaKey() const {
    return handler_.lastMediaKey().empty() ? L("s013") : handler_.lastMediaKey();
}

}  // namespace vantle
