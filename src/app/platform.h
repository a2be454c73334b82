#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "app/display_backends.h"
#include "app/program_processes.h"
#include "app/session_end.h"
#include "app/single_instance.h"
#include "audio/audio_hal.h"
#include "dock/process_runner.h"
#include "keys/key_tap.h"
#include "keys/keyboard_trust.h"
#include "keys/osd_panel.h"
#include "services/login/login_service.h"
#include "services/scheduler.h"
#include "services/updates/feed_fetcher.h"
#include "services/updates/updater.h"
#include "services/user_defaults.h"
#include "services/workspace.h"
#include "ui/appearance_source.h"
#include "ui/status_icon.h"

namespace vantle {

// Everything the program takes from the system it runs on, behind interfaces of its own. One
// object of this kind is made at the start of the process, by the one file of each platform
// that knows its backends; the application and the check modes receive it and name no platform
// type themselves. Main thread only, and it lives until the process ends.
class Platform {
public:
    virtual ~Platform() = default;

    // Whether a window system is there, and with it the toolkit's application object. Without
    // one the check modes still run, against no screens; the application does not start.
    virtual bool hasWindowSystem() const = 0;
    // Why the program cannot show itself, for a program started without a window system.
    virtual std::string missingWindowSystemMessage() const = 0;

    // The settings store the program was made with.
    virtual UserDefaults& defaults() = 0;
    // The sound devices: a fresh connection to the system's sound service, one per user.
    virtual std::unique_ptr<AudioHal> makeAudioHal() = 0;
    // The screens, the shades and the native brightness controls.
    virtual DisplayBackends& displays() = 0;
    // The media keys, and the permission to take them.
    virtual std::unique_ptr<KeyTap> makeKeyTap() = 0;
    virtual KeyboardTrust& keyboardTrust() = 0;
    // The on-screen display's panels.
    virtual OsdPanelFactory& osdPanels() = 0;
    // The program's icon in the tray or the menu bar, shown at once; artwork holds our own
    // artwork of it at every size, and clicked opens or closes the popover.
    virtual std::unique_ptr<StatusIcon> makeStatusIcon(const std::filesystem::path& artwork,
                                                       std::function<void()> clicked) = 0;
    // The light or dark appearance; changed runs on the main thread after each change of it,
    // and nothing listens for changes when it is empty.
    virtual std::unique_ptr<AppearanceSource> makeAppearance(std::function<void()> changed) = 0;
    // Web and mail addresses, and the system's settings pages.
    virtual Workspace& workspace() = 0;
    // Starting at login, and whether this copy of the program is installed where it may.
    virtual LoginService& loginService() = 0;
    virtual bool installedForLogin() = 0;
    // New versions of the program; post hands the outcome of each check to the main thread.
    virtual std::unique_ptr<Updater> makeUpdater(UpdaterDelegate& delegate, Scheduler& scheduler,
                                                 MainThreadPoster post) = 0;
    // The command-line tools the Dock's tiles are changed with, and whether this system has a
    // Dock to change.
    virtual ProcessRunner& processRunner() = 0;
    virtual bool dockAvailable() const = 0;
    // One copy per session, and the program's own processes for a relaunch.
    virtual std::unique_ptr<SingleInstance> makeSingleInstance() = 0;
    virtual ProgramProcesses& processes() = 0;
    // Tells the handler of the end of the session (log-out signals) from now on, for the life
    // of the returned watch.
    virtual std::unique_ptr<SessionEndWatch> watchSessionEnd(SessionEndHandler& handler) = 0;
    // Tells the handler when the window system goes away under the running application, and
    // then ends the process. Made once the application has started.
    virtual std::unique_ptr<SessionEndWatch> watchWindowSystemLoss(SessionEndHandler& handler) = 0;
};

// This platform's backends, with the toolkit's application object made first, from the process's
// own argc and argv (which the toolkit keeps for its whole life), and the settings in defaults.
std::unique_ptr<Platform> makePlatform(int& argc, char** argv, UserDefaults& defaults);

}  // namespace vantle
