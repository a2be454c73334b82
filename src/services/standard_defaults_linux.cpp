#include "services/standard_defaults.h"

#include "services/plist_file_store_linux.h"
#include "services/settings_location_linux.h"

namespace vantle {

UserDefaults& standardDefaults() {
    static PlistFileStore store(settingsFilePath());
    static UserDefaults defaults(store);
    return defaults;
}

}  // namespace vantle
