// Brings every control into line with the state of the hardware and of the services: the facts
// are gathered, the pure refresh decides, and this applies its decisions to the widgets.
#include <QAbstractButton>
#include <QLabel>
#include <QPointer>
#include <QSignalBlocker>
#include <QSlider>
#include <cmath>
#include <map>

#include "app/app.h"
#include "app/app_controls.h"
#include "services/settings_keys.h"
#include "ui/refresh_facts.h"
#include "ui/text_colour_qt.h"

namespace vantle {
namespace {

// Sets what the state says on whatever kind of control the widget is; the control's own
// signals stay quiet, so that setting a slider is never taken for the user moving it.
void apply(QWidget* widget, const ControlState& state) {
    if (widget == nullptr) {
        return;
    }
    const QSignalBlocker quiet(widget);
    if (auto* slider = qobject_cast<QSlider*>(widget); slider != nullptr && state.value) {
        if (!slider->isSliderDown()) {
            slider->setValue(static_cast<int>(std::lround(*state.value)));
        }
    }
    if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
        if (state.checked) {
            button->setChecked(*state.checked);
        }
        if (state.title) {
            button->setText(QString::fromStdString(*state.title));
        }
    }
    if (auto* label = qobject_cast<QLabel*>(widget)) {
        if (state.text) {
            label->setText(QString::fromStdString(*state.text));
        }
        if (state.colour) {
            paintText(*label, *state.colour);
        }
    }
    if (state.enabled) {
        widget->setEnabled(*state.enabled);
    }
    if (state.hidden) {
        widget->setVisible(!*state.hidden);
    }
}

template <typename Widget>
void applyEach(const std::map<std::uint32_t, QPointer<Widget>>& widgets, const std::vector<DisplayControlState>& states) {
    for (const DisplayControlState& state : states) {
        if (auto found = widgets.find(state.id); found != widgets.end()) {
            apply(found->second, state.state);
        }
    }
}

template <typename Widget>
std::vector<std::uint32_t> idsOf(const std::map<std::uint32_t, QPointer<Widget>>& widgets) {
    std::vector<std::uint32_t> ids;
    for (const auto& [id, widget] : widgets) {
        if (widget) {
            ids.push_back(id);
        }
    }
    return ids;
}

}  // namespace

void App::refresh() {
    if (!window_) {
        return;
    }
    Controls& controls = *controls_;
    RefreshFacts facts;
    facts.updates = updateFacts();
    facts.login = loginFacts();
    facts.controls.updateButton = !controls.page.updateButton.isNull();
    facts.controls.loginSettingsButton = !controls.page.loginSettingsButton.isNull();
    facts.controls.muteButton = controls.muteButton != nullptr;
    facts.controls.quickVolume = !controls.popover.quickVolume.isNull();
    facts.controls.quickVolumeLabel = !controls.popover.quickVolumeLabel.isNull();
    facts.controls.quickMute = !controls.popover.quickMute.isNull();
    facts.controls.keyboardButton = !controls.page.keyboardButton.isNull();
    facts.controls.quickDisplays = idsOf(controls.popover.quickDisplays);
    facts.controls.quickDisplayLabels = idsOf(controls.popover.quickDisplayLabels);
    facts.keyboard = {keyboard_.keyboardEnabled(), platform_.keyboardTrust().trusted(false), keyboard_.updateRepairNeeded()};
    gatherHardwareFacts(facts, volume_, hal_, brightness_);

    const ControlStates states = refreshControls(facts);
    if (states.updateButton) {
        apply(controls.page.updateButton, *states.updateButton);
    }
    apply(controls.automaticUpdates.get(), states.automaticUpdates);
    apply(controls.loginToggle.get(), states.loginToggle);
    apply(controls.loginStatus.get(), states.loginStatus);
    if (states.loginSettingsButton) {
        apply(controls.page.loginSettingsButton, *states.loginSettingsButton);
    }
    apply(controls.audioWarning.get(), states.audioWarning);
    apply(controls.volume.get(), states.volume);
    apply(controls.audioLabel.get(), states.audioLabel);
    if (states.muteButton) {
        apply(controls.muteButton.get(), *states.muteButton);
    }
    if (states.quickVolume) {
        apply(controls.popover.quickVolume, *states.quickVolume);
    }
    if (states.quickVolumeLabel) {
        apply(controls.popover.quickVolumeLabel, *states.quickVolumeLabel);
    }
    if (states.quickMute) {
        apply(controls.popover.quickMute, *states.quickMute);
    }
    applyEach(controls.popover.quickDisplays, states.quickDisplays);
    applyEach(controls.popover.quickDisplayLabels, states.quickDisplayLabels);
    if (states.keyboardButton) {
        apply(controls.page.keyboardButton, *states.keyboardButton);
    }
    apply(controls.keyboardState.get(), states.keyboardState);
    // Written only when it changed: the same text again would cost a durable write every tick.
    if (defaults_.string(settings::kKeyboardStatus) != states.keyboardStatus) {
        defaults_.set(settings::kKeyboardStatus, states.keyboardStatus);
    }
    fitSettingsWindow();
}

void App::report(const std::string& text) {
    QLabel* message = controls_->message.get();
    message->setText(QString::fromStdString(text));
    message->setVisible(!text.empty());
    fitSettingsWindow();
}

}  // namespace vantle
