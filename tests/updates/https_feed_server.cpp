#include "https_feed_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>

namespace vantle::testing {
namespace {

void require(bool condition, const char* what) {
    if (!condition) {
        throw std::runtime_error(std::string("feed server: ") + what);
    }
}

void addExtension(X509* certificate, int nid, const char* value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, nid, value);
    require(extension != nullptr, "certificate extension");
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

// A key and a certificate for 127.0.0.1 that signs itself, valid for a day.
std::pair<EVP_PKEY*, X509*> makeIdentity() {
    EVP_PKEY* key = EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256");
    require(key != nullptr, "key");
    X509* certificate = X509_new();
    X509_set_version(certificate, 2);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate), 24 * 3600);
    X509_set_pubkey(certificate, key);
    X509_NAME* name = X509_get_subject_name(certificate);
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>("127.0.0.1"), -1, -1,
                               0);
    X509_set_issuer_name(certificate, name);
    addExtension(certificate, NID_basic_constraints, "critical,CA:TRUE");
    addExtension(certificate, NID_subject_alt_name, "IP:127.0.0.1");
    require(X509_sign(certificate, key, EVP_sha256()) > 0, "signature");
    return {key, certificate};
}

void setTimeouts(int fd) {
    timeval limit{5, 0};
    ::setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    ::setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
}

bool readRequest(SSL* ssl) {
    std::string request;
    char buffer[4096];
    while (request.find("\r\n\r\n") == std::string::npos && request.size() < 65536) {
        const int got = SSL_read(ssl, buffer, sizeof buffer);
        if (got <= 0) {
            return false;
        }
        request.append(buffer, static_cast<std::size_t>(got));
    }
    return request.find("\r\n\r\n") != std::string::npos;
}

void writeAll(SSL* ssl, const std::string& text) {
    std::size_t sent = 0;
    while (sent < text.size()) {
        const int wrote = SSL_write(ssl, text.data() + sent, static_cast<int>(text.size() - sent));
        if (wrote <= 0) {
            return;
        }
        sent += static_cast<std::size_t>(wrote);
    }
}

std::string response(const std::string& status, const std::string& type, const std::string& body) {
    return "HTTP/1.1 " + status + "\r\nContent-Type: " + type + "\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

}  // namespace

HttpsFeedServer::HttpsFeedServer() {
    // A client that gives up closes its end; writing to it must fail, not end the test.
    ::signal(SIGPIPE, SIG_IGN);

    auto [key, certificate] = makeIdentity();
    certificateFile_ = directory_.path() / "server.pem";
    FILE* file = std::fopen(certificateFile_.c_str(), "w");
    require(file != nullptr, "certificate file");
    PEM_write_X509(file, certificate);
    std::fclose(file);

    context_ = SSL_CTX_new(TLS_server_method());
    require(context_ != nullptr, "TLS context");
    require(SSL_CTX_use_certificate(context_, certificate) == 1, "certificate");
    require(SSL_CTX_use_PrivateKey(context_, key) == 1, "private key");
    X509_free(certificate);
    EVP_PKEY_free(key);

    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    require(listener_ >= 0, "socket");
    sockaddr_in local{};
    local.sin_family = AF_INET;
    local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    local.sin_port = 0;
    require(::bind(listener_, reinterpret_cast<sockaddr*>(&local), sizeof local) == 0, "bind");
    require(::listen(listener_, 16) == 0, "listen");
    socklen_t length = sizeof local;
    ::getsockname(listener_, reinterpret_cast<sockaddr*>(&local), &length);
    port_ = ntohs(local.sin_port);

    int wake[2];
    require(::pipe2(wake, O_CLOEXEC) == 0, "pipe");
    wakeRead_ = wake[0];
    wakeWrite_ = wake[1];
    thread_ = std::thread([this] { run(); });
}

HttpsFeedServer::~HttpsFeedServer() {
    const char stop = 's';
    [[maybe_unused]] const ssize_t written = ::write(wakeWrite_, &stop, 1);
    thread_.join();
    for (auto [ssl, fd] : held_) {
        if (ssl != nullptr) {
            SSL_free(ssl);
        }
        ::close(fd);
    }
    ::close(listener_);
    ::close(wakeRead_);
    ::close(wakeWrite_);
    SSL_CTX_free(context_);
}

void HttpsFeedServer::setReply(Reply reply, std::string body) {
    std::lock_guard lock(mutex_);
    reply_ = reply;
    body_ = std::move(body);
}

std::string HttpsFeedServer::address(const std::string& path) const {
    return "https://127.0.0.1:" + std::to_string(port_) + path;
}

void HttpsFeedServer::run() {
    for (;;) {
        pollfd watched[2] = {{listener_, POLLIN, 0}, {wakeRead_, POLLIN, 0}};
        if (::poll(watched, 2, -1) < 0) {
            continue;
        }
        if (watched[1].revents != 0) {
            return;
        }
        if ((watched[0].revents & POLLIN) != 0) {
            const int client = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
            if (client >= 0) {
                serve(client);
            }
        }
    }
}

void HttpsFeedServer::serve(int client) {
    ++connections_;
    Reply reply;
    std::string body;
    {
        std::lock_guard lock(mutex_);
        reply = reply_;
        body = body_;
    }
    if (reply == Reply::silentBeforeHandshake) {
        held_.emplace_back(nullptr, client);
        return;
    }
    setTimeouts(client);
    SSL* ssl = SSL_new(context_);
    SSL_set_fd(ssl, client);
    if (SSL_accept(ssl) <= 0 || !readRequest(ssl)) {
        ERR_clear_error();
        SSL_free(ssl);
        ::close(client);
        return;
    }
    ++requests_;
    if (reply == Reply::silentAfterRequest) {
        held_.emplace_back(ssl, client);
        return;
    }
    if (reply == Reply::feed) {
        writeAll(ssl, response("200 OK", "application/rss+xml; charset=utf-8", body));
    } else {
        writeAll(ssl, response("404 Not Found", "text/html", "<html><body>Not found</body></html>"));
    }
    SSL_shutdown(ssl);
    SSL_free(ssl);
    ::close(client);
}

}  // namespace vantle::testing
