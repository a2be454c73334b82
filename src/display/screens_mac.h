#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "display/native_display_control.h"
#include "display/screen_system.h"

namespace vantle {

struct MacScreenSystemCallback;

// The screens of the window server as AppKit lists them, in its order (the screen with the
// menu bar first). A screen's number is its display id ("NSScreenNumber"), its name the
// system's localized name of the display, its frame the display's bounds in the desktop's
// coordinates and its visible frame what the menu bar and the Dock leave of it.
//
// Snapshot scopes keep the interface's default (no effect): AppKit and Core Graphics answer
// from the process's own copy of the configuration, so there are no round trips to save.
// Main thread only.
class MacScreenSystem final : public ScreenSystem {
public:
    // changed, when given, runs on the main thread after each change of the display
    // configuration, possibly several times for one change (once per display it touched).
    explicit MacScreenSystem(std::function<void()> changed = {});
    ~MacScreenSystem() override;
    MacScreenSystem(const MacScreenSystem&) = delete;
    MacScreenSystem& operator=(const MacScreenSystem&) = delete;

    std::vector<SystemScreen> screens() override;
    bool isActive(std::uint32_t display) override;

    // Every online display: active, mirroring another or asleep. Only the id is known here;
    // the EDID and connector stay empty, as nothing on this system needs them to find a
    // display's control.
    std::vector<DisplayIdentity> identities();

private:
    friend struct MacScreenSystemCallback;

    std::function<void()> changed_;
    bool watching_ = false;
};

}  // namespace vantle
