#include "services/updates/feed_updater.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <system_error>

#include "services/updates/appcast.h"
#include "services/updates/update_settings_keys.h"

namespace vantle {
namespace {

using SystemTime = std::chrono::system_clock::time_point;

// Property-list dates count seconds from 2001-01-01 00:00:00 UTC.
constexpr std::chrono::seconds kReferenceDate{978'307'200};

PlistValue::Date dateOf(SystemTime time) {
    const std::chrono::duration<double> sinceEpoch = time.time_since_epoch();
    return PlistValue::Date{sinceEpoch.count() - static_cast<double>(kReferenceDate.count())};
}

std::optional<SystemTime> timeOf(const PlistValue::Date& date) {
    const double seconds = date.secondsSinceReference + static_cast<double>(kReferenceDate.count());
    // A hand-edited settings file could hold anything; a time the clock cannot hold (it counts
    // nanoseconds in 64 bits, about 292 years either side of 1970) is no time.
    if (!std::isfinite(seconds) || std::fabs(seconds) > 8e9) {
        return std::nullopt;
    }
    return SystemTime(std::chrono::duration_cast<std::chrono::system_clock::duration>(
        std::chrono::duration<double>(seconds)));
}

// The feed problems have no text of their own; the system's descriptions of the matching error
// numbers say the same and come in the user's language.
UpdateError updaterError(int code, int systemError) {
    return UpdateError{std::string(kUpdaterErrorDomain), code, std::generic_category().message(systemError)};
}

UpdateOffer offerOf(const AppcastItem& item) {
    return UpdateOffer{item.version, item.shortVersion.value_or(item.version), item.downloadLink,
                       item.releaseNotesLink};
}

}  // namespace

bool isSecureFeedAddress(std::string_view address) {
    constexpr std::string_view scheme = "https://";
    if (address.size() <= scheme.size()) {
        return false;
    }
    const bool schemeMatches =
        std::equal(scheme.begin(), scheme.end(), address.begin(), [](char expected, char actual) {
            return expected == std::tolower(static_cast<unsigned char>(actual));
        });
    const char hostStart = address[scheme.size()];
    return schemeMatches && hostStart != '/' && hostStart != '?' && hostStart != '#';
}

FeedUpdater::FeedUpdater(FeedUpdaterSettings settings, std::unique_ptr<FeedFetcher> fetcher,
                         UpdaterDelegate& delegate, UserDefaults& defaults, Scheduler& scheduler, Clock now)
    : settings_(std::move(settings)),
      fetcher_(std::move(fetcher)),
      delegate_(delegate),
      defaults_(defaults),
      scheduler_(scheduler),
      now_(std::move(now)) {}

FeedUpdater::~FeedUpdater() {
    cancelScheduledCheck();
}

std::optional<UpdateError> FeedUpdater::startUpdater() {
    if (started_) {
        return std::nullopt;
    }
    if (settings_.feedAddress.empty()) {
        startError_ = updaterError(kInvalidFeedAddressErrorCode, EDESTADDRREQ);
    } else if (!isSecureFeedAddress(settings_.feedAddress)) {
        startError_ = updaterError(kInvalidFeedAddressErrorCode, EPROTONOSUPPORT);
    } else {
        startError_.reset();
        started_ = true;
    }
    return startError_;
}

void FeedUpdater::checkForUpdates() {
    if (!started_) {
        // The check button is disabled until a start succeeds, but the menu's check item is
        // not: the user learns there why nothing can be checked.
        if (std::optional<UpdateError> error = startUpdater()) {
            delegate_.updaterDidFinishUpdateCycle(UpdateCheck::userInitiated, error);
            return;
        }
    }
    if (!checking_) {
        beginCycle(UpdateCheck::userInitiated);
    }
}

void FeedUpdater::checkForUpdatesInBackground() {
    if (!started_ || checking_) {
        return;
    }
    const SystemTime now = now_();
    if (const std::optional<SystemTime> last = lastCheck(); last && *last <= now) {
        const auto since = now - *last;
        if (since < settings_.checkInterval) {
            if (automaticallyChecksForUpdates()) {
                scheduleBackgroundCheck(settings_.checkInterval - since);
            }
            return;
        }
    }
    // No check yet, a day or more ago, or a last check in the future because the clock was
    // set back: in each case the schedule is due.
    beginCycle(UpdateCheck::background);
}

bool FeedUpdater::automaticallyChecksForUpdates() const {
    return defaults_.boolean(settings::kAutomaticUpdateChecks);
}

void FeedUpdater::setAutomaticallyChecksForUpdates(bool automatically) {
    defaults_.set(settings::kAutomaticUpdateChecks, automatically);
    if (!automatically) {
        cancelScheduledCheck();
    } else if (started_ && !checking_ && !scheduled_) {
        // Switching the setting on is no request to check: the first automatic check comes a
        // full interval later.
        scheduleBackgroundCheck(settings_.checkInterval);
    }
}

bool FeedUpdater::canCheckForUpdates() const {
    return started_ && !checking_;
}

void FeedUpdater::beginCycle(UpdateCheck check) {
    checking_ = true;
    cancelScheduledCheck();
    fetcher_->fetch(settings_.feedAddress,
                    [this, check](FetchResult result) { finishCycle(check, std::move(result)); });
}

void FeedUpdater::finishCycle(UpdateCheck check, FetchResult result) {
    checking_ = false;
    defaults_.set(settings::kLastUpdateCheckTime, dateOf(now_()));

    std::optional<UpdateError> error;
    std::optional<UpdateOffer> offer;
    if (!result.body) {
        error = UpdateError{std::string(kUpdaterErrorDomain), kFeedUnreachableErrorCode, std::move(result.error)};
    } else if (const std::optional<std::vector<AppcastItem>> items = parseAppcast(*result.body); !items) {
        error = updaterError(kFeedUnreadableErrorCode, EBADMSG);
    } else if (const std::optional<AppcastItem> newer = newestUpdate(*items, settings_.runningVersion)) {
        offer = offerOf(*newer);
    } else {
        // Never shown: the no-update outcome has a text of its own.
        error = UpdateError{std::string(kUpdaterErrorDomain), kNoUpdateErrorCode, {}};
    }

    if (automaticallyChecksForUpdates()) {
        scheduleBackgroundCheck(settings_.checkInterval);
    }
    if (offer) {
        delegate_.updaterDidFindValidUpdate(*offer);
    }
    delegate_.updaterDidFinishUpdateCycle(check, error);
}

std::optional<std::chrono::system_clock::time_point> FeedUpdater::lastCheck() const {
    const std::optional<PlistValue> stored = defaults_.object(settings::kLastUpdateCheckTime);
    if (!stored || stored->asDate() == nullptr) {
        return std::nullopt;
    }
    return timeOf(*stored->asDate());
}

void FeedUpdater::scheduleBackgroundCheck(std::chrono::system_clock::duration delay) {
    cancelScheduledCheck();
    // Rounded up, so that the check never comes a moment before the interval has passed.
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(delay);
    scheduled_ = scheduler_.after(std::max(milliseconds, std::chrono::milliseconds(0)), [this] {
        scheduled_.reset();
        if (automaticallyChecksForUpdates()) {
            checkForUpdatesInBackground();
        }
    });
}

void FeedUpdater::cancelScheduledCheck() {
    if (scheduled_) {
        scheduled_->cancel();
        scheduled_.reset();
    }
}

}  // namespace vantle
