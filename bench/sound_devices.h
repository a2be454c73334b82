#pragma once

#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "private_server.h"

namespace vantle::bench {

// A private sound server (scripts/sound-server.sh, with the test devices loaded) that this
// process and every pactl it runs talk to, for as long as the object lives.
class PrivateSoundServer {
public:
    PrivateSoundServer() : server_(VANTLE_SOUND_SERVER_SCRIPT) {
        ::setenv("PULSE_SERVER", ("unix:" + server_.folder() + "/native").c_str(), 1);
    }

    // Runs pactl with the arguments as written (shell words), its output discarded.
    static int pactl(const std::string& arguments) { return shell("pactl " + arguments + " >/dev/null"); }

    // Unloads the module that made each named sink. Combined sinks go before their members,
    // so name them first.
    static void unloadSinks(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            shell("pactl list short modules | awk '/sink_name=" + name +
                  "([ \\t]|$)/ {print $1}' | xargs -r -n1 pactl unload-module");
        }
    }

    // A combined output named name playing through one new stereo null sink per member
    // (name_1, name_2, ...), made the default output.
    static void loadCombinedOutput(const std::string& name, int members) {
        std::string slaves;
        for (int member = 1; member <= members; ++member) {
            const std::string sink = name + "_" + std::to_string(member);
            pactl("load-module module-null-sink sink_name=" + sink);
            slaves += (member > 1 ? "," : "") + sink;
        }
        pactl("load-module module-combine-sink sink_name=" + name + " slaves=" + slaves);
        pactl("set-default-sink " + name);
    }

private:
    PrivateServer server_;
};

// Waits up to five seconds for ready() to hold: a combined sink's members show as its streams
// a moment after the module is loaded.
inline bool waitUntil(const std::function<bool()>& ready) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!ready()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

}  // namespace vantle::bench
