#include "services/user_defaults.h"

namespace vantle {

void UserDefaults::registerDefaults(const PlistValue::Dictionary& defaults) {
    for (const auto& [key, value] : defaults) {
        registered_.insert_or_assign(key, value);
    }
}

std::optional<PlistValue> UserDefaults::object(std::string_view key) const {
    if (std::optional<PlistValue> stored = store_.object(key)) {
        return stored;
    }
    if (auto found = registered_.find(key); found != registered_.end()) {
        return found->second;
    }
    return std::nullopt;
}

template <typename T, typename Read>
std::optional<T> UserDefaults::typed(std::string_view key, Read read) const {
    // A stored value of the wrong type does not hide the registered default: it reads as if
    // it were absent.
    if (std::optional<PlistValue> stored = store_.object(key)) {
        if (std::optional<T> value = read(*stored)) {
            return value;
        }
    }
    if (auto found = registered_.find(key); found != registered_.end()) {
        return read(found->second);
    }
    return std::nullopt;
}

bool UserDefaults::boolean(std::string_view key) const {
    auto read = [](const PlistValue& value) -> std::optional<bool> {
        if (const bool* boolean = value.asBool()) {
            return *boolean;
        }
        return std::nullopt;
    };
    return typed<bool>(key, read).value_or(false);
}

std::int64_t UserDefaults::integer(std::string_view key) const {
    auto read = [](const PlistValue& value) -> std::optional<std::int64_t> {
        if (const std::int64_t* integer = value.asInteger()) {
            return *integer;
        }
        return std::nullopt;
    };
    return typed<std::int64_t>(key, read).value_or(0);
}

std::optional<std::string> UserDefaults::string(std::string_view key) const {
    auto read = [](const PlistValue& value) -> std::optional<std::string> {
        if (const std::string* string = value.asString()) {
            return *string;
        }
        return std::nullopt;
    };
    return typed<std::string>(key, read);
}

std::optional<std::vector<std::string>> UserDefaults::stringArray(std::string_view key) const {
    auto read = [](const PlistValue& value) { return value.asStringArray(); };
    return typed<std::vector<std::string>>(key, read);
}

std::optional<PlistValue::Dictionary> UserDefaults::dictionary(std::string_view key) const {
    auto read = [](const PlistValue& value) -> std::optional<PlistValue::Dictionary> {
        if (const PlistValue::Dictionary* dictionary = value.asDictionary()) {
            return *dictionary;
        }
        return std::nullopt;
    };
    return typed<PlistValue::Dictionary>(key, read);
}

bool UserDefaults::set(std::string_view key, PlistValue value) {
    return store_.setObject(key, std::move(value));
}

bool UserDefaults::remove(std::string_view key) {
    return store_.setObject(key, std::nullopt);
}

}  // namespace vantle
