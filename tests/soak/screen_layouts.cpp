#include "screen_layouts.h"

#include <sstream>

#include "support/child_process.h"

namespace vantle::testing {

const std::vector<ScreenLayout>& screenLayouts() {
    // Xvfb's screen is 3200 pixels wide: LEFT takes the first 1920, the rest is for these.
    static const std::vector<ScreenLayout> layouts = {
        {"LEFT and RIGHT 1280x1024", {{"RIGHT", "1280/339x1024/271+1920+0"}}},
        {"LEFT alone", {}},
        {"LEFT and RIGHT 1024x768", {{"RIGHT", "1024/271x768/203+1920+0"}}},
        {"LEFT, RIGHT and EXTRA side by side",
         {{"RIGHT", "640/169x1024/271+1920+0"}, {"EXTRA", "640/169x1024/271+2560+0"}}},
        {"LEFT and EXTRA 800x600 lower down", {{"EXTRA", "800/212x600/159+2200+400"}}},
    };
    return layouts;
}

std::vector<std::string> listedMonitors() {
    // " 1: RIGHT 1280/339x1024/271+1920+0 " after a first line "Monitors: N"; the name may
    // carry the marks '+' (automatic) and '*' (primary).
    const std::string listing = runChild("/usr/bin/xrandr", {"--listmonitors"}).standardOutput;
    std::istringstream lines(listing);
    std::vector<std::string> names;
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string number, name;
        if (words >> number >> name) {
            names.push_back(name.substr(name.find_first_not_of("+*")));
        }
    }
    return names;
}

bool applyScreenLayout(const ScreenLayout& layout) {
    bool succeeded = true;
    for (const std::string& name : listedMonitors()) {
        if (name != "LEFT") {
            succeeded = runChild("/usr/bin/xrandr", {"--delmonitor", name}).exitStatus == 0 && succeeded;
        }
    }
    for (const MonitorPlacement& monitor : layout.rightHandMonitors) {
        succeeded =
            runChild("/usr/bin/xrandr", {"--setmonitor", monitor.name, monitor.geometry, "none"}).exitStatus == 0 &&
            succeeded;
    }
    return succeeded;
}

}  // namespace vantle::testing
