// The Linux desktop as the program's platform: X11 through the toolkit's xcb plugin, a
// PulseAudio-compatible sound server, the kernel's backlights and DDC/CI monitors, freedesktop
// settings and autostart, and updates announced by a feed read over HTTPS.
#include <malloc.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <QApplication>
#include <QGuiApplication>
#include <QTimer>
#include <cstdlib>
#include <optional>

#include "app/display_backends_linux.h"
#include "app/display_loss_linux.h"
#include "app/instance_name_x11.h"
#include "app/platform.h"
#include "app/program_processes_linux.h"
#include "app/signal_watch_linux.h"
#include "app/single_instance_linux.h"
#include "audio/pulse/audio_hal_pulse.h"
#include "dock/process_runner_linux.h"
#include "keys/key_tap_x11.h"
#include "keys/keyboard_trust_x11.h"
#include "keys/osd_panel_qt.h"
#include "services/login/autostart_login_service_linux.h"
#include "services/updates/updater_linux.h"
#include "services/workspace_linux.h"
#include "ui/appearance_linux.h"
#include "ui/status_item_qt.h"

namespace vantle {
namespace {

// glibc's own starting value, kept fixed from here on.
constexpr int kMapThreshold = 128 * 1024;
// Long enough for the start to be over: the icon docked, the first refresh and readings done.
constexpr std::chrono::seconds kSettledAfter{3};

class LinuxPlatform final : public Platform {
public:
    LinuxPlatform(int& argc, char** argv, UserDefaults& defaults)
        : defaults_(defaults), loginService_(autostartFoldersFromEnvironment(), runningExecutablePath()) {
        // Large buffers that are made and dropped again (a decoded logo, an image being scaled)
        // are mapped and unmapped on their own. Left to itself, glibc raises this threshold the
        // first time such a buffer is freed, and the heap then keeps what the next ones used for
        // the rest of a program that runs all day.
        mallopt(M_MMAP_THRESHOLD, kMapThreshold);
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        if (!xServerReachable()) {
            displays_ = makeHeadlessDisplayBackends(defaults, arguments);
            return;
        }
        // The X11 plugin is the one that the screens, shades and key grabs of this build speak,
        // whatever the session would have chosen.
        qputenv("QT_QPA_PLATFORM", "xcb");
        application_ = std::make_unique<QApplication>(argc, argv);
        // Ties the windows to the installed menu entry, whose name and icon the desktop then shows.
        QGuiApplication::setDesktopFileName(QStringLiteral("org.orlend.VantleControl"));
        connection_ = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
        // What the start made and dropped again lies free in the heap, which glibc gives back to
        // the system only from its top. Handed back once the program has settled, it is not kept
        // for a run of days.
        QTimer::singleShot(kSettledAfter, [] { malloc_trim(0); });
        displays_ = makeX11DisplayBackends(connection_, defaults, arguments);
    }

    bool hasWindowSystem() const override { return application_ != nullptr; }
    std::string missingWindowSystemMessage() const override {
        return "no X display to show the program on (DISPLAY is unset or cannot be reached).\n"
               "Start it from a desktop session, or run scripts/run.sh, which starts a private one.";
    }

    UserDefaults& defaults() override { return defaults_; }
    std::unique_ptr<AudioHal> makeAudioHal() override { return std::make_unique<PulseAudioHal>(); }
    DisplayBackends& displays() override { return *displays_; }
    std::unique_ptr<KeyTap> makeKeyTap() override { return std::make_unique<X11KeyTap>(connection_); }
    KeyboardTrust& keyboardTrust() override { return keyboardTrust_; }
    OsdPanelFactory& osdPanels() override { return osdPanels_; }
    std::unique_ptr<AppearanceSource> makeAppearance(std::function<void()> changed) override {
        return std::make_unique<DesktopAppearance>(std::move(changed));
    }
    Workspace& workspace() override { return workspace_; }
    LoginService& loginService() override { return loginService_; }
    bool installedForLogin() override { return runningInstalledForLogin(); }
    std::unique_ptr<Updater> makeUpdater(UpdaterDelegate& delegate, Scheduler& scheduler,
                                         MainThreadPoster post) override {
        return vantle::makeUpdater(delegate, defaults_, scheduler, std::move(post));
    }
    ProcessRunner& processRunner() override { return processRunner_; }
    // The Dock belongs to macOS.
    bool dockAvailable() const override { return false; }
    std::unique_ptr<StatusIcon> makeStatusIcon(const std::filesystem::path& artwork,
                                               std::function<void()> clicked) override {
        auto icon = std::make_unique<StatusItem>(artwork, std::move(clicked));
        // The icon's window and its request to dock are only queued on the connection; sent now,
        // the tray shows the icon while the rest of the start goes on, rather than at whatever
        // next asks the X server something.
        if (connection_ != nullptr) {
            xcb_flush(connection_);
        }
        return icon;
    }
    // One copy per user and X display.
    std::unique_ptr<SingleInstance> makeSingleInstance() override {
        const char* display = std::getenv("DISPLAY");
        return std::make_unique<SocketSingleInstance>(
            instanceName(::getuid(), display != nullptr ? std::optional<std::string>(display) : std::nullopt));
    }
    ProgramProcesses& processes() override { return processes_; }
    std::unique_ptr<SessionEndWatch> watchSessionEnd(SessionEndHandler& handler) override {
        return std::make_unique<SignalWatch>(handler);
    }
    std::unique_ptr<SessionEndWatch> watchWindowSystemLoss(SessionEndHandler& handler) override {
        return std::make_unique<DisplayLossWatch>(handler);
    }

private:
    UserDefaults& defaults_;
    // The toolkit's application object comes first and goes last: the displays' shades are
    // its windows, and the dimming they hold is put back before it goes.
    std::unique_ptr<QApplication> application_;
    xcb_connection_t* connection_ = nullptr;
    std::unique_ptr<DisplayBackends> displays_;
    X11KeyboardTrust keyboardTrust_;
    QtOsdPanelFactory osdPanels_;
    DesktopWorkspace workspace_;
    AutostartLoginService loginService_;
    PosixProcessRunner processRunner_;
    LinuxProgramProcesses processes_;
};

}  // namespace

std::unique_ptr<Platform> makePlatform(int& argc, char** argv, UserDefaults& defaults) {
    return std::make_unique<LinuxPlatform>(argc, argv, defaults);
}

}  // namespace vantle
