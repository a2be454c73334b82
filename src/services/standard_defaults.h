#pragma once

#include "services/user_defaults.h"

namespace vantle {

// The user's own settings, shared by the whole process. Created on first use; main thread only.
UserDefaults& standardDefaults();

}  // namespace vantle
