// A stand-in for the Dock process and for the system service that starts it again when it dies.
//   stand_in_dock supervise <folder>   starts the Dock and restarts it each time it ends, until
//                                      this process gets SIGTERM (or its parent dies)
//   stand_in_dock run <folder>         the Dock itself: reads its list at start, then waits
//                                      for signals (it can be stopped, continued and killed)
// Like the real Dock it keeps in memory the list it read at its start. Behaviour:
//   drop-on-start=n   the next n starts write the list the previous Dock knew over the
//                     preferences, losing what was added while that Dock ran, as a Dock that
//                     saves its own copy does
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

#include "services/property_list.h"
#include "services/property_list_codec.h"
#include "stand_in_state.h"

extern char** environ;

using vantle::PlistValue;
using vantle::standin::StateFolder;

namespace {

volatile sig_atomic_t terminating = 0;

void onTerminate(int) {
    terminating = 1;
}

void start(const StateFolder& state) {
    const StateFolder::Lock lock(state);
    const int starts = state.number("dock-starts") + 1;
    state.setNumber("dock-starts", starts);

    const std::filesystem::path preferences = state.preferences("com.apple.dock");
    const std::optional<std::string> bytes = vantle::standin::readBytes(preferences);
    std::optional<PlistValue> domain = bytes ? vantle::parsePropertyList(*bytes) : std::nullopt;
    PlistValue::Array memory;
    if (domain && domain->asDictionary() != nullptr) {
        PlistValue::Dictionary keys = *domain->asDictionary();
        if (auto apps = keys.find("persistent-apps"); apps != keys.end() && apps->second.asArray() != nullptr) {
            memory = *apps->second.asArray();
        }
        if (state.take("drop-on-start")) {
            const std::optional<std::string> known = vantle::standin::readBytes(state.file("dock-memory.plist"));
            const std::optional<PlistValue> previous = known ? vantle::parsePropertyList(*known) : std::nullopt;
            memory = previous && previous->asArray() != nullptr ? *previous->asArray() : PlistValue::Array{};
            keys.insert_or_assign("persistent-apps", PlistValue(memory));
            vantle::standin::replaceBytes(preferences, vantle::serializePropertyListXml(PlistValue(keys)));
            state.log("dock dropped what was added");
        }
    }
    vantle::standin::replaceBytes(state.file("dock-memory.plist"), vantle::serializePropertyListXml(PlistValue(memory)));
    vantle::standin::replaceBytes(state.file("dock.pid"), std::to_string(::getpid()));
}

int run(const StateFolder& state) {
    // A Dock whose supervisor is gone would be left behind by a test that crashed.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    start(state);
    for (;;) {
        ::pause();
    }
}

int supervise(const StateFolder& state) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    struct sigaction action {};
    action.sa_handler = onTerminate;
    ::sigaction(SIGTERM, &action, nullptr);

    std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
    std::string mode = "run";
    std::string folder = state.path().string();
    char* argv[] = {program.data(), mode.data(), folder.data(), nullptr};
    while (!terminating) {
        pid_t dock = -1;
        if (::posix_spawn(&dock, program.c_str(), nullptr, nullptr, argv, environ) != 0) {
            return 1;
        }
        // Polled rather than blocked in waitpid, so that SIGTERM is never missed between checks.
        for (;;) {
            if (terminating) {
                ::kill(dock, SIGKILL);
                ::waitpid(dock, nullptr, 0);
                return 0;
            }
            if (::waitpid(dock, nullptr, WNOHANG) == dock) {
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        return 2;
    }
    const StateFolder state(argv[2]);
    const std::string mode = argv[1];
    if (mode == "run") {
        return run(state);
    }
    if (mode == "supervise") {
        return supervise(state);
    }
    return 2;
}
