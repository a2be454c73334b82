#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "display/brightness.h"
#include "services/message_line.h"
#include "services/user_defaults.h"
#include "services/workspace.h"

namespace vantle {

// The brightness commands: a step on all displays from the keys, a display's slider, a typed
// percentage, and the linking and software-dimming switches. Each command ends with a message
// and, except where it stops early, a refresh of the controls. Main thread only.
class BrightnessControl {
public:
    BrightnessControl(Brightness& brightness, UserDefaults& defaults, MessageLine& messages, Workspace& workspace,
                      std::function<void()> refresh)
        : brightness_(brightness),
          defaults_(defaults),
          messages_(messages),
          workspace_(workspace),
          refresh_(std::move(refresh)) {}

    // A relative step on every display, linked or not as the "linked" setting says.
    void adjustBrightness(float delta);
    // A display's slider: tag is the display id, value runs from 0 to 100.
    void setBrightness(std::int64_t tag, double sliderValue);
    // A display's percentage field; a decimal comma is accepted. Returns whether the field
    // should give up the keyboard focus (it keeps it when the text was rejected).
    bool setBrightnessPercent(std::int64_t tag, std::string_view text);
    void saveLinked(bool on);
    void softwareChanged(bool on);
    // The screen configuration changed: displays that are gone lose their shade and level, the
    // others' shades are laid again over their screens' current frames.
    void screensChanged();
    // The desktop's display settings.
    void openDisplaySettings();
    // Where outputs are combined: the desktop's sound settings.
    void openMIDI();

private:
    void show(const char* key);

    Brightness& brightness_;
    UserDefaults& defaults_;
    MessageLine& messages_;
    Workspace& workspace_;
    std::function<void()> refresh_;
};

// The typed percentage as a level: "55,5" gives 0.555; empty unless the whole text is a number
// from 0 to 100 ("-0" counts as 0).
std::optional<float> parsePercentage(std::string_view text);

}  // namespace vantle
