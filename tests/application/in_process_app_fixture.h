#pragma once

// The whole application in this test's process, on the private X server and the private sound
// server, with "combo" (left_room and right_room at 0.5) as the current output.
#include <QApplication>
#include <QLabel>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "app/app.h"
#include "app/platform.h"
#include "audio/pulse/audio_hal_pulse.h"
#include "desktop_fixture.h"
#include "services/plist_file_store_linux.h"

namespace vantle::testing {

using namespace std::chrono_literals;

inline constexpr float kTolerance = 0.002f;

class InProcessAppTest : public DesktopTest {
protected:
    InProcessAppTest() {
        pactl({"set-default-sink", "combo"});
        setSinkLevel("left_room", 0.5f);
        setSinkLevel("right_room", 0.5f);
    }
    ~InProcessAppTest() override {
        app.reset();
        hal.reset();
        platform.reset();
    }

    void launch(std::vector<std::string> arguments = {"--suppress-keyboard-invitation"}) {
        static int argc = 1;
        static char name[] = "in_process_app_test";
        static char* argv[] = {name, nullptr};
        platform = makePlatform(argc, argv, defaults);
        hal = std::make_unique<PulseAudioHal>();
        app = std::make_unique<App>(*platform, *hal, std::move(arguments));
        app->applicationDidFinishLaunching();
        pump(300ms);
    }

    // Presses keys and waits until both rooms have reached level.
    void pressUntilLevel(const std::string& keys, float level) {
        key(keys);
        EXPECT_TRUE(pump(3s, [&] { return std::abs(sinkLevel("left_room") - level) < kTolerance; }))
            << keys << ": " << sinkLevel("left_room") << " instead of " << level;
        EXPECT_NEAR(sinkLevel("right_room"), level, kTolerance);
    }

    // The label of the application's that shows exactly text; null when none does.
    static QLabel* labelShowing(const std::string& text) {
        for (QWidget* widget : QApplication::allWidgets()) {
            if (auto* label = qobject_cast<QLabel*>(widget); label != nullptr && label->text().toStdString() == text) {
                return label;
            }
        }
        return nullptr;
    }
    static bool labelShows(const std::string& text) { return labelShowing(text) != nullptr; }

    PlistFileStore store{settingsFile()};
    UserDefaults defaults{store};
    std::unique_ptr<Platform> platform;
    std::unique_ptr<PulseAudioHal> hal;
    std::unique_ptr<App> app;
};

}  // namespace vantle::testing
