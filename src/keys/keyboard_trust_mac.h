#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "keys/keyboard_trust.h"

namespace vantle {

// The Accessibility permission of macOS. The system keeps the grant for the code signature it
// was given to, so a new build of the program has lost it even though the settings still show
// the program as allowed; the privacy database tool withdraws the stale grant so that the user
// can give it afresh.
class MacKeyboardTrust final : public KeyboardTrust {
public:
    // Runs the named system tool with the arguments, waits for it, and tells whether it could
    // start and exited with status 0. The application builds it from its process runner, which
    // the key code does not reach.
    using ToolRunner = std::function<bool(std::string_view tool, const std::vector<std::string>& arguments)>;

    explicit MacKeyboardTrust(ToolRunner runTool) : runTool_(std::move(runTool)) {}

    bool trusted(bool ask) override;
    bool permissionFollowsBuild() const override { return true; }
    bool settingsApplicationRunning() override;
    bool reset() override;

private:
    ToolRunner runTool_;
};

}  // namespace vantle
