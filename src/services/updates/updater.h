#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantle {

// Errors of the updater itself carry this domain. Within it, kNoUpdateErrorCode ends a cycle
// that found nothing newer; every other code is a real failure.
inline constexpr std::string_view kUpdaterErrorDomain = "VantleControl.Updates";
inline constexpr int kNoUpdateErrorCode = 1001;
inline constexpr int kFeedUnreadableErrorCode = 1000;   // the feed is not a feed we can read
inline constexpr int kFeedUnreachableErrorCode = 2001;  // the feed could not be fetched
inline constexpr int kInvalidFeedAddressErrorCode = 4;  // the build names no usable feed address

// Why a cycle ended without a new version, or why the updater could not start.
struct UpdateError {
    std::string domain;
    int code = 0;
    // Ready for display, in the user's language where the source of the error provides one.
    std::string description;

    bool operator==(const UpdateError&) const = default;
};

// The one error that is no failure: the program is up to date. Only the updater's own domain
// counts, so another source's code 1001 still reads as a failure.
inline bool isNoUpdate(const UpdateError& error) {
    return error.domain == kUpdaterErrorDomain && error.code == kNoUpdateErrorCode;
}

// Who asked for a cycle: the user with the check button, or the automatic schedule.
enum class UpdateCheck { userInitiated, background };

// A newer version than the one running. The program installs nothing by itself on every
// platform where the package manager owns the installation: it offers these links instead.
struct UpdateOffer {
    std::string version;         // the build version
    std::string displayVersion;  // the short version when the feed has one, else the build version
    std::string downloadLink;
    std::optional<std::string> releaseNotesLink;

    bool operator==(const UpdateOffer&) const = default;
};

// What the updater tells the program. Every call comes on the main thread.
class UpdaterDelegate {
public:
    virtual ~UpdaterDelegate() = default;
    // A newer version was found; its cycle ends right after this, without an error.
    virtual void updaterDidFindValidUpdate(const UpdateOffer& offer) = 0;
    // The end of every cycle, found update or not. No error: the cycle ended normally.
    virtual void updaterDidFinishUpdateCycle(UpdateCheck check, const std::optional<UpdateError>& error) = 0;
    // The updater is about to end the program and start the new version in its place. True
    // holds the relaunch back.
    virtual bool updaterShouldPostponeRelaunchForUpdate() = 0;
};

// Finds new versions of the program. Main thread only; nothing here blocks: checks run in the
// background and end in the delegate's callbacks.
class Updater {
public:
    virtual ~Updater() = default;
    // Makes the updater ready for checks. The error when it cannot work at all; checks asked
    // for after a failed start end at once with that error.
    virtual std::optional<UpdateError> startUpdater() = 0;
    // A check the user asked for: runs now, however recently the last one ran.
    virtual void checkForUpdates() = 0;
    // A check of the automatic schedule: skipped when the last check is less than a day old.
    virtual void checkForUpdatesInBackground() = 0;
    // The automatic-check setting, owned and kept by the updater.
    virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool automatically) = 0;
    // False before a successful start and while a check is running.
    virtual bool canCheckForUpdates() const = 0;
};

}  // namespace vantle
