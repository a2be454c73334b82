#include "display/shade_factory_linux.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "display/shade_window_x11.h"
#include "display/switching_shade.h"

namespace vantle {

namespace {

// A shade the factory can still reach to move it when the compositor comes or goes.
class WatchedShade final : public ShadePanel {
public:
    WatchedShade(SwitchingShade::Maker make, bool composited, std::weak_ptr<std::set<SwitchingShade*>> live)
        : shade_(std::move(make), composited), live_(std::move(live)) {
        if (auto shades = live_.lock()) {
            shades->insert(&shade_);
        }
    }
    ~WatchedShade() override {
        if (auto shades = live_.lock()) {
            shades->erase(&shade_);
        }
    }
    WatchedShade(const WatchedShade&) = delete;
    WatchedShade& operator=(const WatchedShade&) = delete;

    bool canDim() const { return shade_.canDim(); }
    void setUp(const ScreenFrame& frame) override { shade_.setUp(frame); }
    void setAlpha(double alpha) override { shade_.setAlpha(alpha); }
    void orderOut() override { shade_.orderOut(); }
    void orderFrontRegardless() override { shade_.orderFrontRegardless(); }
    void raise() override { shade_.raise(); }

private:
    SwitchingShade shade_;
    std::weak_ptr<std::set<SwitchingShade*>> live_;
};

}  // namespace

LinuxShadeFactory::LinuxShadeFactory(xcb_connection_t* connection, X11ScreenSystem& screens,
                                     SavedGammaRamps& savedRamps)
    : connection_(connection),
      screens_(screens),
      savedRamps_(savedRamps),
      gammaKeeper_(connection),
      compositor_(connection, [this](bool running) { compositorChanged(running); }) {}

std::unique_ptr<ShadePanel> LinuxShadeFactory::makeFor(std::uint32_t display, bool composited) {
    if (composited) {
        return std::make_unique<ShadeWindow>();
    }
    const X11ScreenSystem::Output output = screens_.outputOf(display);
    if (output.crtc == 0) {
        return nullptr;
    }
    return std::make_unique<GammaShade>(connection_, output.crtc, output.name, savedRamps_, gammaKeeper_);
}

std::unique_ptr<ShadePanel> LinuxShadeFactory::makePanel(std::uint32_t display, const ScreenFrame&) {
    auto shade = std::make_unique<WatchedShade>(
        [this, display](bool composited) { return makeFor(display, composited); }, compositor_.running(), live_);
    if (!shade->canDim()) {
        return nullptr;
    }
    return shade;
}

void LinuxShadeFactory::raiseShades() {
    for (SwitchingShade* shade : *live_) {
        shade->raise();
    }
}

void LinuxShadeFactory::keepDimming() {
    gammaKeeper_.restoreChanged();
}

void LinuxShadeFactory::compositorChanged(bool running) {
    for (SwitchingShade* shade : *live_) {
        shade->useCompositor(running);
    }
}

void restoreSavedGammaRamps(xcb_connection_t* connection, X11ScreenSystem& screens, SavedGammaRamps& savedRamps) {
    for (const std::string& name : savedRamps.outputs()) {
        const std::optional<X11ScreenSystem::Output> output = screens.outputNamed(name);
        if (!output || output->crtc == 0) {
            continue;
        }
        const std::optional<GammaRamp> ramp = savedRamps.load(name);
        const std::optional<GammaRamp> current = readGammaRamp(connection, output->crtc);
        // A ramp of another size belongs to other hardware; it cannot be put back.
        if (ramp && current && ramp->red.size() == current->red.size()) {
            writeGammaRamp(connection, output->crtc, *ramp);
        }
        savedRamps.remove(name);
    }
}

}  // namespace vantle
