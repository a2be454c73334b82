#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "audio/pulse/pulse_requests.h"
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
    //
    // Sinks, sink inputs and the defaults are read afresh every time. The source list, the
    // longest answer of all (every sink has a monitor source) and one that no volume command
    // needs, is asked for only when the server has reported a change of sources since it was
    // last read; otherwise the last list is reused. So is the module list, which only tells
    // which modules combine sinks and changes when a module is loaded or unloaded.
    std::optional<PulseSnapshot> fetchSnapshot(Clock::time_point deadline);

    // The default sink alone, with the combining modules (read again only after a change, as
    // above): the reading a volume key starts from. Empty also when there is no default sink.
    std::optional<PulseSnapshot> fetchDefaultSink(Clock::time_point deadline);

    // Every channel of one sink.
    struct SinkVolume {
        std::uint32_t sinkIndex = 0;
        std::vector<std::uint32_t> channelVolumes;
    };

    // Sets the sinks' channels, all requests sent together and their answers awaited together;
    // true at a sink's position once the server confirmed its change.
    std::vector<bool> setSinkVolumes(const std::vector<SinkVolume>& volumes, Clock::time_point deadline);

    // Requests sent and waited for, counting a batch sent together as one.
    std::uint64_t roundTrips() const { return roundTrips_; }

    // The lists the server has reported a change of since they were last read.
    struct StaleLists {
        bool sources = true;
        bool modules = true;
    };

private:
    // What one exchange with the server brought back.
    struct Exchange {
        std::vector<bool> confirmed;
        std::optional<PulseSnapshot> reading;
    };
    // Sends the writes, then the reading when one is asked for, and waits once for every answer.
    Exchange exchange(const std::vector<SinkVolume>& volumes, std::optional<ReadingExtent> reading,
                      Clock::time_point deadline);
    bool ensureConnected(Clock::time_point deadline);
    void disconnect();
    // Runs the main loop until done() holds; false when the time is up or the connection broke.
    bool runUntil(const std::function<bool()>& done, Clock::time_point deadline);

    std::optional<std::string> server_;
    std::chrono::milliseconds timeout_;
    pa_mainloop* mainLoop_ = nullptr;
    pa_context* context_ = nullptr;
    std::optional<Clock::time_point> lastFailedAttempt_;
    // The sources and the combining modules as last read on this connection, and whether the
    // server has reported a change of them since; all start over with every connection.
    std::optional<std::vector<PulseSource>> sources_;
    std::optional<std::vector<std::uint32_t>> combiningModules_;
    StaleLists stale_;
    std::uint64_t roundTrips_ = 0;
};

}  // namespace vantle::pulse
