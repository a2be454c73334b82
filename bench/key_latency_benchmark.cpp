// Time from a media key to the new volume at the sound server, for this program and for the
// classic setup a Linux user would otherwise have: xbindkeys running pactl for each key. Both
// run against the same private X and sound servers in one run.
//
// A key press is sent with XTest; the round trip that follows returns once the X server has
// processed it, which is when it delivers the key event to the client holding the key. The
// clock stops at the sound server's change event for the sink. The on-screen display is timed
// the same way, to the X server's MapNotify of its window.
#include <pulse/pulseaudio.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <fstream>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "private_server.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// XF86AudioRaiseVolume and XF86AudioLowerVolume in the X server's default keymap.
constexpr xcb_keycode_t kRaiseVolume = 123;
constexpr xcb_keycode_t kLowerVolume = 122;

std::string readEnvValue(const std::string& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    const std::size_t equals = line.find('=');
    return equals == std::string::npos ? "" : line.substr(equals + 1);
}

// Notes the moment of every change of any sink.
class SinkWatcher {
public:
    SinkWatcher() {
        loop_ = pa_threaded_mainloop_new();
        context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "key-latency-benchmark");
        pa_context_set_state_callback(context_, &SinkWatcher::stateChanged, this);
        pa_context_set_subscribe_callback(context_, &SinkWatcher::changed, this);
        pa_threaded_mainloop_lock(loop_);
        pa_context_connect(context_, nullptr, PA_CONTEXT_NOFLAGS, nullptr);
        pa_threaded_mainloop_start(loop_);
        while (pa_context_get_state(context_) != PA_CONTEXT_READY) {
            pa_threaded_mainloop_wait(loop_);
        }
        pa_operation_unref(pa_context_subscribe(context_, PA_SUBSCRIPTION_MASK_SINK, nullptr, nullptr));
        pa_threaded_mainloop_unlock(loop_);
    }
    ~SinkWatcher() {
        pa_threaded_mainloop_stop(loop_);
        pa_context_disconnect(context_);
        pa_context_unref(context_);
        pa_threaded_mainloop_free(loop_);
    }

    void forget() {
        std::lock_guard lock(mutex_);
        last_.reset();
    }
    // The moment of the first change after forget, if one comes within timeout.
    std::optional<Clock::time_point> waitForChange(std::chrono::milliseconds timeout) {
        std::unique_lock lock(mutex_);
        changedSignal_.wait_for(lock, timeout, [this] { return last_.has_value(); });
        return last_;
    }

private:
    static void stateChanged(pa_context*, void* self) {
        pa_threaded_mainloop_signal(static_cast<SinkWatcher*>(self)->loop_, 0);
    }
    static void changed(pa_context*, pa_subscription_event_type_t type, uint32_t, void* self) {
        auto* watcher = static_cast<SinkWatcher*>(self);
        if ((type & PA_SUBSCRIPTION_EVENT_TYPE_MASK) != PA_SUBSCRIPTION_EVENT_CHANGE) {
            return;
        }
        const Clock::time_point now = Clock::now();
        std::lock_guard lock(watcher->mutex_);
        if (!watcher->last_) {
            watcher->last_ = now;
        }
        watcher->changedSignal_.notify_all();
    }

    pa_threaded_mainloop* loop_;
    pa_context* context_;
    std::mutex mutex_;
    std::condition_variable changedSignal_;
    std::optional<Clock::time_point> last_;
};

class KeySender {
public:
    KeySender() : connection_(xcb_connect(nullptr, nullptr)) {
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &events);
        xcb_flush(connection_);
    }
    ~KeySender() { xcb_disconnect(connection_); }

    // Presses and releases the key; returns the moment the X server has processed the press.
    Clock::time_point press(xcb_keycode_t key) {
        drainEvents();
        xcb_test_fake_input(connection_, XCB_KEY_PRESS, key, XCB_CURRENT_TIME, root_, 0, 0, 0);
        std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        const Clock::time_point delivered = Clock::now();
        xcb_test_fake_input(connection_, XCB_KEY_RELEASE, key, XCB_CURRENT_TIME, root_, 0, 0, 0);
        xcb_flush(connection_);
        return delivered;
    }

    // The moment a window is mapped on the screen, if one is within timeout.
    std::optional<Clock::time_point> waitForMap(std::chrono::milliseconds timeout) {
        const Clock::time_point deadline = Clock::now() + timeout;
        while (Clock::now() < deadline) {
            while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
                const bool mapped = (event->response_type & 0x7f) == XCB_MAP_NOTIFY;
                std::free(event);
                if (mapped) {
                    return Clock::now();
                }
            }
            std::this_thread::sleep_for(100us);
        }
        return std::nullopt;
    }

private:
    void drainEvents() {
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
            std::free(event);
        }
    }

    xcb_connection_t* connection_;
    xcb_window_t root_ = 0;
};

struct Figures {
    double median = 0;
    double p95 = 0;
    std::size_t count = 0;
};

Figures figuresOf(std::vector<double> samples) {
    if (samples.empty()) {
        return {};
    }
    std::sort(samples.begin(), samples.end());
    const auto at = [&](double quantile) {
        return samples[std::min(samples.size() - 1, static_cast<std::size_t>(quantile * static_cast<double>(samples.size())))];
    };
    return {at(0.5), at(0.95), samples.size()};
}

double millisecondsBetween(Clock::time_point from, Clock::time_point to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

Figures measureVolume(SinkWatcher& sinks, KeySender& keys, int presses) {
    std::vector<double> samples;
    for (int press = 0; press < presses; ++press) {
        sinks.forget();
        const Clock::time_point delivered = keys.press(press % 2 == 0 ? kRaiseVolume : kLowerVolume);
        if (const std::optional<Clock::time_point> changed = sinks.waitForChange(2s)) {
            samples.push_back(millisecondsBetween(delivered, *changed));
        }
        // Lets the last writes and their events settle before the next press.
        std::this_thread::sleep_for(60ms);
    }
    return figuresOf(samples);
}

Figures measureOsd(KeySender& keys, int presses) {
    std::vector<double> samples;
    for (int press = 0; press < presses; ++press) {
        // Past the display's 1.4 s, so that every press maps a new window.
        std::this_thread::sleep_for(1600ms);
        const Clock::time_point delivered = keys.press(press % 2 == 0 ? kRaiseVolume : kLowerVolume);
        if (const std::optional<Clock::time_point> mapped = keys.waitForMap(1s)) {
            samples.push_back(millisecondsBetween(delivered, *mapped));
        }
    }
    return figuresOf(samples);
}

pid_t start(const std::vector<std::string>& command) {
    const pid_t pid = ::fork();
    if (pid == 0) {
        std::vector<char*> argv;
        for (const std::string& argument : command) {
            argv.push_back(const_cast<char*>(argument.c_str()));
        }
        argv.push_back(nullptr);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    return pid;
}

void stop(pid_t pid) {
    ::kill(pid, SIGTERM);
    ::waitpid(pid, nullptr, 0);
}

void print(const char* what, const Figures& figures) {
    std::printf("%-40s median %7.2f ms   p95 %7.2f ms   (%zu samples)\n", what, figures.median, figures.p95,
                figures.count);
}

}  // namespace

// key_latency_benchmark [presses] [--on-current-servers]: the second switch measures on the X
// and sound servers of the environment (DISPLAY, PULSE_SERVER), which must be private ones such
// as scripts/footprint.sh starts, instead of starting a pair of its own.
int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const bool currentServers = std::find(arguments.begin(), arguments.end(), "--on-current-servers") != arguments.end();
    const int presses = !arguments.empty() && arguments[0] != "--on-current-servers" ? std::atoi(arguments[0].c_str()) : 200;
    std::optional<vantle::bench::PrivateServer> x;
    std::optional<vantle::bench::PrivateServer> sound;
    if (!currentServers) {
        x.emplace(VANTLE_X_SERVER_SCRIPT);
        sound.emplace(VANTLE_SOUND_SERVER_SCRIPT);
        ::setenv("DISPLAY", readEnvValue(x->folder() + "/env").c_str(), 1);
        ::setenv("PULSE_SERVER", readEnvValue(sound->folder() + "/env").c_str(), 1);
    }
    std::string pattern = (std::filesystem::temp_directory_path() / "vantle-bench-home-XXXXXX").string();
    const std::string home = ::mkdtemp(pattern.data());
    ::setenv("HOME", home.c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", home.c_str(), 1);
    vantle::bench::shell("pactl set-default-sink studio && pactl set-sink-volume studio 50%");

    SinkWatcher sinks;
    KeySender keys;

    const pid_t ours = start({VANTLE_PROGRAM, "--suppress-keyboard-invitation"});
    std::this_thread::sleep_for(2s);
    const Figures ourVolume = measureVolume(sinks, keys, presses);
    const Figures ourOsd = measureOsd(keys, std::max(5, presses / 10));
    stop(ours);

    const std::string bindings = home + "/xbindkeysrc";
    std::ofstream(bindings) << "\"pactl set-sink-volume @DEFAULT_SINK@ +6%\"\n  XF86AudioRaiseVolume\n"
                               "\"pactl set-sink-volume @DEFAULT_SINK@ -6%\"\n  XF86AudioLowerVolume\n";
    const pid_t peer = start({"/usr/bin/xbindkeys", "-n", "-f", bindings});
    std::this_thread::sleep_for(1s);
    const Figures peerVolume = measureVolume(sinks, keys, presses);
    stop(peer);

    print("vantle-control: key to volume", ourVolume);
    print("xbindkeys + pactl: key to volume", peerVolume);
    print("vantle-control: key to OSD mapped", ourOsd);
    if (peerVolume.median > 0) {
        std::printf("median ratio (ours / peer): %.3f\n", ourVolume.median / peerVolume.median);
    }
    std::filesystem::remove_all(home);
    return ourVolume.count == 0 || peerVolume.count == 0 ? 1 : 0;
}
