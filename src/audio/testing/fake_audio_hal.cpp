#include "audio/testing/fake_audio_hal.h"

#include <cstring>

namespace vantle::testing {
namespace {

constexpr AudioHal::Status kFailure = 1;

std::string bytesOfIds(const std::vector<std::uint32_t>& ids) {
    return std::string(reinterpret_cast<const char*>(ids.data()), ids.size() * sizeof(std::uint32_t));
}

template <typename T>
std::string bytesOf(T value) {
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

}  // namespace

FakeAudioHal::Device FakeAudioHal::plainDevice(std::string name, std::string uid, std::vector<float> channelLevels,
                                               bool master) {
    Device device;
    device.name = std::move(name);
    device.uid = std::move(uid);
    for (std::size_t index = 0; index < channelLevels.size(); ++index) {
        device.elements[static_cast<std::uint32_t>(index + 1)].volume = channelLevels[index];
    }
    if (master) {
        device.elements[0].volume = channelLevels.empty() ? 0.5f : channelLevels.front();
    }
    return device;
}

void FakeAudioHal::add(std::uint32_t id, Device device) {
    order.push_back(id);
    devices[id] = std::move(device);
}

float FakeAudioHal::volume(std::uint32_t device, std::uint32_t element) const {
    return devices.at(device).elements.at(element).volume;
}

bool FakeAudioHal::fails(Operation operation, std::uint32_t object, const PropertyAddress& address) const {
    return failWhen && failWhen(Call{operation, object, address});
}

std::optional<std::string> FakeAudioHal::propertyBytes(std::uint32_t object, const PropertyAddress& address) const {
    if (object == audio::kSystemObject) {
        if (address.selector == audio::kDevices) {
            return bytesOfIds(order);
        }
        if (address.selector == audio::kDefaultOutputDevice && defaultOutput) {
            return bytesOf(*defaultOutput);
        }
        return std::nullopt;
    }
    auto found = devices.find(object);
    if (found == devices.end()) {
        return std::nullopt;
    }
    const Device& device = found->second;
    switch (address.selector) {
    case audio::kName:
        return device.name;
    case audio::kUid:
        return device.uid;
    case audio::kStreams:
        return bytesOfIds(std::vector<std::uint32_t>(static_cast<std::size_t>(device.outputStreams), 7));
    case audio::kActiveSubDevices:
        if (device.subDevices) {
            return bytesOfIds(*device.subDevices);
        }
        return std::nullopt;
    case audio::kVolume: {
        auto element = device.elements.find(address.element);
        if (element == device.elements.end() || !element->second.readable) {
            return std::nullopt;
        }
        return bytesOf(element->second.volume);
    }
    default:
        return std::nullopt;
    }
}

AudioHal::Status FakeAudioHal::dataSize(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size) {
    std::optional<std::string> bytes = propertyBytes(object, address);
    if (fails(Operation::DataSize, object, address) || !bytes) {
        return kFailure;
    }
    size = static_cast<std::uint32_t>(bytes->size());
    return kSuccess;
}

AudioHal::Status FakeAudioHal::getData(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size,
                                       void* data) {
    std::optional<std::string> bytes = propertyBytes(object, address);
    if (fails(Operation::GetData, object, address) || !bytes) {
        return kFailure;
    }
    size = static_cast<std::uint32_t>(std::min<std::size_t>(size, bytes->size()));
    std::memcpy(data, bytes->data(), size);
    return kSuccess;
}

AudioHal::Status FakeAudioHal::setData(std::uint32_t object, const PropertyAddress& address, std::uint32_t size,
                                       const void* data) {
    if (fails(Operation::SetData, object, address) || address.selector != audio::kVolume || size != sizeof(float)) {
        return kFailure;
    }
    auto device = devices.find(object);
    if (device == devices.end()) {
        return kFailure;
    }
    auto element = device->second.elements.find(address.element);
    if (element == device->second.elements.end() || !element->second.settable) {
        return kFailure;
    }
    float level = 0;
    std::memcpy(&level, data, sizeof level);
    element->second.volume = level;
    writes.push_back(Write{object, address.element, level});
    return kSuccess;
}

bool FakeAudioHal::hasProperty(std::uint32_t object, const PropertyAddress& address) {
    if (fails(Operation::HasProperty, object, address)) {
        return false;
    }
    if (address.selector == audio::kVolume) {
        auto device = devices.find(object);
        return device != devices.end() && device->second.elements.count(address.element) != 0;
    }
    return propertyBytes(object, address).has_value();
}

AudioHal::Status FakeAudioHal::isSettable(std::uint32_t object, const PropertyAddress& address, bool& settable) {
    if (fails(Operation::IsSettable, object, address) || !hasProperty(object, address)) {
        return kFailure;
    }
    settable = false;
    if (address.selector == audio::kVolume) {
        settable = devices.at(object).elements.at(address.element).settable;
    }
    return kSuccess;
}

}  // namespace vantle::testing
