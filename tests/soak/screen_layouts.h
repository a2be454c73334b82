#pragma once

// Layouts of monitors on the private X server, switched with xrandr while the program runs. LEFT,
// which carries Xvfb's only output and the tray host, stays as it is in every layout, so that the
// tray icon keeps its place; only the monitors to its right come and go.
#include <string>
#include <vector>

namespace vantle::testing {

struct MonitorPlacement {
    std::string name;
    std::string geometry;  // xrandr's w/mmw x h/mmh +x+y
};

struct ScreenLayout {
    std::string description;
    std::vector<MonitorPlacement> rightHandMonitors;
};

// The layouts to choose from; the first is the one the server starts with.
const std::vector<ScreenLayout>& screenLayouts();

// The names of the monitors the server lists now.
std::vector<std::string> listedMonitors();

// Removes every monitor but LEFT, then adds the layout's; false when xrandr refused a step.
bool applyScreenLayout(const ScreenLayout& layout);

}  // namespace vantle::testing
