#pragma once

#include "keys/keyboard_trust.h"

namespace vantle::testing {

// The permission to take the keys as the test sets it; counts the prompts and the resets.
class FakeKeyboardTrust final : public KeyboardTrust {
public:
    bool trusted(bool ask) override {
        prompts += ask ? 1 : 0;
        return trust;
    }
    bool permissionFollowsBuild() const override { return followsBuild; }
    bool settingsApplicationRunning() override { return settingsRunning; }
    bool reset() override {
        ++resets;
        return resetWorks;
    }

    bool trust = true;
    bool followsBuild = true;
    bool settingsRunning = false;
    bool resetWorks = true;
    int prompts = 0;
    int resets = 0;
};

}  // namespace vantle::testing
