#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace vantle {

// A four-character code as the sound hardware layer uses them: the bytes of the 32-bit value,
// high to low, are the four characters ("volm", "uid ").
constexpr std::uint32_t fourCharCode(const char (&code)[5]) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(code[0])) << 24 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(code[1])) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(code[2])) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(code[3]));
}

// Where a property lives on an audio object.
struct PropertyAddress {
    std::uint32_t selector = 0;
    std::uint32_t scope = 0;
    std::uint32_t element = 0;
    bool operator==(const PropertyAddress&) const = default;
};

namespace audio {

inline constexpr std::uint32_t kSystemObject = 1;
inline constexpr std::uint32_t kMainElement = 0;

inline constexpr std::uint32_t kScopeOutput = fourCharCode("outp");
inline constexpr std::uint32_t kScopeGlobal = fourCharCode("glob");

// Volume of one element, 0..1, as a 32-bit float; on a device, output scope.
inline constexpr std::uint32_t kVolume = fourCharCode("volm");
// The default output device's id (32-bit unsigned); on the system object, global scope.
inline constexpr std::uint32_t kDefaultOutputDevice = fourCharCode("dOut");
// Every device's id (array of 32-bit unsigned); on the system object, global scope.
inline constexpr std::uint32_t kDevices = fourCharCode("dev#");
// The device's output streams; only the size is asked. Output scope.
inline constexpr std::uint32_t kStreams = fourCharCode("stm#");
// The device ids an aggregate device plays through right now; global scope.
inline constexpr std::uint32_t kActiveSubDevices = fourCharCode("agrp");
// The device's name and its persistent unique id, as UTF-8 text; global scope.
inline constexpr std::uint32_t kName = fourCharCode("lnam");
inline constexpr std::uint32_t kUid = fourCharCode("uid ");

}  // namespace audio

// The sound hardware as objects with properties, in the manner of the macOS hardware layer: the
// system object (id 1) lists devices and names the default output; each device has streams,
// volume elements (0 the main one, 1 and up its channels), a name, a unique id and, for an
// aggregate, its active sub-devices.
//
// Every call is synchronous, returns a status (0 for success) and never throws. A backend that
// talks to a server bounds each call in time: a stuck or absent server makes the call fail
// rather than block the caller. Calls come from the main thread only.
//
// Data layout: ids, element counts and volumes are 4-byte values; lists are arrays of 4-byte
// ids; text properties ("lnam", "uid ") are UTF-8 bytes without a terminator, their size being
// the byte count.
class AudioHal {
public:
    using Status = std::int32_t;
    static constexpr Status kSuccess = 0;

    virtual ~AudioHal() = default;

    // The size in bytes of the property's data.
    virtual Status dataSize(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size) = 0;

    // Reads at most size bytes into data; size becomes the number of bytes written.
    virtual Status getData(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size,
                           void* data) = 0;

    // Writes size bytes of data to the property.
    virtual Status setData(std::uint32_t object, const PropertyAddress& address, std::uint32_t size,
                           const void* data) = 0;

    // One write of a batch: size bytes at data to the object's property.
    struct Write {
        std::uint32_t object = 0;
        PropertyAddress address;
        std::uint32_t size = 0;
        const void* data = nullptr;
    };

    // Carries out the writes as setData would, one after another in their order, and returns
    // each one's status at the same position. A backend that talks to a server sends them
    // together and waits once for all the answers, so that a command reaching many devices
    // costs one wait, not one per device.
    virtual std::vector<Status> setDataBatch(const std::vector<Write>& writes) {
        std::vector<Status> statuses;
        statuses.reserve(writes.size());
        for (const Write& write : writes) {
            statuses.push_back(setData(write.object, write.address, write.size, write.data));
        }
        return statuses;
    }

    // Carries out steps of writes in their order, each step's writes as setDataBatch does
    // (all of them, even after one fails); once a step has a failed write, no later step is
    // carried out. Returns the statuses of the steps carried out, so it is shorter than steps
    // when one failed before the last. A command that must not let one device hear a change
    // after another refused it (a volume step across several devices) writes each device as a
    // step. A backend that talks to a server checks every step it can before sending anything,
    // stops at the first step that it already knows must fail, and sends the rest together; a
    // refusal that only the server can give (a device gone since the reading) is learnt with the
    // answers, after the later steps went out too, and is reported at its own position.
    virtual std::vector<std::vector<Status>> setDataInSequence(const std::vector<std::vector<Write>>& steps) {
        std::vector<std::vector<Status>> results;
        for (const std::vector<Write>& step : steps) {
            results.push_back(setDataBatch(step));
            if (std::any_of(results.back().begin(), results.back().end(),
                            [](Status status) { return status != kSuccess; })) {
                break;
            }
        }
        return results;
    }

    // Whether the object has the property at all.
    virtual bool hasProperty(std::uint32_t object, const PropertyAddress& address) = 0;

    // Whether the property can be written; the status tells whether the question was answered.
    virtual Status isSettable(std::uint32_t object, const PropertyAddress& address, bool& settable) = 0;

    // Between these two calls the backend may answer every read from one reading of the
    // hardware taken at the start, so that one command's many probes cost one round trip to a
    // sound server. A read after our own successful write still returns the written value.
    // Scopes nest; only the outermost counts. Outside a scope every call reads afresh.
    virtual void beginSnapshot() {}
    virtual void endSnapshot() {}
    // The same scope for a command that is mostly about the default output device and its own
    // properties (a volume key): a backend may read that device alone first, and the rest of
    // the hardware only when something else is first asked.
    virtual void beginSnapshotOfDefaultOutput() { beginSnapshot(); }
};

// Holds a snapshot scope open for the lifetime of the object.
class AudioSnapshotScope {
public:
    // What the command inside the scope asks about first.
    enum class Start { everything, defaultOutput };

    explicit AudioSnapshotScope(AudioHal& hal, Start start = Start::everything) : hal_(hal) {
        if (start == Start::defaultOutput) {
            hal_.beginSnapshotOfDefaultOutput();
        } else {
            hal_.beginSnapshot();
        }
    }
    ~AudioSnapshotScope() { hal_.endSnapshot(); }
    AudioSnapshotScope(const AudioSnapshotScope&) = delete;
    AudioSnapshotScope& operator=(const AudioSnapshotScope&) = delete;

private:
    AudioHal& hal_;
};

}  // namespace vantle
