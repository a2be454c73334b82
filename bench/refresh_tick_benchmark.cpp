// The program's refresh tick (every 2 s while the settings window or the popover is open) on the
// backends the program itself builds: the sound devices on a private PulseAudio server with six
// outputs, the current one a combined output of two devices, and the displays on a private Xvfb
// with two screens, read through the toolkit's own X connection. Besides the time, it reports
// what each tick asks of the two servers: the requests that waited on the sound server and the
// requests sent to the X server. A second pair of figures is the tick's check of the displays
// dimmed through their gamma ramps.
#include <benchmark/benchmark.h>
#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/platform.h"
#include "audio/pulse/audio_hal_pulse.h"
#include "audio/volume_control.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"
#include "sound_devices.h"
#include "ui/control_refresh.h"
#include "ui/refresh_facts.h"

namespace vantle {
namespace {

// The test devices less three: studio, desk, surround, left_room, right_room and combo, the
// combined output of the two rooms, which is the default.
class SixOutputs {
public:
    SixOutputs() {
        bench::PrivateSoundServer::unloadSinks({"nested", "cafe", "mono"});
        bench::PrivateSoundServer::pactl("set-default-sink combo");
    }

private:
    bench::PrivateSoundServer server_;
};

// The private Xvfb's two monitors side by side (scripts/x-server.sh).
class TwoScreens {
public:
    TwoScreens() : server_(VANTLE_X_SERVER_SCRIPT) {
        std::ifstream number(server_.folder() + "/display");
        std::string display;
        number >> display;
        ::setenv("DISPLAY", (":" + display).c_str(), 1);
    }

private:
    bench::PrivateServer server_;
};

// A folder of our own for what the toolkit and the platform would keep per user or per session.
class ScratchHome {
public:
    ScratchHome() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vantle-bench-home-XXXXXX").string();
        folder_ = ::mkdtemp(pattern.data());
        ::setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
        ::setenv("XDG_RUNTIME_DIR", folder_.c_str(), 1);
    }
    ~ScratchHome() { std::filesystem::remove_all(folder_); }

private:
    std::string folder_;
};

struct Fixture {
    Fixture() : defaults(store) {
        static int argc = 1;
        static char name[] = "refresh_tick_benchmark";
        static char* argv[] = {name, nullptr};
        platform = makePlatform(argc, argv, defaults);
    }
    ScratchHome home;
    SixOutputs sound;
    TwoScreens x;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults;
    std::unique_ptr<Platform> platform;
};

Fixture& fixture() {
    static Fixture instance;
    return instance;
}

// The X connection the display backends use: the toolkit's own.
xcb_connection_t* toolkitConnection() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

// The sequence number the X server will give the next request. Each request is numbered as it
// is sent, so the difference across a tick is the count of requests the tick sent; the no-op
// used to read it costs the server nothing and is itself left out of the count.
std::uint32_t nextRequestNumber(xcb_connection_t* connection) {
    return xcb_no_operation(connection).sequence + 1;
}

// The first CRTC of the screen and its ramp's size, as another client sees them.
struct X11Crtc {
    xcb_randr_crtc_t id = 0;
    std::uint16_t size = 0;
};

std::optional<X11Crtc> firstCrtc(xcb_connection_t* connection) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    std::unique_ptr<xcb_randr_get_screen_resources_current_reply_t, decltype(&std::free)> resources(
        xcb_randr_get_screen_resources_current_reply(
            connection, xcb_randr_get_screen_resources_current(connection, root), nullptr),
        &std::free);
    if (!resources || xcb_randr_get_screen_resources_current_crtcs_length(resources.get()) < 1) {
        return std::nullopt;
    }
    const xcb_randr_crtc_t crtc = xcb_randr_get_screen_resources_current_crtcs(resources.get())[0];
    std::unique_ptr<xcb_randr_get_crtc_gamma_size_reply_t, decltype(&std::free)> size(
        xcb_randr_get_crtc_gamma_size_reply(connection, xcb_randr_get_crtc_gamma_size(connection, crtc), nullptr),
        &std::free);
    if (!size || size->size < 2) {
        return std::nullopt;
    }
    return X11Crtc{crtc, size->size};
}

void resetToIdentity(xcb_connection_t* connection, const X11Crtc& crtc) {
    std::vector<std::uint16_t> ramp(crtc.size);
    for (std::size_t index = 0; index < ramp.size(); ++index) {
        ramp[index] = static_cast<std::uint16_t>(index * 65535 / (ramp.size() - 1));
    }
    xcb_randr_set_crtc_gamma(connection, crtc.id, crtc.size, ramp.data(), ramp.data(), ramp.data());
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

void refreshTick(benchmark::State& state) {
    Fixture& f = fixture();
    if (!f.platform->hasWindowSystem()) {
        state.SkipWithError("the private X server does not answer");
        return;
    }
    PulseAudioHal hal;
    testing::RecordingMessageLine messages;
    VolumeControl volume(hal, f.defaults, messages, [] {});
    Brightness& brightness = f.platform->displays().brightness();

    // The popover's controls, as the program builds them: one slider and label per display.
    RefreshFacts facts;
    for (const DisplayEntry& entry : brightness.screens()) {
        facts.controls.quickDisplays.push_back(entry.id);
    }
    facts.controls.quickDisplayLabels = facts.controls.quickDisplays;
    facts.controls.quickVolume = facts.controls.quickVolumeLabel = facts.controls.quickMute = true;
    facts.controls.muteButton = true;
    if (facts.controls.quickDisplays.size() != 2 || volume.devices().size() != 2) {
        state.SkipWithError("expected two screens and a combined output of two devices");
        return;
    }

    xcb_connection_t* connection = toolkitConnection();
    const std::uint64_t soundBefore = hal.roundTrips();
    // Counted over the whole loop, so that the counting adds two requests in all, not two a tick.
    const std::uint32_t xBefore = nextRequestNumber(connection);
    for (auto _ : state) {
        RefreshFacts current = facts;
        gatherHardwareFacts(current, volume, hal, brightness);
        benchmark::DoNotOptimize(refreshControls(current));
    }
    const std::uint32_t xAfter = nextRequestNumber(connection) - 1;
    xcb_flush(connection);

    state.counters["soundRoundTripsPerTick"] =
        benchmark::Counter(static_cast<double>(hal.roundTrips() - soundBefore), benchmark::Counter::kAvgIterations);
    state.counters["xRequestsPerTick"] =
        benchmark::Counter(static_cast<double>(xAfter - xBefore), benchmark::Counter::kAvgIterations);
}
BENCHMARK(refreshTick)->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);

// What the tick adds while a display is dimmed through its gamma ramp (no compositor runs on the
// private server): the read-back of the dimmed CRTC's ramp, alone, as the tick runs it after the
// refresh. With resetEveryTick, another client puts the identity ramp back before every tick, so
// each tick also writes the dimmed ramp again: the most a tick can cost.
void keepDimming(benchmark::State& state, bool resetEveryTick) {
    Fixture& f = fixture();
    if (!f.platform->hasWindowSystem()) {
        state.SkipWithError("the private X server does not answer");
        return;
    }
    Brightness& brightness = f.platform->displays().brightness();
    const std::vector<DisplayEntry> screens = brightness.screens();
    f.defaults.set("softwareBrightness", true);
    if (screens.empty() || !brightness.write(screens.front().id, 0.5f)) {
        state.SkipWithError("the first screen cannot be dimmed through its ramp");
        return;
    }
    xcb_connection_t* connection = toolkitConnection();
    // Another client, as a colour-temperature tool would be.
    xcb_connection_t* other = xcb_connect(nullptr, nullptr);
    const std::optional<X11Crtc> crtc = firstCrtc(other);
    std::uint64_t requests = 0;
    for (auto _ : state) {
        if (resetEveryTick && crtc) {
            state.PauseTiming();
            resetToIdentity(other, *crtc);
            state.ResumeTiming();
        }
        const std::uint32_t before = nextRequestNumber(connection);
        brightness.keepDimming();
        requests += nextRequestNumber(connection) - 1 - before;
    }
    xcb_disconnect(other);
    brightness.write(screens.front().id, 1.0f);
    f.defaults.set("softwareBrightness", false);
    state.counters["xRequestsPerTick"] =
        benchmark::Counter(static_cast<double>(requests), benchmark::Counter::kAvgIterations);
}
BENCHMARK_CAPTURE(keepDimming, rampIntact, false)
    ->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK_CAPTURE(keepDimming, rampResetByAnotherClient, true)
    ->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);

}  // namespace
}  // namespace vantle

BENCHMARK_MAIN();
