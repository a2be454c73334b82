#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <vector>
#include <memory>
#include <optional>
#include <string>

#include "audio/audio_hal.h"

namespace vantle {

namespace pulse {
class PulseConnection;
struct PulseSnapshot;
struct PropertyValue;
struct PulseSink;
}  // namespace pulse

// The sound hardware layer on a PulseAudio server (or PipeWire's PulseAudio service).
//
// Object 1 is the system; each sink is a device with one output stream and each real source a
// device without one (monitor sources are not listed). Sink ids are the sink's index plus 16,
// source ids its index plus 0x8000'0000, so that a device keeps its id while it exists.
//
// The server is reached on first use and again after it went away; every call is bounded by the
// time limit given here and fails with a non-zero status (and an empty size) when the server
// does not answer. Main thread only, like the interface.
class PulseAudioHal final : public AudioHal {
public:
    static constexpr std::chrono::milliseconds kDefaultTimeout{2000};

    // server: a PulseAudio server string; empty means PULSE_SERVER or the configured default.
    explicit PulseAudioHal(std::optional<std::string> server = std::nullopt,
                           std::chrono::milliseconds timeout = kDefaultTimeout);
    ~PulseAudioHal() override;
    PulseAudioHal(const PulseAudioHal&) = delete;
    PulseAudioHal& operator=(const PulseAudioHal&) = delete;

    Status dataSize(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size) override;
    Status getData(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size,
                   void* data) override;
    Status setData(std::uint32_t object, const PropertyAddress& address, std::uint32_t size,
                   const void* data) override;
    std::vector<Status> setDataBatch(const std::vector<Write>& writes) override;
    std::vector<std::vector<Status>> setDataInSequence(const std::vector<std::vector<Write>>& steps) override;
    bool hasProperty(std::uint32_t object, const PropertyAddress& address) override;
    Status isSettable(std::uint32_t object, const PropertyAddress& address, bool& settable) override;

    // The outermost begin reads the whole server once; if that fails, every read inside the
    // scope fails at once instead of waiting on the server again.
    void beginSnapshot() override;
    void endSnapshot() override;
    // The scope's reading starts as the default sink alone, a fraction of the whole, and is
    // completed when a property it cannot answer is first asked or written. A default output
    // that was combined at the last reading is read whole from the start, since its members are
    // found through the streams.
    void beginSnapshotOfDefaultOutput() override;

    // Requests that went to the server so far: one per reading of its state, one per batch of
    // writes.
    std::uint64_t roundTrips() const;

private:
    // A sink that writes of one batch change: its values before them, its remembered balance
    // before them, and the writes' positions in the batch.
    // A write's place: its step and its position in the step.
    struct WritePosition {
        std::size_t step = 0;
        std::size_t index = 0;
    };
    struct SinkChange {
        pulse::PulseSink* sink = nullptr;
        std::vector<std::uint32_t> volumesBefore;
        std::optional<std::vector<std::uint32_t>> balanceBefore;
        std::vector<WritePosition> writes;
    };
    // Checks one write and applies it to the reading; its status, and the sink's change noted.
    Status stage(pulse::PulseSnapshot& snapshot, const Write& write, WritePosition position,
                 std::vector<SinkChange>& changes);

    // The state to answer from: the scope's reading, or a fresh one outside a scope. Null when
    // the server could not be read.
    pulse::PulseSnapshot* currentSnapshot(std::chrono::steady_clock::time_point deadline);
    // The scope's reading made whole when it holds the default sink alone.
    pulse::PulseSnapshot* completeScopeSnapshot(std::chrono::steady_clock::time_point deadline);
    // A new reading for the scope, with what the scope wrote laid over it, so that reads return
    // what was written; also notes whether its default output is combined.
    std::unique_ptr<pulse::PulseSnapshot> adopt(std::optional<pulse::PulseSnapshot> reading);
    Status read(std::uint32_t object, const PropertyAddress& address, pulse::PropertyValue& value);
    void rememberBalance(const pulse::PulseSink& sink, std::uint32_t element, const std::vector<std::uint32_t>& written);

    std::unique_ptr<pulse::PulseConnection> connection_;
    int snapshotDepth_ = 0;
    std::unique_ptr<pulse::PulseSnapshot> scopeSnapshot_;
    std::unique_ptr<pulse::PulseSnapshot> unscopedSnapshot_;
    // The channel volumes the server confirmed within the current scope, by sink index.
    std::map<std::uint32_t, std::vector<std::uint32_t>> writtenInScope_;
    // Whether the default output was a combined sink at the last reading.
    bool defaultWasCombined_ = false;
    // The channel volumes of sinks that we silenced through their main element, by sink name.
    // The server cannot keep a balance at zero, as the macOS hardware layer does, so we keep it
    // here and give it back when the main element is raised again (after a mute, say). It lives
    // as long as this object: after a restart a muted sink comes back with equal channels.
    std::map<std::string, std::vector<std::uint32_t>> balanceBeforeSilence_;
};

}  // namespace vantle
