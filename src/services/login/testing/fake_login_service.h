#pragma once

#include <optional>
#include <vector>

#include "services/login/login_service.h"

namespace vantle::testing {

// A login-item service in memory: registering and unregistering move the status unless the
// test makes them fail.
class FakeLoginService final : public LoginService {
public:
    LoginItemStatus status() override {
        ++statusReads;
        return current;
    }
    std::optional<LoginFailure> registerApp() override {
        calls.push_back("register");
        if (registerFailure) {
            return registerFailure;
        }
        current = statusAfterRegister;
        return std::nullopt;
    }
    std::optional<LoginFailure> unregisterApp() override {
        calls.push_back("unregister");
        if (unregisterFailure) {
            return unregisterFailure;
        }
        current = LoginItemStatus::notRegistered;
        return std::nullopt;
    }
    bool openSettings() override {
        calls.push_back("openSettings");
        return settingsOpen;
    }

    LoginItemStatus current = LoginItemStatus::notRegistered;
    LoginItemStatus statusAfterRegister = LoginItemStatus::enabled;
    std::optional<LoginFailure> registerFailure;
    std::optional<LoginFailure> unregisterFailure;
    bool settingsOpen = true;
    int statusReads = 0;
    std::vector<const char*> calls;
};

}  // namespace vantle::testing
