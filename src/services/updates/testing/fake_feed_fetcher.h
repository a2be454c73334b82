#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "services/updates/feed_fetcher.h"

namespace vantle::testing {

// Keeps every fetch pending until the test answers it.
class FakeFeedFetcher final : public FeedFetcher {
public:
    void fetch(const std::string& address, std::function<void(FetchResult)> done) override {
        addresses.push_back(address);
        pending = std::move(done);
    }

    bool waiting() const { return static_cast<bool>(pending); }

    void answer(FetchResult result) {
        auto done = std::move(pending);
        pending = nullptr;
        done(std::move(result));
    }
    void serve(std::string body) { answer(FetchResult{std::move(body), {}}); }
    void fail(std::string error) { answer(FetchResult{std::nullopt, std::move(error)}); }

    std::vector<std::string> addresses;
    std::function<void(FetchResult)> pending;
};

}  // namespace vantle::testing
