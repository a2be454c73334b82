#include "desktop_fixture.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <cmath>
#include <cstdlib>
#include <thread>

#include "sound_server_fixture.h"
#include "support/child_process.h"

namespace vantle::testing {
namespace {

// The sound server's fixture keeps its controls to its own tests; this opens them to ours.
struct SoundServer : SoundServerTest {
    using SoundServerTest::killServer;
    using SoundServerTest::pactl;
    using SoundServerTest::serverString;
    using SoundServerTest::SetUpTestSuite;
    using SoundServerTest::startServer;
    using SoundServerTest::TearDownTestSuite;
    void TestBody() override {}
};

std::unique_ptr<RunningChild>& trayHost() {
    static std::unique_ptr<RunningChild> host;
    return host;
}

}  // namespace

DesktopTest::DesktopTest() {
    ::setenv("XDG_CONFIG_HOME", config_.path().c_str(), 1);
}

DesktopTest::~DesktopTest() = default;

void DesktopTest::SetUpTestSuite() {
    XServerTest::SetUpTestSuite();
    SoundServer::SetUpTestSuite();
}

void DesktopTest::TearDownTestSuite() {
    trayHost().reset();
    SoundServer::TearDownTestSuite();
    XServerTest::TearDownTestSuite();
}

std::string DesktopTest::pactl(const std::vector<std::string>& arguments) {
    return SoundServer::pactl(arguments);
}

float DesktopTest::sinkLevel(const std::string& sink) {
    // "Volume: front-left: 32768 /  50% / ...": the raw value of the first channel.
    const std::string volume = pactl({"get-sink-volume", sink});
    const std::size_t channel = volume.find(": ", volume.find(':') + 1);
    if (channel == std::string::npos) {
        ADD_FAILURE() << "no volume in: " << volume;
        return -1;
    }
    return static_cast<float>(std::strtod(volume.c_str() + channel + 2, nullptr) / 65536.0);
}

void DesktopTest::setSinkLevel(const std::string& sink, float level) {
    pactl({"set-sink-volume", sink, std::to_string(std::lround(level * 65536.0f))});
}

void DesktopTest::killSoundServer() {
    SoundServer::killServer();
}

void DesktopTest::startSoundServer() {
    SoundServer::startServer();
}

std::string DesktopTest::soundServerString() {
    return SoundServer::serverString();
}

void DesktopTest::key(const std::string& keys) {
    run("/usr/bin/xdotool", {"key", keys});
}

void DesktopTest::keyDown(const std::string& keys) {
    run("/usr/bin/xdotool", {"keydown", keys});
}

void DesktopTest::keyUp(const std::string& keys) {
    run("/usr/bin/xdotool", {"keyup", keys});
}

void DesktopTest::startTrayHost() {
    trayHost() = std::make_unique<RunningChild>(
        "/usr/bin/trayer", std::vector<std::string>{"--edge", "top", "--align", "right", "--widthtype", "request",
                                                    "--height", "24", "--SetDockType", "true"});
    // The tray selection has an owner once trayer is ready.
    for (int attempt = 0; attempt < 100; ++attempt) {
        const ChildResult owner = runChild("/usr/bin/xdotool", {"search", "--class", "trayer"});
        if (owner.exitStatus == 0) {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    ADD_FAILURE() << "the tray host did not start";
}

bool DesktopTest::pump(std::chrono::milliseconds atMost, const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    while (std::chrono::steady_clock::now() < deadline) {
        if (done && done()) {
            return true;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return !done || done();
}

}  // namespace vantle::testing
