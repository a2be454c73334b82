#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/language_relaunch.h"
#include "app/platform.h"
#include "app/quit_flow.h"
#include "app/scheduler_qt.h"
#include "audio/volume_control.h"
#include "display/brightness_control.h"
#include "keys/keyboard_control.h"
#include "keys/media_keys.h"
#include "keys/osd.h"
#include "services/login/login_controller.h"
#include "services/message_line.h"
#include "services/updates/update_controller.h"
#include "ui/control_refresh.h"
#include "ui/row_renderer_qt.h"
#include "ui/settings_pages.h"

class QMenu;

namespace vantle {

class HelpWindow;
class LicenseWindow;
class Popover;
class SettingsWindow;
class StatusIcon;

// The application: owns every object of the program for the life of the process, starts them in
// order, carries the user's commands and brings every control into line with the state of the
// hardware. Everything it takes from the system comes through the platform. Main thread only.
//
// Its parts live in files of their own: the launch sequence (app_launch.cpp), the modal alerts
// behind the quit and permission flows (app_alerts.cpp), the settings pages and the popover
// (app_interface.cpp), the refresh of their widgets (app_refresh.cpp), what it asks of the
// platform (app_platform.cpp), and launch at login and updates (app_services.cpp).
class App final : public QObject,
                  public KeyboardHost,
                  public MessageLine,
                  public SessionEndHandler,
                  private RelaunchHost,
                  private UpdateHost,
                  private QuitAlerts {
public:
    App(Platform& platform, AudioHal& hal, std::vector<std::string> arguments);
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
    // SessionEndHandler.
    void endSession() override;
    DisplayLossOutcome displayWentAway() override;
    void endEventLoop();

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
    bool runAlert(const KeyboardAlert& alert) override;
    bool openKeyboardSettings() override;
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
    // Makes the current settings page's controls and puts them in the window.
    void buildPage();
    // Closes the popover and brings the settings window to the front.
    void bringSettingsForward();
    void closePopover() override;
    void buildMainMenu();
    void watchScreens();
    // A modal question with two buttons; true when the second was chosen.
    bool ask(const std::string& message, const std::string& informative, const std::string& first,
             const std::string& second);

    std::vector<std::string> arguments_;
    Platform& platform_;
    AudioHal& hal_;
    UserDefaults& defaults_;
    DisplayBackends& displays_;
    Brightness& brightness_;
    QtScheduler scheduler_;
    VolumeControl volume_;
    BrightnessControl brightnessControl_;
    OSD osd_;
    MediaKeyHandler keyHandler_;
    std::unique_ptr<KeyTap> keyTap_;
    KeyboardControl keyboard_;
    LanguageRelaunch languageRelaunch_;
    LoginController login_;
    UpdateController updates_;

    bool launched_ = false;
    std::function<bool()> claimInstance_;

    // The interface. Windows are created once and only hidden afterwards.
    std::unique_ptr<QMenu> mainMenu_;
    std::unique_ptr<StatusIcon> statusItem_;
    std::unique_ptr<Popover> popover_;
    std::unique_ptr<SettingsWindow> window_;
    std::unique_ptr<LicenseWindow> licenseWindow_;
    std::unique_ptr<HelpWindow> helpWindow_;
    std::unique_ptr<AppearanceSource> appearance_;
    QTimer timer_;
    int settingsPage_ = 0;
    // The window's page is made when the window is shown: until then it would only hold the
    // fonts, layouts and images of a page nobody sees, for a program that may run all day
    // without its settings being opened once.
    bool pageWanted_ = false;

    // Controls of the current page and popover, replaced by every build; absent when not built.
    struct Controls;
    std::unique_ptr<Controls> controls_;
};

}  // namespace vantle
