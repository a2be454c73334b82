#pragma once

#include <string>

#include "services/defaults_store.h"

namespace vantle::testing {

// A settings domain in memory, for tests of the logic that reads and writes settings.
// failWrites makes every change report that it could not be saved, as a full disk would.
class MemoryDefaultsStore final : public DefaultsStore {
public:
    std::optional<PlistValue> object(std::string_view key) override {
        if (auto found = values.find(key); found != values.end()) {
            return found->second;
        }
        return std::nullopt;
    }

    bool setObject(std::string_view key, std::optional<PlistValue> value) override {
        if (value) {
            values.insert_or_assign(std::string(key), std::move(*value));
        } else if (auto found = values.find(key); found != values.end()) {
            values.erase(found);
        }
        return !failWrites;
    }

    PlistValue::Dictionary values;
    bool failWrites = false;
};

}  // namespace vantle::testing
