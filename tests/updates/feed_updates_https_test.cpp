// Update checks against a real HTTPS server on the loopback interface, through the real libcurl
// fetch on its worker thread, with a test event loop standing in for the application's.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <optional>
#include <thread>

#include "https_feed_server.h"
#include "localization/localization.h"
#include "services/testing/manual_scheduler.h"
#include "services/testing/memory_defaults_store.h"
#include "services/updates/curl_feed_fetcher_linux.h"
#include "services/updates/feed_updater.h"
#include "services/updates/testing/recording_update_host.h"
#include "services/updates/update_settings_keys.h"
#include "services/updates/updater_linux.h"
#include "test_main_loop.h"

namespace vantle {
namespace {

using namespace std::chrono_literals;
using testing::HttpsFeedServer;
using Reply = HttpsFeedServer::Reply;

constexpr auto kConnectTimeout = 1000ms;
constexpr auto kTotalTimeout = 1500ms;

std::string feedOffering(const std::string& version) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<rss version=\"2.0\" xmlns:sparkle=\"http://vantle.example/xml-namespaces/appcast\">\n"
           "<channel><title>Vantle Control</title>\n"
           "<item><title>Version " +
           version +
           "</title>\n"
           "<sparkle:version>" +
           version +
           "</sparkle:version>\n"
           "<sparkle:shortVersionString>" +
           version +
           "</sparkle:shortVersionString>\n"
           "<sparkle:releaseNotesLink>https://vantle.example/notes/" +
           version +
           ".html</sparkle:releaseNotesLink>\n"
           "<enclosure url=\"https://vantle.example/download/vantle-control-" +
           version + ".tar.gz\" length=\"100\" type=\"application/gzip\"/>\n</item>\n</channel></rss>\n";
}

std::string lowercase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// Posts a beat to the loop every 10 ms and measures the longest time between two beats that
// the loop ran: a loop blocked by the fetch would show a gap as long as the fetch.
class Heartbeat {
public:
    explicit Heartbeat(testing::TestMainLoop& loop)
        : thread_([state = state_, &loop](std::stop_token stop) {
              while (!stop.stop_requested()) {
                  loop.post([state] { state->beat(); });
                  std::this_thread::sleep_for(10ms);
              }
          }) {}

    int beats() const { return state_->beats; }
    std::chrono::steady_clock::duration longestGap() const { return state_->longestGap; }

private:
    // Shared with the beats still waiting in the loop, which may run after this object is gone.
    struct State {
        void beat() {
            const auto now = std::chrono::steady_clock::now();
            if (beats > 0) {
                longestGap = std::max(longestGap, now - last);
            }
            last = now;
            ++beats;
        }
        int beats = 0;
        std::chrono::steady_clock::time_point last;
        std::chrono::steady_clock::duration longestGap{};
    };

    std::shared_ptr<State> state_ = std::make_shared<State>();
    std::jthread thread_;
};

class FeedUpdatesHttpsTest : public ::testing::Test {
protected:
    // The program's own update stack, with the fetch pointed at the test server and shorter
    // timeouts, so that a silent server costs the test a second and a half, not half a minute.
    void makeController() { makeController(trustingSettings()); }
    void makeController(FetchSettings fetching) {
        controller.emplace(
            [this, fetching](UpdaterDelegate& delegate) {
                FeedUpdaterSettings settings;
                settings.feedAddress = server.address();
                settings.runningVersion = "1.9";
                return std::make_unique<FeedUpdater>(std::move(settings),
                                                     std::make_unique<CurlFeedFetcher>(fetching, loop.poster()),
                                                     delegate, defaults, scheduler);
            },
            [] {}, host);
    }

    FetchSettings trustingSettings() const {
        FetchSettings settings;
        settings.connectTimeout = kConnectTimeout;
        settings.totalTimeout = kTotalTimeout;
        settings.certificateAuthorities = server.certificateFile();
        return settings;
    }

    // The fetch waits on its own thread: the check returns at once, the loop keeps running every
    // beat while the server stays silent, and the timeout ends the cycle with a failure.
    void expectTimeoutWithoutBlocking(std::chrono::milliseconds timeout) {
        controller->startUpdates();
        Heartbeat heartbeat(loop);
        const auto start = std::chrono::steady_clock::now();
        controller->checkUpdates();
        EXPECT_LT(std::chrono::steady_clock::now() - start, 100ms);
        EXPECT_FALSE(controller->presentation().updateButtonEnabled);

        ASSERT_TRUE(loop.runUntil([&] { return !host.messages.empty(); }, 10s));
        const auto cycleTook = std::chrono::steady_clock::now() - start;
        EXPECT_GE(cycleTook, timeout - 100ms);
        EXPECT_LT(cycleTook, timeout + 2s);
        EXPECT_GT(heartbeat.beats(), 50);
        EXPECT_LT(heartbeat.longestGap(), 250ms);

        const std::string& shown = host.messages.back();
        EXPECT_TRUE(startsAsAFailure(shown)) << shown;
        EXPECT_NE(lowercase(shown).find("time"), std::string::npos) << shown;
        EXPECT_TRUE(host.offers.empty());
        EXPECT_TRUE(controller->presentation().updateButtonEnabled);
    }

    // Whether text is the failure line, whatever the description in it.
    static bool startsAsAFailure(const std::string& text) {
        const std::string marked = L("s005", "\x1f");
        return text.rfind(marked.substr(0, marked.find('\x1f')), 0) == 0;
    }

    // Checks now and runs the loop until the cycle has shown its outcome: an offer or a message.
    void checkAndWait(std::chrono::milliseconds limit = 5s) {
        const std::size_t before = host.events.size();
        controller->checkUpdates();
        // A check closes the popover at once; the cycle ends with what it shows, a message or an
        // offer, which a slower build may take much longer to reach.
        const auto shown = [&] {
            return std::any_of(host.events.begin() + static_cast<std::ptrdiff_t>(before), host.events.end(),
                               [](const std::string& event) { return event != "closePopover"; });
        };
        ASSERT_TRUE(loop.runUntil(shown, limit)) << "the update cycle did not end";
        // Whatever the cycle shows arrives within one turn of the loop.
        loop.runUntil([] { return false; }, 50ms);
    }

    HttpsFeedServer server;
    testing::TestMainLoop loop;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    testing::ManualScheduler scheduler;
    testing::RecordingUpdateHost host;
    std::optional<UpdateController> controller;
};

TEST_F(FeedUpdatesHttpsTest, ANewerVersionIsOfferedWithItsDownloadLink) {
    server.setReply(Reply::feed, feedOffering("1.10"));
    makeController();
    controller->startUpdates();
    checkAndWait();
    ASSERT_EQ(host.offers.size(), 1u);
    EXPECT_EQ(host.offers[0].version, "1.10");
    EXPECT_EQ(host.offers[0].downloadLink, "https://vantle.example/download/vantle-control-1.10.tar.gz");
    EXPECT_EQ(host.offers[0].releaseNotesLink, "https://vantle.example/notes/1.10.html");
    // The offer and the messages share the settings window's update line: the offer is the last
    // thing put there, so the version and its link stay shown.
    EXPECT_EQ(host.events.back(), "offer");
    EXPECT_TRUE(host.messages.empty());
    EXPECT_EQ(server.requests(), 1);
}

TEST_F(FeedUpdatesHttpsTest, TheSameVersionShowsUpToDate) {
    server.setReply(Reply::feed, feedOffering("1.9"));
    makeController();
    controller->startUpdates();
    checkAndWait();
    EXPECT_TRUE(host.offers.empty());
    EXPECT_EQ(host.messages.back(), L("s004"));
}

TEST_F(FeedUpdatesHttpsTest, AMalformedFeedShowsTheFailure) {
    server.setReply(Reply::feed, "<rss><channel><item><title>broken</channel>");
    makeController();
    controller->startUpdates();
    checkAndWait();
    EXPECT_TRUE(host.offers.empty());
    EXPECT_EQ(host.messages.back(), L("s005", std::generic_category().message(EBADMSG)));
}

TEST_F(FeedUpdatesHttpsTest, NotFoundShowsTheFailureWithTheStatus) {
    server.setReply(Reply::notFound);
    makeController();
    controller->startUpdates();
    checkAndWait();
    EXPECT_TRUE(host.offers.empty());
    const std::string& shown = host.messages.back();
    EXPECT_TRUE(startsAsAFailure(shown)) << shown;
    EXPECT_NE(shown.find("404"), std::string::npos) << shown;
}

TEST_F(FeedUpdatesHttpsTest, AServerThatNeverAnswersTimesOutWithoutFreezingTheLoop) {
    server.setReply(Reply::silentAfterRequest);
    makeController();
    expectTimeoutWithoutBlocking(kTotalTimeout);
    EXPECT_EQ(server.requests(), 1);
}

TEST_F(FeedUpdatesHttpsTest, AServerThatNeverCompletesTheHandshakeTimesOutWithoutFreezingTheLoop) {
    server.setReply(Reply::silentBeforeHandshake);
    makeController();
    // The handshake belongs to connecting, so the shorter connect timeout ends this one.
    expectTimeoutWithoutBlocking(kConnectTimeout);
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(FeedUpdatesHttpsTest, AnUntrustedCertificateIsRefused) {
    server.setReply(Reply::feed, feedOffering("9.0"));
    FetchSettings systemTrust = trustingSettings();
    systemTrust.certificateAuthorities.clear();
    makeController(systemTrust);
    controller->startUpdates();
    checkAndWait();
    EXPECT_TRUE(host.offers.empty());
    EXPECT_EQ(server.requests(), 0);
    EXPECT_TRUE(startsAsAFailure(host.messages.back())) << host.messages.back();
}

TEST_F(FeedUpdatesHttpsTest, AFeedFarLargerThanAnyFeedIsRefused) {
    server.setReply(Reply::feed, feedOffering("2.0") + std::string(5000, ' '));
    FetchSettings small = trustingSettings();
    small.maximumSize = 1000;
    makeController(small);
    controller->startUpdates();
    checkAndWait();
    EXPECT_TRUE(host.offers.empty());
    EXPECT_TRUE(startsAsAFailure(host.messages.back())) << host.messages.back();
    EXPECT_NE(lowercase(host.messages.back()).find("size"), std::string::npos) << host.messages.back();
}

TEST_F(FeedUpdatesHttpsTest, CallingAPendingCheckOffReturnsAtOnceAndNothingArrivesLater) {
    server.setReply(Reply::silentAfterRequest);
    makeController();
    controller->startUpdates();
    controller->checkUpdates();
    loop.runUntil([&] { return server.requests() == 1; }, 3s);
    const auto start = std::chrono::steady_clock::now();
    controller.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 300ms);
    loop.runFor(kTotalTimeout + 500ms);
    EXPECT_TRUE(host.messages.empty());
}

TEST_F(FeedUpdatesHttpsTest, AutomaticChecksReachTheServerAtMostOnceADay) {
    defaults.set(settings::kAutomaticUpdateChecks, true);
    server.setReply(Reply::feed, feedOffering("1.9"));
    makeController();
    controller->startUpdates();
    ASSERT_TRUE(loop.runUntil([&] { return !host.messages.empty(); }, 5s));
    EXPECT_EQ(host.messages.back(), L("s004"));
    EXPECT_EQ(server.requests(), 1);

    // The next start of the program, the same day.
    controller.reset();
    makeController();
    controller->startUpdates();
    loop.runFor(500ms);
    EXPECT_EQ(server.requests(), 1);
    EXPECT_EQ(host.messages.size(), 1u);
}

TEST_F(FeedUpdatesHttpsTest, AStartWithAutomaticChecksOffReachesNoServer) {
    server.setReply(Reply::feed, feedOffering("2.0"));
    makeController();
    controller->startUpdates();
    loop.runFor(500ms);
    EXPECT_EQ(server.connections(), 0);
    EXPECT_TRUE(host.messages.empty());
}

TEST_F(FeedUpdatesHttpsTest, TheProgramsUpdaterReadsTheFeedNamedByTheEnvironmentAndVerifiesIt) {
    server.setReply(Reply::feed, feedOffering("9.0"));
    ::setenv("VANTLE_UPDATE_FEED", server.address().c_str(), 1);
    EXPECT_EQ(updateFeedAddress(), server.address());
    controller.emplace(
        [this](UpdaterDelegate& delegate) { return makeUpdater(delegate, defaults, scheduler, loop.poster()); },
        [] {}, host);
    controller->startUpdates();
    checkAndWait(40s);
    ::unsetenv("VANTLE_UPDATE_FEED");
    // The system does not trust the test's own certificate, so the connection ends there.
    EXPECT_EQ(server.connections(), 1);
    EXPECT_EQ(server.requests(), 0);
    EXPECT_TRUE(host.offers.empty());
    EXPECT_TRUE(isSecureFeedAddress(updateFeedAddress()));
}

TEST_F(FeedUpdatesHttpsTest, AFeedAddressThatIsNotHttpsStopsTheStart) {
    ::setenv("VANTLE_UPDATE_FEED", "http://127.0.0.1:9/appcast.xml", 1);
    controller.emplace(
        [this](UpdaterDelegate& delegate) { return makeUpdater(delegate, defaults, scheduler, loop.poster()); },
        [] {}, host);
    controller->startUpdates();
    ::unsetenv("VANTLE_UPDATE_FEED");
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0], L("s003", std::generic_category().message(EPROTONOSUPPORT)));
    EXPECT_FALSE(controller->presentation().updateButtonEnabled);
}

}  // namespace
}  // namespace vantle
