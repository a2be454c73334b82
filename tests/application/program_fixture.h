#pragma once

// The whole program as a real process on the private X server, with a tray host, and the
// private sound server: starting it, finding its windows and tray icon, clicking, screenshots.
// Screenshots go to the build folder's test-artefacts.
#include <sys/wait.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "desktop_fixture.h"
#include "localization/localization.h"
#include "support/child_process.h"

namespace vantle::testing {

using namespace std::chrono_literals;
using ProgramClock = std::chrono::steady_clock;

struct Geometry {
    int x = 0, y = 0, width = 0, height = 0;
};

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

    static std::string windowTree() { return runChild("/usr/bin/xwininfo", {"-root", "-tree"}).standardOutput; }

    // Tray icons of ours: windows of ours of an icon's size inside the tray host's panel.
    static int trayIconCount() {
        const std::string tree = windowTree();
        const std::string ours = R"("vantle-control": ("vantle-control" "vantle-control"))";
        int count = 0;
        for (std::size_t at = tree.find(ours); at != std::string::npos; at = tree.find(ours, at + 1)) {
            const std::size_t size = tree.find_first_not_of(' ', at + ours.size());
            if (size != std::string::npos && (tree.compare(size, 5, "22x22") == 0 || tree.compare(size, 5, "24x24") == 0)) {
                ++count;
            }
        }
        return count;
    }
    static bool trayIconShown() { return trayIconCount() > 0; }

    static bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds atMost) {
        const auto deadline = ProgramClock::now() + atMost;
        while (ProgramClock::now() < deadline) {
            if (condition()) {
                return true;
            }
            std::this_thread::sleep_for(50ms);
        }
        return condition();
    }

    // A pattern for xdotool that matches exactly the title. xdotool's pattern may not know UTF-8:
    // every run of non-ASCII bytes matches as ".*".
    static std::string titlePattern(const std::string& title) {
        std::string pattern = "^";
        for (std::size_t index = 0; index < title.size(); ++index) {
            if (static_cast<unsigned char>(title[index]) < 0x80) {
                pattern += title[index];
            } else if (pattern.size() < 2 || pattern.substr(pattern.size() - 2) != ".*") {
                pattern += ".*";
            }
        }
        return pattern + "$";
    }

    // How many visible windows have exactly this title.
    static std::size_t windowsTitled(const std::string& title) {
        const std::string found =
            runChild("/usr/bin/xdotool", {"search", "--onlyvisible", "--name", titlePattern(title)}).standardOutput;
        return static_cast<std::size_t>(std::count(found.begin(), found.end(), '\n'));
    }

    // The geometry of the visible window of ours named name (an exact title), or of the popup
    // (no title) when name is empty.
    static std::optional<Geometry> windowNamed(const std::string& name) {
        const ChildResult found = runChild("/usr/bin/xdotool", {"search", "--onlyvisible", "--name", titlePattern(name)});
        std::istringstream ids(found.standardOutput);
        for (std::string id; std::getline(ids, id);) {
            const std::string info = runChild("/usr/bin/xdotool", {"getwindowgeometry", "--shell", id}).standardOutput;
            // Lines of NAME=value; the four we need are numbers.
            const auto value = [&info](const std::string& key) {
                const std::size_t at = info.find("\n" + key + "=");
                return at == std::string::npos ? 0 : std::atoi(info.c_str() + at + key.size() + 2);
            };
            const Geometry geometry{value("X"), value("Y"), value("WIDTH"), value("HEIGHT")};
            if (geometry.width > 100) {
                return geometry;
            }
        }
        return std::nullopt;
    }

    static std::optional<Geometry> popover() { return windowNamed("Vantle Control"); }

    static void clickAt(int x, int y) { run("/usr/bin/xdotool", {"mousemove", std::to_string(x), std::to_string(y), "click", "1"}); }

    // The tray icon sits at the right end of the tray host's panel, at the top right of LEFT.
    static void clickTrayIcon() { clickAt(1908, 12); }

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

    // Whether some program holds the mute key: our own grab of it is then refused.
    static bool muteKeyTaken() {
        xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        const xcb_keycode_t mute = 121;  // XF86AudioMute in the X server's default keymap
        xcb_generic_error_t* error = xcb_request_check(
            connection, xcb_grab_key_checked(connection, 1, root, 0, mute, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        const bool taken = error != nullptr;
        std::free(error);
        xcb_disconnect(connection);
        return taken;
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
