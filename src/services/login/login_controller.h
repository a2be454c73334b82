#pragma once

#include <functional>
#include <optional>
#include <string>

#include "services/login/login_service.h"
#include "services/user_defaults.h"

namespace vantle {

// The launch-at-login controls as the control refresh shows them.
struct LoginPresentation {
    bool toggleOn = false;       // the check box
    bool toggleEnabled = false;  // it can be changed at all
    // The orange status line under it; hidden when empty.
    std::string status;
    // The button that opens the desktop's startup settings, where the program has one.
    bool settingsButtonShown = false;

    bool operator==(const LoginPresentation&) const = default;
};

// The presentation of the given state: the check box is on while registered (also when approval
// is pending), and changeable only when installed. The status line shows, first match wins, the
// last registration error, the request to install the program properly, the request to approve
// it in the settings. The settings button shows when the settings can help: approval pending or
// an error.
LoginPresentation presentLogin(LoginItemStatus status, bool installedForLogin,
                               const std::optional<std::string>& loginError);

// Launch at login: the one automatic registration on the first launch from an installed place,
// the check box's action and the button that opens the desktop's settings. The application owns
// it and forwards its App methods of the same names. Main thread only.
class LoginController {
public:
    // installedForLogin: whether the running program lies where it may start at login, as its
    // platform decides; it cannot change while the program runs. refresh brings every control
    // into line with the current state.
    LoginController(LoginService& service, UserDefaults& defaults, bool installedForLogin,
                    std::function<void()> refresh)
        : service_(service), defaults_(defaults), installed_(installedForLogin), refresh_(std::move(refresh)) {}

    bool installedForLogin() const { return installed_; }

    // Once during launch: registers on the first launch from an installed place, and never again
    // by itself, so that a user who switches it off stays off.
    void configureInitialLogin();
    // The check box's action; on is its new state. Ends with a refresh, which also puts the
    // check box back to the real state when the change failed or was not possible.
    void changeLogin(bool on);
    // The settings button's action.
    void openLoginSettings();

    // The platform's status, read afresh.
    LoginItemStatus status() { return service_.status(); }
    // The last registration error, ready for display; cleared at the start of every change.
    const std::optional<std::string>& loginError() const { return loginError_; }
    // Reads the status afresh.
    LoginPresentation presentation();

private:
    LoginService& service_;
    UserDefaults& defaults_;
    bool installed_;
    std::function<void()> refresh_;
    std::optional<std::string> loginError_;
};

}  // namespace vantle
