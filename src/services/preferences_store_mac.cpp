#include "services/preferences_store_mac.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace vantle {
namespace {

// A Core Foundation object that we own and release once.
class Owned {
public:
    Owned() = default;
    explicit Owned(CFTypeRef object) : object_(object) {}
    ~Owned() {
        if (object_ != nullptr) {
            CFRelease(object_);
        }
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    Owned(Owned&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Owned& operator=(Owned&&) = delete;

    CFTypeRef get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    CFTypeRef object_ = nullptr;
};

Owned makeString(std::string_view text) {
    return Owned(CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                         static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

std::optional<std::string> utf8Text(CFStringRef string) {
    if (const char* direct = CFStringGetCStringPtr(string, kCFStringEncodingUTF8)) {
        return std::string(direct);
    }
    const CFIndex maximum = CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8);
    // A negative worst case is the library's way of saying that it overflowed.
    if (maximum < 0) {
        return std::nullopt;
    }
    std::vector<char> buffer(static_cast<std::size_t>(maximum) + 1);
    if (!CFStringGetCString(string, buffer.data(), static_cast<CFIndex>(buffer.size()), kCFStringEncodingUTF8)) {
        return std::nullopt;
    }
    return std::string(buffer.data(), ::strnlen(buffer.data(), buffer.size()));
}

std::optional<PlistValue> fromObject(CFTypeRef object);

std::optional<PlistValue> fromNumber(CFNumberRef number) {
    if (CFNumberIsFloatType(number)) {
        double value = 0;
        CFNumberGetValue(number, kCFNumberFloat64Type, &value);
        return PlistValue(value);
    }
    std::int64_t value = 0;
    CFNumberGetValue(number, kCFNumberSInt64Type, &value);
    return PlistValue(value);
}

std::optional<PlistValue> fromArray(CFArrayRef array) {
    PlistValue::Array values;
    const CFIndex count = CFArrayGetCount(array);
    for (CFIndex index = 0; index < count; ++index) {
        std::optional<PlistValue> value = fromObject(CFArrayGetValueAtIndex(array, index));
        if (!value) {
            return std::nullopt;
        }
        values.push_back(std::move(*value));
    }
    return PlistValue(std::move(values));
}

std::optional<PlistValue> fromDictionary(CFDictionaryRef dictionary) {
    const CFIndex count = CFDictionaryGetCount(dictionary);
    std::vector<const void*> keys(static_cast<std::size_t>(count));
    std::vector<const void*> values(static_cast<std::size_t>(count));
    CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
    PlistValue::Dictionary entries;
    for (std::size_t index = 0; index < keys.size(); ++index) {
        if (CFGetTypeID(keys[index]) != CFStringGetTypeID()) {
            return std::nullopt;
        }
        std::optional<std::string> key = utf8Text(static_cast<CFStringRef>(keys[index]));
        std::optional<PlistValue> value = fromObject(values[index]);
        if (!key || !value) {
            return std::nullopt;
        }
        entries.insert_or_assign(std::move(*key), std::move(*value));
    }
    return PlistValue(std::move(entries));
}

std::optional<PlistValue> fromObject(CFTypeRef object) {
    if (object == nullptr) {
        return std::nullopt;
    }
    const CFTypeID type = CFGetTypeID(object);
    // Booleans come first: the system keeps them apart from numbers, and so do we.
    if (type == CFBooleanGetTypeID()) {
        return PlistValue(CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0);
    }
    if (type == CFNumberGetTypeID()) {
        return fromNumber(static_cast<CFNumberRef>(object));
    }
    if (type == CFStringGetTypeID()) {
        std::optional<std::string> text = utf8Text(static_cast<CFStringRef>(object));
        return text ? std::optional<PlistValue>(PlistValue(std::move(*text))) : std::nullopt;
    }
    if (type == CFArrayGetTypeID()) {
        return fromArray(static_cast<CFArrayRef>(object));
    }
    if (type == CFDictionaryGetTypeID()) {
        return fromDictionary(static_cast<CFDictionaryRef>(object));
    }
    if (type == CFDataGetTypeID()) {
        const auto data = static_cast<CFDataRef>(object);
        const UInt8* bytes = CFDataGetBytePtr(data);
        const CFIndex length = CFDataGetLength(data);
        return PlistValue(PlistValue::Data(bytes, bytes + (bytes != nullptr ? length : 0)));
    }
    if (type == CFDateGetTypeID()) {
        return PlistValue(PlistValue::Date{CFDateGetAbsoluteTime(static_cast<CFDateRef>(object))});
    }
    return std::nullopt;
}

Owned toObject(const PlistValue& value) {
    if (const bool* flag = value.asBool()) {
        // The shared Boolean objects are retained so that every result is released alike.
        return Owned(CFRetain(*flag ? kCFBooleanTrue : kCFBooleanFalse));
    }
    if (const std::int64_t* integer = value.asInteger()) {
        return Owned(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, integer));
    }
    if (const double* real = value.asReal()) {
        return Owned(CFNumberCreate(kCFAllocatorDefault, kCFNumberFloat64Type, real));
    }
    if (const std::string* text = value.asString()) {
        return makeString(*text);
    }
    if (const PlistValue::Array* values = value.asArray()) {
        CFMutableArrayRef array = CFArrayCreateMutable(kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks);
        Owned held(array);
        if (!held) {
            return {};
        }
        for (const PlistValue& element : *values) {
            Owned object = toObject(element);
            if (!object) {
                return {};
            }
            // The array retains what it holds; ours is released when object goes.
            CFArrayAppendValue(array, object.get());
        }
        return held;
    }
    if (const PlistValue::Dictionary* entries = value.asDictionary()) {
        CFMutableDictionaryRef dictionary = CFDictionaryCreateMutable(
            kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
        Owned held(dictionary);
        if (!held) {
            return {};
        }
        for (const auto& [key, element] : *entries) {
            Owned name = makeString(key);
            Owned object = toObject(element);
            if (!name || !object) {
                return {};
            }
            CFDictionarySetValue(dictionary, name.get(), object.get());
        }
        return held;
    }
    if (const PlistValue::Data* bytes = value.asData()) {
        return Owned(CFDataCreate(kCFAllocatorDefault, bytes->data(), static_cast<CFIndex>(bytes->size())));
    }
    if (const PlistValue::Date* date = value.asDate()) {
        return Owned(CFDateCreate(kCFAllocatorDefault, date->secondsSinceReference));
    }
    return {};
}

}  // namespace

std::optional<PlistValue> PreferencesStore::object(std::string_view key) {
    Owned name = makeString(key);
    if (!name) {
        return std::nullopt;
    }
    Owned value(CFPreferencesCopyAppValue(static_cast<CFStringRef>(name.get()), kCFPreferencesCurrentApplication));
    return fromObject(value.get());
}

bool PreferencesStore::setObject(std::string_view key, std::optional<PlistValue> value) {
    Owned name = makeString(key);
    if (!name) {
        return false;
    }
    Owned object = value ? toObject(*value) : Owned();
    if (value && !object) {
        return false;
    }
    // A null value removes the key.
    CFPreferencesSetAppValue(static_cast<CFStringRef>(name.get()), object.get(), kCFPreferencesCurrentApplication);
    return CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication) != 0;
}

}  // namespace vantle
