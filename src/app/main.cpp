#include <QApplication>
#include <QPixmapCache>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "app/app.h"
#include "app/check_modes.h"
#include "app/instance_claim.h"
#include "app/localization_check.h"
#include "app/platform.h"
#include "app/switches.h"
#include "services/standard_defaults.h"

namespace {

constexpr int kPixmapCacheKilobytes = 1024;
constexpr std::chrono::milliseconds kClaimRetryInterval{200};

// One copy of the program per session: a later start shows the running copy's settings and ends.
bool claimSession(vantle::SingleInstance& instance, vantle::App& app) {
    const vantle::InstanceClaim claim = vantle::claimSessionOrHandOver(
        instance, [&app] { app.applicationShouldHandleReopen(); },
        [] { std::this_thread::sleep_for(kClaimRetryInterval); });
    switch (claim) {
    case vantle::InstanceClaim::claimed:
        return true;
    case vantle::InstanceClaim::handedOver:
        std::fprintf(stderr, "vantle-control: already running in this session; its settings window is brought forward.\n");
        return false;
    case vantle::InstanceClaim::unanswered:
        break;
    }
    std::fprintf(stderr, "vantle-control: another copy holds this session but does not answer; this one ends.\n");
    return false;
}

int runApplication(vantle::Platform& platform, const std::vector<std::string>& arguments) {
    if (!platform.hasWindowSystem()) {
        std::fprintf(stderr, "vantle-control: %s\n", platform.missingWindowSystemMessage().c_str());
        return 1;
    }
    // The style keeps rendered pieces of controls in a cache of 10 MB by default, which a popover
    // rebuilt at every opening fills bit by bit; a program that runs all day keeps it small.
    QPixmapCache::setCacheLimit(kPixmapCacheKilobytes);
    const std::unique_ptr<vantle::AudioHal> audio = platform.makeAudioHal();
    vantle::App app(platform, *audio, arguments);
    const std::unique_ptr<vantle::SessionEndWatch> sessionEnd = platform.watchSessionEnd(app);
    // A look at the texts of a language takes nothing of the session, so it may run beside it.
    const bool preview = std::find(arguments.begin(), arguments.end(), "--preview-localization") != arguments.end();
    const std::unique_ptr<vantle::SingleInstance> instance = platform.makeSingleInstance();
    if (!preview) {
        app.setInstanceClaim([&instance, &app, &platform] {
            if (!claimSession(*instance, app)) {
                return false;
            }
            platform.displays().undoDimmingOfAnEarlierCopy();
            return true;
        });
    }
    app.applicationDidFinishLaunching();
    const std::unique_ptr<vantle::SessionEndWatch> windowSystemLoss = platform.watchWindowSystemLoss(app);
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

    // The platform, and with it the toolkit's application object, is made here and nowhere else.
    const std::unique_ptr<vantle::Platform> platform = vantle::makePlatform(argc, argv, vantle::standardDefaults());
    vantle::Brightness& brightness = platform->displays().brightness();

    switch (mode) {
    case vantle::Mode::Diagnose:
        return vantle::runDiagnose(*platform->makeAudioHal(), brightness);
    case vantle::Mode::VerifyControls:
        return vantle::runVerifyControls(*platform->makeAudioHal(), brightness, platform->defaults());
    case vantle::Mode::VerifyOsd:
        return vantle::runVerifyOsd(*platform);
    case vantle::Mode::LocalizationCheck:
    case vantle::Mode::NormalStart:
        break;
    }
    return runApplication(*platform, arguments);
}
