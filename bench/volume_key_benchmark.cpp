// Volume commands against a private PulseAudio server started by this program: a volume change
// on a combined output of five devices, and the whole handling of a volume key (the level read,
// the change written, the on-screen display's level read back) on a plain output and on that
// combined output, with and without the refresh of the controls that follows a key. Besides the
// time, each reports the requests that waited on the sound server, which is what a busy or remote
// server makes expensive.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "audio/pulse/audio_hal_pulse.h"
#include "audio/volume_control.h"
#include "display/brightness_control.h"
#include "display/testing/fake_displays.h"
#include "keys/media_keys.h"
#include "keys/osd.h"
#include "services/testing/manual_scheduler.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"
#include "services/testing/recording_workspace.h"
#include "sound_devices.h"
#include "ui/control_refresh.h"
#include "ui/refresh_facts.h"

namespace vantle {
namespace {

constexpr int kMembers = 5;
const std::string kCombined = "five";
const std::string kPlain = "studio";

// One private server for the whole run: the test devices plus a combined output of five new
// devices. Each benchmark makes its own output the default.
struct SoundServer {
    SoundServer() { bench::PrivateSoundServer::loadCombinedOutput(kCombined, kMembers); }
    bench::PrivateSoundServer server;
};

void startServerOnce() {
    static SoundServer instance;
}

// Puts the output at half volume and makes it the default; false (with the benchmark marked as
// failed) when the program does not see it with its expected number of devices.
bool useOutput(benchmark::State& state, const std::string& sink, std::size_t devices, VolumeControl& control) {
    startServerOnce();
    bench::PrivateSoundServer::pactl("set-default-sink " + sink);
    bench::PrivateSoundServer::pactl("set-sink-volume " + sink + " 50%");
    for (int member = 1; sink == kCombined && member <= kMembers; ++member) {
        bench::PrivateSoundServer::pactl("set-sink-volume " + kCombined + "_" + std::to_string(member) + " 50%");
    }
    if (!bench::waitUntil([&] { return control.devices().size() == devices; })) {
        state.SkipWithError(("the default output is not " + sink + " with its devices").c_str());
        return false;
    }
    return true;
}

void applyVolumeOnFiveMemberCombinedOutput(benchmark::State& state) {
    PulseAudioHal hal;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults(store);
    testing::RecordingMessageLine messages;
    VolumeControl control(hal, defaults, messages, [] {});
    if (!useOutput(state, kCombined, kMembers, control)) {
        return;
    }
    const std::uint64_t before = hal.roundTrips();
    float level = 0.3f;
    for (auto _ : state) {
        level = level > 0.5f ? 0.3f : level + 0.01f;
        control.applyVolume(level);
    }
    state.counters["roundTripsPerCall"] =
        benchmark::Counter(static_cast<double>(hal.roundTrips() - before), benchmark::Counter::kAvgIterations);
}
BENCHMARK(applyVolumeOnFiveMemberCombinedOutput)->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);

// The on-screen display without windows: the benchmark times the key, not the toolkit.
class NoPanels final : public OsdPanelFactory {
public:
    std::unique_ptr<OsdPanel> show(const ScreenFrame&, const OsdContent&) override { return nullptr; }
};

// Sound-up and sound-down presses in turn on the named output, as the key tap hands them over.
// After its change the handler asks for a refresh of the controls. The program's refresh reads
// the hardware facts afresh (the settings window exists, hidden, from the start); withRefresh
// does the same reading, so that the figure is the program's whole cost of a key, else the
// refresh is left out and the figure is the handler's own. The displays are stand-ins either way.
void volumeKey(benchmark::State& state, const std::string& sink, std::size_t devices, bool withRefresh) {
    PulseAudioHal hal;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults(store);
    testing::RecordingMessageLine messages;
    VolumeControl volume(hal, defaults, messages, [] {});
    if (!useOutput(state, sink, devices, volume)) {
        return;
    }
    testing::FakeScreenSystem screens;
    screens.add(1, "Panel");
    testing::FakeShadeFactory shades;
    testing::FakeNativeBrightness native;
    native.levels[1] = 0.5f;
    Brightness brightness(native.functions(), screens, shades, defaults, {});
    testing::RecordingWorkspace workspace;
    BrightnessControl brightnessControl(brightness, defaults, messages, workspace, [] {});
    NoPanels panels;
    testing::ManualScheduler scheduler;
    OSD osd(screens, brightness, panels, scheduler);
    int refreshes = 0;
    MediaKeyHandler handler(hal, volume, brightnessControl, osd, [&] {
        ++refreshes;
        if (withRefresh) {
            RefreshFacts facts;
            facts.controls.quickDisplays = facts.controls.quickDisplayLabels = {1};
            facts.controls.quickVolume = facts.controls.quickVolumeLabel = facts.controls.quickMute = true;
            gatherHardwareFacts(facts, volume, hal, brightness);
            benchmark::DoNotOptimize(refreshControls(facts));
        }
    });

    const std::uint64_t before = hal.roundTrips();
    bool up = true;
    for (auto _ : state) {
        handler.handleMediaKey(up ? kSoundUp : kSoundDown, false, false);
        up = !up;
        // Lets the display's dismissal fall due, so that no scheduled call piles up.
        scheduler.advance(OSD::kDismissDelay * 2);
    }
    state.counters["roundTripsPerKey"] =
        benchmark::Counter(static_cast<double>(hal.roundTrips() - before), benchmark::Counter::kAvgIterations);
    state.counters["refreshesPerKey"] =
        benchmark::Counter(static_cast<double>(refreshes), benchmark::Counter::kAvgIterations);
}
BENCHMARK_CAPTURE(volumeKey, plainOutput, kPlain, 1, false)
    ->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK_CAPTURE(volumeKey, fiveMemberCombinedOutput, kCombined, kMembers, false)
    ->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK_CAPTURE(volumeKey, plainOutputWithRefresh, kPlain, 1, true)
    ->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK_CAPTURE(volumeKey, fiveMemberCombinedOutputWithRefresh, kCombined, kMembers, true)
    ->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);

}  // namespace
}  // namespace vantle

BENCHMARK_MAIN();
