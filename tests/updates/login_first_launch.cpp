// A stand-in for the program's launch as far as launch at login goes: the real autostart
// service, the real settings file and the real location of this executable. Prints one line:
// "installed=<0|1> status=<n> setupDone=<0|1> error=<text>".

#include <cstdio>

#include "services/login/autostart_login_service_linux.h"
#include "services/login/login_controller.h"
#include "services/settings_keys.h"
#include "services/standard_defaults.h"

int main() {
    using namespace vantle;
    AutostartLoginService service(autostartFoldersFromEnvironment(), runningExecutablePath());
    LoginController login(service, standardDefaults(), runningInstalledForLogin(), [] {});
    login.configureInitialLogin();
    std::printf("installed=%d status=%d setupDone=%d error=%s\n", login.installedForLogin() ? 1 : 0,
                static_cast<int>(login.status()), standardDefaults().boolean(settings::kLoginSetupDone) ? 1 : 0,
                login.loginError().value_or("").c_str());
    return 0;
}
