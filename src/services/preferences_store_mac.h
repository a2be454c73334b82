#pragma once

#include <optional>
#include <string_view>

#include "services/defaults_store.h"
#include "services/property_list.h"

namespace vantle {

// The settings domain of the running application in the system's preferences (the domain of
// its bundle identifier), read and written through Core Foundation.
//
// A read looks in the application's domain and then in the domains every application shares,
// which is how the system's own settings such as "AppleInterfaceStyle" read through the same
// store. The preferences daemon keeps every process's view current, so a read sees changes
// made by another program. A write changes the application's domain at once for this process
// and is then flushed to disk; only a failed flush makes it report failure.
//
// Values convert both ways between the system's property-list objects and PlistValue without
// loss; a dictionary with a key that is not a string, and any object that is not a
// property-list type, read as absent. Main thread only, like the settings.
class PreferencesStore final : public DefaultsStore {
public:
    std::optional<PlistValue> object(std::string_view key) override;
    bool setObject(std::string_view key, std::optional<PlistValue> value) override;
};

}  // namespace vantle
