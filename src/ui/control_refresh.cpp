#include "ui/control_refresh.h"

#include <algorithm>
#include <string_view>

#include "localization/localization.h"
#include "services/levels.h"

namespace vantle {
namespace {

// The warning sign, U+26A0: the texts that warn carry it, and it turns the status text orange.
constexpr std::string_view kWarningSign = "\xE2\x9A\xA0";

std::string percentText(float level) {
    return std::to_string(percentage(level));
}

double sliderValue(float level) {
    return static_cast<double>(level) * 100.0;
}

void refreshUpdates(const RefreshFacts& facts, ControlStates& states) {
    if (facts.controls.updateButton) {
        states.updateButton = ControlState{.enabled = facts.updates.canCheck};
    }
    states.automaticUpdates = ControlState{.checked = facts.updates.automatic};
}

void refreshLogin(const RefreshFacts::Login& login, bool settingsButtonExists, ControlStates& states) {
    const bool approval = login.status == LoginItemStatus::requiresApproval;
    states.loginToggle = ControlState{
        .checked = login.status == LoginItemStatus::enabled || approval,
        .enabled = login.installedForLogin,
    };
    std::string status;
    if (login.lastError) {
        status = *login.lastError;
    } else if (!login.installedForLogin) {
        status = L("s077");
    } else if (approval) {
        status = L("s078");
    }
    const bool empty = status.empty();
    states.loginStatus = ControlState{.text = std::move(status), .colour = TextColour::systemOrange, .hidden = empty};
    if (settingsButtonExists) {
        states.loginSettingsButton = ControlState{.hidden = !(approval || login.lastError.has_value())};
    }
}

// Volume can be set only when there is a leaf and every leaf has a volume element.
bool volumeUsable(const RefreshFacts::Audio& audio) {
    return !audio.leaves.empty() &&
           std::all_of(audio.leaves.begin(), audio.leaves.end(),
                       [](const RefreshFacts::Leaf& leaf) { return leaf.elementCount >= 1; });
}

void refreshStatusText(const RefreshFacts& facts, ControlStates& states) {
    const auto& screens = facts.displays.screens;
    std::string text = !screens.empty() && screens.size() <= ControlPlan::limit ? L("s144", screens.size())
                                                                                 : L("s079");
    std::string unreadable;
    bool anyUnreadable = false;
    for (const auto& screen : screens) {
        if (!screen.read) {
            unreadable += anyUnreadable ? ", " + screen.name : screen.name;
            anyUnreadable = true;
        }
    }
    if (anyUnreadable) {
        text += "\n" + L("s145", unreadable);
    }
    text += "\n" + L(volumeUsable(facts.audio) ? "s083" : "s082");
    text += "\n" + L("s080");
    const TextColour colour = text.find(kWarningSign) != std::string::npos ? TextColour::systemOrange
                                                                          : TextColour::secondaryLabel;
    states.audioWarning = ControlState{.text = std::move(text), .colour = colour};
}

// The level shown is the loudest element of all leaves, not an average: it is the level the
// next volume step starts from.
float loudestLevel(const RefreshFacts::Audio& audio) {
    float loudest = 0.0f;
    for (const auto& leaf : audio.leaves) {
        for (float level : leaf.levels) {
            loudest = std::max(loudest, level);
        }
    }
    return loudest;
}

void refreshVolume(const RefreshFacts& facts, ControlStates& states) {
    const auto& controls = facts.controls;
    const bool usable = volumeUsable(facts.audio);
    const bool muted = facts.audio.muted;
    // A muted system can always be unmuted, even when its volume cannot be set.
    const bool muteEnabled = usable || muted;
    const float level = loudestLevel(facts.audio);
    states.volume = ControlState{.value = sliderValue(level), .enabled = usable};
    states.audioLabel = ControlState{.text = percentText(level) + " %"};
    if (controls.muteButton) {
        states.muteButton = ControlState{.title = L(muted ? "s084" : "s123"), .enabled = muteEnabled};
    }
    if (controls.quickVolume) {
        states.quickVolume = ControlState{.value = sliderValue(level), .enabled = usable};
    }
    if (controls.quickVolumeLabel) {
        states.quickVolumeLabel = ControlState{.text = L("s129", percentage(level))};
    }
    if (controls.quickMute) {
        states.quickMute = ControlState{.title = L(muted ? "s085" : "s123"), .enabled = muteEnabled};
    }
}

// A display's readings and its name, or the name of a display that is gone.
struct DisplayView {
    std::string name;
    RefreshFacts::DisplayReading reading;
};

DisplayView displayView(const RefreshFacts::Displays& displays, std::uint32_t id) {
    for (const auto& screen : displays.screens) {
        if (screen.id == id) {
            return {screen.name, {screen.read, screen.nativeRead}};
        }
    }
    const auto unlisted = displays.unlisted.find(id);
    return {L("s086"), unlisted != displays.unlisted.end() ? unlisted->second : RefreshFacts::DisplayReading{}};
}

bool contains(const std::vector<std::uint32_t>& ids, std::uint32_t id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

void refreshPopoverDisplays(const RefreshFacts& facts, ControlStates& states) {
    // Beyond the limit a brightness command acts on no display, so no slider may suggest it would.
    const bool withinLimit = facts.displays.screens.size() <= ControlPlan::limit;
    for (std::uint32_t id : facts.controls.quickDisplays) {
        const DisplayView display = displayView(facts.displays, id);
        const auto& value = display.reading.read;
        ControlState slider{.enabled = value.has_value() && withinLimit};
        std::string label = display.name + kDotSeparator;
        if (value) {
            slider.value = sliderValue(*value);
            label += percentText(*value) + " %";
            if (!display.reading.nativeRead) {
                label += kDotSeparator + L("s146");
            }
        } else {
            label += L("s127");
        }
        states.quickDisplays.push_back({id, slider});
        if (contains(facts.controls.quickDisplayLabels, id)) {
            states.quickDisplayLabels.push_back({id, ControlState{.text = std::move(label)}});
        }
    }
}

void refreshSettingsDisplays(const RefreshFacts& facts, ControlStates& states) {
    for (std::uint32_t id : facts.controls.displaySliders) {
        const auto value = displayView(facts.displays, id).reading.read;
        ControlState slider{.enabled = value.has_value()};
        if (value) {
            slider.value = sliderValue(*value);
        }
        states.displaySliders.push_back({id, slider});
        if (!contains(facts.controls.displayLabels, id)) {
            continue;
        }
        // Text the user is typing must survive a refresh: the timer refreshes every 2 s.
        ControlState field;
        if (!value) {
            field.text = L("s127");
        } else if (facts.controls.editedPercentageField != id) {
            field.text = percentText(*value);
        }
        states.displayLabels.push_back({id, field});
    }
}

void refreshKeyboard(const RefreshFacts& facts, ControlStates& states) {
    const auto& keyboard = facts.keyboard;
    if (facts.controls.keyboardButton) {
        states.keyboardButton = ControlState{
            .title = L("s056"),
            .hidden = keyboard.tapEnabled || keyboard.repairPending,
        };
    }
    std::string text;
    if (keyboard.repairPending) {
        text = L("s152");
    } else if (!keyboard.trusted) {
        text = L("s088");
    } else {
        text = L(keyboard.tapEnabled ? "s087" : "s089");
    }
    states.keyboardStatus = text;
    states.keyboardState = ControlState{
        .text = std::move(text),
        .colour = keyboard.tapEnabled ? TextColour::secondaryLabel : TextColour::systemOrange,
    };
}

}  // namespace

ControlStates refreshControls(const RefreshFacts& facts) {
    ControlStates states;
    refreshUpdates(facts, states);
    refreshLogin(facts.login, facts.controls.loginSettingsButton, states);
    refreshStatusText(facts, states);
    refreshVolume(facts, states);
    refreshPopoverDisplays(facts, states);
    refreshSettingsDisplays(facts, states);
    refreshKeyboard(facts, states);
    return states;
}

}  // namespace vantle
