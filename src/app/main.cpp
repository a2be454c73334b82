#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QApplication>
#include <QGuiApplication>
#include <QPixmapCache>
#include <QSocketNotifier>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "app/app.h"
#include "app/check_modes.h"
#include "app/display_backends.h"
#include "app/display_loss_linux.h"
#include "app/instance_name.h"
#include "app/localization_check.h"
#include "app/single_instance_linux.h"
#include "app/switches.h"
#include "audio/pulse/audio_hal_pulse.h"
#include "services/standard_defaults.h"

namespace {

constexpr int kPixmapCacheKilobytes = 1024;

// The session ends with one of these signals; they are turned into an event of the loop, so that
// the muted levels are given back on the main thread before the program ends.
int signalPipe[2] = {-1, -1};

void forwardSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[1], &byte, 1);
}

void endSessionOnSignals(vantle::App& app) {
    if (::pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    auto* notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, &app);
    QObject::connect(notifier, &QSocketNotifier::activated, &app, [&app] {
        char byte = 0;
        while (::read(signalPipe[0], &byte, 1) > 0) {
        }
        app.endSession();
    });
    struct sigaction action = {};
    action.sa_handler = forwardSignal;
    sigemptyset(&action.sa_mask);
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) {
        ::sigaction(signal, &action, nullptr);
    }
}

// One copy of the program per session: a later start shows the running copy's settings and ends.
// A copy that holds the name but does not answer is ending right now, so the name is tried again
// for a moment before giving up.
bool claimSessionOrHandOver(vantle::SingleInstance& instance, vantle::App& app) {
    for (int attempt = 0; attempt < 10; ++attempt) {
        if (instance.claim([&app] { app.applicationShouldHandleReopen(); })) {
            return true;
        }
        if (instance.askRunningCopyToReopen()) {
            std::fprintf(stderr, "vantle-control: already running in this session; its settings window is brought forward.\n");
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    std::fprintf(stderr, "vantle-control: another copy holds this session but does not answer; this one ends.\n");
    return false;
}

int runApplication(vantle::UserDefaults& defaults, vantle::DisplayBackends& displays,
                   const std::vector<std::string>& arguments) {
    if (!displays.hasWindowSystem()) {
        std::fprintf(stderr,
                     "vantle-control: no X display to show the program on (DISPLAY is unset or cannot be reached).\n"
                     "Start it from a desktop session, or run scripts/run.sh, which starts a private one.\n");
        return 1;
    }
    // Ties the windows to the installed menu entry, whose name and icon the desktop then shows.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.orlend.VantleControl"));
    // The style keeps rendered pieces of controls in a cache of 10 MB by default, which a popover
    // rebuilt at every opening fills bit by bit; a program that runs all day keeps it small.
    QPixmapCache::setCacheLimit(kPixmapCacheKilobytes);
    vantle::PulseAudioHal audio;
    vantle::App app(audio, defaults, displays, arguments);
    endSessionOnSignals(app);
    // A look at the texts of a language takes nothing of the session, so it may run beside it.
    const bool preview = std::find(arguments.begin(), arguments.end(), "--preview-localization") != arguments.end();
    const char* display = std::getenv("DISPLAY");
    vantle::SingleInstance instance(vantle::instanceName(::getuid(), display ? std::optional<std::string>(display) : std::nullopt));
    if (!preview) {
        app.setInstanceClaim([&instance, &app, &displays] {
            if (!claimSessionOrHandOver(instance, app)) {
                return false;
            }
            displays.undoDimmingOfAnEarlierCopy();
            return true;
        });
    }
    app.applicationDidFinishLaunching();
    const vantle::DisplayLossWatch displayLoss(app);
    return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const vantle::Mode mode = vantle::chooseMode(arguments);
    if (mode == vantle::Mode::LocalizationCheck) {
        // Runs before anything else exists, so that it checks the texts alone.
        return vantle::runLocalizationCheck();
    }

    vantle::UserDefaults& defaults = vantle::standardDefaults();
    const std::unique_ptr<vantle::DisplayBackends> displays = vantle::DisplayBackends::create(argc, argv, defaults);
    vantle::Brightness& brightness = displays->brightness();

    switch (mode) {
    case vantle::Mode::Diagnose: {
        vantle::PulseAudioHal audio;
        return vantle::runDiagnose(audio, brightness);
    }
    case vantle::Mode::VerifyControls: {
        vantle::PulseAudioHal audio;
        return vantle::runVerifyControls(audio, brightness, defaults);
    }
    case vantle::Mode::VerifyOsd:
        return vantle::runVerifyOsd(*displays);
    case vantle::Mode::LocalizationCheck:
    case vantle::Mode::NormalStart:
        break;
    }
    return runApplication(defaults, *displays, arguments);
}
