#pragma once

namespace vantle {

// Whether the program is registered to start at login, as the platform reports it. The values
// are the platform's own numbers. On Linux only notRegistered and enabled occur: the desktop
// asks no approval and always finds the program it is given.
enum class LoginItemStatus {
    notRegistered = 0,
    enabled = 1,
    requiresApproval = 2,  // registered, but the user has still to allow it in the settings
    notFound = 3,          // the platform cannot find the program to register
};

}  // namespace vantle
