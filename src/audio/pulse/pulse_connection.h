#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "audio/pulse/pulse_snapshot.h"

struct pa_context;
struct pa_mainloop;

namespace vantle::pulse {

// One client connection to a PulseAudio server, driven from the calling thread: every request
// runs the main loop itself until the answer arrives or the time limit passes, so no call can
// block longer than the limit and no second thread is needed.
//
// The connection is made on first use and made again by the next request after the server went
// away; a failed attempt is not repeated for a short while, so a dead or stuck server costs
// callers one bounded wait at most, never a busy loop.
class PulseConnection {
public:
    // server: a server string such as "unix:/run/pulse/native", or empty for PULSE_SERVER and the
    // client configuration's default.
    PulseConnection(std::optional<std::string> server, std::chrono::milliseconds timeout);
    ~PulseConnection();
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;

    using Clock = std::chrono::steady_clock;

    // When a call starting now must be done. A call that needs several requests passes the same
    // deadline to each, so that the time limit holds for the call as a whole.
    Clock::time_point deadlineFromNow() const { return Clock::now() + timeout_; }

    // The server's state: its defaults, sinks, sources and sink inputs, asked for in one go.
    // Empty when the server cannot be reached or does not answer in time.
    std::optional<PulseSnapshot> fetchSnapshot(Clock::time_point deadline);

    // Sets every channel of a sink; true once the server confirms it.
    bool setSinkVolume(std::uint32_t sinkIndex, const std::vector<std::uint32_t>& channelVolumes,
                       Clock::time_point deadline);

    // Requests sent and waited for, counting a batch sent together as one.
    std::uint64_t roundTrips() const { return roundTrips_; }

private:
    bool ensureConnected(Clock::time_point deadline);
    void disconnect();
    // Runs the main loop until done() holds; false when the time is up or the connection broke.
    bool runUntil(const std::function<bool()>& done, Clock::time_point deadline);

    std::optional<std::string> server_;
    std::chrono::milliseconds timeout_;
    pa_mainloop* mainLoop_ = nullptr;
    pa_context* context_ = nullptr;
    std::optional<Clock::time_point> lastFailedAttempt_;
    std::uint64_t roundTrips_ = 0;
};

}  // namespace vantle::pulse
