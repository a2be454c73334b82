// The program's X display goes away under it: the program ends at once, on its own terms, with
// one message of ours on standard error and every muted level given back. The X server of these
// tests is a second private one that the test starts and kills itself.
#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <sstream>

#include "fault_fixture.h"
#include "services/file_contents.h"
#include "support/child_process.h"

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;

class XServerLossTest : public FaultTest {
protected:
    XServerLossTest() {
        const ChildResult started = runChild("/bin/bash", {VANTLE_X_SERVER_SCRIPT, "start", folder_.path().string()});
        EXPECT_EQ(started.exitStatus, 0) << started.standardError;
        std::string number = readFileContents(folder_.path() / "display").value_or("");
        while (!number.empty() && number.back() == '\n') {
            number.pop_back();
        }
        display_ = ":" + number;
    }
    ~XServerLossTest() override {
        runChild("/bin/bash", {VANTLE_X_SERVER_SCRIPT, "stop", folder_.path().string()});
    }

    std::unique_ptr<ProgramProcess> startOnOwnServer() {
        auto program = start({"--suppress-keyboard-invitation"}, {{"DISPLAY", display_}});
        EXPECT_TRUE(waitFor([this] { return muteKeyTakenOn(display_); }, 15s)) << program->standardError();
        return program;
    }

    void keyOnOwnServer(const std::string& keys) {
        ChildOptions options;
        options.environment["DISPLAY"] = display_;
        EXPECT_EQ(runChild("/usr/bin/xdotool", {"key", keys}, options).exitStatus, 0);
    }

    void killOwnServer() {
        const int pid = std::atoi(readFileContents(folder_.path() / "pid").value_or("0").c_str());
        ASSERT_GT(pid, 0);
        ::kill(pid, SIGKILL);
    }

    // Ends the program's own client connection from outside, as xkill does: the server stays.
    // The toolkit's selection owner window is always there and belongs to that connection. The
    // search walks the window tree, and an on-screen display that goes away during the walk cuts
    // it short, so it is asked again for a moment.
    void cutProgramConnection() {
        ChildOptions options;
        options.environment["DISPLAY"] = display_;
        std::string id;
        waitFor(
            [&] {
                const ChildResult found = runChild(
                    "/usr/bin/xdotool", {"search", "--name", "^Qt Selection Owner for vantle-control$"}, options);
                std::istringstream ids(found.standardOutput);
                return static_cast<bool>(std::getline(ids, id));
            },
            5s);
        ASSERT_FALSE(id.empty()) << "no window of the program";
        EXPECT_EQ(runChild("/usr/bin/xdotool", {"windowkill", id}, options).exitStatus, 0);
    }

    static void expectCleanEnd(ProgramProcess& program) {
        const std::optional<ProgramEnd> end = program.waitForEnd(10s);
        ASSERT_TRUE(end.has_value()) << "still running: " << program.standardError();
        EXPECT_FALSE(end->signal.has_value()) << "ended by signal " << end->signal.value_or(0);
        EXPECT_FALSE(end->coreDumped);
        EXPECT_EQ(end->exitStatus, 1);
        const std::string error = program.standardError();
        EXPECT_NE(error.find("vantle-control: the X display went away;"), std::string::npos) << error;
        EXPECT_FALSE(hasSanitizerReport(error)) << error;
    }

    TemporaryDirectory folder_;
    std::string display_;
};

TEST_F(XServerLossTest, ServerKilledWhileMutedEndsTheProgramWithTheLevelsGivenBack) {
    auto program = startOnOwnServer();
    keyOnOwnServer("XF86AudioMute");
    ASSERT_TRUE(waitFor([] { return studioNear(0.0f); }, 5s));
    killOwnServer();
    expectCleanEnd(*program);
    EXPECT_TRUE(studioNear(0.5f)) << sinkLevel("studio");
    EXPECT_FALSE(rememberedLevels(settingsFile(), "studio").has_value());
}

TEST_F(XServerLossTest, ConnectionCutWhileDimmedEndsTheProgramWithTheGammaRestored) {
    writeFile(settingsFile(), kSoftwareBrightness);
    const int undimmed = gammaTopOn(display_);
    ASSERT_GT(undimmed, 60000);
    auto program = startOnOwnServer();
    keyOnOwnServer("XF86MonBrightnessDown");
    ASSERT_TRUE(waitFor([this, undimmed] { return gammaTopOn(display_) < undimmed - 1000; }, 5s));
    keyOnOwnServer("XF86AudioMute");
    ASSERT_TRUE(waitFor([] { return studioNear(0.0f); }, 5s));
    cutProgramConnection();
    expectCleanEnd(*program);
    EXPECT_EQ(gammaTopOn(display_), undimmed);
    EXPECT_TRUE(studioNear(0.5f)) << sinkLevel("studio");
}

}  // namespace
}  // namespace vantle::testing
