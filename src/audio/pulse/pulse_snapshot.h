#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantle::pulse {

// What we keep of one sink: enough to answer every property of its device.
struct PulseSink {
    std::uint32_t index = 0;
    std::string name;
    std::string description;
    // The file name of the module that made the sink, e.g. "module-combine-sink.c" on PulseAudio;
    // PipeWire's pulse server says "PipeWire" for every sink.
    std::string driver;
    std::optional<std::uint32_t> ownerModule;
    // Raw per-channel volumes, 65536 being 100 %.
    std::vector<std::uint32_t> channelVolumes;
    // PipeWire's node.link-group: the sink and the streams that carry its sound on to other
    // sinks share it. Empty on PulseAudio.
    std::string linkGroup;
};

// A real source; monitor sources of sinks are left out when the snapshot is taken.
struct PulseSource {
    std::uint32_t index = 0;
    std::string name;
    std::string description;
};

// A stream playing into a sink; a combined sink feeds its members through such streams.
struct PulseSinkInput {
    std::optional<std::uint32_t> ownerModule;
    std::uint32_t sink = 0;
    std::string linkGroup;
};

// One reading of the sound server's state, lists ordered by index.
struct PulseSnapshot {
    std::string defaultSinkName;
    std::vector<PulseSink> sinks;
    std::vector<PulseSource> sources;
    std::vector<PulseSinkInput> sinkInputs;
    // The loaded modules named module-combine-sink, by index.
    std::vector<std::uint32_t> combiningModules;
    // A reading of the defaults and the default sink alone: sinks holds that one sink, and the
    // sources and streams were not read.
    bool defaultSinkOnly = false;

    const PulseSink* sinkWithId(std::uint32_t deviceId) const;
    PulseSink* sinkWithId(std::uint32_t deviceId);
    const PulseSource* sourceWithId(std::uint32_t deviceId) const;
    const PulseSink* sinkWithIndex(std::uint32_t index) const;
    const PulseSink* sinkWithName(const std::string& name) const;

    // Every device id: sinks by index, then sources by index.
    std::vector<std::uint32_t> deviceIds() const;
    // Whether the sink plays through other sinks: one made by module-combine-sink, on either
    // server, or one that PipeWire's own combining module made from its configuration.
    bool isCombined(const PulseSink& sink) const;
    // The devices a combined sink plays into right now, ordered by sink index.
    std::vector<std::uint32_t> memberIds(const PulseSink& combined) const;
};

// Device ids are derived from server indices, which the server never reuses while it runs, so a
// sink keeps its id as long as it exists. Sinks start at 16 so that no id meets the system
// object (1); sources carry bit 31 so that they never meet a sink (the server would need two
// thousand million sinks first).
inline constexpr std::uint32_t kSinkIdBase = 16;
inline constexpr std::uint32_t kSourceIdBase = 0x8000'0000u;

constexpr std::uint32_t sinkDeviceId(std::uint32_t index) { return kSinkIdBase + index; }
constexpr std::uint32_t sourceDeviceId(std::uint32_t index) { return kSourceIdBase + index; }

// PipeWire's combining module names the link group of each sink it makes "combine-sink-…".
// Other sinks of PipeWire that feed a sink through a stream of their own (remapped channels,
// filters, loopbacks) have link groups too, and stay devices of their own.
inline constexpr std::string_view kCombiningLinkGroupPrefix = "combine-sink-";

}  // namespace vantle::pulse
