#include "app/single_instance_linux.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "app/instance_name_x11.h"
#include "services/write_all_linux.h"

namespace vantle {
namespace {

// An abstract address: a leading zero byte, then the name, with its exact length.
socklen_t abstractAddress(const std::string& name, sockaddr_un& address) {
    address = {};
    address.sun_family = AF_UNIX;
    const std::size_t length = std::min(name.size(), sizeof(address.sun_path) - 1);
    std::memcpy(address.sun_path + 1, name.data(), length);
    return static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length);
}

const sockaddr* asSocketAddress(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);  // the socket API's own convention
}

}  // namespace

SocketSingleInstance::SocketSingleInstance(std::string name) : name_(std::move(name)) {}

SocketSingleInstance::~SocketSingleInstance() {
    if (listener_ >= 0) {
        ::close(listener_);
    }
}

bool SocketSingleInstance::claim(std::function<void()> reopen) {
    const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (listener < 0) {
        // Without sockets there is no way to find another copy; running is better than refusing.
        return true;
    }
    sockaddr_un address;
    const socklen_t length = abstractAddress(name_, address);
    if (::bind(listener, asSocketAddress(address), length) != 0 || ::listen(listener, 4) != 0) {
        ::close(listener);
        return false;
    }
    listener_ = listener;
    reopen_ = std::move(reopen);
    notifier_ = new QSocketNotifier(listener_, QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] { answer(); });
    return true;
}

void SocketSingleInstance::answer() {
    for (;;) {
        const int caller = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (caller < 0) {
            return;
        }
        // A caller that sends nothing within a moment is not one of ours; it is not waited for.
        pollfd readable{caller, POLLIN, 0};
        char request[16] = {};
        const bool asked = ::poll(&readable, 1, 500) == 1 && ::read(caller, request, sizeof(request) - 1) > 0 &&
                           std::strcmp(request, kReopenRequest) == 0;
        if (asked && reopen_) {
            reopen_();
            writeAll(caller, kReopenDone);
        }
        ::close(caller);
    }
}

bool SocketSingleInstance::askRunningCopyToReopen() const {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0) {
        return false;
    }
    sockaddr_un address;
    const socklen_t length = abstractAddress(name_, address);
    bool answered = false;
    if (::connect(socket, asSocketAddress(address), length) == 0 &&
        writeAll(socket, kReopenRequest)) {
        pollfd readable{socket, POLLIN, 0};
        char reply[16] = {};
        answered = ::poll(&readable, 1, 2000) == 1 && ::read(socket, reply, sizeof(reply) - 1) > 0 &&
                   std::strcmp(reply, kReopenDone) == 0;
    }
    ::close(socket);
    return answered;
}

}  // namespace vantle
