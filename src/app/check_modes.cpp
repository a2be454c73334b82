#include "app/check_modes.h"

#include <cstdio>
#include <string>
#include <vector>

#include "app/audio_checks.h"
#include "app/display_checks.h"

namespace vantle {
namespace {

void printLines(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        std::printf("%s\n", line.c_str());
    }
}

}  // namespace

int runDiagnose(AudioHal& audio, Brightness& brightness) {
    printLines(diagnoseAudioLines(audio));
    printLines(diagnoseDisplayLines(brightness));
    return 0;
}

int runVerifyControls(AudioHal& audio, Brightness& brightness, const UserDefaults& defaults) {
    const RoundTripResult volume = verifyVolumeRoundTrip(audio);
    printLines(volume.lines);
    const RoundTripResult display = verifyBrightnessRoundTrip(brightness, defaults);
    printLines(display.lines);
    return volume.passed && display.passed ? 0 : 1;
}

}  // namespace vantle
