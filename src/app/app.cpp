#include "app/app.h"

#include <signal.h>

#include <QApplication>
#include <QGuiApplication>
#include <QMenu>
#include <QComboBox>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <unistd.h>
#include <QScreen>
#include <QTimer>

#include "app/app_controls.h"
#include "app/relaunch_parent.h"
#include "keys/key_tap_x11.h"
#include "services/updates/updater_linux.h"
#include "localization/localization.h"
#include "services/bundle.h"
#include "services/settings_keys.h"
#include "ui/appearance_linux.h"
#include "ui/help_window_qt.h"
#include "ui/license_window_qt.h"
#include "ui/popover_qt.h"
#include "ui/settings_window_qt.h"
#include "ui/status_item_qt.h"

namespace vantle {
namespace {

constexpr int kParentProbes = 100;
constexpr std::chrono::milliseconds kParentProbeInterval{100};
constexpr std::chrono::milliseconds kPermissionCheckDelay{800};
constexpr std::chrono::milliseconds kWatchdogInterval{2000};

std::string buildNumber() {
    return mainBundle().info("CFBundleVersion").value_or("unknown");
}

xcb_connection_t* xConnection() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

}  // namespace

App::App(AudioHal& hal, UserDefaults& defaults, DisplayBackends& displays, std::vector<std::string> arguments)
    : arguments_(std::move(arguments)),
      hal_(hal),
      defaults_(defaults),
      displays_(displays),
      brightness_(displays.brightness()),
      volume_(hal, defaults, *this, [this] { refresh(); }),
      brightnessControl_(brightness_, defaults, *this, workspace_, [this] { refresh(); }),
      osd_(brightness_.screenSystem(), brightness_, osdPanels_, scheduler_),
      keyHandler_(hal, volume_, brightnessControl_, osd_, [this] { refresh(); }),
      keyTap_(std::make_unique<X11KeyTap>(xConnection())),
      keyboard_(*keyTap_, keyHandler_, defaults, buildNumber(), *this),
      languageRelaunch_(defaults, keyboard_, *this, static_cast<int>(::getpid()), hasArgument("--preview-localization")),
      loginService_(autostartFoldersFromEnvironment(), runningExecutablePath()),
      login_(loginService_, defaults, runningInstalledForLogin(), [this] { refresh(); }),
      updates_([this](UpdaterDelegate& delegate) { return makeUpdater(delegate, defaults_, scheduler_, [this](std::function<void()> work) { queue(std::move(work)); });
               },
               volume_, *this),
      controls_(std::make_unique<Controls>()) {
    wireLongLivedControls();
}

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
    if (::kill(pid, 0) == 0 && retries < kParentProbes) {
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
    buildMainMenu();
    statusItem_ = std::make_unique<StatusItem>(mainBundle().resourceDirectory() / "tray", mainMenu_.get(),
                                               [this] { togglePopover(); });
    popover_ = std::make_unique<Popover>();
    window_ = std::make_unique<SettingsWindow>();
    window_->move(window_->screen()->availableGeometry().center() - window_->rect().center());

    if (hasArgument("--preview-localization")) {
        // A look at the texts of a language: nothing is taken, watched or checked. The desktop's
        // scheme is read once, and nobody listens for its changes.
        appearance_ = std::make_unique<DesktopAppearance>(nullptr);
        followSystemAppearance();
        rebuild();
        bringSettingsForward();
        return;
    }

    appearance_ = std::make_unique<DesktopAppearance>([this] { themeChanged(); });
    keyboard_.registerKeyboardBuild();
    configureInitialLogin();
    if (hasArgument("--suppress-keyboard-invitation")) {
        keyboard_.keyboardFlow.invitationShown = true;
        keyboard_.keyboardFlow.settingsRequested = true;
    }
    followSystemAppearance();
    rebuild();
    keyboard_.startKeys();

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
    timer_.setInterval(kWatchdogInterval);
    connect(&timer_, &QTimer::timeout, this, [this] {
        keyboard_.startKeys();
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

void App::closePopover() {
    if (popover_) {
        popover_->hide();
    }
}

void App::bringSettingsForward() {
    closePopover();
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void App::show() {
    bringSettingsForward();
}

void App::showPage(int page) {
    settingsPage_ = page;
    rebuild();
    bringSettingsForward();
}

void App::changeSettingsPage(int page) {
    settingsPage_ = page;
    rebuild();
}

void App::quit() {
    if (applicationShouldTerminate(languageRelaunch_.relaunchingForLanguage, updates_.installingUpdate(), volume_, *this) ==
        QuitAnswer::terminateNow) {
        endEventLoop();
    }
}

void App::endSession() {
    if (volume_.muted()) {
        volume_.unmute();
    }
    endEventLoop();
}

void App::endEventLoop() {
    // Not QCoreApplication::quit(): that first asks every shown window to close, and the settings
    // window only hides, which would cancel the end while it is shown.
    QCoreApplication::exit(0);
}

bool App::ask(const std::string& message, const std::string& informative, const std::string& first,
              const std::string& second) {
    closePopover();
    QMessageBox box;
    box.setIcon(QMessageBox::Question);
    box.setWindowTitle(QString::fromStdString(L("s025")));
    box.setText(QString::fromStdString(message));
    box.setInformativeText(QString::fromStdString(informative));
    QAbstractButton* firstButton = box.addButton(QString::fromStdString(first), QMessageBox::AcceptRole);
    QAbstractButton* secondButton = box.addButton(QString::fromStdString(second), QMessageBox::RejectRole);
    box.setDefaultButton(qobject_cast<QPushButton*>(firstButton));
    // Escape and the close box choose the first button: the second is the one that acts (quit,
    // quit with the outputs still silent, open the keyboard settings), and it must be chosen.
    box.setEscapeButton(firstButton);
    box.raise();
    box.activateWindow();
    box.exec();
    return box.clickedButton() == secondButton;
}

bool App::confirmQuit() {
    return ask(L("s026"), L("s027"), L("s124"), L("s028"));
}

bool App::stayAfterFailedRestore() {
    // The second button reads the same in every language, on purpose.
    return !ask(L("s029"), L("s030"), L("s031"), "Quitter");
}

bool App::runAlert(const KeyboardAlert& alert) {
    return ask(alert.message, alert.informative, alert.firstButton, alert.secondButton);
}

bool App::openKeyboardSettings() {
    return workspace_.openSettings(SettingsPlace::Keyboard);
}

void App::relaunch() {
    languageRelaunch_.restartForLanguage();
}

void App::startInstance(const std::vector<std::string>& arguments,
                        std::function<void(std::optional<std::string> error)> done) {
    // The new instance is this very program, whichever folder it was started from.
    QProcess process;
    process.setProgram(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath());
    QStringList list;
    for (const std::string& argument : arguments) {
        list << QString::fromStdString(argument);
    }
    process.setArguments(list);
    std::optional<std::string> error;
    if (!process.startDetached()) {
        error = process.errorString().toStdString();
    }
    queue([done = std::move(done), error] { done(error); });
}

void App::disableLanguageMenu() {
    if (controls_->page.languageMenu) {
        controls_->page.languageMenu->setEnabled(false);
    }
}

void App::alert(const std::string& text) {
    closePopover();
    QMessageBox box;
    box.setIcon(QMessageBox::Warning);
    box.setWindowTitle(QString::fromStdString(L("s025")));
    box.setText(QString::fromStdString(text));
    box.exec();
}

void App::queue(std::function<void()> work) {
    // Tied to this object: work queued by an application that is gone never runs.
    QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
}

}  // namespace vantle
