#include "services/login/login_controller.h"

#include "localization/localization.h"
#include "services/settings_keys.h"

namespace vantle {

LoginPresentation presentLogin(LoginItemStatus status, bool installedForLogin,
                               const std::optional<std::string>& loginError) {
    const bool awaitingApproval = status == LoginItemStatus::requiresApproval;
    LoginPresentation presentation;
    presentation.toggleOn = status == LoginItemStatus::enabled || awaitingApproval;
    presentation.toggleEnabled = installedForLogin;
    if (loginError) {
        presentation.status = *loginError;
    } else if (!installedForLogin) {
        presentation.status = L("s077");
    } else if (awaitingApproval) {
        presentation.status = L("s078");
    }
    presentation.settingsButtonShown = awaitingApproval || loginError.has_value();
    return presentation;
}

void LoginController::configureInitialLogin() {
    // Not installed: the flag stays unset, so the one automatic registration happens on the
    // first launch from an installed place instead.
    if (!installed_ || defaults_.boolean(settings::kLoginSetupDone)) {
        return;
    }
    const LoginItemStatus status = service_.status();
    if (status == LoginItemStatus::notRegistered || status == LoginItemStatus::notFound) {
        if (const std::optional<LoginFailure> failure = service_.registerApp()) {
            loginError_ = L("s015", failure->description);
        }
    }
    // Done even when registering failed: the program never registers by itself a second time.
    defaults_.set(settings::kLoginSetupDone, true);
}

void LoginController::changeLogin(bool on) {
    loginError_.reset();
    if (installed_) {
        const std::optional<LoginFailure> failure = on ? service_.registerApp() : service_.unregisterApp();
        if (failure) {
            loginError_ = L("s016", failure->description);
        }
    }
    refresh_();
}

void LoginController::openLoginSettings() {
    service_.openSettings();
}

LoginPresentation LoginController::presentation() {
    return presentLogin(service_.status(), installed_, loginError_);
}

}  // namespace vantle
