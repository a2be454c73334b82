#pragma once

// Finding and clicking the program's windows on the private X server with xwininfo and xdotool,
// the way a user's pointer would reach them, and asking the server who holds the keys.
#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace vantle::testing {

struct Geometry {
    int x = 0, y = 0, width = 0, height = 0;
};

struct Point {
    int x = 0, y = 0;
};

// Asks condition every 50 ms until it answers true or atMost has passed; its last answer.
bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds atMost);

// A pattern for xdotool that matches exactly the title. xdotool's pattern may not know UTF-8:
// every run of non-ASCII bytes matches as ".*".
std::string titlePattern(const std::string& title);
// The geometry of the visible window named name (an exact title) that is wider than 100 pixels.
std::optional<Geometry> windowNamed(const std::string& name);
// How many visible windows have exactly this title.
std::size_t windowsTitled(const std::string& title);

// The centre of the program's tray icon inside the tray host, in root coordinates; absent while
// the icon is not embedded.
std::optional<Point> trayIconCentre();
// How many tray icons of the program the tray host holds.
int trayIconCount();

// Whether some program holds the mute key on the X server of display: our own grab of it is
// then refused. Without a display, the one of DISPLAY.
bool muteKeyTakenOn(const std::string& display);
bool muteKeyTaken();

void clickAt(Point point);
// Presses the first button at from, moves to to in a few steps and lets go there.
void dragFrom(Point from, Point to);

}  // namespace vantle::testing
