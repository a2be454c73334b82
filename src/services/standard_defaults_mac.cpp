#include "services/preferences_store_mac.h"
#include "services/standard_defaults.h"

namespace vantle {

UserDefaults& standardDefaults() {
    static PreferencesStore store;
    static UserDefaults defaults(store);
    return defaults;
}

}  // namespace vantle
