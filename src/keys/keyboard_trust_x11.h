#pragma once

#include "keys/keyboard_trust.h"

namespace vantle {

// X11 asks no permission for a key grab: every process may try, and what stops the keys is
// another program holding them. So the process is always trusted and there is nothing to reset.
class X11KeyboardTrust final : public KeyboardTrust {
public:
    bool trusted(bool) override { return true; }
    bool permissionFollowsBuild() const override { return false; }
    bool settingsApplicationRunning() override { return false; }
    bool reset() override { return false; }
};

}  // namespace vantle
