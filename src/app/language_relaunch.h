#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "keys/keyboard_control.h"
#include "services/user_defaults.h"

namespace vantle {

// What a change of language needs from the application around it. Main thread only.
class RelaunchHost {
public:
    virtual ~RelaunchHost() = default;
    // Starts a new instance of this program with the arguments and calls done on the main
    // thread with nothing on success or the error text on failure.
    virtual void startInstance(const std::vector<std::string>& arguments,
                               std::function<void(std::optional<std::string> error)> done) = 0;
    virtual void disableLanguageMenu() = 0;
    virtual void report(const std::string& text) = 0;
    virtual void rebuild() = 0;
    virtual void alert(const std::string& text) = 0;
    // Ends this instance; the quit question is not asked once relaunchingForLanguage is set.
    virtual void terminate() = 0;
};

// The running language is fixed for the life of the process, so a new choice is saved and a new
// instance takes over: it waits for this one to end and opens on the settings window. If it
// cannot start, this one stays and puts the previous choice back.
class LanguageRelaunch {
public:
    // processId: this process's id, for the new instance to wait on. preview: this process runs
    // the localization preview, which the new instance continues.
    LanguageRelaunch(UserDefaults& defaults, KeyboardControl& keyboard, RelaunchHost& host, int processId, bool preview)
        : defaults_(defaults), keyboard_(keyboard), host_(host), processId_(processId), preview_(preview) {}

    // The language menu's choice: "auto" or a supported code; nothing when no item is chosen.
    void changeLanguage(const std::optional<std::string>& code);
    void restartForLanguage();
    void relaunchFailed(const std::string& error);

    // The arguments of the new instance, in order.
    std::vector<std::string> relaunchArguments() const;

    bool relaunchingForLanguage = false;
    std::optional<std::string> languageBeforeRelaunch;

private:
    UserDefaults& defaults_;
    KeyboardControl& keyboard_;
    RelaunchHost& host_;
    int processId_;
    bool preview_;
};

}  // namespace vantle
