#pragma once

#include <optional>
#include <string_view>

#include "services/property_list.h"

namespace vantle {

// The persistent domain of the user's settings: one dictionary from key to property-list value.
// Implementations read afresh at every call, because another program (or the user with a text
// editor) may change the settings while we run, and a value written is visible to the next read.
class DefaultsStore {
public:
    virtual ~DefaultsStore() = default;

    // The value stored under key, or empty when there is none.
    virtual std::optional<PlistValue> object(std::string_view key) = 0;

    // Stores value under key, or removes the key when value is empty. Returns false when the
    // change could not be made durable; it still reads back for the rest of this process.
    virtual bool setObject(std::string_view key, std::optional<PlistValue> value) = 0;
};

}  // namespace vantle
