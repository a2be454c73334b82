#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "display/screen_system.h"
#include "ui/status_button.h"

namespace vantle {

// The program's item in the menu bar, as AppKit makes it: a button with the system's "two
// displays" symbol, or, on a system without it, our own artwork of it, drawn as a template image
// so that the system colours it for a light or dark menu bar.
// A click calls clicked (the popover); a right click, or a click with Control held, calls
// contextClicked (the main menu). The toolkit's own tray icon would open a context menu on every
// click, which leaves no click for the popover. Main thread only; the item leaves the menu bar
// with the object.
class MacStatusItem final : public StatusButton {
public:
    // image is our artwork, a PNG with transparency; description is what VoiceOver reads for it.
    MacStatusItem(const std::filesystem::path& image, const std::string& description, std::function<void()> clicked,
                  std::function<void()> contextClicked);
    ~MacStatusItem() override;
    MacStatusItem(const MacStatusItem&) = delete;
    MacStatusItem& operator=(const MacStatusItem&) = delete;

    void setToolTip(const std::string& text) override;
    // Empty while the menu bar has not placed the button, or hides it on a menu bar too full
    // to show it.
    std::optional<ScreenFrame> geometry() const override;
    bool visible() const override;

private:
    // The status item and the button's target, which only Objective-C++ can hold.
    struct Item;
    std::unique_ptr<Item> item_;
};

}  // namespace vantle
