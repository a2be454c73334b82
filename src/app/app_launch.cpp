// The launch sequence: the objects in their order, the interface, the watchdog, the screens.
#include <QApplication>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QTimer>
#include <algorithm>

#include "app/app.h"
#include "app/app_controls.h"
#include "app/relaunch_parent.h"
#include "localization/localization.h"
#include "services/bundle.h"
#include "services/settings_keys.h"
#include "ui/help_window_qt.h"
#include "ui/license_window_qt.h"
#include "ui/popover_qt.h"
#include "ui/settings_window_qt.h"
#include "ui/status_icon.h"

namespace vantle {
namespace {

constexpr int kParentProbes = 100;
constexpr std::chrono::milliseconds kParentProbeInterval{100};
constexpr std::chrono::milliseconds kPermissionCheckDelay{800};
constexpr std::chrono::milliseconds kWatchdogInterval{2000};

std::string buildNumber() {
    return mainBundle().info("CFBundleVersion").value_or("unknown");
}

}  // namespace

App::App(Platform& platform, AudioHal& hal, std::vector<std::string> arguments)
    : arguments_(std::move(arguments)),
      platform_(platform),
      hal_(hal),
      defaults_(platform.defaults()),
      displays_(platform.displays()),
      brightness_(displays_.brightness()),
      volume_(hal, defaults_, *this, [this] { refresh(); }),
      brightnessControl_(brightness_, defaults_, *this, platform.workspace(), [this] { refresh(); }),
      osd_(brightness_.screenSystem(), brightness_, platform.osdPanels(), scheduler_),
      keyHandler_(hal, volume_, brightnessControl_, osd_, [this] { refresh(); }),
      keyTap_(platform.makeKeyTap()),
      keyboard_(*keyTap_, keyHandler_, defaults_, buildNumber(), platform.keyboardTrust(), *this),
      languageRelaunch_(defaults_, keyboard_, *this, platform.processes().currentProcessId(),
                        hasArgument("--preview-localization")),
      login_(platform.loginService(), defaults_, platform.installedForLogin(), [this] { refresh(); }),
      updates_(
          [this](UpdaterDelegate& delegate) {
              return platform_.makeUpdater(delegate, scheduler_, [this](std::function<void()> work) { queue(std::move(work)); });
          },
          [this] { volume_.unmuteIfMuted(); }, *this) {}

App::~App() {
    timer_.stop();
    keyboard_.stopKeys();
}

bool App::hasArgument(const std::string& argument) const {
    return std::find(arguments_.begin(), arguments_.end(), argument) != arguments_.end();
}

void App::applicationDidFinishLaunching() {
    if (const std::optional<int> parent = relaunchParent(arguments_)) {
        finishAfterParentExits(*parent, 0);
        return;
    }
    finishLaunching();
}

void App::finishAfterParentExits(int pid, int retries) {
    // The instance that asked for this one ends first, so that two copies never hold the keys,
    // the tray icon and the timers at the same time.
    if (platform_.processes().running(pid) && retries < kParentProbes) {
        QTimer::singleShot(kParentProbeInterval, this, [this, pid, retries] { finishAfterParentExits(pid, retries + 1); });
        return;
    }
    finishLaunching();
}

void App::finishLaunching() {
    if (launched_) {
        return;
    }
    launched_ = true;
    if (claimInstance_ && !claimInstance_()) {
        // Exit is queued: this may run before the event loop does.
        QTimer::singleShot(0, this, [this] { endEventLoop(); });
        return;
    }
    defaults_.registerDefaults({{std::string(settings::kLinked), true}});
    // A tray utility: closing its last window does not end it.
    QApplication::setQuitOnLastWindowClosed(false);
    statusItem_ = platform_.makeStatusIcon(mainBundle().resourceDirectory() / "tray", [this] { togglePopover(); });
    // Everything from here on comes after the icon's window, and before the event loop lets the
    // tray draw it or open its menu. The settings' controls lay out text, which loads the fonts.
    buildMainMenu();
    statusItem_->finish(mainMenu_.get());
    controls_ = std::make_unique<Controls>();
    wireLongLivedControls();
    popover_ = std::make_unique<Popover>();
    window_ = std::make_unique<SettingsWindow>();
    window_->move(window_->screen()->availableGeometry().center() - window_->rect().center());

    if (hasArgument("--preview-localization")) {
        // A look at the texts of a language: nothing is taken, watched or checked. The desktop's
        // scheme is read once, and nobody listens for its changes.
        appearance_ = platform_.makeAppearance(nullptr);
        followSystemAppearance();
        rebuild();
        bringSettingsForward();
        return;
    }

    appearance_ = platform_.makeAppearance([this] { themeChanged(); });
    keyboard_.registerKeyboardBuild();
    configureInitialLogin();
    if (hasArgument("--suppress-keyboard-invitation")) {
        keyboard_.keyboardFlow.invitationShown = true;
        keyboard_.keyboardFlow.settingsRequested = true;
    }
    followSystemAppearance();
    // The keys are taken before the interface is first built, so that the keyboard status its
    // first refresh stores is already the settled one. Built first, it would store "off" and then
    // "on" again: two durable writes of the settings file at every start, for no change. A build
    // empties the status line, so what taking the keys said there is said again after it.
    keyboard_.startKeys();
    const std::string keysSaid = controls_->message->text().toStdString();
    rebuild();
    if (!keysSaid.empty()) {
        report(keysSaid);
    }

    const std::vector<Output> devices = volume_.devices();
    const bool unusable = devices.empty() || std::any_of(devices.begin(), devices.end(),
                                                         [](const Output& device) { return device.elements.empty(); });
    if (unusable) {
        // The first page's audio line explains what is missing.
        settingsPage_ = 0;
        rebuild();
        bringSettingsForward();
    }

    QTimer::singleShot(kPermissionCheckDelay, this, [this] {
        if (!keyboard_.updateRepairNeeded() && keyboard_.keyboardEnabled()) {
            return;
        }
        keyboard_.requestKeyboardPermission(false);
    });
    themeChanged();
    if (hasArgument("--show-settings")) {
        bringSettingsForward();
    }
    // The watchdog: takes the keys again when they were lost, and keeps the controls current.
    // It alone also puts back software dimming that another program undid (a gamma ramp it
    // reset): that asks the X server once per dimmed display, which the refresh after every key
    // need not pay.
    timer_.setInterval(kWatchdogInterval);
    connect(&timer_, &QTimer::timeout, this, [this] {
        keyboard_.startKeys();
        brightness_.keepDimming();
        refresh();
    });
    timer_.start();
    watchScreens();
    startUpdates();
}

void App::buildMainMenu() {
    // The tray icon's context menu is the program's main menu on this desktop.
    mainMenu_ = std::make_unique<QMenu>();
    const auto item = [this](const char* key, auto action) {
        QAction* added = mainMenu_->addAction(QString::fromStdString(L(key)));
        connect(added, &QAction::triggered, this, action);
        return added;
    };
    item("s019", [this] { showAbout(); });
    mainMenu_->addSeparator();
    item("s020", [this] { togglePopover(); });
    item("s021", [this] { show(); });
    item("s022", [this] { quit(); })->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));
}

void App::watchScreens() {
    const auto changed = [this] {
        displays_.matchNativeControls();
        brightnessControl_.screensChanged();
        // The popover's rows were made for the displays there were when it opened: a shown one is
        // closed, and the interface is made again before it is shown again.
        const bool popoverShown = popover_->isVisible();
        closePopover();
        rebuild();
        if (popoverShown) {
            togglePopover();
        }
    };
    const auto watch = [this, changed](QScreen* screen) {
        connect(screen, &QScreen::geometryChanged, this, changed);
        connect(screen, &QScreen::availableGeometryChanged, this, changed);
    };
    for (QScreen* screen : QGuiApplication::screens()) {
        watch(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [watch, changed](QScreen* screen) {
        watch(screen);
        changed();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, changed);
}

void App::applicationShouldHandleReopen() {
    if (window_) {
        bringSettingsForward();
    }
}

void App::quit() {
    if (applicationShouldTerminate(languageRelaunch_.relaunchingForLanguage, updates_.installingUpdate(), volume_, *this) ==
        QuitAnswer::terminateNow) {
        endEventLoop();
    }
}

void App::endSession() {
    if (!controls_) {
        // The session ended before the interface was made (a copy waiting for the one that
        // started it, or one that handed over): the levels' restore reports to the status line.
        controls_ = std::make_unique<Controls>();
    }
    volume_.unmuteIfMuted();
    endEventLoop();
}

void App::endEventLoop() {
    // Not QCoreApplication::quit(): that first asks every shown window to close, and the settings
    // window only hides, which would cancel the end while it is shown.
    QCoreApplication::exit(0);
}

}  // namespace vantle
