#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "display/shade.h"

namespace vantle {

// A shade that can change how it dims while it is shown: by a translucent window while a
// compositor blends windows, by the display's gamma ramp while none does (a translucent window
// would then show as opaque black). The frame, alpha and whether it is shown survive the change.
class SwitchingShade final : public ShadePanel {
public:
    // Makes the panel for one way of dimming; null when that way cannot dim this display.
    using Maker = std::function<std::unique_ptr<ShadePanel>(bool composited)>;

    SwitchingShade(Maker make, bool composited);

    void setUp(const ScreenFrame& frame) override;
    void setAlpha(double alpha) override;
    void orderOut() override;
    void orderFrontRegardless() override;
    void raise() override;

    // Moves to the other way of dimming when composited differs from the one in use. When the new
    // way cannot dim this display, the display is left undimmed rather than covered in black.
    void useCompositor(bool composited);
    // Whether the shade can dim now.
    bool canDim() const { return panel_ != nullptr; }

private:
    Maker make_;
    bool composited_;
    std::unique_ptr<ShadePanel> panel_;
    std::optional<ScreenFrame> frame_;
    double alpha_ = 0;
    bool shown_ = false;
};

}  // namespace vantle
