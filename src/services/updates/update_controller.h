#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "services/updates/updater.h"

namespace vantle {

// What the update commands need from the application around them. Main thread only.
class UpdateHost {
public:
    virtual ~UpdateHost() = default;
    // Puts text into the updates page's status line (updateMessage) and refits the settings
    // window to it.
    virtual void showUpdateMessage(const std::string& text) = 0;
    virtual void closePopover() = 0;
    // A newer version exists: offer its download link (and release notes). The program
    // installs nothing by itself.
    virtual void offerUpdate(const UpdateOffer& offer) = 0;
};

// The two update controls as the control refresh shows them.
struct UpdatePresentation {
    bool updateButtonEnabled = false;  // the updater can check now
    bool automaticUpdatesOn = false;   // the updater checks by itself

    bool operator==(const UpdatePresentation&) const = default;
};

// The application's side of software updates: starts the updater at launch, carries the
// check-now and automatic-checks actions, turns the end of each update cycle into one line of
// text, and lets the application prepare before an update replaces the program.
// The application owns it and forwards its App methods of the same names. Main thread only.
class UpdateController final : public UpdaterDelegate {
public:
    // Makes the platform's updater, reporting to the given delegate. Called once, on first use.
    using UpdaterFactory = std::function<std::unique_ptr<Updater>(UpdaterDelegate&)>;

    // prepareForRelaunch runs when an update is about to end the program to put a new version in
    // its place, before the updater goes on; the application gives muted outputs their levels
    // back there, rather than leaving them silent until someone asks the new version to unmute.
    UpdateController(UpdaterFactory makeUpdater, std::function<void()> prepareForRelaunch, UpdateHost& host);
    ~UpdateController() override;
    UpdateController(const UpdateController&) = delete;
    UpdateController& operator=(const UpdateController&) = delete;

    // Once, at the end of launch: starts the updater, shows why when it cannot start, and runs
    // a background check when automatic checks are on.
    void startUpdates();
    // The check button's action (and the menu's): closes the popover and checks now.
    void checkUpdates();
    // The automatic-checks check box's action; on is its new state. Runs no check by itself.
    void changeAutomaticUpdates(bool on);
    UpdatePresentation presentation();

    // The updater is about to end the program to put a new version in its place: the quit
    // request then skips its confirmation.
    bool installingUpdate() const { return installingUpdate_; }

    void updaterDidFindValidUpdate(const UpdateOffer& offer) override;
    void updaterDidFinishUpdateCycle(UpdateCheck check, const std::optional<UpdateError>& error) override;
    bool updaterShouldPostponeRelaunchForUpdate() override;

private:
    Updater& updater();

    UpdaterFactory makeUpdater_;
    std::function<void()> prepareForRelaunch_;
    UpdateHost& host_;
    std::unique_ptr<Updater> updater_;
    bool installingUpdate_ = false;
    // The cycle under way has put an offer on the update line, which its end must leave there.
    bool offerShown_ = false;
};

// The status line after a cycle: "up to date" for the no-update error, the failure with its
// description for any other error, and "finished" without one.
std::string updateCycleMessage(const std::optional<UpdateError>& error);
// The status line when the updater cannot start.
std::string updaterStartMessage(const UpdateError& error);

}  // namespace vantle
