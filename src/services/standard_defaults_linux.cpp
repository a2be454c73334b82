#include "services/standard_defaults.h"

#include "services/plist_file_store.h"
#include "services/settings_location.h"

namespace vantle {

UserDefaults& standardDefaults() {
    static PlistFileStore store(settingsFilePath());
    static UserDefaults defaults(store);
    return defaults;
}

}  // namespace vantle
