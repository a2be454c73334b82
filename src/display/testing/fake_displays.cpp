#include "display/testing/fake_displays.h"

namespace vantle::testing {
namespace {

class FakeShadePanel final : public ShadePanel {
public:
    explicit FakeShadePanel(std::shared_ptr<ShadeState> state) : state_(std::move(state)) {}
    ~FakeShadePanel() override { state_->destroyed = true; }

    void setUp(const ScreenFrame& frame) override {
        state_->frame = frame;
        ++state_->setUps;
    }
    void setAlpha(double alpha) override { state_->alpha = alpha; }
    void orderOut() override { state_->shown = false; }
    void orderFrontRegardless() override { state_->shown = true; }
    void raise() override { ++state_->raises; }

private:
    std::shared_ptr<ShadeState> state_;
};

}  // namespace

std::unique_ptr<ShadePanel> FakeShadeFactory::makePanel(std::uint32_t display, const ScreenFrame& frame) {
    auto state = std::make_shared<ShadeState>();
    state->frame = frame;
    made[display].push_back(state);
    return std::make_unique<FakeShadePanel>(state);
}

NativeBrightnessFunctions FakeNativeBrightness::functions(bool withGetter, bool withSetter) {
    NativeBrightnessFunctions result;
    if (withGetter) {
        result.get = [this](std::uint32_t display, float* level) -> std::int32_t {
            auto found = levels.find(display);
            if (found == levels.end()) {
                return 1;
            }
            *level = found->second;
            return 0;
        };
    }
    if (withSetter) {
        result.set = [this](std::uint32_t display, float level) -> std::int32_t {
            if (rejectSet.count(display) != 0 || levels.count(display) == 0) {
                return 1;
            }
            levels[display] = level;
            return 0;
        };
    }
    return result;
}

}  // namespace vantle::testing
