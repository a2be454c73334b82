#pragma once

#include <map>
#include <memory>
#include <set>
#include <vector>

#include "display/native_brightness.h"
#include "display/screen_system.h"
#include "display/shade.h"

namespace vantle::testing {

class FakeScreenSystem final : public ScreenSystem {
public:
    std::vector<SystemScreen> screens() override { return list; }
    bool isActive(std::uint32_t display) override { return inactive.count(display) == 0; }

    void add(std::int64_t number, std::string name, ScreenFrame frame = {0, 0, 1920, 1080}) {
        list.push_back(SystemScreen{number, std::move(name), frame, std::nullopt});
    }

    std::vector<SystemScreen> list;
    std::set<std::uint32_t> inactive;
};

// What a shade looks like right now, kept after the panel itself is gone.
struct ShadeState {
    ScreenFrame frame;
    double alpha = 0;
    bool shown = false;
    int setUps = 0;
    int raises = 0;
    bool destroyed = false;
};

class FakeShadeFactory final : public ShadeFactory {
public:
    std::unique_ptr<ShadePanel> makePanel(std::uint32_t display, const ScreenFrame& frame) override;

    // The state of every panel made, by display, newest last.
    std::map<std::uint32_t, std::vector<std::shared_ptr<ShadeState>>> made;
    const ShadeState& latest(std::uint32_t display) const { return *made.at(display).back(); }
};

// Native brightness kept in a map: a display answers when it has an entry.
struct FakeNativeBrightness {
    std::map<std::uint32_t, float> levels;
    std::set<std::uint32_t> rejectSet;
    NativeBrightnessFunctions functions(bool withGetter = true, bool withSetter = true);
};

}  // namespace vantle::testing
