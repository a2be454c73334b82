#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "audio/audio_hal.h"

namespace vantle::testing {

// Sound hardware in memory. Devices are described directly; any single call can be made to
// fail through failWhen, and every write is logged.
class FakeAudioHal final : public AudioHal {
public:
    struct Element {
        float volume = 0.5f;
        bool readable = true;
        bool settable = true;
    };

    struct Device {
        std::optional<std::string> name;
        std::optional<std::string> uid;
        int outputStreams = 1;
        std::map<std::uint32_t, Element> elements;
        // Present for an aggregate device: its active sub-devices, in order.
        std::optional<std::vector<std::uint32_t>> subDevices;
    };

    enum class Operation { DataSize, GetData, SetData, HasProperty, IsSettable };

    struct Call {
        Operation operation;
        std::uint32_t object;
        PropertyAddress address;
    };

    struct Write {
        std::uint32_t device;
        std::uint32_t element;
        float level;
        bool operator==(const Write&) const = default;
    };

    // A stereo device with channels 1 and 2 (and, when master is true, element 0).
    static Device plainDevice(std::string name, std::string uid, std::vector<float> channelLevels, bool master = false);

    Status dataSize(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size) override;
    Status getData(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size, void* data) override;
    Status setData(std::uint32_t object, const PropertyAddress& address, std::uint32_t size, const void* data) override;
    bool hasProperty(std::uint32_t object, const PropertyAddress& address) override;
    Status isSettable(std::uint32_t object, const PropertyAddress& address, bool& settable) override;

    void beginSnapshot() override {
        if (snapshotDepth++ == 0) {
            ++readings;
        }
    }
    void endSnapshot() override { --snapshotDepth; }
    void beginSnapshotOfDefaultOutput() override {
        if (snapshotDepth == 0) {
            ++defaultOutputReadings;
        }
        beginSnapshot();
    }

    // The device list in the order the hardware gives it.
    std::vector<std::uint32_t> order;
    std::map<std::uint32_t, Device> devices;
    std::optional<std::uint32_t> defaultOutput;
    // When it answers true for a call, that call fails with a non-zero status (or false).
    std::function<bool(const Call&)> failWhen;
    std::vector<Write> writes;
    int snapshotDepth = 0;
    // Outermost snapshot scopes opened: each is one reading of a real server's state.
    int readings = 0;
    // Those of them opened as starting from the default output.
    int defaultOutputReadings = 0;

    // Convenience: the device's element volume.
    float volume(std::uint32_t device, std::uint32_t element) const;
    void add(std::uint32_t id, Device device);

private:
    bool fails(Operation operation, std::uint32_t object, const PropertyAddress& address) const;
    // The bytes a property holds, or empty when the object does not have it.
    std::optional<std::string> propertyBytes(std::uint32_t object, const PropertyAddress& address) const;
};

}  // namespace vantle::testing
