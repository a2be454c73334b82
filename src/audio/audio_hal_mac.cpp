#include "audio/audio_hal_mac.h"

#include <CoreAudio/CoreAudio.h>
#include <CoreFoundation/CoreFoundation.h>

#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "audio/cf_text.h"

namespace vantle {

namespace {

AudioObjectPropertyAddress hardwareAddress(const PropertyAddress& address) {
    return AudioObjectPropertyAddress{address.selector, address.scope, address.element};
}

// The properties whose data the hardware gives as a string reference and we give as UTF-8 text.
bool isTextProperty(const PropertyAddress& address) {
    return address.selector == audio::kName || address.selector == audio::kUid;
}

// The string's UTF-8 form; empty when it cannot be converted.
std::optional<std::string> utf8Text(CFStringRef string) {
    // Many strings keep their characters in a compatible form already; then no copy is needed.
    if (const char* direct = CFStringGetCStringPtr(string, kCFStringEncodingUTF8)) {
        return std::string(direct);
    }
    const CFIndex maximumBytes = CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8);
    const std::optional<std::size_t> bufferSize = terminatedUtf8BufferSize(maximumBytes);
    if (!bufferSize) {
        return std::nullopt;
    }
    std::vector<char> buffer(*bufferSize);
    if (!CFStringGetCString(string, buffer.data(), static_cast<CFIndex>(buffer.size()), kCFStringEncodingUTF8)) {
        return std::nullopt;
    }
    return textBeforeTerminator(buffer.data(), buffer.size());
}

// Reads a text property. The hardware hands over a string reference that belongs to us, so it is
// released here whatever happens to the conversion. A device that hands over no reference has no
// name: that is success with empty text.
AudioHal::Status readText(std::uint32_t object, const PropertyAddress& address, std::string& text) {
    text.clear();
    const AudioObjectPropertyAddress where = hardwareAddress(address);
    CFStringRef string = nullptr;
    UInt32 size = sizeof(string);
    const OSStatus status = AudioObjectGetPropertyData(object, &where, 0, nullptr, &size, &string);
    if (status != kAudioHardwareNoError) {
        return status;
    }
    if (string == nullptr) {
        return AudioHal::kSuccess;
    }
    std::optional<std::string> converted = utf8Text(string);
    CFRelease(string);
    if (!converted || converted->size() > std::numeric_limits<std::uint32_t>::max()) {
        return kAudioHardwareUnspecifiedError;
    }
    text = std::move(*converted);
    return AudioHal::kSuccess;
}

}  // namespace

AudioHal::Status CoreAudioHal::dataSize(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size) {
    size = 0;
    if (isTextProperty(address)) {
        std::string text;
        const Status status = readText(object, address, text);
        if (status == kSuccess) {
            size = static_cast<std::uint32_t>(text.size());
        }
        return status;
    }
    const AudioObjectPropertyAddress where = hardwareAddress(address);
    UInt32 hardwareSize = 0;
    const OSStatus status = AudioObjectGetPropertyDataSize(object, &where, 0, nullptr, &hardwareSize);
    if (status == kAudioHardwareNoError) {
        size = hardwareSize;
    }
    return status;
}

AudioHal::Status CoreAudioHal::getData(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size,
                                       void* data) {
    if (isTextProperty(address)) {
        const std::uint32_t capacity = data != nullptr ? size : 0;
        size = 0;
        std::string text;
        const Status status = readText(object, address, text);
        if (status != kSuccess) {
            return status;
        }
        // The text may have grown since its size was asked; hand out what fits, in whole characters.
        const std::size_t count = wholeCharacterPrefixLength(text, capacity);
        if (count > 0) {
            std::memcpy(data, text.data(), count);
        }
        size = static_cast<std::uint32_t>(count);
        return kSuccess;
    }
    const AudioObjectPropertyAddress where = hardwareAddress(address);
    UInt32 hardwareSize = size;
    const OSStatus status = AudioObjectGetPropertyData(object, &where, 0, nullptr, &hardwareSize, data);
    size = status == kAudioHardwareNoError ? hardwareSize : 0;
    return status;
}

AudioHal::Status CoreAudioHal::setData(std::uint32_t object, const PropertyAddress& address, std::uint32_t size,
                                       const void* data) {
    // The hardware takes a name as a string reference, not as the bytes AudioHal deals in, and
    // nothing here renames a device.
    if (isTextProperty(address)) {
        return kAudioHardwareUnsupportedOperationError;
    }
    const AudioObjectPropertyAddress where = hardwareAddress(address);
    return AudioObjectSetPropertyData(object, &where, 0, nullptr, size, data);
}

bool CoreAudioHal::hasProperty(std::uint32_t object, const PropertyAddress& address) {
    const AudioObjectPropertyAddress where = hardwareAddress(address);
    return AudioObjectHasProperty(object, &where) != 0;
}

AudioHal::Status CoreAudioHal::isSettable(std::uint32_t object, const PropertyAddress& address, bool& settable) {
    const AudioObjectPropertyAddress where = hardwareAddress(address);
    Boolean hardwareSettable = 0;
    const OSStatus status = AudioObjectIsPropertySettable(object, &where, &hardwareSettable);
    settable = status == kAudioHardwareNoError && hardwareSettable != 0;
    return status;
}

}  // namespace vantle
