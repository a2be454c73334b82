#pragma once

#include <optional>

#include "services/login/login_service.h"

namespace vantle {

// The running application as a login item of the system's service management (macOS 13 and
// later). The system asks the user's approval after a registration when its settings say so,
// and may not find an application that runs from outside a proper bundle; both come back as
// the status. Main thread only.
class MacLoginService final : public LoginService {
public:
    LoginItemStatus status() override;
    std::optional<LoginFailure> registerApp() override;
    std::optional<LoginFailure> unregisterApp() override;
    // The login items page of the system settings; the system gives no answer, so always true.
    bool openSettings() override;
};

// Whether the running application lies where it may start at login (see applications_folder.h).
bool runningInstalledForLogin();

}  // namespace vantle
