#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

#include "services/updates/feed_fetcher.h"

namespace vantle {

struct FetchSettings {
    // Time allowed to reach the server, and for the whole transfer from the start.
    std::chrono::milliseconds connectTimeout{10'000};
    std::chrono::milliseconds totalTimeout{30'000};
    // A feed is a few kilobytes; anything far larger is not one, and is not kept in memory.
    std::size_t maximumSize = 1024 * 1024;
    // A file of certificate authorities to trust instead of the system's; empty for the
    // system's own.
    std::filesystem::path certificateAuthorities;
    std::string userAgent = "VantleControl";
};

// Fetches over HTTPS with libcurl, on a worker thread of its own, so that a slow or silent
// server never holds up the main thread. Only https is spoken, redirects included, and the
// server's certificate is always verified. libcurl is loaded by the first fetch, on its thread;
// where it is missing, every fetch fails with the reason.
class CurlFeedFetcher final : public FeedFetcher {
public:
    // post hands results to the main thread.
    CurlFeedFetcher(FetchSettings settings, MainThreadPoster post);
    // Calls off a transfer in progress at once and waits for its thread, which takes
    // milliseconds: the transfer loop wakes as soon as it is told to stop.
    ~CurlFeedFetcher() override;
    CurlFeedFetcher(const CurlFeedFetcher&) = delete;
    CurlFeedFetcher& operator=(const CurlFeedFetcher&) = delete;

    void fetch(const std::string& address, std::function<void(FetchResult)> done) override;

private:
    FetchSettings settings_;
    MainThreadPoster post_;
    // One token per fetch: a result that reaches the main thread after its fetch was called off
    // or replaced finds its token gone and is dropped.
    std::shared_ptr<char> current_;
    std::jthread worker_;
};

}  // namespace vantle
