#include "services/updates/updater_linux.h"

#include <cstdlib>

#include "services/bundle.h"
#include "services/updates/curl_feed_fetcher_linux.h"
#include "services/updates/feed_updater.h"

namespace vantle {

std::string updateFeedAddress() {
    if (const char* address = std::getenv("VANTLE_UPDATE_FEED"); address != nullptr && address[0] != '\0') {
        return address;
    }
    return VANTLE_UPDATE_FEED_ADDRESS;
}

std::unique_ptr<Updater> makeUpdater(UpdaterDelegate& delegate, UserDefaults& defaults, Scheduler& scheduler,
                                     MainThreadPoster post) {
    const std::string build = mainBundle().info("CFBundleVersion").value_or("unknown");
    const std::string release = mainBundle().info("VantleReleaseVersion").value_or("1.0");
    FetchSettings fetching;
    fetching.userAgent = "VantleControl/" + release + " (" + build + ")";
    FeedUpdaterSettings settings;
    settings.feedAddress = updateFeedAddress();
    settings.runningVersion = build;
    return std::make_unique<FeedUpdater>(std::move(settings),
                                         std::make_unique<CurlFeedFetcher>(std::move(fetching), std::move(post)),
                                         delegate, defaults, scheduler);
}

}  // namespace vantle
