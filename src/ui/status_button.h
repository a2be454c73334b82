#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "display/screen_system.h"
#include "ui/status_icon.h"

namespace vantle {

// A button in the menu bar that the system draws itself (the macOS status item), on which the
// toolkit's side puts the program's popover and main menu.
class StatusButton {
public:
    virtual ~StatusButton() = default;

    virtual void setToolTip(const std::string& text) = 0;
    // Where the button sits, in the desktop's coordinates; empty while it is not placed.
    virtual std::optional<ScreenFrame> geometry() const = 0;
    virtual bool visible() const = 0;
};

// Makes the button, with what a plain click and a context click (right click, or a click with
// Control held) call.
using StatusButtonMaker = std::function<std::unique_ptr<StatusButton>(std::function<void()> clicked,
                                                                      std::function<void()> contextClicked)>;

// The program's icon over such a button: a click calls clicked, a context click opens the main
// menu that finish() gives, just below the button.
std::unique_ptr<StatusIcon> makeButtonStatusIcon(const StatusButtonMaker& make, std::function<void()> clicked);

}  // namespace vantle
