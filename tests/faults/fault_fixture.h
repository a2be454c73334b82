#pragma once

// The program on the private desktop of desktop_fixture.h, with a tray host and the output
// "studio" as the default at half volume, for the fault tests.
#include <memory>

#include "desktop_fixture.h"
#include "fault_program.h"

namespace vantle::testing {

// Settings that turn software dimming on, so that the brightness keys and sliders dim by shade
// or gamma ramp on the private X server.
inline constexpr const char* kSoftwareBrightness = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>softwareBrightness</key><true/></dict></plist>
)";

class FaultTest : public DesktopTest {
protected:
    FaultTest() {
        startTrayHost();
        pactl({"set-default-sink", "studio"});
        setSinkLevel("studio", 0.5f);
    }

    static std::unique_ptr<ProgramProcess> start(
        const std::vector<std::string>& arguments = {"--suppress-keyboard-invitation"},
        const std::map<std::string, std::optional<std::string>>& environment = {}) {
        return std::make_unique<ProgramProcess>(VANTLE_PROGRAM, arguments, environment);
    }

    // Starts the program and waits until it holds the media keys, which is when it is ready.
    static std::unique_ptr<ProgramProcess> startAndWaitForKeys() {
        std::unique_ptr<ProgramProcess> program = start();
        EXPECT_TRUE(waitFor([] { return muteKeyTaken(); }, std::chrono::seconds(15))) << program->standardError();
        return program;
    }

    static bool studioNear(float level) {
        const float now = sinkLevel("studio");
        return now > level - 0.002f && now < level + 0.002f;
    }
};

}  // namespace vantle::testing
