#pragma once

#include <functional>
#include <string>

namespace vantle {

// One modal alert: its texts and its two buttons, first and second.
struct KeyboardAlert {
    std::string message;
    std::string informative;
    std::string firstButton;
    std::string secondButton;
};

// What the keyboard handling needs from the application around it. Main thread only.
class KeyboardHost {
public:
    virtual ~KeyboardHost() = default;

    // Shows text on the settings window's status line (hidden when empty) and refits the window.
    virtual void report(const std::string& text) = 0;
    // Brings every control into line with the current state.
    virtual void refresh() = 0;
    // Closes the popover, brings the program forward and runs the alert; answers true when
    // the user chose its second button.
    virtual bool runAlert(const KeyboardAlert& alert) = 0;
    // Opens the settings page where the user lets the program have the keys, or frees them.
    virtual bool openKeyboardSettings() = 0;
    // Starts a fresh copy of the program, for the renewed permission to apply, and ends this one.
    virtual void relaunch() = 0;
    // Runs work on the main thread soon, after the current event is done. Work queued by an
    // application that is gone never runs.
    virtual void queue(std::function<void()> work) = 0;
};

}  // namespace vantle
