#include "hal_reading.h"

#include <gtest/gtest.h>

namespace vantle::testing {

std::vector<std::uint32_t> deviceIds(AudioHal& hal) {
    return idList(hal, audio::kSystemObject, audio::kDevices);
}

std::vector<std::uint32_t> idList(AudioHal& hal, std::uint32_t object, std::uint32_t selector, std::uint32_t scope) {
    const PropertyAddress address{selector, scope, audio::kMainElement};
    std::uint32_t size = 0;
    if (hal.dataSize(object, address, size) != AudioHal::kSuccess) {
        return {};
    }
    std::vector<std::uint32_t> ids(size / sizeof(std::uint32_t));
    size = static_cast<std::uint32_t>(ids.size() * sizeof(std::uint32_t));
    if (hal.getData(object, address, size, ids.data()) != AudioHal::kSuccess) {
        return {};
    }
    ids.resize(size / sizeof(std::uint32_t));
    return ids;
}

std::optional<std::string> text(AudioHal& hal, std::uint32_t object, std::uint32_t selector) {
    const PropertyAddress address{selector, audio::kScopeGlobal, audio::kMainElement};
    std::uint32_t size = 0;
    if (hal.dataSize(object, address, size) != AudioHal::kSuccess) {
        return std::nullopt;
    }
    std::string result(size, '\0');
    if (hal.getData(object, address, size, result.data()) != AudioHal::kSuccess) {
        return std::nullopt;
    }
    result.resize(size);
    return result;
}

std::optional<std::uint32_t> defaultOutput(AudioHal& hal) {
    std::uint32_t id = 0;
    std::uint32_t size = sizeof(id);
    if (hal.getData(audio::kSystemObject, {audio::kDefaultOutputDevice, audio::kScopeGlobal, audio::kMainElement},
                    size, &id) != AudioHal::kSuccess ||
        size != sizeof(id)) {
        return std::nullopt;
    }
    return id;
}

std::optional<std::uint32_t> streamBytes(AudioHal& hal, std::uint32_t device) {
    std::uint32_t size = 0;
    if (hal.dataSize(device, {audio::kStreams, audio::kScopeOutput, audio::kMainElement}, size) !=
        AudioHal::kSuccess) {
        return std::nullopt;
    }
    return size;
}

std::optional<float> volume(AudioHal& hal, std::uint32_t device, std::uint32_t element) {
    float level = 0.0f;
    std::uint32_t size = sizeof(level);
    if (hal.getData(device, {audio::kVolume, audio::kScopeOutput, element}, size, &level) != AudioHal::kSuccess ||
        size != sizeof(level)) {
        return std::nullopt;
    }
    return level;
}

bool setVolume(AudioHal& hal, std::uint32_t device, std::uint32_t element, float level) {
    return hal.setData(device, {audio::kVolume, audio::kScopeOutput, element}, sizeof(level), &level) ==
           AudioHal::kSuccess;
}

std::optional<std::uint32_t> deviceWithUid(AudioHal& hal, const std::string& uid) {
    for (const std::uint32_t id : deviceIds(hal)) {
        if (text(hal, id, audio::kUid) == uid) {
            return id;
        }
    }
    return std::nullopt;
}

std::uint32_t presentDeviceWithUid(AudioHal& hal, const std::string& uid) {
    const std::optional<std::uint32_t> id = deviceWithUid(hal, uid);
    EXPECT_TRUE(id) << uid;
    return id.value_or(0);
}

}  // namespace vantle::testing
