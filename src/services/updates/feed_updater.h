#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "services/scheduler.h"
#include "services/updates/feed_fetcher.h"
#include "services/updates/updater.h"
#include "services/user_defaults.h"

namespace vantle {

struct FeedUpdaterSettings {
    // The update feed's address; only https addresses are accepted.
    std::string feedAddress;
    // The running program's build version ("CFBundleVersion"), compared with the feed's.
    std::string runningVersion;
    // The shortest time between two automatic checks.
    std::chrono::seconds checkInterval = std::chrono::hours(24);
};

// An updater that reads an update feed and offers what it finds; installing is left to the
// package manager. Main thread only: the fetcher does the waiting on a thread of its own and
// hands the feed back on the main thread.
//
// Automatic checks run at most once per checkInterval, counted from the end of the last check
// of any kind, across runs of the program; while the program runs with automatic checks on,
// the next one is kept scheduled.
class FeedUpdater final : public Updater {
public:
    using Clock = std::function<std::chrono::system_clock::time_point()>;

    FeedUpdater(FeedUpdaterSettings settings, std::unique_ptr<FeedFetcher> fetcher, UpdaterDelegate& delegate,
                UserDefaults& defaults, Scheduler& scheduler, Clock now = std::chrono::system_clock::now);
    ~FeedUpdater() override;
    FeedUpdater(const FeedUpdater&) = delete;
    FeedUpdater& operator=(const FeedUpdater&) = delete;

    std::optional<UpdateError> startUpdater() override;
    void checkForUpdates() override;
    void checkForUpdatesInBackground() override;
    bool automaticallyChecksForUpdates() const override;
    void setAutomaticallyChecksForUpdates(bool automatically) override;
    bool canCheckForUpdates() const override;

private:
    void beginCycle(UpdateCheck check);
    void finishCycle(UpdateCheck check, FetchResult result);
    std::optional<std::chrono::system_clock::time_point> lastCheck() const;
    void scheduleBackgroundCheck(std::chrono::system_clock::duration delay);
    void cancelScheduledCheck();

    FeedUpdaterSettings settings_;
    std::unique_ptr<FeedFetcher> fetcher_;
    UpdaterDelegate& delegate_;
    UserDefaults& defaults_;
    Scheduler& scheduler_;
    Clock now_;
    bool started_ = false;
    bool checking_ = false;
    std::optional<UpdateError> startError_;
    std::shared_ptr<ScheduledCall> scheduled_;
};

// Whether address is an https address with a host. Feeds come over an encrypted and
// authenticated connection only: the feed decides which download the user is sent to.
bool isSecureFeedAddress(std::string_view address);

}  // namespace vantle
