#include "services/updates/update_controller.h"

#include <utility>

#include "localization/localization.h"

namespace vantle {

std::string updateCycleMessage(const std::optional<UpdateError>& error) {
    if (!error) {
        return L("s006");
    }
    if (isNoUpdate(*error)) {
        return L("s004");
    }
    return L("s005", error->description);
}

std::string updaterStartMessage(const UpdateError& error) {
    return L("s003", error.description);
}

UpdateController::UpdateController(UpdaterFactory makeUpdater, std::function<void()> prepareForRelaunch,
                                   UpdateHost& host)
    : makeUpdater_(std::move(makeUpdater)), prepareForRelaunch_(std::move(prepareForRelaunch)), host_(host) {}

// The updater goes first: it may still hold a check in flight that would report to us.
UpdateController::~UpdateController() {
    updater_.reset();
}

Updater& UpdateController::updater() {
    if (!updater_) {
        updater_ = makeUpdater_(*this);
    }
    return *updater_;
}

void UpdateController::startUpdates() {
    Updater& running = updater();
    if (const std::optional<UpdateError> error = running.startUpdater()) {
        host_.showUpdateMessage(updaterStartMessage(*error));
        return;
    }
    if (running.automaticallyChecksForUpdates()) {
        running.checkForUpdatesInBackground();
    }
}

void UpdateController::checkUpdates() {
    host_.closePopover();
    updater().checkForUpdates();
}

void UpdateController::changeAutomaticUpdates(bool on) {
    updater().setAutomaticallyChecksForUpdates(on);
}

UpdatePresentation UpdateController::presentation() {
    Updater& running = updater();
    return UpdatePresentation{running.canCheckForUpdates(), running.automaticallyChecksForUpdates()};
}

void UpdateController::updaterDidFindValidUpdate(const UpdateOffer& offer) {
    host_.offerUpdate(offer);
    offerShown_ = true;
}

// The offer and the cycle's outcome share one line. A cycle that offered a version ends without
// an error, and its plain "finished" would replace the version and its link, which must stay
// until the next check.
void UpdateController::updaterDidFinishUpdateCycle(UpdateCheck, const std::optional<UpdateError>& error) {
    installingUpdate_ = false;
    const bool offerShown = std::exchange(offerShown_, false);
    if (offerShown && !error) {
        return;
    }
    host_.showUpdateMessage(updateCycleMessage(error));
}

// The program goes away in a moment: whatever it holds for the user must be handed back now.
bool UpdateController::updaterShouldPostponeRelaunchForUpdate() {
    prepareForRelaunch_();
    installingUpdate_ = true;
    return false;
}

}  // namespace vantle
