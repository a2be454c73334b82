// What the application asks of the platform beyond its backends: the keyboard settings, a new
// copy of the program, work for the main loop, and the end without a window system.
#include "app/app.h"

namespace vantle {

bool App::openKeyboardSettings() {
    return platform_.workspace().openSettings(SettingsPlace::Keyboard);
}

void App::relaunch() {
    languageRelaunch_.restartForLanguage();
}

void App::startInstance(const std::vector<std::string>& arguments,
                        std::function<void(std::optional<std::string> error)> done) {
    std::optional<std::string> error = platform_.processes().startCopy(arguments);
    queue([done = std::move(done), error = std::move(error)] { done(error); });
}

void App::queue(std::function<void()> work) {
    // Tied to this object: work queued by an application that is gone never runs.
    QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
}

DisplayLossOutcome App::displayWentAway() {
    // Nothing can be shown any more, so the levels are given back without a word on screen.
    class Silent final : public MessageLine {
    public:
        void report(const std::string&) override {}
    } silent;
    VolumeControl quiet(hal_, defaults_, silent, [] {});
    displays_.displayWentAway();
    if (!quiet.muted()) {
        return DisplayLossOutcome::nothingMuted;
    }
    quiet.unmute();
    return quiet.muted() ? DisplayLossOutcome::levelsKept : DisplayLossOutcome::levelsGivenBack;
}

}  // namespace vantle
