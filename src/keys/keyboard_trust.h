#pragma once

namespace vantle {

// The platform's permission for this process to take the media keys from the rest of the
// system. Main thread only; every call asks the system afresh.
class KeyboardTrust {
public:
    virtual ~KeyboardTrust() = default;
    // Whether the process may take the keys now. Asking shows the system's own request for the
    // permission where the platform has one, and answers at once all the same.
    virtual bool trusted(bool ask) = 0;
    // Whether a new build of the program loses the permission the old build was given.
    virtual bool permissionFollowsBuild() const = 0;
    // Whether the settings application where the permission is given is running now.
    virtual bool settingsApplicationRunning() = 0;
    // Withdraws the permission with the platform's own tool, so that it can be given afresh;
    // false when the tool could not run or failed.
    virtual bool reset() = 0;
};

}  // namespace vantle
