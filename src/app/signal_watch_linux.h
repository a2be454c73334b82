#pragma once

#include <memory>

#include "app/session_end.h"

class QSocketNotifier;

namespace vantle {

// The session ends with SIGTERM, SIGINT or SIGHUP. Each is turned into an event of the main
// loop, so that the muted levels are given back on the main thread before the program ends,
// instead of the process ending at once with the outputs still silent. One watch per process.
class SignalWatch final : public SessionEndWatch {
public:
    explicit SignalWatch(SessionEndHandler& handler);
    ~SignalWatch() override;
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace vantle
