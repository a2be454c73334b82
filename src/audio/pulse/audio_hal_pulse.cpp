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
    return setDataBatch({Write{object, address, size, data}}).front();
}

std::vector<AudioHal::Status> PulseAudioHal::setDataBatch(const std::vector<Write>& writes) {
    std::vector<Status> statuses(writes.size(), kStatusNotRunning);
    if (writes.empty()) {
        return statuses;
    }
    // Reading the current volumes and writing the new ones share one time limit.
    const auto deadline = connection_->deadlineFromNow();
    PulseSnapshot* snapshot = currentSnapshot(deadline);
    if (snapshot == nullptr) {
        return statuses;
    }
    // Several writes to one sink (one per channel, say) become one request with their sum.
    std::vector<SinkChange> changes;
    for (std::size_t index = 0; index < writes.size(); ++index) {
        statuses[index] = stage(*snapshot, writes[index], index, changes);
    }
    std::vector<pulse::PulseConnection::SinkVolume> requests;
    requests.reserve(changes.size());
    for (const SinkChange& change : changes) {
        requests.push_back({change.sink->index, change.sink->channelVolumes});
    }
    const std::vector<bool> confirmed = connection_->setSinkVolumes(requests, deadline);
    for (std::size_t position = 0; position < changes.size(); ++position) {
        if (confirmed[position]) {
            continue;
        }
        // The server kept its old values: so do we, for reads later in the scope and for the
        // balance that a silenced sink gets back.
        const SinkChange& change = changes[position];
        change.sink->channelVolumes = change.volumesBefore;
        if (change.balanceBefore) {
            balanceBeforeSilence_[change.sink->name] = *change.balanceBefore;
        } else {
            balanceBeforeSilence_.erase(change.sink->name);
        }
        for (std::size_t index : change.writes) {
            statuses[index] = kStatusUnspecified;
        }
    }
    return statuses;
}

AudioHal::Status PulseAudioHal::stage(PulseSnapshot& snapshot, const Write& write, std::size_t index,
                                      std::vector<SinkChange>& changes) {
    PropertyValue current;
    const Status status = pulse::readProperty(snapshot, write.object, write.address, current);
    if (status != kSuccess) {
        return status;
    }
    if (!current.settable) {
        return kStatusNotSettable;
    }
    if (write.size != sizeof(float) || write.data == nullptr) {
        return kStatusBadSize;
    }
    // Only sink volume elements are settable, so the object is a sink.
    PulseSink* sink = snapshot.sinkWithId(write.object);
    float level = 0.0f;
    std::memcpy(&level, write.data, sizeof(level));
    const auto remembered = balanceBeforeSilence_.find(sink->name);
    const std::optional<std::vector<std::uint32_t>> volumes = pulse::volumesAfterWrite(
        *sink, write.address.element, level,
        remembered != balanceBeforeSilence_.end() ? remembered->second : std::vector<std::uint32_t>{});
    if (!volumes) {
        return kStatusUnspecified;
    }
    auto change = std::find_if(changes.begin(), changes.end(), [&](const SinkChange& each) { return each.sink == sink; });
    if (change == changes.end()) {
        SinkChange first{sink, sink->channelVolumes, std::nullopt, {}};
        if (remembered != balanceBeforeSilence_.end()) {
            first.balanceBefore = remembered->second;
        }
        change = changes.insert(changes.end(), std::move(first));
    }
    change->writes.push_back(index);
    rememberBalance(*sink, write.address.element, *volumes);
    // Staged as if the server had taken it: the next write to the same sink builds on it, and a
    // read later in the same scope returns what was written rather than the reading from before.
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
