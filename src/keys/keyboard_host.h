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

// What the keyboard handling needs from the application around it and from the platform.
// Main thread only.
class KeyboardHost {
public:
    virtual ~KeyboardHost() = default;

    // Whether the platform lets this process take the keys at all (on X11 it always does).
    virtual bool trusted() = 0;
    // Whether a new build of the program loses the permission the old build was given, so that
    // an update makes a repair due. False where the permission is not tied to the program.
    virtual bool permissionFollowsBuild() const = 0;
    // Shows text on the settings window's status line (hidden when empty) and refits the window.
    virtual void report(const std::string& text) = 0;
    // Brings every control into line with the current state.
    virtual void refresh() = 0;
    // Closes the popover, brings the program forward and runs the alert; answers true when
    // the user chose its second button.
    virtual bool runAlert(const KeyboardAlert& alert) = 0;
    // Opens the settings page where the user lets the program have the keys, or frees them.
    virtual bool openKeyboardSettings() = 0;
    // The settings application that openKeyboardSettings opens is running now.
    virtual bool systemSettingsRunning() = 0;
    // Resets the program's keyboard permission with the platform's tool; false when the tool
    // could not run or failed.
    virtual bool resetKeyboardPermission() = 0;
    // Starts a fresh copy of the program, for the renewed permission to apply, and ends this one.
    virtual void relaunch() = 0;
    // Runs work on the main thread soon, after the current event is done. Work queued by an
    // application that is gone never runs.
    virtual void queue(std::function<void()> work) = 0;
};

}  // namespace vantle
