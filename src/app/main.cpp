#include <cstdio>
#include <string>
#include <vector>

#include "app/check_modes.h"
#include "app/localization_check.h"
#include "app/switches.h"

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
    switch (vantle::chooseMode(arguments)) {
    case vantle::Mode::LocalizationCheck:
        // Runs before any backend exists, so that it checks the texts alone.
        return vantle::runLocalizationCheck();
    case vantle::Mode::Diagnose:
        return vantle::runDiagnose();
    case vantle::Mode::VerifyControls:
        return vantle::runVerifyControls();
    case vantle::Mode::VerifyOsd:
        return vantle::runVerifyOsd();
    case vantle::Mode::NormalStart:
        return runApplication();
    }
    return 2;
}
