// Brightness on a private Xvfb started by this program: listing and reading six displays with
// no monitor control (the cost paid at every refresh), and a brightness step on two displays
// dimmed in software, with a compositor so that both are covered by translucent windows.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "app/platform.h"
#include "display/brightness_control.h"
#include "private_server.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"
#include "services/testing/recording_workspace.h"

namespace vantle {
namespace {

using bench::shell;

class PrivateXServer {
public:
    PrivateXServer() : server_(VANTLE_X_SERVER_SCRIPT) {
        std::ifstream number(server_.folder() + "/display");
        std::string display;
        number >> display;
        ::setenv("DISPLAY", (":" + display).c_str(), 1);
    }
    ~PrivateXServer() { shell("pkill -x xcompmgr >/dev/null 2>&1"); }

private:
    bench::PrivateServer server_;
};

struct Fixture {
    Fixture() : defaults(store) {
        static int argc = 1;
        static char name[] = "display_benchmark";
        static char* argv[] = {name, nullptr};
        platform = makePlatform(argc, argv, defaults);
        backends = &platform->displays();
    }
    PrivateXServer server;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults;
    std::unique_ptr<Platform> platform;
    DisplayBackends* backends = nullptr;
};

Fixture& fixture() {
    static Fixture instance;
    return instance;
}

void screensAndReadOverSixDisplays(benchmark::State& state) {
    Fixture& f = fixture();
    // Four more monitors beside the two of the private server, none with an output of its own.
    for (int index = 0; index < 4; ++index) {
        shell("xrandr --setmonitor EXTRA" + std::to_string(index) + " 640/169x480/127+" + std::to_string(index * 640) +
              "+1080 none >/dev/null 2>&1");
    }
    std::size_t count = 0;
    for (auto _ : state) {
        const std::vector<DisplayEntry> screens = f.backends->brightness().screens();
        count = screens.size();
        for (const DisplayEntry& screen : screens) {
            benchmark::DoNotOptimize(f.backends->brightness().read(screen.id));
        }
    }
    state.counters["displays"] = static_cast<double>(count);
    for (int index = 0; index < 4; ++index) {
        shell("xrandr --delmonitor EXTRA" + std::to_string(index) + " >/dev/null 2>&1");
    }
}
BENCHMARK(screensAndReadOverSixDisplays)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

void softwareStepOnTwoDisplays(benchmark::State& state) {
    Fixture& f = fixture();
    shell("xcompmgr >/dev/null 2>&1 & sleep 0.5");
    f.defaults.set("softwareBrightness", true);
    testing::RecordingMessageLine messages;
    testing::RecordingWorkspace workspace;
    BrightnessControl control(f.backends->brightness(), f.defaults, messages, workspace, [] {});
    float delta = -0.0625f;
    for (auto _ : state) {
        control.adjustBrightness(delta);
        // What the program's event loop does next: hand the windows' changes to the X server.
        QApplication::processEvents();
        // Back and forth between 20 % and 90 %, so that the shades stay on the screen.
        const float level = f.backends->brightness().softwareLevels().begin()->second;
        if (level <= 0.2f) {
            delta = 0.0625f;
        } else if (level >= 0.9f) {
            delta = -0.0625f;
        }
    }
    state.counters["shades"] = static_cast<double>(f.backends->brightness().shades().size());
}
BENCHMARK(softwareStepOnTwoDisplays)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

}  // namespace
}  // namespace vantle

BENCHMARK_MAIN();
