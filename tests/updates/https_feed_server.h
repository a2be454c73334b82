#pragma once

#include <atomic>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/temporary_directory.h"

typedef struct ssl_ctx_st SSL_CTX;
typedef struct ssl_st SSL;

namespace vantle::testing {

// A real HTTPS server on 127.0.0.1 for update feeds, on a thread of its own. It makes a fresh
// key and a self-signed certificate for 127.0.0.1 at start; clients trust it through
// certificateFile(). Each connection is answered as the reply set at that moment says.
class HttpsFeedServer {
public:
    enum class Reply {
        feed,                   // 200 with the body, as an RSS document
        notFound,               // 404
        silentAfterRequest,     // completes the TLS handshake, reads the request, never answers
        silentBeforeHandshake,  // accepts the connection and never says a word
    };

    HttpsFeedServer();
    ~HttpsFeedServer();
    HttpsFeedServer(const HttpsFeedServer&) = delete;
    HttpsFeedServer& operator=(const HttpsFeedServer&) = delete;

    void setReply(Reply reply, std::string body = {});
    // https://127.0.0.1:<port><path>
    std::string address(const std::string& path = "/appcast.xml") const;
    const std::filesystem::path& certificateFile() const { return certificateFile_; }
    // Connections accepted, and requests read in full, so far.
    int connections() const { return connections_; }
    int requests() const { return requests_; }

private:
    void run();
    void serve(int client);

    TemporaryDirectory directory_;
    std::filesystem::path certificateFile_;
    SSL_CTX* context_ = nullptr;
    int listener_ = -1;
    int wakeRead_ = -1;
    int wakeWrite_ = -1;
    int port_ = 0;

    std::mutex mutex_;
    Reply reply_ = Reply::notFound;
    std::string body_;
    std::atomic<int> connections_{0};
    std::atomic<int> requests_{0};
    // Connections kept open without an answer; closed when the server stops.
    std::vector<std::pair<SSL*, int>> held_;
    std::thread thread_;
};

}  // namespace vantle::testing
