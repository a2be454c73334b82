// A stand-in for "killall" that knows one process, the stand-in Dock whose id is in its state
// folder (the folder the tool is started from):
//   killall [-SIGNAL] Dock      sends the signal (TERM when none is given)
// It returns once the signal has taken effect: after STOP when the Dock is stopped, after CONT
// when it runs, after KILL or TERM when the supervisor has started it again, so that the tests'
// observations never race the signal. Behaviours:
//   fail-killall-<SIGNAL>=n     the next n calls with that signal fail
//   error-text=invalid-utf8     failures write error output that is not UTF-8
#include <signal.h>

#include <chrono>
#include <iostream>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "stand_in_state.h"

using vantle::standin::StateFolder;

namespace {

const std::map<std::string, int> kSignals{{"STOP", SIGSTOP}, {"CONT", SIGCONT}, {"KILL", SIGKILL},
                                          {"TERM", SIGTERM}, {"HUP", SIGHUP},   {"INT", SIGINT}};

int fail(const StateFolder& state, const std::string& message) {
    std::cerr << (state.behaviour("error-text") == "invalid-utf8" ? std::string(vantle::standin::kInvalidUtf8)
                                                                  : message);
    return 1;
}

bool alive(int pid) {
    return ::kill(pid, 0) == 0;
}

}  // namespace

int main(int argc, char** argv) {
    const StateFolder state{std::filesystem::path(argv[0]).parent_path()};
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    std::optional<int> signalled;
    int sent = 0;
    {
        const StateFolder::Lock lock(state);
        state.log(vantle::standin::callLine("killall", arguments) + " [dock " + state.dockState() + "]");
        std::string name = "TERM";
        std::size_t next = 0;
        if (!arguments.empty() && arguments[0].starts_with("-")) {
            name = arguments[0].substr(1);
            next = 1;
        }
        const auto signal = kSignals.find(name);
        if (signal == kSignals.end() || next + 1 != arguments.size()) {
            return fail(state, "usage: killall [-SIGNAL] procname\n");
        }
        if (state.take("fail-killall-" + name)) {
            return fail(state, "killall: cannot send " + name + "\n");
        }
        const std::optional<int> pid = state.dockPid();
        if (arguments[next] != "Dock" || !pid || !alive(*pid) || ::kill(*pid, signal->second) != 0) {
            return fail(state, "No matching processes belonging to you were found\n");
        }
        signalled = pid;
        sent = signal->second;
    }
    const auto tookEffect = [&] {
        if (sent == SIGSTOP) {
            return state.dockStopped();
        }
        if (sent == SIGCONT) {
            return !state.dockStopped();
        }
        if (sent == SIGKILL || sent == SIGTERM) {
            const std::optional<int> now = state.dockPid();
            return now && *now != *signalled && alive(*now);
        }
        return true;
    };
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!tookEffect() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return 0;
}
