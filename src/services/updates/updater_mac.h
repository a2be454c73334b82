#pragma once

#include <memory>

#include "services/updates/updater.h"

namespace vantle {

// Updates through Sparkle 2, which the application bundle carries: the framework finds,
// downloads, verifies and installs a new version with its own windows; its feed address and
// signing key are keys of the bundle's Info.plist. This class starts it, asks it to check and
// turns what it reports into the delegate's calls. Main thread only.
class SparkleUpdater final : public Updater {
public:
    // The delegate outlives the updater.
    explicit SparkleUpdater(UpdaterDelegate& delegate);
    ~SparkleUpdater() override;
    SparkleUpdater(const SparkleUpdater&) = delete;
    SparkleUpdater& operator=(const SparkleUpdater&) = delete;

    std::optional<UpdateError> startUpdater() override;
    void checkForUpdates() override;
    void checkForUpdatesInBackground() override;
    bool automaticallyChecksForUpdates() const override;
    void setAutomaticallyChecksForUpdates(bool automatically) override;
    bool canCheckForUpdates() const override;

private:
    // The framework's controller and our delegate object, which only Objective-C++ can hold.
    struct Framework;
    std::unique_ptr<Framework> framework_;
};

}  // namespace vantle
