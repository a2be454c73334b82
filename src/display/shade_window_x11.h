#pragma once

#include <memory>

#include "display/shade.h"

class QWindow;

namespace vantle {

// A shade as a black, frameless, click-through window above all others, made translucent by
// the window opacity. Only a compositor turns that opacity into dimming; without one the
// window would be opaque black, which is why the gamma shade exists.
class ShadeWindow final : public ShadePanel {
public:
    ShadeWindow();
    ~ShadeWindow() override;

    void setUp(const ScreenFrame& frame) override;
    void setAlpha(double alpha) override;
    void orderOut() override;
    void orderFrontRegardless() override;
    void raise() override;

    QWindow* window() const { return window_.get(); }

private:
    std::unique_ptr<QWindow> window_;
};

}  // namespace vantle
