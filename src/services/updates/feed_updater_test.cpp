#include "services/updates/feed_updater.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <system_error>
#include <vector>

#include "services/testing/manual_scheduler.h"
#include "services/testing/memory_defaults_store.h"
#include "services/updates/testing/fake_feed_fetcher.h"
#include "services/updates/update_settings_keys.h"

namespace vantle {
namespace {

using namespace std::chrono_literals;
using testing::FakeFeedFetcher;

constexpr const char* kFeed = "https://vantle.example/appcast.xml";

std::string feedOffering(const std::string& version) {
    return "<rss xmlns:sparkle=\"urn:appcast\"><channel><item><sparkle:version>" + version +
           "</sparkle:version><sparkle:shortVersionString>v" + version +
           "</sparkle:shortVersionString><sparkle:releaseNotesLink>https://vantle.example/notes</"
           "sparkle:releaseNotesLink><enclosure url=\"https://vantle.example/" +
           version + ".tar.gz\"/></item></channel></rss>";
}

class RecordingDelegate final : public UpdaterDelegate {
public:
    struct Cycle {
        UpdateCheck check;
        std::optional<UpdateError> error;
    };
    void updaterDidFindValidUpdate(const UpdateOffer& offer) override { offers.push_back(offer); }
    void updaterDidFinishUpdateCycle(UpdateCheck check, const std::optional<UpdateError>& error) override {
        cycles.push_back({check, error});
    }
    bool updaterShouldPostponeRelaunchForUpdate() override { return false; }

    std::vector<UpdateOffer> offers;
    std::vector<Cycle> cycles;
};

class FeedUpdaterTest : public ::testing::Test {
protected:
    std::unique_ptr<FeedUpdater> makeUpdater(std::string address = kFeed) {
        auto owned = std::make_unique<FakeFeedFetcher>();
        fetcher = owned.get();
        FeedUpdaterSettings settings;
        settings.feedAddress = std::move(address);
        settings.runningVersion = "1.9";
        return std::make_unique<FeedUpdater>(std::move(settings), std::move(owned), delegate, defaults, scheduler,
                                             [this] { return now; });
    }

    std::unique_ptr<FeedUpdater> startedUpdater() {
        auto updater = makeUpdater();
        EXPECT_FALSE(updater->startUpdater());
        return updater;
    }

    void advance(std::chrono::milliseconds by) {
        now += by;
        scheduler.advance(by);
    }

    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    testing::ManualScheduler scheduler;
    RecordingDelegate delegate;
    FakeFeedFetcher* fetcher = nullptr;
    std::chrono::system_clock::time_point now = std::chrono::system_clock::time_point(1'800'000'000s);
};

TEST_F(FeedUpdaterTest, StartFailsWithoutAnAddress) {
    auto updater = makeUpdater("");
    const std::optional<UpdateError> error = updater->startUpdater();
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain, kUpdaterErrorDomain);
    EXPECT_EQ(error->code, kInvalidFeedAddressErrorCode);
    EXPECT_EQ(error->description, std::generic_category().message(EDESTADDRREQ));
    EXPECT_FALSE(updater->canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, StartRefusesAFeedThatIsNotFetchedOverHttps) {
    for (const char* address : {"http://vantle.example/appcast.xml", "file:///tmp/appcast.xml", "https://",
                                "https:///appcast.xml", "vantle.example/appcast.xml"}) {
        auto updater = makeUpdater(address);
        const std::optional<UpdateError> error = updater->startUpdater();
        ASSERT_TRUE(error) << address;
        EXPECT_EQ(error->description, std::generic_category().message(EPROTONOSUPPORT));
    }
    EXPECT_TRUE(isSecureFeedAddress("HTTPS://vantle.example/appcast.xml"));
}

TEST_F(FeedUpdaterTest, ACheckAfterAFailedStartEndsAtOnceWithTheStartError) {
    auto updater = makeUpdater("http://vantle.example/appcast.xml");
    const std::optional<UpdateError> startError = updater->startUpdater();
    updater->checkForUpdates();
    EXPECT_TRUE(fetcher->addresses.empty());
    ASSERT_EQ(delegate.cycles.size(), 1u);
    EXPECT_EQ(delegate.cycles[0].check, UpdateCheck::userInitiated);
    EXPECT_EQ(delegate.cycles[0].error, startError);
}

TEST_F(FeedUpdaterTest, NothingCanBeCheckedBeforeTheStart) {
    auto updater = makeUpdater();
    EXPECT_FALSE(updater->canCheckForUpdates());
    updater->checkForUpdatesInBackground();
    EXPECT_TRUE(fetcher->addresses.empty());
    EXPECT_FALSE(updater->startUpdater());
    EXPECT_TRUE(updater->canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, ANewerVersionIsOfferedAndTheCycleEndsWithoutError) {
    auto updater = startedUpdater();
    updater->checkForUpdates();
    ASSERT_EQ(fetcher->addresses, std::vector<std::string>{kFeed});
    fetcher->serve(feedOffering("1.10"));
    ASSERT_EQ(delegate.offers.size(), 1u);
    EXPECT_EQ(delegate.offers[0], (UpdateOffer{"1.10", "v1.10", "https://vantle.example/1.10.tar.gz",
                                               "https://vantle.example/notes"}));
    ASSERT_EQ(delegate.cycles.size(), 1u);
    EXPECT_EQ(delegate.cycles[0].check, UpdateCheck::userInitiated);
    EXPECT_FALSE(delegate.cycles[0].error);
}

TEST_F(FeedUpdaterTest, TheSameVersionEndsWithTheNoUpdateError) {
    auto updater = startedUpdater();
    updater->checkForUpdates();
    fetcher->serve(feedOffering("1.9"));
    EXPECT_TRUE(delegate.offers.empty());
    ASSERT_EQ(delegate.cycles.size(), 1u);
    ASSERT_TRUE(delegate.cycles[0].error);
    EXPECT_TRUE(isNoUpdate(*delegate.cycles[0].error));
}

TEST_F(FeedUpdaterTest, AnUnreadableFeedIsAFailureWithADescription) {
    auto updater = startedUpdater();
    updater->checkForUpdates();
    fetcher->serve("<rss><channel><item>");
    ASSERT_EQ(delegate.cycles.size(), 1u);
    ASSERT_TRUE(delegate.cycles[0].error);
    EXPECT_FALSE(isNoUpdate(*delegate.cycles[0].error));
    EXPECT_EQ(delegate.cycles[0].error->code, kFeedUnreadableErrorCode);
    EXPECT_EQ(delegate.cycles[0].error->description, std::generic_category().message(EBADMSG));
}

TEST_F(FeedUpdaterTest, AFailedFetchCarriesTheTransferDescription) {
    auto updater = startedUpdater();
    updater->checkForUpdates();
    fetcher->fail("The requested URL returned error: 404");
    ASSERT_EQ(delegate.cycles.size(), 1u);
    ASSERT_TRUE(delegate.cycles[0].error);
    EXPECT_EQ(delegate.cycles[0].error->code, kFeedUnreachableErrorCode);
    EXPECT_EQ(delegate.cycles[0].error->description, "The requested URL returned error: 404");
}

TEST_F(FeedUpdaterTest, NoSecondCheckStartsWhileOneIsRunning) {
    auto updater = startedUpdater();
    updater->checkForUpdates();
    EXPECT_FALSE(updater->canCheckForUpdates());
    updater->checkForUpdates();
    updater->checkForUpdatesInBackground();
    EXPECT_EQ(fetcher->addresses.size(), 1u);
    fetcher->serve(feedOffering("1.9"));
    EXPECT_TRUE(updater->canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, TheEndOfEveryCheckIsRememberedAsADate) {
    auto updater = startedUpdater();
    updater->checkForUpdates();
    advance(3s);
    fetcher->fail("timeout");
    const std::optional<PlistValue> stored = defaults.object(settings::kLastUpdateCheckTime);
    ASSERT_TRUE(stored);
    ASSERT_NE(stored->asDate(), nullptr);
    EXPECT_DOUBLE_EQ(stored->asDate()->secondsSinceReference, 1'800'000'003.0 - 978'307'200.0);
}

TEST_F(FeedUpdaterTest, AutomaticChecksAreOffUntilSwitchedOnAndTheSettingIsKept) {
    auto updater = startedUpdater();
    EXPECT_FALSE(updater->automaticallyChecksForUpdates());
    updater->setAutomaticallyChecksForUpdates(true);
    EXPECT_TRUE(updater->automaticallyChecksForUpdates());
    EXPECT_EQ(store.values.at(std::string(settings::kAutomaticUpdateChecks)), PlistValue(true));
}

TEST_F(FeedUpdaterTest, SwitchingAutomaticChecksOnRunsNoCheckUntilADayHasPassed) {
    auto updater = startedUpdater();
    updater->setAutomaticallyChecksForUpdates(true);
    EXPECT_TRUE(fetcher->addresses.empty());
    advance(23h + 59min);
    EXPECT_TRUE(fetcher->addresses.empty());
    advance(1min);
    EXPECT_EQ(fetcher->addresses.size(), 1u);
}

TEST_F(FeedUpdaterTest, SwitchingAutomaticChecksOffCallsTheScheduledCheckOff) {
    auto updater = startedUpdater();
    updater->setAutomaticallyChecksForUpdates(true);
    updater->setAutomaticallyChecksForUpdates(false);
    advance(48h);
    EXPECT_TRUE(fetcher->addresses.empty());
    EXPECT_EQ(scheduler.waiting(), 0u);
}

TEST_F(FeedUpdaterTest, ABackgroundCheckWithinADayOfTheLastIsPutOffUntilTheDayIsOver) {
    defaults.set(settings::kAutomaticUpdateChecks, true);
    auto updater = startedUpdater();
    updater->checkForUpdates();
    fetcher->serve(feedOffering("1.9"));
    advance(2h);
    updater->checkForUpdatesInBackground();
    EXPECT_EQ(fetcher->addresses.size(), 1u);
    advance(21h);
    EXPECT_EQ(fetcher->addresses.size(), 1u);
    advance(1h);
    EXPECT_EQ(fetcher->addresses.size(), 2u);
    ASSERT_TRUE(fetcher->waiting());
    fetcher->serve(feedOffering("1.9"));
    EXPECT_EQ(delegate.cycles.back().check, UpdateCheck::background);
}

TEST_F(FeedUpdaterTest, ADayOldLastCheckFromAnEarlierRunMakesTheBackgroundCheckRunAtOnce) {
    auto first = startedUpdater();
    first->checkForUpdates();
    fetcher->serve(feedOffering("1.9"));
    first.reset();

    now += 24h;
    auto second = startedUpdater();
    second->checkForUpdatesInBackground();
    EXPECT_TRUE(fetcher->waiting());
}

TEST_F(FeedUpdaterTest, ARecentLastCheckFromAnEarlierRunSkipsTheBackgroundCheck) {
    auto first = startedUpdater();
    first->checkForUpdates();
    fetcher->serve(feedOffering("1.9"));
    first.reset();

    now += 5h;
    auto second = startedUpdater();
    second->checkForUpdatesInBackground();
    EXPECT_FALSE(fetcher->waiting());
    EXPECT_TRUE(delegate.cycles.size() == 1u);
}

TEST_F(FeedUpdaterTest, ALastCheckInTheFutureDoesNotHoldChecksBack) {
    defaults.set(settings::kLastUpdateCheckTime, PlistValue::Date{2'000'000'000.0});
    auto updater = startedUpdater();
    updater->checkForUpdatesInBackground();
    EXPECT_TRUE(fetcher->waiting());
}

TEST_F(FeedUpdaterTest, ALastCheckTimeOfTheWrongTypeReadsAsNoCheck) {
    defaults.set(settings::kLastUpdateCheckTime, "yesterday");
    auto updater = startedUpdater();
    updater->checkForUpdatesInBackground();
    EXPECT_TRUE(fetcher->waiting());
}

TEST_F(FeedUpdaterTest, WithAutomaticChecksOnEachCheckSchedulesTheNextADayLater) {
    defaults.set(settings::kAutomaticUpdateChecks, true);
    auto updater = startedUpdater();
    updater->checkForUpdatesInBackground();
    fetcher->fail("offline");
    advance(24h);
    ASSERT_TRUE(fetcher->waiting());
    fetcher->serve(feedOffering("1.9"));
    advance(24h);
    EXPECT_EQ(fetcher->addresses.size(), 3u);
}

TEST_F(FeedUpdaterTest, WithAutomaticChecksOffNothingIsScheduledAfterACheck) {
    auto updater = startedUpdater();
    updater->checkForUpdates();
    fetcher->serve(feedOffering("1.9"));
    EXPECT_EQ(scheduler.waiting(), 0u);
}

TEST_F(FeedUpdaterTest, DestroyingTheUpdaterCallsItsScheduledCheckOff) {
    auto updater = startedUpdater();
    updater->setAutomaticallyChecksForUpdates(true);
    ASSERT_EQ(scheduler.waiting(), 1u);
    updater.reset();
    EXPECT_EQ(scheduler.waiting(), 0u);
}

}  // namespace
}  // namespace vantle
