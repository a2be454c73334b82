// macOS as the program's platform: AppKit's screens, panels and menu bar, CoreAudio, an event
// tap for the media keys, DisplayServices brightness, the user's preferences, the workspace,
// service management for login, Sparkle for updates, and the system's tools for the Dock.
#import <Foundation/Foundation.h>

#include <string>
#include <string_view>
#include <vector>

#include "app/display_backends_mac.h"
#include "app/platform.h"
#include "app/program_processes_mac.h"
#include "app/session_end_mac.h"
#include "app/single_instance_mac.h"
#include "app/toolkit_parts_qt.h"
#include "audio/audio_hal_mac.h"
#include "dock/process_runner_mac.h"
#include "keys/key_tap_mac.h"
#include "keys/keyboard_trust_mac.h"
#include "services/login/login_service_mac.h"
#include "services/updates/updater_mac.h"
#include "services/workspace_mac.h"
#include "ui/appearance_mac.h"
#include "ui/status_button.h"
#include "ui/status_item_mac.h"

namespace vantle {
namespace {

// The program's copies are told apart from other programs' by the bundle identifier; a program
// started outside its bundle has none and uses the identifier the bundle would have.
constexpr std::string_view kFallbackIdentifier = "org.orlend.VantleControl";

std::string bundleIdentifier() {
    @autoreleasepool {
        NSString* identifier = NSBundle.mainBundle.bundleIdentifier;
        const char* bytes = identifier != nil ? identifier.UTF8String : nullptr;
        return bytes != nullptr ? std::string(bytes) : std::string(kFallbackIdentifier);
    }
}

class MacPlatform final : public Platform {
public:
    MacPlatform(int& argc, char** argv, UserDefaults& defaults)
        : defaults_(defaults),
          keyboardTrust_([this](std::string_view tool, const std::vector<std::string>& arguments) {
              const Expected<ProcessExit> exit =
                  processRunner_.execute(processRunner_.tool(tool), arguments, ErrorOutput::discard);
              return exit.hasValue() && exit->status == 0;
          }) {
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        // The toolkit's application object comes first: it makes AppKit's application, which
        // the screens, the panels and the menu bar need.
        application_ = makeToolkitApplication(argc, argv);
        osdPanels_ = makeToolkitOsdPanels();
        displays_ = makeMacDisplayBackends(defaults, arguments);
    }

    // A process of a logged-in user always reaches the window server.
    bool hasWindowSystem() const override { return application_ != nullptr; }
    std::string missingWindowSystemMessage() const override {
        return "no window server to show the program on; start it from the Finder or with `open`.";
    }

    UserDefaults& defaults() override { return defaults_; }
    std::unique_ptr<AudioHal> makeAudioHal() override { return std::make_unique<CoreAudioHal>(); }
    DisplayBackends& displays() override { return *displays_; }
    std::unique_ptr<KeyTap> makeKeyTap() override { return std::make_unique<MacKeyTap>(); }
    KeyboardTrust& keyboardTrust() override { return keyboardTrust_; }
    OsdPanelFactory& osdPanels() override { return *osdPanels_; }
    std::unique_ptr<AppearanceSource> makeAppearance(std::function<void()> changed) override {
        return std::make_unique<MacAppearance>(std::move(changed));
    }
    Workspace& workspace() override { return workspace_; }
    LoginService& loginService() override { return loginService_; }
    bool installedForLogin() override { return runningInstalledForLogin(); }
    // Sparkle schedules its own checks and answers on the main thread: neither the scheduler
    // nor the poster is needed.
    std::unique_ptr<Updater> makeUpdater(UpdaterDelegate& delegate, Scheduler&, MainThreadPoster) override {
        return std::make_unique<SparkleUpdater>(delegate);
    }
    ProcessRunner& processRunner() override { return processRunner_; }
    bool dockAvailable() const override { return true; }
    // The menu bar's own status item, whose clicks the toolkit's tray icon cannot tell apart: a
    // click opens the popover, a right click the main menu.
    std::unique_ptr<StatusIcon> makeStatusIcon(const std::filesystem::path& artwork,
                                               std::function<void()> clicked) override {
        const std::filesystem::path image = artwork / "vantle-control-32.png";
        return makeButtonStatusIcon(
            [image](std::function<void()> onClick, std::function<void()> onContextClick) {
                return std::make_unique<MacStatusItem>(image, "Vantle Control", std::move(onClick),
                                                       std::move(onContextClick));
            },
            std::move(clicked));
    }
    // One copy per user: a Mac has one graphical session per logged-in user.
    std::unique_ptr<SingleInstance> makeSingleInstance() override {
        return std::make_unique<MacSingleInstance>(bundleIdentifier());
    }
    ProgramProcesses& processes() override { return processes_; }
    std::unique_ptr<SessionEndWatch> watchSessionEnd(SessionEndHandler& handler) override {
        return std::make_unique<PowerOffWatch>(handler);
    }
    std::unique_ptr<SessionEndWatch> watchWindowSystemLoss(SessionEndHandler&) override {
        return std::make_unique<NoWindowSystemLossWatch>();
    }

private:
    UserDefaults& defaults_;
    MacProcessRunner processRunner_;
    MacKeyboardTrust keyboardTrust_;
    // The toolkit's application object goes last: the shades and the on-screen display are its
    // windows.
    std::unique_ptr<ToolkitApplication> application_;
    std::unique_ptr<OsdPanelFactory> osdPanels_;
    std::unique_ptr<DisplayBackends> displays_;
    MacWorkspace workspace_;
    MacLoginService loginService_;
    MacProgramProcesses processes_;
};

}  // namespace

std::unique_ptr<Platform> makePlatform(int& argc, char** argv, UserDefaults& defaults) {
    return std::make_unique<MacPlatform>(argc, argv, defaults);
}

}  // namespace vantle
