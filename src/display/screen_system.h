#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vantle {

// A rectangle in the desktop's coordinates, in points.
struct ScreenFrame {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const ScreenFrame&) const = default;
};

// One screen as the window system lists it.
struct SystemScreen {
    // The display number; empty when the window system gives none. A value outside the 32-bit
    // unsigned range is not a display number either.
    std::optional<std::int64_t> number;
    std::string name;
    ScreenFrame frame;
};

// The screens of the window system. Main thread only.
class ScreenSystem {
public:
    virtual ~ScreenSystem() = default;
    // The current screens, in the window system's order.
    virtual std::vector<SystemScreen> screens() = 0;
    // Whether the display is switched on and shows a picture.
    virtual bool isActive(std::uint32_t display) = 0;
};

}  // namespace vantle
