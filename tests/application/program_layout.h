#pragma once

// Where the program's controls sit in its windows with the English texts, for tests that reach
// them with the pointer as a user would.
namespace vantle::testing {

// From the popover's top left corner: the volume row (whose mute button follows a label of
// varying length) under the header, then the volume slider, then a name and a slider for each
// display, 55 points apart.
inline constexpr int kMuteButtonX = 165;
inline constexpr int kMuteButtonY = 69;
inline constexpr int kVolumeSliderY = 100;
inline constexpr int kFirstDisplaySliderY = 155;
inline constexpr int kDisplayRowHeight = 55;
inline constexpr int kSliderMargin = 26;

// The settings window's page selector spans the page under the header, one quarter a page.
inline constexpr int kPageSelectorY = 85;
inline constexpr int kPageSelectorLeft = 26;
inline constexpr int kPageSelectorWidth = 628;

// The horizontal centre of the selector's tab for page (0 to 3), from the window's left edge.
inline constexpr int pageTabX(int page) {
    return kPageSelectorLeft + kPageSelectorWidth * (2 * page + 1) / 8;
}

}  // namespace vantle::testing
