#pragma once

#include "audio/testing/fake_audio_hal.h"
#include "display/testing/fake_displays.h"
#include "keys/keyboard_control.h"
#include "keys/testing/fake_key_tap.h"
#include "keys/testing/fake_keyboard_host.h"
#include "keys/testing/fake_keyboard_trust.h"
#include "services/testing/manual_scheduler.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"
#include "services/testing/recording_workspace.h"

namespace vantle::testing {

// The keyboard handling with everything around it in memory: one stereo output at half volume,
// no displays, a key tap nobody else holds and the running build "42".
struct KeyboardWorld {
    class NoPanels final : public OsdPanelFactory {
    public:
        std::unique_ptr<OsdPanel> show(const ScreenFrame&, const OsdContent&) override { return nullptr; }
    };

    KeyboardWorld() {
        hal.add(10, FakeAudioHal::plainDevice("Speakers", "uid-10", {0.5f, 0.5f}, true));
        hal.defaultOutput = 10;
    }

    FakeAudioHal hal;
    MemoryDefaultsStore store;
    UserDefaults defaults{store};
    RecordingMessageLine messages;
    VolumeControl volumeControl{hal, defaults, messages, [] {}};
    FakeScreenSystem screens;
    FakeShadeFactory shades;
    FakeNativeBrightness native;
    Brightness brightness{native.functions(), screens, shades, defaults, {}};
    RecordingWorkspace workspace;
    BrightnessControl brightnessControl{brightness, defaults, messages, workspace, [] {}};
    NoPanels panels;
    ManualScheduler scheduler;
    OSD osd{screens, brightness, panels, scheduler};
    MediaKeyHandler handler{hal, volumeControl, brightnessControl, osd, [] {}};
    FakeKeyTap tap;
    FakeKeyboardHost host;
    FakeKeyboardTrust trust;
    KeyboardControl keys{tap, handler, defaults, "42", trust, host};
};

}  // namespace vantle::testing
