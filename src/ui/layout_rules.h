#pragma once

#include <optional>

// The sizing rules of the popover and the settings window, in points. Vertical positions grow
// downward: a top edge is the smallest y of a frame.
namespace vantle::LayoutRules {

// The popover: a stack 18 points inside its edges, its views 12 points apart.
inline constexpr double kPopoverMinimumWidth = 420;
inline constexpr double kPopoverMargin = 18;
inline constexpr double kPopoverSpacing = 12;

// The settings window: 680 wide, 730 high at first; the page stack is 26 points inside the
// sides, 24 inside the top and bottom, its views 13 points apart.
inline constexpr double kSettingsWidth = 680;
inline constexpr double kSettingsInitialHeight = 730;
inline constexpr double kSettingsSideMargin = 26;
inline constexpr double kSettingsTopMargin = 24;
inline constexpr double kSettingsSpacing = 13;

// Two equal bottom buttons side by side, one spacing between them and a margin on each side;
// never narrower than 420.
double popoverWidth(double widestBottomButton);

// The tallest the popover may be: the visible height of the status item's screen less 80, at
// least 300; 720 when that screen is unknown.
double popoverMaximumHeight(std::optional<double> visibleHeight);

// The height of the popover's content: the stack's fitting height rounded up to a whole point,
// and a margin above and below.
double popoverDocumentHeight(double stackFittingHeight);

// The popover's shown height: the content's, but no taller than the maximum, so that a long
// list of displays scrolls.
double popoverContentHeight(double maximumHeight, double documentHeight);

struct PopoverSize {
    double width = 0;
    double documentHeight = 0;
    double contentHeight = 0;
    bool operator==(const PopoverSize&) const = default;
};

PopoverSize popoverSize(double widestBottomButton, double stackFittingHeight, std::optional<double> visibleHeight);

// The screen area not covered by panels, vertically.
struct VerticalSpan {
    double top = 0;
    double height = 0;
};

// The settings window as it is now, and what it should hold.
struct SettingsWindowGeometry {
    double fittingHeight = 0;   // the page stack's fitting height, not yet rounded
    double contentHeight = 0;   // the window's current content height
    double frameTop = 0;        // the window frame's top edge
    double frameHeight = 0;     // the window frame's height: content plus title bar
    // The visible area of the window's screen, else of the main screen; absent with no screen.
    std::optional<VerticalSpan> visible;
};

// The tallest content allowed: the visible height less the title bar and 40, at least 240; the
// same from a height of 900 with no screen.
double settingsContentLimit(std::optional<double> visibleHeight, double chrome);

struct SettingsWindowFit {
    double contentWidth = kSettingsWidth;
    double contentHeight = 0;
    double frameTop = 0;  // where the frame's top edge goes
    bool operator==(const SettingsWindowFit&) const = default;
};

// The new size and position of the settings window, or nothing when it should stay as it is:
// the height it would take is not a finite positive number, or differs from the current one by
// half a point or less (so that rounding never makes the window twitch). The top edge stays
// where it was, but no higher than the top and no lower than the bottom of a known screen's
// visible area.
std::optional<SettingsWindowFit> fitSettingsWindow(const SettingsWindowGeometry& geometry);

}  // namespace vantle::LayoutRules
