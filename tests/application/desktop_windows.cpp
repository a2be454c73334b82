#include "desktop_windows.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <thread>
#include <vector>

#include "support/child_process.h"

namespace vantle::testing {

bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds atMost) {
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    while (std::chrono::steady_clock::now() < deadline) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return condition();
}

std::string titlePattern(const std::string& title) {
    std::string pattern = "^";
    for (const char character : title) {
        if (static_cast<unsigned char>(character) < 0x80) {
            pattern += character;
        } else if (pattern.size() < 2 || pattern.substr(pattern.size() - 2) != ".*") {
            pattern += ".*";
        }
    }
    return pattern + "$";
}

std::size_t windowsTitled(const std::string& title) {
    const std::string found =
        runChild("/usr/bin/xdotool", {"search", "--onlyvisible", "--name", titlePattern(title)}).standardOutput;
    return static_cast<std::size_t>(std::count(found.begin(), found.end(), '\n'));
}

std::optional<Geometry> windowNamed(const std::string& name) {
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

namespace {

// The centres of the program's tray icons, in root coordinates. A line of the window tree reads
// 0x... "vantle-control": ("vantle-control" "vantle-control")  22x22+1+1  +3177+1
// where the last pair is the window's place on the root window.
std::vector<Point> trayIconCentres() {
    const std::string tree = runChild("/usr/bin/xwininfo", {"-root", "-tree"}).standardOutput;
    const std::string ours = R"("vantle-control": ("vantle-control" "vantle-control"))";
    std::vector<Point> centres;
    for (std::size_t at = tree.find(ours); at != std::string::npos; at = tree.find(ours, at + 1)) {
        int width = 0, height = 0, relativeX = 0, relativeY = 0, x = 0, y = 0;
        if (std::sscanf(tree.c_str() + at + ours.size(), "%dx%d%d%d %d%d", &width, &height, &relativeX, &relativeY, &x,
                        &y) == 6 &&
            width >= 16 && width <= 32 && height >= 16 && height <= 32) {
            centres.push_back(Point{x + width / 2, y + height / 2});
        }
    }
    return centres;
}

}  // namespace

std::optional<Point> trayIconCentre() {
    const std::vector<Point> centres = trayIconCentres();
    return centres.empty() ? std::nullopt : std::optional<Point>(centres.front());
}

int trayIconCount() {
    return static_cast<int>(trayIconCentres().size());
}

bool muteKeyTaken() {
    return muteKeyTakenOn({});
}

bool muteKeyTakenOn(const std::string& display) {
    xcb_connection_t* connection = xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return false;
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const xcb_keycode_t mute = 121;  // XF86AudioMute in the X server's default keymap
    xcb_generic_error_t* error = xcb_request_check(
        connection, xcb_grab_key_checked(connection, 1, root, 0, mute, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    const bool taken = error != nullptr;
    std::free(error);
    xcb_disconnect(connection);
    return taken;
}

void clickAt(Point point) {
    runChild("/usr/bin/xdotool", {"mousemove", std::to_string(point.x), std::to_string(point.y), "click", "1"});
}

void dragFrom(Point from, Point to) {
    std::vector<std::string> arguments{"mousemove", std::to_string(from.x), std::to_string(from.y), "mousedown", "1"};
    constexpr int kSteps = 6;
    for (int step = 1; step <= kSteps; ++step) {
        const int x = from.x + (to.x - from.x) * step / kSteps;
        const int y = from.y + (to.y - from.y) * step / kSteps;
        arguments.insert(arguments.end(), {"sleep", "0.03", "mousemove", std::to_string(x), std::to_string(y)});
    }
    arguments.insert(arguments.end(), {"mouseup", "1"});
    runChild("/usr/bin/xdotool", arguments);
}

}  // namespace vantle::testing
