#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/display_backends.h"
#include "app/language_relaunch.h"
#include "app/quit_flow.h"
#include "app/scheduler_qt.h"
#include "audio/audio_hal.h"
#include "audio/volume_control.h"
#include "display/brightness_control.h"
#include "keys/key_tap.h"
#include "keys/keyboard_control.h"
#include "keys/media_keys.h"
#include "keys/osd.h"
#include "keys/osd_panel_qt.h"
#include "services/user_defaults.h"
#include "services/login/autostart_login_service_linux.h"
#include "services/login/login_controller.h"
#include "services/updates/update_controller.h"
#include "services/workspace_linux.h"
#include "ui/message_line.h"
#include "ui/control_refresh.h"
#include "ui/row_renderer_qt.h"
#include "ui/settings_pages.h"

class QAbstractButton;
class QCheckBox;
class QLabel;
class QLineEdit;
class QMenu;
class QSlider;
class QVBoxLayout;
class QWidget;

namespace vantle {

class DesktopAppearance;
class HelpWindow;
class LicenseWindow;
class Popover;
class SettingsWindow;
class StatusItem;

// The application: owns every object of the program for the life of the process, starts them in
// order, carries the user's commands and brings every control into line with the state of the
// hardware. Main thread only.
class App final : public QObject,
                  public KeyboardHost,
                  public MessageLine,
                  private RelaunchHost,
                  private UpdateHost,
                  private QuitAlerts {
public:
    App(AudioHal& hal, UserDefaults& defaults, DisplayBackends& displays, std::vector<std::string> arguments);
    ~App() override;

    // Start-up: waits for a relaunching parent to end, then builds everything.
    void applicationDidFinishLaunching();
    void finishAfterParentExits(int pid, int retries);
    void finishLaunching();
    // Called first by finishLaunching: false when another copy runs in this session and has been
    // asked to show itself, and this one is to end instead.
    void setInstanceClaim(std::function<bool()> claim) { claimInstance_ = std::move(claim); }
    // The program was started again while running: bring the settings forward.
    void applicationShouldHandleReopen();
    // A quit request from the interface: asks, gives muted levels back, then ends the event loop.
    void quit();
    // The session is ending (SIGTERM, SIGINT, SIGHUP): nobody is there to answer a question, so
    // the levels are given back without asking and the program ends.
    void endSession();
    void endEventLoop();
    // The X display went away (see display_loss_linux.h): gives the muted levels back, and the
    // gamma ramps where the X server still answers, without touching any window.
    enum class DisplayLossOutcome { nothingMuted, levelsGivenBack, levelsKept };
    DisplayLossOutcome displayWentAway();

    // The popover and the settings window's pages.
    void togglePopover();
    void show();
    void showGeneral() { showPage(0); }
    void showDock() { showPage(1); }
    void showAbout() { showPage(2); }
    void changeSettingsPage(int page);
    void rebuild() override;
    void fitSettingsWindow();
    void refresh() override;

    // About, licence, help and appearance.
    void openEmail();
    void openWebsite();
    void showLicense();
    void showHelp();
    void followSystemAppearance();
    void themeChanged();

    // The settings window's status line.
    void report(const std::string& text) override;

    // For tests and the check of the running program.
    bool keysTaken() const { return keyboard_.keyboardEnabled(); }
    OSD& osd() { return osd_; }

private:
    // KeyboardHost.
    bool trusted() override { return true; }
    bool permissionFollowsBuild() const override { return false; }
    bool runAlert(const KeyboardAlert& alert) override;
    bool openKeyboardSettings() override;
    bool systemSettingsRunning() override { return false; }
    bool resetKeyboardPermission() override { return false; }
    void relaunch() override;
    void queue(std::function<void()> work) override;

    // RelaunchHost.
    void startInstance(const std::vector<std::string>& arguments,
                       std::function<void(std::optional<std::string> error)> done) override;
    void disableLanguageMenu() override;
    void alert(const std::string& text) override;
    void terminate() override { quit(); }

    // UpdateHost.
    void showUpdateMessage(const std::string& text) override;
    void offerUpdate(const UpdateOffer& offer) override;

    // QuitAlerts.
    bool confirmQuit() override;
    bool stayAfterFailedRestore() override;

    bool hasArgument(const std::string& argument) const;
    // Carries out what the user did to a control of a page or of the popover.
    void perform(const ActionEvent& event);
    void wireLongLivedControls();
    RowRenderer renderer();
    PageInputs pageInputs() const;

    // Launch at login and software updates.
    void configureInitialLogin();
    void changeLogin(bool on);
    void openLoginSettings();
    RefreshFacts::Login loginFacts();
    void startUpdates();
    void checkUpdates();
    void changeAutomaticUpdates(bool on);
    RefreshFacts::Updates updateFacts();

    void showPage(int page);
    // Closes the popover and brings the settings window to the front.
    void bringSettingsForward();
    void closePopover() override;
    void buildMainMenu();
    void watchScreens();
    // A modal question with two buttons; true when the second was chosen.
    bool ask(const std::string& message, const std::string& informative, const std::string& first,
             const std::string& second);

    std::vector<std::string> arguments_;
    AudioHal& hal_;
    UserDefaults& defaults_;
    DisplayBackends& displays_;
    Brightness& brightness_;
    QtScheduler scheduler_;
    DesktopWorkspace workspace_;
    VolumeControl volume_;
    BrightnessControl brightnessControl_;
    QtOsdPanelFactory osdPanels_;
    OSD osd_;
    MediaKeyHandler keyHandler_;
    std::unique_ptr<KeyTap> keyTap_;
    KeyboardControl keyboard_;
    LanguageRelaunch languageRelaunch_;
    AutostartLoginService loginService_;
    LoginController login_;
    UpdateController updates_;

    bool launched_ = false;
    std::function<bool()> claimInstance_;

    // The interface. Windows are created once and only hidden afterwards.
    std::unique_ptr<QMenu> mainMenu_;
    std::unique_ptr<StatusItem> statusItem_;
    std::unique_ptr<Popover> popover_;
    std::unique_ptr<SettingsWindow> window_;
    std::unique_ptr<LicenseWindow> licenseWindow_;
    std::unique_ptr<HelpWindow> helpWindow_;
    std::unique_ptr<DesktopAppearance> appearance_;
    QTimer timer_;
    int settingsPage_ = 0;

    // Controls of the current page and popover, replaced by every build; absent when not built.
    struct Controls;
    std::unique_ptr<Controls> controls_;
};

}  // namespace vantle
