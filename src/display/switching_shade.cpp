#include "display/switching_shade.h"

namespace vantle {

SwitchingShade::SwitchingShade(Maker make, bool composited)
    : make_(std::move(make)), composited_(composited), panel_(make_(composited)) {}

void SwitchingShade::setUp(const ScreenFrame& frame) {
    frame_ = frame;
    if (panel_) {
        panel_->setUp(frame);
    }
}

void SwitchingShade::setAlpha(double alpha) {
    alpha_ = alpha;
    if (panel_) {
        panel_->setAlpha(alpha);
    }
}

void SwitchingShade::orderOut() {
    shown_ = false;
    if (panel_) {
        panel_->orderOut();
    }
}

void SwitchingShade::orderFrontRegardless() {
    shown_ = true;
    if (panel_) {
        panel_->orderFrontRegardless();
    }
}

void SwitchingShade::raise() {
    if (shown_ && panel_) {
        panel_->raise();
    }
}

void SwitchingShade::useCompositor(bool composited) {
    if (composited == composited_) {
        return;
    }
    composited_ = composited;
    // The old way lets go first: a gamma shade puts the undimmed ramp back as it goes, which the
    // new one must read as the ramp to dim from.
    if (panel_) {
        panel_->orderOut();
        panel_.reset();
    }
    panel_ = make_(composited);
    if (!panel_) {
        return;
    }
    if (frame_) {
        panel_->setUp(*frame_);
    }
    panel_->setAlpha(alpha_);
    if (shown_) {
        panel_->orderFrontRegardless();
    }
}

}  // namespace vantle
