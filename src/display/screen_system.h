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
    // The part not covered by panels or docks; the whole frame when the system does not say.
    std::optional<ScreenFrame> visibleFrame;
};

// The screens of the window system. Main thread only.
class ScreenSystem {
public:
    virtual ~ScreenSystem() = default;
    // The current screens, in the window system's order.
    virtual std::vector<SystemScreen> screens() = 0;
    // Whether the display is switched on and shows a picture.
    virtual bool isActive(std::uint32_t display) = 0;

    // Between these calls the window system may answer every listing from one reading taken at
    // the start, so that a command over several displays asks the window system once. Scopes
    // nest; only the outermost counts. Outside a scope every listing reads afresh.
    virtual void beginSnapshot() {}
    virtual void endSnapshot() {}
};

// Holds a listing scope open for the lifetime of the object.
class ScreenSnapshotScope {
public:
    explicit ScreenSnapshotScope(ScreenSystem& screens) : screens_(screens) { screens_.beginSnapshot(); }
    ~ScreenSnapshotScope() { screens_.endSnapshot(); }
    ScreenSnapshotScope(const ScreenSnapshotScope&) = delete;
    ScreenSnapshotScope& operator=(const ScreenSnapshotScope&) = delete;

private:
    ScreenSystem& screens_;
};

}  // namespace vantle
