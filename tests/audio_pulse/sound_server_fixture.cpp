#include "sound_server_fixture.h"

#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <sstream>
#include <thread>

#include "audio/pulse/pulse_snapshot.h"
#include "support/child_process.h"

namespace vantle::testing {
namespace {

void runScript(const std::string& command, const std::filesystem::path& folder) {
    const ChildResult result = runChild("/bin/bash", {VANTLE_SOUND_SERVER_SCRIPT, command, folder.string()});
    ASSERT_EQ(result.exitStatus, 0) << "sound-server.sh " << command << ": " << result.standardError;
    // The test command relies on the script being silent.
    EXPECT_EQ(result.standardOutput, "");
}

bool processGone(int pid) {
    if (::kill(pid, 0) != 0) {
        return true;
    }
    // The server is not our child, so once dead it may linger as a zombie nobody reaps.
    const std::string stat = readFile("/proc/" + std::to_string(pid) + "/stat");
    const std::size_t end = stat.rfind(')');
    return end != std::string::npos && stat.compare(end, 4, ") Z ") == 0;
}

}  // namespace

std::unique_ptr<TemporaryDirectory> SoundServerTest::directory_;

void SoundServerTest::SetUpTestSuite() {
    directory_ = std::make_unique<TemporaryDirectory>();
    startServer();
    ::setenv("PULSE_SERVER", serverString().c_str(), 1);
}

void SoundServerTest::TearDownTestSuite() {
    if (directory_) {
        runScript("stop", folder());
    }
    ::unsetenv("PULSE_SERVER");
    directory_.reset();
}

std::filesystem::path SoundServerTest::folder() { return directory_->path(); }

std::string SoundServerTest::serverString() { return "unix:" + (folder() / "native").string(); }

std::string SoundServerTest::pactl(const std::vector<std::string>& arguments) {
    ChildOptions options;
    options.environment["PULSE_SERVER"] = serverString();
    ChildResult result = runChild("/usr/bin/pactl", arguments, options);
    EXPECT_EQ(result.exitStatus, 0) << "pactl " << arguments.front() << ": " << result.standardError;
    while (!result.standardOutput.empty() && result.standardOutput.back() == '\n') {
        result.standardOutput.pop_back();
    }
    // PipeWire's pulse server confirms a new default before its session manager has made it one;
    // the test goes on once the server reports it.
    if (arguments.size() == 2 && arguments[0] == "set-default-sink" && onPipeWire()) {
        for (int attempt = 0; attempt < 200; ++attempt) {
            if (runChild("/usr/bin/pactl", {"get-default-sink"}, options).standardOutput == arguments[1] + "\n") {
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
        }
    }
    return result.standardOutput;
}

std::uint32_t SoundServerTest::sinkIdOf(const std::string& sinkName) {
    // One line a sink: index, name, driver, sample format, state, separated by tabs.
    std::istringstream lines(pactl({"list", "short", "sinks"}));
    std::string line;
    while (std::getline(lines, line)) {
        const std::size_t nameStart = line.find('\t');
        const std::size_t nameEnd = line.find('\t', nameStart + 1);
        if (nameStart != std::string::npos && line.substr(nameStart + 1, nameEnd - nameStart - 1) == sinkName) {
            return pulse::sinkDeviceId(static_cast<std::uint32_t>(std::stoul(line.substr(0, nameStart))));
        }
    }
    ADD_FAILURE() << "no sink named " << sinkName;
    return 0;
}

bool SoundServerTest::untilSeen(const std::function<bool()>& seen) {
    for (int attempt = 0; attempt < 500; ++attempt) {
        if (seen()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return seen();
}

bool SoundServerTest::onPipeWire() {
    const char* kind = std::getenv("VANTLE_SOUND_SERVER");
    return kind != nullptr && std::string(kind) == "pipewire";
}

std::string SoundServerTest::loadNullSource(const std::string& name) {
    if (onPipeWire()) {
        // PipeWire's pulse server has no null source; its null sink becomes one when told so.
        return pactl({"load-module", "module-null-sink", "sink_name=" + name,
                      "sink_properties=media.class=Audio/Source/Virtual"});
    }
    return pactl({"load-module", "module-null-source", "source_name=" + name});
}

int SoundServerTest::serverPid() { return std::stoi(readFile(folder() / "pid")); }

void SoundServerTest::killServer() {
    const int pid = serverPid();
    ::kill(pid, SIGKILL);
    for (int attempt = 0; attempt < 200 && !processGone(pid); ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    ASSERT_TRUE(processGone(pid));
}

void SoundServerTest::startServer() { runScript("start", folder()); }

void SoundServerTest::pauseServer() { ::kill(serverPid(), SIGSTOP); }

void SoundServerTest::resumeServer() { ::kill(serverPid(), SIGCONT); }

}  // namespace vantle::testing
