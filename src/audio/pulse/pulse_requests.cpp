#include "audio/pulse/pulse_requests.h"

#include <pulse/introspect.h>
#include <pulse/operation.h>
#include <pulse/proplist.h>
#include <pulse/volume.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace vantle::pulse {
namespace {

std::string text(const char* value) { return value != nullptr ? std::string(value) : std::string(); }

std::optional<std::uint32_t> validIndex(std::uint32_t index) {
    return index == PA_INVALID_INDEX ? std::nullopt : std::optional<std::uint32_t>(index);
}

std::string linkGroup(const pa_proplist* properties) {
    return properties != nullptr ? text(pa_proplist_gets(properties, "node.link-group")) : std::string();
}

template <typename Item>
void sortByIndex(std::vector<Item>& items) {
    std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.index < b.index; });
}

}  // namespace

OwnedOperation::~OwnedOperation() {
    if (operation_ == nullptr) {
        return;
    }
    if (pa_operation_get_state(operation_) == PA_OPERATION_RUNNING) {
        pa_operation_cancel(operation_);
    }
    pa_operation_unref(operation_);
}

OwnedOperation::OwnedOperation(OwnedOperation&& other) noexcept : operation_(other.operation_) {
    other.operation_ = nullptr;
}

OwnedOperation& OwnedOperation::operator=(OwnedOperation&& other) noexcept {
    std::swap(operation_, other.operation_);
    return *this;
}

SnapshotRequest::SnapshotRequest(pa_context* context, ReadingExtent extent, bool withSources, bool withModules) {
    operations_.reserve(5);
    if (extent == ReadingExtent::defaultSink) {
        // The server resolves the name itself, so the sink that answers is the default one, and
        // its name is the default's: the server information is not needed.
        snapshot_.defaultSinkOnly = true;
        operations_.emplace_back(
            pa_context_get_sink_info_by_name(context, "@DEFAULT_SINK@", &SnapshotRequest::onSinkInfo, this));
    } else {
        operations_.emplace_back(pa_context_get_server_info(context, &SnapshotRequest::onServerInfo, this));
        operations_.emplace_back(pa_context_get_sink_info_list(context, &SnapshotRequest::onSinkInfo, this));
        operations_.emplace_back(
            pa_context_get_sink_input_info_list(context, &SnapshotRequest::onSinkInputInfo, this));
    }
    if (withSources) {
        operations_.emplace_back(pa_context_get_source_info_list(context, &SnapshotRequest::onSourceInfo, this));
    }
    if (withModules) {
        operations_.emplace_back(pa_context_get_module_info_list(context, &SnapshotRequest::onModuleInfo, this));
    }
    pending_ = static_cast<int>(operations_.size());
    sent_ = std::all_of(operations_.begin(), operations_.end(),
                        [](const OwnedOperation& operation) { return operation.valid(); });
}

std::optional<PulseSnapshot> SnapshotRequest::result() const {
    if (failed_ || pending_ != 0) {
        return std::nullopt;
    }
    PulseSnapshot sorted = snapshot_;
    sortByIndex(sorted.sinks);
    sortByIndex(sorted.sources);
    return sorted;
}

void SnapshotRequest::onServerInfo(pa_context*, const pa_server_info* info, void* userdata) {
    auto* self = static_cast<SnapshotRequest*>(userdata);
    if (info == nullptr) {
        self->failed_ = true;
        return;
    }
    self->snapshot_.defaultSinkName = text(info->default_sink_name);
    --self->pending_;
}

void SnapshotRequest::onSinkInfo(pa_context*, const pa_sink_info* info, int endOfList, void* userdata) {
    auto* self = static_cast<SnapshotRequest*>(userdata);
    if (endOfList != 0 || info == nullptr) {
        self->listEnded(endOfList);
        return;
    }
    PulseSink sink;
    sink.index = info->index;
    sink.name = text(info->name);
    sink.description = text(info->description);
    sink.driver = text(info->driver);
    sink.ownerModule = validIndex(info->owner_module);
    sink.linkGroup = linkGroup(info->proplist);
    sink.channelVolumes.assign(info->volume.values, info->volume.values + info->volume.channels);
    if (self->snapshot_.defaultSinkOnly) {
        self->snapshot_.defaultSinkName = sink.name;
    }
    self->snapshot_.sinks.push_back(std::move(sink));
}

void SnapshotRequest::onSourceInfo(pa_context*, const pa_source_info* info, int endOfList, void* userdata) {
    auto* self = static_cast<SnapshotRequest*>(userdata);
    if (endOfList != 0 || info == nullptr) {
        self->listEnded(endOfList);
        return;
    }
    // A monitor source only echoes its sink; listing it would show every output twice.
    if (info->monitor_of_sink != PA_INVALID_INDEX) {
        return;
    }
    self->snapshot_.sources.push_back(PulseSource{info->index, text(info->name), text(info->description)});
}

void SnapshotRequest::onSinkInputInfo(pa_context*, const pa_sink_input_info* info, int endOfList,
                                      void* userdata) {
    auto* self = static_cast<SnapshotRequest*>(userdata);
    if (endOfList != 0 || info == nullptr) {
        self->listEnded(endOfList);
        return;
    }
    self->snapshot_.sinkInputs.push_back(
        PulseSinkInput{validIndex(info->owner_module), info->sink, linkGroup(info->proplist)});
}

void SnapshotRequest::onModuleInfo(pa_context*, const pa_module_info* info, int endOfList, void* userdata) {
    auto* self = static_cast<SnapshotRequest*>(userdata);
    if (endOfList != 0 || info == nullptr) {
        self->listEnded(endOfList);
        return;
    }
    if (text(info->name) == "module-combine-sink") {
        self->snapshot_.combiningModules.push_back(info->index);
    }
}

void SnapshotRequest::listEnded(int endOfList) {
    if (endOfList < 0) {
        failed_ = true;
        return;
    }
    --pending_;
}

VolumeRequest::VolumeRequest(pa_context* context, std::uint32_t sinkIndex,
                             const std::vector<std::uint32_t>& channelVolumes) {
    if (channelVolumes.empty() || channelVolumes.size() > PA_CHANNELS_MAX) {
        return;
    }
    pa_cvolume volume;
    pa_cvolume_init(&volume);
    volume.channels = static_cast<std::uint8_t>(channelVolumes.size());
    std::copy(channelVolumes.begin(), channelVolumes.end(), volume.values);
    operation_ = OwnedOperation(
        pa_context_set_sink_volume_by_index(context, sinkIndex, &volume, &VolumeRequest::onResult, this));
}

void VolumeRequest::onResult(pa_context*, int success, void* userdata) {
    auto* self = static_cast<VolumeRequest*>(userdata);
    self->finished_ = true;
    self->succeeded_ = success != 0;
}

}  // namespace vantle::pulse
