#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "app/check_modes.h"
#include "app/display_backends.h"
#include "app/localization_check.h"
#include "app/switches.h"
#include "audio/pulse/audio_hal_pulse.h"
#include "services/standard_defaults.h"

namespace {

// The menu-bar application itself is not part of this build; say so plainly instead of
// pretending to run.
int runApplication() {
    std::fprintf(stderr,
                 "vantle-control: the user interface is not part of this build yet.\n"
                 "Try one of the checks: --verify-localization, --diagnose, --verify-controls, --verify-osd\n");
    return 2;
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
    return runApplication();
}
