// Runs one volume command the way the program does, on the sound server named by PULSE_SERVER
// and with the settings under XDG_CONFIG_HOME, and prints the message it shows. With "hold"
// after the command it then waits to be killed, so that a test can end it as a crash would.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "audio/pulse/audio_hal_pulse.h"
#include "audio/volume_control.h"
#include "services/standard_defaults.h"

namespace {

class PrintedMessageLine final : public vantle::MessageLine {
public:
    void report(const std::string& text) override {
        std::printf("%s\n", text.c_str());
        std::fflush(stdout);
    }
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: volume_command mute|unmute|toggle|set LEVEL [hold]\n");
        return 2;
    }
    const std::string command = argv[1];
    vantle::PulseAudioHal hal;
    PrintedMessageLine messages;
    vantle::VolumeControl control(hal, vantle::standardDefaults(), messages, [] {});
    int next = 2;
    if (command == "mute") {
        if (!control.muted()) {
            control.toggleMute();
        }
    } else if (command == "unmute") {
        control.unmute();
    } else if (command == "toggle") {
        control.toggleMute();
    } else if (command == "set" && argc > 2) {
        control.applyVolume(std::strtof(argv[2], nullptr));
        next = 3;
    } else {
        return 2;
    }
    if (argc > next && std::string(argv[next]) == "hold") {
        std::printf("holding\n");
        std::fflush(stdout);
        for (;;) {
            ::pause();
        }
    }
    return 0;
}
