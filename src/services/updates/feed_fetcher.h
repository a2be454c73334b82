#pragma once

#include <functional>
#include <optional>
#include <string>

namespace vantle {

// Hands work to the main thread: safe to call from any thread; the work runs later, on the main
// thread, in the order posted. The Qt application implements it with a queued call.
using MainThreadPoster = std::function<void(std::function<void()>)>;

// The body of a fetched document, or why there is none.
struct FetchResult {
    std::optional<std::string> body;
    // When body is empty: the transfer library's description of the failure (an HTTP status
    // of 400 or more counts as a failure).
    std::string error;
};

// Fetches one document at a time without blocking its caller.
class FeedFetcher {
public:
    // Destroying the fetcher calls off a fetch in progress; its done is then never called.
    virtual ~FeedFetcher() = default;
    // Starts fetching address; done runs once on the main thread when the fetch has ended. A
    // fetch started while another runs calls the earlier one off.
    virtual void fetch(const std::string& address, std::function<void(FetchResult)> done) = 0;
};

}  // namespace vantle
