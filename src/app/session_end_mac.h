#pragma once

#include <memory>

#include "app/session_end.h"

namespace vantle {

// The end of the user's session on macOS: the workspace says that the user is logging out,
// restarting or shutting down before it asks the applications to quit, which is the moment to
// give the muted levels back without asking anyone. One watch per process, made on the main
// thread; the handler is told on the main thread.
class PowerOffWatch final : public SessionEndWatch {
public:
    explicit PowerOffWatch(SessionEndHandler& handler);
    ~PowerOffWatch() override;
    PowerOffWatch(const PowerOffWatch&) = delete;
    PowerOffWatch& operator=(const PowerOffWatch&) = delete;

private:
    // Holds the notification centre's observation, which only Objective-C++ can keep.
    struct Observation;
    std::unique_ptr<Observation> observation_;
};

// The window server does not go away under a running application on macOS: its session ends
// with the power-off above. This watch does nothing.
class NoWindowSystemLossWatch final : public SessionEndWatch {};

}  // namespace vantle
