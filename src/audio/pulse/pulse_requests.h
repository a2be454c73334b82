#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "audio/pulse/pulse_snapshot.h"

struct pa_context;
struct pa_operation;
struct pa_server_info;
struct pa_sink_info;
struct pa_source_info;
struct pa_sink_input_info;
struct pa_module_info;

namespace vantle::pulse {

// An operation we own: cancelled if still running when we let go of it, so that a late answer
// never reaches a request that no longer exists.
class OwnedOperation {
public:
    explicit OwnedOperation(pa_operation* operation = nullptr) : operation_(operation) {}
    ~OwnedOperation();
    OwnedOperation(OwnedOperation&& other) noexcept;
    OwnedOperation& operator=(OwnedOperation&& other) noexcept;
    OwnedOperation(const OwnedOperation&) = delete;
    OwnedOperation& operator=(const OwnedOperation&) = delete;

    bool valid() const { return operation_ != nullptr; }

private:
    pa_operation* operation_;
};

// How much of the server one reading asks for.
enum class ReadingExtent {
    // The server information and the sink, sink-input, source and module lists.
    whole,
    // The default sink alone (and the modules when asked): a small
    // fraction of the whole, since listing sinks makes the server ask every sink's latency.
    defaultSink,
};

// Asks for the server information and the sink, source, sink-input and module lists all at once,
// or for the default sink alone, so that the answers come back in one round trip. Destroying the request cancels whatever has not
// been answered, so on a timeout it may simply go out of scope.
class SnapshotRequest {
public:
    // Without sources, the result's source list is empty and left to the caller; without modules,
    // so is its list of combining modules. A reading of the default sink alone fails when there is
    // no default sink.
    SnapshotRequest(pa_context* context, ReadingExtent extent, bool withSources, bool withModules);
    SnapshotRequest(const SnapshotRequest&) = delete;
    SnapshotRequest& operator=(const SnapshotRequest&) = delete;

    bool sent() const { return sent_; }
    bool finished() const { return failed_ || pending_ == 0; }
    // The snapshot, once finished without a failure.
    std::optional<PulseSnapshot> result() const;

private:
    static void onServerInfo(pa_context* context, const pa_server_info* info, void* userdata);
    static void onSinkInfo(pa_context* context, const pa_sink_info* info, int endOfList, void* userdata);
    static void onSourceInfo(pa_context* context, const pa_source_info* info, int endOfList, void* userdata);
    static void onSinkInputInfo(pa_context* context, const pa_sink_input_info* info, int endOfList,
                                void* userdata);
    static void onModuleInfo(pa_context* context, const pa_module_info* info, int endOfList, void* userdata);
    // Counts one list as answered when its end arrives; a negative end means the server refused.
    void listEnded(int endOfList);

    PulseSnapshot snapshot_;
    int pending_ = 0;
    bool failed_ = false;
    bool sent_ = false;
    // Declared last so that the operations are cancelled before the state they write to goes.
    std::vector<OwnedOperation> operations_;
};

// Sets all channel volumes of one sink and waits for the server's confirmation.
class VolumeRequest {
public:
    VolumeRequest(pa_context* context, std::uint32_t sinkIndex, const std::vector<std::uint32_t>& channelVolumes);
    VolumeRequest(const VolumeRequest&) = delete;
    VolumeRequest& operator=(const VolumeRequest&) = delete;

    bool sent() const { return operation_.valid(); }
    bool finished() const { return finished_; }
    bool succeeded() const { return succeeded_; }

private:
    static void onResult(pa_context* context, int success, void* userdata);

    bool finished_ = false;
    bool succeeded_ = false;
    OwnedOperation operation_;
};

}  // namespace vantle::pulse
