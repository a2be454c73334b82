#pragma once

#include <optional>
#include <string>

namespace vantle {

// When to invite the user to let the program have the keyboard, and when to send them straight
// to the settings instead. Lives in memory only: every run starts with nothing shown.
struct KeyboardPermissionFlow {
    enum class Action { none, invite, openSettings };

    bool invitationShown = false;    // the invitation or a repair dialog was shown in this run
    bool dialogVisible = false;      // one of those alerts is on screen now
    bool settingsRequested = false;  // the last attempt to open the settings succeeded

    // explicitly: the user asked (a button); false for the automatic request at launch.
    // The launch request invites at most once a run; an explicit one invites again unless the
    // settings are open or already requested, in which case it only brings them forward.
    Action request(bool explicitly, bool settingsRunning);
    // The alert is gone.
    void finishInvitation() { dialogVisible = false; }
    // May a repair dialog be shown now? Never on top of another alert.
    bool beginRepair();

    bool operator==(const KeyboardPermissionFlow&) const = default;
};

// Which build last ran, and whether the keyboard permission still has to be renewed for the
// build that runs now. Kept in the settings across runs.
struct KeyboardUpdateState {
    std::optional<std::string> seenBuild;
    std::optional<std::string> pendingBuild;  // present: keys stay off until the repair is done

    // A fresh installation needs no repair; a new build, or the first run of this logic on an
    // installation that had the keys set up before (legacyInstall), makes one due.
    void registerLaunch(const std::string& build, bool legacyInstall);
    void repairSucceeded() { pendingBuild.reset(); }

    bool operator==(const KeyboardUpdateState&) const = default;
};

}  // namespace vantle
