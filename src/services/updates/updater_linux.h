#pragma once

#include <memory>
#include <string>

#include "services/scheduler.h"
#include "services/updates/feed_fetcher.h"
#include "services/updates/updater.h"
#include "services/user_defaults.h"

namespace vantle {

// The update feed's address: the environment's VANTLE_UPDATE_FEED when set and not empty, else
// the one the program was built with.
std::string updateFeedAddress();

// The updater of this platform: the feed read over HTTPS, compared with the running build.
// post hands the outcome of each fetch to the main thread.
std::unique_ptr<Updater> makeUpdater(UpdaterDelegate& delegate, UserDefaults& defaults, Scheduler& scheduler,
                                     MainThreadPoster post);

}  // namespace vantle
