#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "services/defaults_store.h"
#include "services/property_list.h"

namespace vantle {

// Typed access to the user's settings with a registration layer, in the manner of the
// platform's user defaults: a key reads its stored value when that value has the asked type,
// else its registered default when that has the type, else the type's own default (false, 0 or
// absent). Nothing is cached; every read goes to the store.
class UserDefaults {
public:
    explicit UserDefaults(DefaultsStore& store) : store_(store) {}

    // Registered defaults live only in memory and are never written to the store.
    void registerDefaults(const PlistValue::Dictionary& defaults);

    // The stored value, else the registered one.
    std::optional<PlistValue> object(std::string_view key) const;
    bool boolean(std::string_view key) const;
    std::int64_t integer(std::string_view key) const;
    std::optional<std::string> string(std::string_view key) const;
    std::optional<std::vector<std::string>> stringArray(std::string_view key) const;
    std::optional<PlistValue::Dictionary> dictionary(std::string_view key) const;

    // Each returns false when the change could not be saved durably (see DefaultsStore).
    bool set(std::string_view key, PlistValue value);
    bool remove(std::string_view key);

private:
    // The first of the stored and the registered value for which read yields a result.
    template <typename T, typename Read>
    std::optional<T> typed(std::string_view key, Read read) const;

    DefaultsStore& store_;
    PlistValue::Dictionary registered_;
};

}  // namespace vantle
