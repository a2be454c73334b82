#include "sound_server_fixture.h"

#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <thread>

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
    return result.standardOutput;
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
