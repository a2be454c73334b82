#pragma once

#include <optional>

#include "services/updates/updater.h"

namespace vantle::testing {

// An updater that only records what it was asked; the test plays its callbacks through the
// delegate it was made for.
class FakeUpdater final : public Updater {
public:
    explicit FakeUpdater(UpdaterDelegate& owner) : delegate(owner) {}

    std::optional<UpdateError> startUpdater() override {
        ++starts;
        return startError;
    }
    void checkForUpdates() override { ++checks; }
    void checkForUpdatesInBackground() override { ++backgroundChecks; }
    bool automaticallyChecksForUpdates() const override { return automatic; }
    void setAutomaticallyChecksForUpdates(bool automatically) override {
        automatic = automatically;
        ++settingChanges;
    }
    bool canCheckForUpdates() const override { return canCheck; }

    UpdaterDelegate& delegate;
    std::optional<UpdateError> startError;
    bool automatic = false;
    bool canCheck = true;
    int starts = 0;
    int checks = 0;
    int backgroundChecks = 0;
    int settingChanges = 0;
};

}  // namespace vantle::testing
