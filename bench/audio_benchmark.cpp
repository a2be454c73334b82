// Volume commands against a private PulseAudio server with ten sinks, started by this program
// in a temporary folder: the cost of listing the outputs, of a volume change on a combined
// output of three devices, and of the same change made the way a user without this program
// would, with one pactl command per device.
#include <benchmark/benchmark.h>

#include <string>

#include "audio/output.h"
#include "audio/pulse/audio_hal_pulse.h"
#include "audio/volume_control.h"
#include "display/testing/fake_displays.h"
#include "private_server.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"
#include "ui/control_refresh.h"
#include "ui/refresh_facts.h"

namespace vantle {
namespace {

// One private server for the whole run, with the test devices plus one more sink: ten in all.
class SoundServer {
public:
    SoundServer() : server_(VANTLE_SOUND_SERVER_SCRIPT) {
        ::setenv("PULSE_SERVER", ("unix:" + server_.folder() + "/native").c_str(), 1);
        pactl("load-module module-null-sink sink_name=extra >/dev/null");
        pactl("set-default-sink nested");
    }
    int pactl(const std::string& arguments) const { return bench::shell("pactl " + arguments); }

private:
    bench::PrivateServer server_;
};

SoundServer& server() {
    static SoundServer instance;
    return instance;
}

void listOutputs(benchmark::State& state) {
    server();
    PulseAudioHal hal;
    outputs(hal);  // connect first
    const std::uint64_t before = hal.roundTrips();
    std::size_t sinks = 0;
    for (auto _ : state) {
        sinks = outputs(hal).size();
    }
    state.counters["outputs"] = static_cast<double>(sinks);
    state.counters["roundTripsPerCall"] =
        static_cast<double>(hal.roundTrips() - before) / static_cast<double>(state.iterations());
}
BENCHMARK(listOutputs)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

// One refresh of every control's state: the current output read afresh (here the combined
// output of three devices, among ten sinks) and two displays, one dimmed in software; the part
// of the refresh that the window system does not do.
void refreshWithTwoDisplays(benchmark::State& state) {
    server();
    PulseAudioHal hal;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults(store);
    testing::RecordingMessageLine messages;
    VolumeControl control(hal, defaults, messages, [] {});
    testing::FakeScreenSystem screens;
    screens.add(1, "Built-in");
    screens.add(2, "Studio", {1920, 0, 2560, 1440});
    testing::FakeShadeFactory shades;
    testing::FakeNativeBrightness native;
    native.levels[1] = 0.5f;
    defaults.set("softwareBrightness", true);
    Brightness brightness(native.functions(), screens, shades, defaults, {});
    RefreshFacts facts;
    facts.controls.quickDisplays = {1, 2};
    facts.controls.quickDisplayLabels = {1, 2};
    facts.controls.quickVolume = facts.controls.quickVolumeLabel = facts.controls.quickMute = true;
    std::size_t leaves = 0;
    for (auto _ : state) {
        RefreshFacts current = facts;
        gatherHardwareFacts(current, control, hal, brightness);
        leaves = current.audio.leaves.size();
        benchmark::DoNotOptimize(refreshControls(current));
    }
    state.counters["leaves"] = static_cast<double>(leaves);
}
BENCHMARK(refreshWithTwoDisplays)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

void applyVolumeOnThreeLeafCombinedOutput(benchmark::State& state) {
    server();
    PulseAudioHal hal;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults(store);
    testing::RecordingMessageLine messages;
    VolumeControl control(hal, defaults, messages, [] {});
    if (control.devices().size() != 3) {
        state.SkipWithError("the default output is not the three-device combined output");
        return;
    }
    const std::uint64_t before = hal.roundTrips();
    float level = 0.3f;
    for (auto _ : state) {
        level = level > 0.5f ? 0.3f : level + 0.01f;
        control.applyVolume(level);
    }
    state.counters["roundTripsPerCall"] =
        static_cast<double>(hal.roundTrips() - before) / static_cast<double>(state.iterations());
}
BENCHMARK(applyVolumeOnThreeLeafCombinedOutput)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

// What a user would otherwise run: one pactl per member device.
void pactlPerMemberDevice(benchmark::State& state) {
    server();
    int volume = 20000;
    for (auto _ : state) {
        volume = volume > 40000 ? 20000 : volume + 500;
        const std::string value = std::to_string(volume);
        for (const char* sink : {"desk", "left_room", "right_room"}) {
            server().pactl("set-sink-volume " + std::string(sink) + " " + value);
        }
    }
}
BENCHMARK(pactlPerMemberDevice)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

}  // namespace
}  // namespace vantle

BENCHMARK_MAIN();
