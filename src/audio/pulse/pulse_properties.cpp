#include "audio/pulse/pulse_properties.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

namespace vantle::pulse {
namespace {

constexpr double kVolumeNorm = 65536.0;

// Streams are never read by id, only counted, but a one-element list still needs a value; this
// range stays clear of the device ids.
constexpr std::uint32_t kStreamIdBase = 0x4000'0000u;

template <typename Scalar>
PropertyValue scalarValue(Scalar scalar, bool settable = false) {
    PropertyValue value;
    value.bytes.resize(sizeof(Scalar));
    std::memcpy(value.bytes.data(), &scalar, sizeof(Scalar));
    value.readUnit = sizeof(Scalar);
    value.settable = settable;
    return value;
}

PropertyValue listValue(const std::vector<std::uint32_t>& ids) {
    PropertyValue value;
    value.bytes.resize(ids.size() * sizeof(std::uint32_t));
    if (!ids.empty()) {
        std::memcpy(value.bytes.data(), ids.data(), value.bytes.size());
    }
    value.readUnit = sizeof(std::uint32_t);
    return value;
}

PropertyValue textValue(const std::string& text) {
    PropertyValue value;
    value.bytes.resize(text.size());
    std::memcpy(value.bytes.data(), text.data(), text.size());
    value.readUnit = 1;
    return value;
}

// Names, ids and lists live in the global scope on element 0; like the macOS layer we answer
// them whatever scope is asked, but not for a channel element.
bool isDeviceWide(const PropertyAddress& address) { return address.element == audio::kMainElement; }

bool isOutput(const PropertyAddress& address) { return address.scope == audio::kScopeOutput; }

AudioHal::Status readSystem(const PulseSnapshot& snapshot, const PropertyAddress& address, PropertyValue& value) {
    if (!isDeviceWide(address)) {
        return kStatusUnknownProperty;
    }
    if (address.selector == audio::kDevices) {
        value = listValue(snapshot.deviceIds());
        return AudioHal::kSuccess;
    }
    if (address.selector == audio::kDefaultOutputDevice) {
        const PulseSink* sink = snapshot.sinkWithName(snapshot.defaultSinkName);
        if (sink == nullptr) {
            return kStatusUnspecified;
        }
        value = scalarValue(sinkDeviceId(sink->index));
        return AudioHal::kSuccess;
    }
    return kStatusUnknownProperty;
}

AudioHal::Status readSinkVolume(const PulseSink& sink, const PropertyAddress& address, PropertyValue& value) {
    const std::vector<std::uint32_t>& volumes = sink.channelVolumes;
    if (volumes.empty() || address.element > volumes.size()) {
        return kStatusUnknownProperty;
    }
    // The whole sink is as loud as its loudest channel, which is how the server itself reports it.
    const std::uint32_t volume = address.element == audio::kMainElement
                                     ? *std::max_element(volumes.begin(), volumes.end())
                                     : volumes[address.element - 1];
    value = scalarValue(levelFromVolume(volume), true);
    return AudioHal::kSuccess;
}

AudioHal::Status readSink(const PulseSnapshot& snapshot, const PulseSink& sink, const PropertyAddress& address,
                          PropertyValue& value) {
    if (address.selector == audio::kVolume) {
        return isOutput(address) ? readSinkVolume(sink, address, value) : kStatusUnknownProperty;
    }
    if (!isDeviceWide(address)) {
        return kStatusUnknownProperty;
    }
    if (address.selector == audio::kStreams && isOutput(address)) {
        value = listValue({kStreamIdBase + sink.index});
        return AudioHal::kSuccess;
    }
    if (address.selector == audio::kName) {
        value = textValue(sink.description);
        return AudioHal::kSuccess;
    }
    if (address.selector == audio::kUid) {
        value = textValue(sink.name);
        return AudioHal::kSuccess;
    }
    if (address.selector == audio::kActiveSubDevices && snapshot.isCombined(sink)) {
        value = listValue(snapshot.memberIds(sink));
        return AudioHal::kSuccess;
    }
    return kStatusUnknownProperty;
}

AudioHal::Status readSource(const PulseSource& source, const PropertyAddress& address, PropertyValue& value) {
    if (!isDeviceWide(address)) {
        return kStatusUnknownProperty;
    }
    // A source has no output stream, which is what keeps it out of the list of outputs.
    if (address.selector == audio::kStreams && isOutput(address)) {
        value = listValue({});
        return AudioHal::kSuccess;
    }
    if (address.selector == audio::kName) {
        value = textValue(source.description);
        return AudioHal::kSuccess;
    }
    if (address.selector == audio::kUid) {
        value = textValue(source.name);
        return AudioHal::kSuccess;
    }
    return kStatusUnknownProperty;
}

}  // namespace

AudioHal::Status readProperty(const PulseSnapshot& snapshot, std::uint32_t object, const PropertyAddress& address,
                              PropertyValue& value) {
    if (object == audio::kSystemObject) {
        return readSystem(snapshot, address, value);
    }
    if (const PulseSink* sink = snapshot.sinkWithId(object)) {
        return readSink(snapshot, *sink, address, value);
    }
    if (const PulseSource* source = snapshot.sourceWithId(object)) {
        return readSource(*source, address, value);
    }
    return kStatusBadObject;
}

bool answeredByDefaultSink(const PulseSnapshot& snapshot, std::uint32_t object, const PropertyAddress& address) {
    if (object == audio::kSystemObject) {
        return address.selector == audio::kDefaultOutputDevice;
    }
    const PulseSink* sink = snapshot.sinkWithId(object);
    if (sink == nullptr || sink->name != snapshot.defaultSinkName) {
        return false;
    }
    return address.selector != audio::kActiveSubDevices || !snapshot.isCombined(*sink);
}

std::optional<std::vector<std::uint32_t>> volumesAfterWrite(const PulseSink& sink, std::uint32_t element,
                                                            float level,
                                                            const std::vector<std::uint32_t>& balanceWhenSilent) {
    std::vector<std::uint32_t> volumes = sink.channelVolumes;
    if (std::isnan(level) || volumes.empty() || element > volumes.size()) {
        return std::nullopt;
    }
    const std::uint32_t target = volumeFromLevel(level);
    if (element != audio::kMainElement) {
        volumes[element - 1] = target;
        return volumes;
    }
    std::uint32_t loudest = *std::max_element(volumes.begin(), volumes.end());
    if (loudest == 0 && balanceWhenSilent.size() == volumes.size()) {
        volumes = balanceWhenSilent;
        loudest = *std::max_element(volumes.begin(), volumes.end());
    }
    if (loudest == 0) {
        // Silence has no balance to keep.
        std::fill(volumes.begin(), volumes.end(), target);
        return volumes;
    }
    // Scaling every channel by the same factor keeps the balance; the loudest channel lands on
    // the target exactly.
    for (std::uint32_t& volume : volumes) {
        const std::uint64_t scaled = std::uint64_t{volume} * target;
        volume = static_cast<std::uint32_t>((scaled + loudest / 2) / loudest);
    }
    return volumes;
}

std::uint32_t volumeFromLevel(float level) {
    // Callers clamp already; a level outside 0..1 must still never reach the speakers.
    const double clamped = std::clamp(static_cast<double>(level), 0.0, 1.0);
    return static_cast<std::uint32_t>(std::lround(clamped * kVolumeNorm));
}

float levelFromVolume(std::uint32_t volume) {
    // A sink may be above 100 %; it is reported as it is.
    return static_cast<float>(static_cast<double>(volume) / kVolumeNorm);
}

}  // namespace vantle::pulse
