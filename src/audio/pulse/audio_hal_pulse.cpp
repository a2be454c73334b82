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
    if (writes.empty()) {
        return {};
    }
    return setDataInSequence({writes}).front();
}

std::vector<std::vector<AudioHal::Status>> PulseAudioHal::setDataInSequence(
    const std::vector<std::vector<Write>>& steps) {
    std::vector<std::vector<Status>> statuses;
    if (steps.empty()) {
        return statuses;
    }
    // Reading the current volumes and writing the new ones share one time limit.
    const auto deadline = connection_->deadlineFromNow();
    PulseSnapshot* snapshot = currentSnapshot(deadline);
    const auto answeredByReading = [&] {
        for (const std::vector<Write>& step : steps) {
            for (const Write& write : step) {
                if (!pulse::answeredByDefaultSink(*snapshot, write.object, write.address)) {
                    return false;
                }
            }
        }
        return true;
    };
    if (snapshot != nullptr && snapshot->defaultSinkOnly && !answeredByReading()) {
        snapshot = completeScopeSnapshot(deadline);
    }
    if (snapshot == nullptr) {
        statuses.emplace_back(steps.front().size(), kStatusNotRunning);
        return statuses;
    }
    // Every step is checked against the reading before anything is sent, and the first one
    // that fails ends the sequence there. Several writes to one sink (one per channel, say)
    // become one request with their sum.
    std::vector<SinkChange> changes;
    for (std::size_t step = 0; step < steps.size(); ++step) {
        std::vector<Status>& results = statuses.emplace_back(steps[step].size(), kStatusNotRunning);
        for (std::size_t index = 0; index < steps[step].size(); ++index) {
            results[index] = stage(*snapshot, steps[step][index], {step, index}, changes);
        }
        if (std::any_of(results.begin(), results.end(), [](Status status) { return status != kSuccess; })) {
            break;
        }
    }
    if (changes.empty()) {
        return statuses;
    }
    std::vector<pulse::PulseConnection::SinkVolume> requests;
    requests.reserve(changes.size());
    for (const SinkChange& change : changes) {
        requests.push_back({change.sink->index, change.sink->channelVolumes});
    }
    // The writes go alone, with nothing asked behind them: the server tells other programs of
    // the change before it starts on anything else of ours.
    const std::vector<bool> confirmed = connection_->setSinkVolumes(requests, deadline);
    for (std::size_t position = 0; position < changes.size(); ++position) {
        const SinkChange& change = changes[position];
        if (confirmed[position]) {
            if (snapshotDepth_ > 0) {
                writtenInScope_[change.sink->index] = change.sink->channelVolumes;
            }
            continue;
        }
        // The server kept its old values: so do we, for reads later in the scope and for the
        // balance that a silenced sink gets back.
        change.sink->channelVolumes = change.volumesBefore;
        if (change.balanceBefore) {
            balanceBeforeSilence_[change.sink->name] = *change.balanceBefore;
        } else {
            balanceBeforeSilence_.erase(change.sink->name);
        }
        for (const WritePosition& write : change.writes) {
            statuses[write.step][write.index] = kStatusUnspecified;
        }
    }
    return statuses;
}

AudioHal::Status PulseAudioHal::stage(PulseSnapshot& snapshot, const Write& write, WritePosition position,
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
    change->writes.push_back(position);
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
        scopeSnapshot_ = adopt(connection_->fetchSnapshot(connection_->deadlineFromNow()));
    }
}

void PulseAudioHal::beginSnapshotOfDefaultOutput() {
    if (snapshotDepth_++ != 0) {
        return;
    }
    const auto deadline = connection_->deadlineFromNow();
    if (!defaultWasCombined_) {
        scopeSnapshot_ = adopt(connection_->fetchDefaultSink(deadline));
    }
    // Also without a default sink, which the short reading cannot tell from a failure.
    if (scopeSnapshot_ == nullptr) {
        scopeSnapshot_ = adopt(connection_->fetchSnapshot(deadline));
    }
}

void PulseAudioHal::endSnapshot() {
    if (snapshotDepth_ > 0 && --snapshotDepth_ == 0) {
        scopeSnapshot_.reset();
        writtenInScope_.clear();
    }
}

std::uint64_t PulseAudioHal::roundTrips() const { return connection_->roundTrips(); }

PulseSnapshot* PulseAudioHal::currentSnapshot(std::chrono::steady_clock::time_point deadline) {
    if (snapshotDepth_ > 0) {
        return scopeSnapshot_.get();
    }
    unscopedSnapshot_ = adopt(connection_->fetchSnapshot(deadline));
    return unscopedSnapshot_.get();
}

PulseSnapshot* PulseAudioHal::completeScopeSnapshot(std::chrono::steady_clock::time_point deadline) {
    if (scopeSnapshot_ != nullptr && scopeSnapshot_->defaultSinkOnly) {
        // A failure here fails every read of the scope from now on, as a failed first reading does.
        scopeSnapshot_ = adopt(connection_->fetchSnapshot(deadline));
    }
    return scopeSnapshot_.get();
}

std::unique_ptr<PulseSnapshot> PulseAudioHal::adopt(std::optional<PulseSnapshot> reading) {
    if (!reading) {
        return nullptr;
    }
    for (const auto& [index, volumes] : writtenInScope_) {
        PulseSink* sink = reading->sinkWithId(pulse::sinkDeviceId(index));
        if (sink != nullptr && sink->channelVolumes.size() == volumes.size()) {
            sink->channelVolumes = volumes;
        }
    }
    const PulseSink* defaultSink = reading->sinkWithName(reading->defaultSinkName);
    defaultWasCombined_ = defaultSink != nullptr && reading->isCombined(*defaultSink);
    return std::make_unique<PulseSnapshot>(std::move(*reading));
}

AudioHal::Status PulseAudioHal::read(std::uint32_t object, const PropertyAddress& address, PropertyValue& value) {
    const auto deadline = connection_->deadlineFromNow();
    const PulseSnapshot* snapshot = currentSnapshot(deadline);
    if (snapshot != nullptr && snapshot->defaultSinkOnly && !pulse::answeredByDefaultSink(*snapshot, object, address)) {
        snapshot = completeScopeSnapshot(deadline);
    }
    if (snapshot == nullptr) {
        return kStatusNotRunning;
    }
    return pulse::readProperty(*snapshot, object, address, value);
}

}  // namespace vantle
