#pragma once

// The whole program as a real process on the private X server, with a tray host, and the
// private sound server: starting it, finding its windows and tray icon, clicking, screenshots.
// Screenshots go to the build folder's test-artefacts.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "desktop_fixture.h"
#include "desktop_windows.h"
#include "localization/localization.h"
#include "support/child_process.h"

namespace vantle::testing {

using namespace std::chrono_literals;

class ProgramTest : public DesktopTest {
protected:
    ProgramTest() {
        startTrayHost();
        pactl({"set-default-sink", "studio"});
        setSinkLevel("studio", 0.5f);
    }

    std::unique_ptr<RunningChild> start(std::vector<std::string> arguments,
                                         std::map<std::string, std::optional<std::string>> environment = {},
                                         const std::string& program = VANTLE_PROGRAM) {
        ChildOptions options;
        options.environment = std::move(environment);
        return std::make_unique<RunningChild>(program, arguments, options);
    }

    static bool trayIconShown() { return trayIconCount() > 0; }

    static std::optional<Geometry> popover() { return windowNamed("Vantle Control"); }

    static void clickAt(int x, int y) { vantle::testing::clickAt(Point{x, y}); }

    // The tray icon sits at the right end of the tray host's panel, at the top right of LEFT.
    static void clickTrayIcon() { clickAt(1908, 12); }

    // Waits for the tray icon of a program just started, lets the tray host settle its place,
    // clicks it and waits for the popover; whether the popover showed.
    static bool openPopoverOnceTheIconShows() {
        if (!waitFor(trayIconShown, 5s)) {
            return false;
        }
        std::this_thread::sleep_for(600ms);
        clickTrayIcon();
        return waitFor([] { return popover().has_value(); }, 6s);
    }

    static void screenshot(const std::string& name, const std::optional<Geometry>& area = std::nullopt) {
        std::filesystem::create_directories(VANTLE_ARTEFACTS);
        std::vector<std::string> arguments = {std::string(VANTLE_ARTEFACTS) + "/" + name + ".png"};
        if (area) {
            for (int value : {area->x, area->y, area->width, area->height}) {
                arguments.push_back(std::to_string(value));
            }
        }
        run(SCREENSHOT_TOOL, arguments);
    }

    static long residentKilobytes(int pid) {
        std::ifstream status("/proc/" + std::to_string(pid) + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.rfind("VmRSS:", 0) == 0) {
                return std::stol(line.substr(6));
            }
        }
        return -1;
    }
};

}  // namespace vantle::testing
