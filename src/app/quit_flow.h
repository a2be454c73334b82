#pragma once

#include "audio/volume_control.h"

namespace vantle {

// The two questions asked before the program ends. Each closes the popover, brings the program
// forward and waits for the user.
class QuitAlerts {
public:
    virtual ~QuitAlerts() = default;
    // "Quit?" True when the user confirms.
    virtual bool confirmQuit() = 0;
    // Some output could not be given its levels back. True when the user chooses to stay.
    virtual bool stayAfterFailedRestore() = 0;
};

enum class QuitAnswer { terminateNow, cancel };

// Whether the program may end now. A quit that would leave outputs silent with their levels
// remembered first gives the levels back, and asks a second time only when that fails. A
// relaunch for a language change ends at once; so does an update being installed, once the
// levels are back.
QuitAnswer applicationShouldTerminate(bool relaunchingForLanguage, bool installingUpdate, VolumeControl& volume,
                                      QuitAlerts& alerts);

}  // namespace vantle
