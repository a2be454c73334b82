#pragma once

#include <cstdint>
#include <memory>

#include "display/shade.h"

namespace vantle {

// A shade as an AppKit panel: borderless, black, click-through, without a shadow, above the
// windows of every application and on every Space, also beside a full-screen window. The
// panel never activates the program, so dimming a display never takes the keyboard focus
// from what the user is doing. Frames are in the desktop's coordinates (see
// desktop_coordinates.h); the panel turns them into AppKit's. Main thread only.
class MacShadePanel final : public ShadePanel {
public:
    explicit MacShadePanel(const ScreenFrame& frame);
    ~MacShadePanel() override;
    MacShadePanel(const MacShadePanel&) = delete;
    MacShadePanel& operator=(const MacShadePanel&) = delete;

    void setUp(const ScreenFrame& frame) override;
    void setAlpha(double alpha) override;
    void orderOut() override;
    void orderFrontRegardless() override;

private:
    // Holds the panel, which automatic reference counting keeps alive in Objective-C++ only.
    struct Window;
    std::unique_ptr<Window> window_;
};

class MacShadeFactory final : public ShadeFactory {
public:
    std::unique_ptr<ShadePanel> makePanel(std::uint32_t display, const ScreenFrame& frame) override;
};

}  // namespace vantle
