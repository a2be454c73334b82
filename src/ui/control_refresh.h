#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "services/login/login_item_status.h"

namespace vantle {

// The two colours a status text is drawn in.
enum class TextColour { secondaryLabel, systemOrange };

// Everything the refresh reads, taken afresh by the caller just before each refresh. Plain
// values only, so that the decisions can be tested without hardware or a window system.
struct RefreshFacts {
    struct Updates {
        bool canCheck = false;     // the updater can check for updates right now
        bool automatic = false;    // the updater checks by itself
    };
    struct Login {
        LoginItemStatus status = LoginItemStatus::notRegistered;
        bool installedForLogin = false;
        std::optional<std::string> lastError;  // ready to show; absent when the last change went well
    };
    // One leaf device of the current output.
    struct Leaf {
        std::size_t elementCount = 0;
        std::vector<float> levels;  // the element volumes that could be read, 0..1
    };
    struct Audio {
        std::vector<Leaf> leaves;
        bool muted = false;  // some output's levels are remembered from a mute
    };
    // Both readings of one display: the level to show (native or software) and the native one.
    struct DisplayReading {
        std::optional<float> read;
        std::optional<float> nativeRead;
    };
    struct Screen {
        std::uint32_t id = 0;
        std::string name;
        std::optional<float> read;
        std::optional<float> nativeRead;
    };
    struct Displays {
        std::vector<Screen> screens;  // in the backend's order
        // Readings of displays that still have controls but are listed no more.
        std::map<std::uint32_t, DisplayReading> unlisted;
    };
    // Which of the controls that may be absent exist now. Display ids are in the order their
    // controls are held.
    struct Controls {
        bool updateButton = false;
        bool loginSettingsButton = false;
        bool muteButton = false;
        bool quickVolume = false;
        bool quickVolumeLabel = false;
        bool quickMute = false;
        bool keyboardButton = false;
        std::vector<std::uint32_t> quickDisplays;
        std::vector<std::uint32_t> quickDisplayLabels;
        std::vector<std::uint32_t> displaySliders;
        std::vector<std::uint32_t> displayLabels;
        // The display whose percentage field the user is typing in right now.
        std::optional<std::uint32_t> editedPercentageField;
    };
    struct Keyboard {
        bool tapEnabled = false;     // the key tap exists and takes the keys
        bool trusted = false;        // the platform lets this process take the keys
        bool repairPending = false;  // an update left a permission repair to do
    };

    Updates updates;
    Login login;
    Audio audio;
    Displays displays;
    Controls controls;
    Keyboard keyboard;
};

// What to set on one control. An absent field is left as the control has it.
struct ControlState {
    std::optional<double> value = std::nullopt;  // a slider's position, 0..100 (the level times 100)
    std::optional<bool> checked = std::nullopt;  // a check box's state
    std::optional<std::string> title = std::nullopt;
    std::optional<std::string> text = std::nullopt;
    std::optional<TextColour> colour = std::nullopt;
    std::optional<bool> enabled = std::nullopt;
    std::optional<bool> hidden = std::nullopt;
    bool operator==(const ControlState&) const = default;
};

// The state of one per-display control.
struct DisplayControlState {
    std::uint32_t id = 0;
    ControlState state;
    bool operator==(const DisplayControlState&) const = default;
};

// The state of every control the refresh touches. A control that may be absent has a state
// exactly when it exists; the display lists follow the order of the controls in the facts.
struct ControlStates {
    std::optional<ControlState> updateButton;
    ControlState automaticUpdates;
    ControlState loginToggle;
    ControlState loginStatus;
    std::optional<ControlState> loginSettingsButton;
    ControlState audioWarning;
    ControlState volume;
    ControlState audioLabel;
    std::optional<ControlState> muteButton;
    std::optional<ControlState> quickVolume;
    std::optional<ControlState> quickVolumeLabel;
    std::optional<ControlState> quickMute;
    std::vector<DisplayControlState> quickDisplays;
    std::vector<DisplayControlState> quickDisplayLabels;
    std::vector<DisplayControlState> displaySliders;
    std::vector<DisplayControlState> displayLabels;
    std::optional<ControlState> keyboardButton;
    ControlState keyboardState;
    // The keyboard status just shown, to be stored as "keyboardStatus" so that the last known
    // status can be read back later.
    std::string keyboardStatus;
};

// Brings every control into line with the facts. The caller applies the states, stores the
// keyboard status, and then refits the settings window, since texts may have changed length.
ControlStates refreshControls(const RefreshFacts& facts);

// The separator between the parts of a line, such as a display's name and its level: a blank, a
// middle dot (U+00B7) and a blank.
inline constexpr const char* kDotSeparator = " \xC2\xB7 ";

}  // namespace vantle
