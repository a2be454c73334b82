#pragma once

#include <optional>
#include <string>

#include "keys/key_tap.h"
#include "keys/keyboard_host.h"
#include "keys/keyboard_trust.h"
#include "keys/keyboard_permission.h"
#include "keys/media_keys.h"
#include "services/user_defaults.h"

namespace vantle {

// Takes the media keys and keeps them: brings the key tap up when it should be up, tears it down
// when it should not, and decides when to invite the user to let the program have the keys or to
// renew a permission an update has lost. Main thread only.
//
// The tap is off (absent), on (present), or blocked (an attempt failed: no further attempts
// until the trust answer changes or the user asks again).
class KeyboardControl {
public:
    // build: the running program's build number, "unknown" when the bundle has none.
    KeyboardControl(KeyTap& tap, MediaKeyHandler& handler, UserDefaults& defaults, std::string build,
                    KeyboardTrust& trust, KeyboardHost& host)
        : tap_(tap), handler_(handler), defaults_(defaults), build_(std::move(build)), trust_(trust), host_(host) {}

    // Idempotent; runs at launch, on every tick of the 2 s timer, from enableKeys and after a
    // failed relaunch.
    void startKeys();
    void stopKeys();
    // The settings window's button that switches the keys on.
    void enableKeys();
    // The tap is present and takes the keys.
    bool keyboardEnabled() const { return tap_.running(); }

    // Loads and saves which build last ran; called once at launch, before the first startKeys.
    void registerKeyboardBuild();
    // explicitly: the user asked; false for the automatic request shortly after launch.
    void requestKeyboardPermission(bool explicitly);
    void repairKeyboardPermission();
    void openKeyboardSettings();
    bool updateRepairNeeded() const { return keyboardUpdate.pendingBuild.has_value(); }

    // The name of the last media key handled, or the text shown before the first.
    std::string lastMediaKey() const;

    KeyboardPermissionFlow keyboardFlow;
    KeyboardUpdateState keyboardUpdate;
    std::optional<bool> previousKeyboardTrust;
    bool keyboardAttemptFailed = false;
    bool repairInProgress = false;
    bool relaunchPending = false;

private:
    // Sets the status line, then refreshes every control.
    void postStatus(const std::string& text);
    bool busy() const { return repairInProgress || relaunchPending; }

    KeyTap& tap_;
    MediaKeyHandler& handler_;
    UserDefaults& defaults_;
    std::string build_;
    KeyboardTrust& trust_;
    KeyboardHost& host_;
};

}  // namespace vantle
