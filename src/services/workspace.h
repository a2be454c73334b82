#pragma once

#include <string>

namespace vantle {

// Places of the desktop that the program sends the user to.
enum class SettingsPlace {
    Displays,  // resolution, arrangement and brightness of the displays
    Sound,     // output devices, where combined outputs are made
    Keyboard,  // keyboard shortcuts, where another program's hold on the media keys is freed
    StartupApplications,  // the programs started at login
};

// Opens things with the desktop's own applications. Calls return at once; what was opened goes
// on running on its own.
class Workspace {
public:
    virtual ~Workspace() = default;
    // False when no settings application of this desktop could be started.
    virtual bool openSettings(SettingsPlace place) = 0;
    // Opens a web address or a mail address in the user's browser or mail program; false when
    // nothing could be started for it.
    virtual bool openUrl(const std::string& url) = 0;
};

}  // namespace vantle
