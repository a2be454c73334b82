#include "app/signal_watch_linux.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>

namespace vantle {
namespace {

// Written by the signal handler, read by the main loop. Made once: a handler may run at any
// moment, and must never find the pipe closed under it.
int signalPipe[2] = {-1, -1};

void forwardSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[1], &byte, 1);
}

}  // namespace

SignalWatch::SignalWatch(SessionEndHandler& handler) {
    if (signalPipe[0] < 0 && ::pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [&handler] {
        char byte = 0;
        while (::read(signalPipe[0], &byte, 1) > 0) {
        }
        handler.endSession();
    });
    struct sigaction action = {};
    action.sa_handler = forwardSignal;
    sigemptyset(&action.sa_mask);
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) {
        ::sigaction(signal, &action, nullptr);
    }
}

// The handlers stay: a signal that comes after the watch only lands in the pipe, unread.
SignalWatch::~SignalWatch() = default;

}  // namespace vantle
