#include "audio/pulse/audio_hal_pulse.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "audio/pulse/pulse_connection.h"
#include "audio/pulse/pulse_properties.h"
#include "audio/pulse/pulse_snapshot.h"

namespace vantle {

using pulse::kStatusBadSize;
using pulse::kStatusNotRunning;
using pulse::kStatusNotSettable;
using pulse::kStatusUnspecified;
using pulse::PropertyValue;
using pulse::PulseConnection;
using pulse::PulseSink;
using pulse::PulseSnapshot;

namespace {

std::unique_ptr<PulseSnapshot> owned(std::optional<PulseSnapshot> snapshot) {
    return snapshot ? std::make_unique<PulseSnapshot>(std::move(*snapshot)) : nullptr;
}

}  // namespace

PulseAudioHal::PulseAudioHal(std::optional<std::string> server, std::chrono::milliseconds timeout)
    : connection_(std::make_unique<PulseConnection>(std::move(server), timeout)) {}

PulseAudioHal::~PulseAudioHal() = default;

AudioHal::Status PulseAudioHal::dataSize(std::uint32_t object, const PropertyAddress& address,
                                         std::uint32_t& size) {
    size = 0;
    PropertyValue value;
    const Status status = read(object, address, value);
    if (status == kSuccess) {
        size = static_cast<std::uint32_t>(value.bytes.size());
    }
    return status;
}

AudioHal::Status PulseAudioHal::getData(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size,
                                        void* data) {
    const std::uint32_t capacity = data != nullptr ? size : 0;
    size = 0;
    PropertyValue value;
    const Status status = read(object, address, value);
    if (status != kSuccess) {
        return status;
    }
    // Lists and text are cut to whole ids or bytes that fit; a scalar fits whole or not at all.
    std::size_t count = std::min<std::size_t>(capacity, value.bytes.size());
    count -= count % value.readUnit;
    if (count < value.bytes.size() && value.readUnit == value.bytes.size()) {
        return kStatusBadSize;
    }
    if (count > 0) {
        std::memcpy(data, value.bytes.data(), count);
    }
    size = static_cast<std::uint32_t>(count);
    return kSuccess;
}

AudioHal::Status PulseAudioHal::setData(std::uint32_t object, const PropertyAddress& address, std::uint32_t size,
                                        const void* data) {
    // Reading the current volumes and writing the new ones share one time limit.
    const auto deadline = connection_->deadlineFromNow();
    PulseSnapshot* snapshot = currentSnapshot(deadline);
    if (snapshot == nullptr) {
        return kStatusNotRunning;
    }
    PropertyValue current;
    const Status status = pulse::readProperty(*snapshot, object, address, current);
    if (status != kSuccess) {
        return status;
    }
    if (!current.settable) {
        return kStatusNotSettable;
    }
    if (size != sizeof(float) || data == nullptr) {
        return kStatusBadSize;
    }
    // Only sink volume elements are settable, so the object is a sink.
    PulseSink* sink = snapshot->sinkWithId(object);
    float level = 0.0f;
    std::memcpy(&level, data, sizeof(level));
    const auto remembered = balanceBeforeSilence_.find(sink->name);
    const std::optional<std::vector<std::uint32_t>> volumes = pulse::volumesAfterWrite(
        *sink, address.element, level,
        remembered != balanceBeforeSilence_.end() ? remembered->second : std::vector<std::uint32_t>{});
    if (!volumes) {
        return kStatusUnspecified;
    }
    if (!connection_->setSinkVolume(sink->index, *volumes, deadline)) {
        return kStatusUnspecified;
    }
    rememberBalance(*sink, address.element, *volumes);
    // The server now holds exactly these values; keeping them lets a read in the same scope
    // return what was written rather than the reading from before.
    sink->channelVolumes = *volumes;
    return kSuccess;
}

void PulseAudioHal::rememberBalance(const pulse::PulseSink& sink, std::uint32_t element,
                                    const std::vector<std::uint32_t>& written) {
    const auto isSilent = [](const std::vector<std::uint32_t>& volumes) {
        return std::all_of(volumes.begin(), volumes.end(), [](std::uint32_t volume) { return volume == 0; });
    };
    if (element == audio::kMainElement && isSilent(written)) {
        if (!isSilent(sink.channelVolumes)) {
            balanceBeforeSilence_[sink.name] = sink.channelVolumes;
        }
        return;
    }
    // Any other write sets a balance of its own.
    balanceBeforeSilence_.erase(sink.name);
}

bool PulseAudioHal::hasProperty(std::uint32_t object, const PropertyAddress& address) {
    PropertyValue value;
    const Status status = read(object, address, value);
    // The default output exists as a property even while there is no default sink to name.
    return status == kSuccess || status == kStatusUnspecified;
}

AudioHal::Status PulseAudioHal::isSettable(std::uint32_t object, const PropertyAddress& address, bool& settable) {
    settable = false;
    PropertyValue value;
    const Status status = read(object, address, value);
    if (status == kSuccess) {
        settable = value.settable;
    }
    return status;
}

void PulseAudioHal::beginSnapshot() {
    if (snapshotDepth_++ == 0) {
        scopeSnapshot_ = owned(connection_->fetchSnapshot(connection_->deadlineFromNow()));
    }
}

void PulseAudioHal::endSnapshot() {
    if (snapshotDepth_ > 0 && --snapshotDepth_ == 0) {
        scopeSnapshot_.reset();
    }
}

std::uint64_t PulseAudioHal::roundTrips() const { return connection_->roundTrips(); }

PulseSnapshot* PulseAudioHal::currentSnapshot(std::chrono::steady_clock::time_point deadline) {
    if (snapshotDepth_ > 0) {
        return scopeSnapshot_.get();
    }
    unscopedSnapshot_ = owned(connection_->fetchSnapshot(deadline));
    return unscopedSnapshot_.get();
}

AudioHal::Status PulseAudioHal::read(std::uint32_t object, const PropertyAddress& address, PropertyValue& value) {
    const PulseSnapshot* snapshot = currentSnapshot(connection_->deadlineFromNow());
    if (snapshot == nullptr) {
        return kStatusNotRunning;
    }
    return pulse::readProperty(*snapshot, object, address, value);
}

}  // namespace vantle
