#include "services/updates/curl_feed_fetcher_linux.h"

#include <curl/curl.h>

#include <optional>

#include "services/updates/curl_library_linux.h"

namespace vantle {
namespace {

struct Body {
    std::string text;
    std::size_t limit = 0;
    bool tooLarge = false;
};

std::size_t collect(char* data, std::size_t size, std::size_t count, void* user) {
    auto* body = static_cast<Body*>(user);
    const std::size_t length = size * count;
    if (body->text.size() + length > body->limit) {
        body->tooLarge = true;
        return 0;  // anything short of length ends the transfer with a write error
    }
    body->text.append(data, length);
    return length;
}

long milliseconds(std::chrono::milliseconds duration) {
    return static_cast<long>(duration.count());
}

void configure(const CurlFunctions& curl, CURL* easy, const FetchSettings& settings, const std::string& address,
               Body& body, char* errorBuffer) {
    const auto set = curl.easySetopt;
    set(easy, CURLOPT_URL, address.c_str());
    set(easy, CURLOPT_PROTOCOLS_STR, "https");
    set(easy, CURLOPT_REDIR_PROTOCOLS_STR, "https");
    set(easy, CURLOPT_FOLLOWLOCATION, 1L);
    set(easy, CURLOPT_MAXREDIRS, 5L);
    set(easy, CURLOPT_CONNECTTIMEOUT_MS, milliseconds(settings.connectTimeout));
    set(easy, CURLOPT_TIMEOUT_MS, milliseconds(settings.totalTimeout));
    // Signals would reach whichever thread of the program the kernel picks; the timeouts work
    // without them.
    set(easy, CURLOPT_NOSIGNAL, 1L);
    // A status of 400 or more is a failure with libcurl's description ("... returned error:
    // 404"), not a page to parse.
    set(easy, CURLOPT_FAILONERROR, 1L);
    set(easy, CURLOPT_ERRORBUFFER, errorBuffer);
    set(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(settings.maximumSize));
    set(easy, CURLOPT_WRITEFUNCTION, collect);
    set(easy, CURLOPT_WRITEDATA, &body);
    // Any compression libcurl can undo; the size limit applies to the unpacked text.
    set(easy, CURLOPT_ACCEPT_ENCODING, "");
    set(easy, CURLOPT_USERAGENT, settings.userAgent.c_str());
    if (!settings.certificateAuthorities.empty()) {
        set(easy, CURLOPT_CAINFO, settings.certificateAuthorities.c_str());
    }
}

std::string describe(const CurlFunctions& curl, CURLcode code, const Body& body, const char* errorBuffer) {
    if (body.tooLarge) {
        return curl.easyStrerror(CURLE_FILESIZE_EXCEEDED);
    }
    if (errorBuffer[0] != '\0') {
        return errorBuffer;
    }
    return curl.easyStrerror(code);
}

// Runs one transfer to its end, or until stop is requested. The multi interface lets the wait
// for the network be woken from another thread, so that calling a fetch off never has to sit
// out a timeout.
FetchResult transfer(const FetchSettings& settings, const std::string& address, const std::stop_token& stop) {
    // libcurl is loaded by the first check rather than at start; without it the check fails
    // with the reason, like any other failed transfer.
    const CurlLoad& loaded = processCurl();
    if (!loaded.functions) {
        return {std::nullopt, loaded.error};
    }
    const CurlFunctions& curl = *loaded.functions;
    CURL* easy = curl.easyInit();
    CURLM* multi = curl.multiInit();
    if (easy == nullptr || multi == nullptr) {
        curl.easyCleanup(easy);
        curl.multiCleanup(multi);
        return {std::nullopt, curl.easyStrerror(CURLE_FAILED_INIT)};
    }
    Body body;
    body.limit = settings.maximumSize;
    char errorBuffer[CURL_ERROR_SIZE] = {};
    configure(curl, easy, settings, address, body, errorBuffer);
    curl.multiAddHandle(multi, easy);

    std::optional<CURLcode> outcome;
    std::string multiError;
    {
        std::stop_callback wake(stop, [&curl, multi] { curl.multiWakeup(multi); });
        int running = 1;
        while (running > 0 && !stop.stop_requested()) {
            CURLMcode status = curl.multiPerform(multi, &running);
            if (status == CURLM_OK && running > 0) {
                status = curl.multiPoll(multi, nullptr, 0, 1000, nullptr);
            }
            if (status != CURLM_OK) {
                multiError = curl.multiStrerror(status);
                break;
            }
        }
    }
    int queued = 0;
    while (CURLMsg* message = curl.multiInfoRead(multi, &queued)) {
        if (message->msg == CURLMSG_DONE && message->easy_handle == easy) {
            outcome = message->data.result;
        }
    }
    curl.multiRemoveHandle(multi, easy);
    curl.multiCleanup(multi);
    curl.easyCleanup(easy);

    if (outcome && *outcome == CURLE_OK) {
        return {std::move(body.text), {}};
    }
    if (outcome) {
        return {std::nullopt, describe(curl, *outcome, body, errorBuffer)};
    }
    return {std::nullopt, multiError.empty() ? curl.easyStrerror(CURLE_ABORTED_BY_CALLBACK) : multiError};
}

}  // namespace

CurlFeedFetcher::CurlFeedFetcher(FetchSettings settings, MainThreadPoster post)
    : settings_(std::move(settings)), post_(std::move(post)) {}

CurlFeedFetcher::~CurlFeedFetcher() {
    current_.reset();
    // The thread's destructor asks it to stop and waits for it.
}

void CurlFeedFetcher::fetch(const std::string& address, std::function<void(FetchResult)> done) {
    // Assigning over a running thread stops and joins it first.
    worker_ = std::jthread();
    current_ = std::make_shared<char>();
    worker_ = std::jthread([settings = settings_, address, post = post_, token = std::weak_ptr<char>(current_),
                            done = std::move(done)](std::stop_token stop) mutable {
        FetchResult result = transfer(settings, address, stop);
        if (stop.stop_requested()) {
            return;
        }
        post([token = std::move(token), done = std::move(done), result = std::move(result)]() mutable {
            if (token.lock()) {
                done(std::move(result));
            }
        });
    });
}

}  // namespace vantle
