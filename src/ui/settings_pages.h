#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "display/brightness.h"
#include "ui/control_refresh.h"

namespace vantle {

// The settings pages, in the order of the page selector.
enum SettingsPage : int { kGeneralPage = 0, kDockPage = 1, kAboutPage = 2, kUpdatesPage = 3 };

// Who made the program, as the about page shows it.
namespace Maker {
inline constexpr std::string_view company = "Orlend";
inline constexpr std::string_view author = "Mira Halvorsen";
inline constexpr std::string_view email = "support@orlend.example";
inline constexpr std::string_view emailUrl = "mailto:support@orlend.example";
inline constexpr std::string_view website = "https://orlend.example/vantle-control";
// The website's button shows the address without its scheme, which reads better as a title.
inline constexpr std::string_view websiteTitle = "orlend.example/vantle-control";
}  // namespace Maker

// The views a row can be.
enum class RowKind {
    horizontal,     // a horizontal stack of the row's children
    brandMark,      // the brand mark, size points square
    helpButton,     // the help button; text is its tool tip and accessibility label
    flexibleSpace,  // an empty view that takes the free width
    pageSelector,   // segmented control: segments, selected
    section,        // a section title: bold, fontSize 17, with 28 points before it when the stack has views
    label,          // a wrapping label
    button,         // a push button titled text
    slider,         // a slider from minimum to maximum, starting at value
    existing,       // a long-lived control of the application, placed again (field)
    languagePopUp,  // the language menu: items, selected
    logo,           // the maker's logo image, width × height, text is its accessibility label
};

// The controls the application keeps in named fields: either long-lived ones a page places
// again, or ones a row creates and the application keeps for the refresh.
enum class Field {
    none,
    loginToggle,
    loginStatus,
    loginSettingsButton,
    linked,
    keyboardButton,
    keyboardState,
    audioWarning,
    softwareToggle,
    automaticUpdates,
    updateButton,
    updateMessage,
    message,
    quickVolumeLabel,
    quickVolume,
    quickMute,
    quickDisplayLabel,  // kept in quickDisplayLabels under displayId
    quickDisplay,       // kept in quickDisplays under displayId
};

// The actions a control triggers.
enum class Action {
    none,
    changeSettingsPage,
    showHelp,
    changeLanguage,
    changeLogin,
    openLoginSettings,
    saveLinked,
    openDisplaySettings,
    enableKeys,
    repairKeyboardPermission,
    openMIDI,
    softwareChanged,
    smallSpacer,
    bigSpacer,
    addSeparator,
    openEmail,
    openWebsite,
    showLicense,
    changeAutomaticUpdates,
    checkUpdates,
    toggleMute,
    quickVolumeChanged,
    setBrightness,
    showDock,
    showGeneral,
    quit,
};

// One entry of a pop-up menu: its title and the value it stands for.
struct MenuItem {
    std::string title;
    std::string value;
    bool operator==(const MenuItem&) const = default;
};

// One row of a page or of the popover, or one view inside a horizontal row. Fields that do not
// apply to the kind keep their defaults.
struct Row {
    RowKind kind = RowKind::label;
    std::string key{};  // the string-table key of text; empty for a literal or no text
    std::string text{};  // what the view shows
    double fontSize = 13;
    bool bold = false;
    Field field = Field::none;
    Action action = Action::none;
    std::optional<std::uint32_t> displayId{};  // the display a control acts on, also its tag
    bool fullWidth = false;  // constrained to the width of the stack
    bool enabled = true;
    std::optional<bool> checked{};  // a check box's state, set when the row is placed
    std::optional<bool> hidden{};  // set when the row is placed
    std::optional<TextColour> colour{};  // set when the row is placed
    std::optional<double> spacingAfter{};  // custom spacing after the row
    // Horizontal rows.
    double spacing = 12;
    bool fillEqually = false;
    bool centredVertically = false;
    std::vector<Row> children{};
    // Buttons.
    bool wrapping = false;  // the title wraps inside the button
    std::optional<double> height{};  // a fixed height
    // Sliders.
    double minimum = 0;
    double maximum = 100;
    double value = 0;
    bool continuous = false;
    // Brand mark and logo.
    double size = 0;
    double width = 0;
    // Pop-up menus and segmented controls.
    std::vector<MenuItem> items{};
    std::vector<std::string> segments{};
    int selected = 0;
};

// What the pages show that is stored or comes from the bundle.
struct PageInputs {
    std::optional<std::string> languagePreference;  // "VantleLanguagePreference"; absent: automatic
    bool linked = true;  // "linked"
    bool softwareBrightness = false;  // "softwareBrightness"
    std::string releaseVersion;                     // the bundle's "VantleReleaseVersion"
    std::string releaseDate;                        // the bundle's "VantleReleaseDate", day/month/year
    // The Dock exists only on macOS: elsewhere the Dock page says so first and its buttons do nothing.
    bool dockAvailable = true;
};

// The settings window's header (brand mark, title, help button) and its page selector.
std::vector<Row> settingsHeaderRows(int page);

// The rows of a settings page, without header and message line; empty for an unknown page.
std::vector<Row> settingsPageRows(int page, const PageInputs& inputs);

// The whole content of the settings window for a page: header, selector, the page's rows and,
// last, the message line, emptied and hidden.
std::vector<Row> settingsWindowRows(int page, const PageInputs& inputs);

// The popover's content: header, the note when there are more displays than can be controlled,
// the volume controls, one name label and slider for each of the first displays up to the
// limit, and the buttons to the settings and to quit. screens: the backend's displays, in order.
std::vector<Row> popoverRows(const std::vector<DisplayEntry>& screens);

}  // namespace vantle
