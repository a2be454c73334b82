#pragma once

#include <optional>
#include <string>

#include "services/login/login_item_status.h"

namespace vantle {

// Why a registration change failed, as the platform describes it, ready for display.
struct LoginFailure {
    std::string description;

    bool operator==(const LoginFailure&) const = default;
};

// The platform's login-item service for the running program. Main thread only; every call
// reads or changes the platform's state at once, nothing is cached.
class LoginService {
public:
    virtual ~LoginService() = default;
    virtual LoginItemStatus status() = 0;
    // Each returns nothing when it worked.
    virtual std::optional<LoginFailure> registerApp() = 0;
    virtual std::optional<LoginFailure> unregisterApp() = 0;
    // Opens the desktop's settings for the programs started at login; false when nothing
    // could be opened.
    virtual bool openSettings() = 0;
};

}  // namespace vantle
