// The check modes run as real processes against a private sound server, with no X server.
#include <gtest/gtest.h>

#include <chrono>

#include "sound_server_fixture.h"
#include "support/child_process.h"
#include "support/temporary_directory.h"

namespace vantle::testing {
namespace {

class CheckModesPulseTest : public SoundServerTest {
protected:
    ChildResult run(const std::string& mode, const std::string& server) {
        ChildOptions options;
        options.environment = {{"XDG_CONFIG_HOME", configHome.path().string()},
                               {"PULSE_SERVER", server},
                               {"DISPLAY", std::nullopt},
                               {"LANGUAGE", "en"}};
        return runChild(VANTLE_PROGRAM, {mode}, options);
    }
    ChildResult run(const std::string& mode) { return run(mode, serverString()); }

    TemporaryDirectory configHome;
};

TEST_F(CheckModesPulseTest, DiagnoseListsEveryOutputAndTheDefault) {
    pactl({"set-sink-volume", "studio", "16384", "32768"});
    pactl({"set-sink-volume", "surround", "19661"});
    const ChildResult result = run("--diagnose");
    EXPECT_EQ(result.exitStatus, 0) << result.standardError;
    const auto line = [](const std::string& sink, const std::string& rest) {
        return "AUDIO id=" + std::to_string(sinkIdOf(sink)) + " name=" + rest + "\n";
    };
    EXPECT_EQ(result.standardOutput,
              line("studio", "Studio Display Speakers volumeElements=[0] levels=[0.5]") +
                  line("desk", "Desk Speakers volumeElements=[0] levels=[1.0]") +
                  line("mono", "Mono Speaker volumeElements=[0] levels=[1.0]") +
                  line("surround", "Surround Speakers volumeElements=[0] levels=[0.30000305]") +
                  line("cafe", "Café \"Büro\" Speakers volumeElements=[0] levels=[1.0]") +
                  line("left_room", "Left Room volumeElements=[0] levels=[1.0]") +
                  line("right_room", "Right Room volumeElements=[0] levels=[1.0]") +
                  line("combo", "Both Rooms volumeElements=[0] levels=[1.0]") +
                  line("nested", "Everywhere volumeElements=[0] levels=[1.0]") + "DEFAULT " +
                  std::to_string(sinkIdOf("studio")) + " Studio Display Speakers\n");
}

TEST_F(CheckModesPulseTest, DefaultLineFollowsTheServersDefault) {
    pactl({"set-default-sink", "nested"});
    const ChildResult result = run("--diagnose");
    EXPECT_NE(result.standardOutput.find("\nDEFAULT " + std::to_string(sinkIdOf("nested")) + " Everywhere\n"),
              std::string::npos)
        << result.standardOutput;
}

TEST_F(CheckModesPulseTest, VerifyControlsWritesTheStudioSpeakersBackUnchanged) {
    pactl({"set-sink-volume", "studio", "21000", "30000"});
    const ChildResult result = run("--verify-controls");
    EXPECT_EQ(result.exitStatus, 0) << result.standardError;
    EXPECT_EQ(result.standardOutput, "VOLUME write/read unchanged " + std::to_string(sinkIdOf("studio")) + ": true\n");
    EXPECT_NE(pactl({"get-sink-volume", "studio"}).find("30000"), std::string::npos);
}

TEST_F(CheckModesPulseTest, WithoutStudioSpeakersOrDisplaysVerifyControlsPrintsNothingAndPasses) {
    pactl({"unload-module", "module-null-sink"});  // every null sink, the studio speakers among them
    const ChildResult result = run("--verify-controls");
    EXPECT_EQ(result.exitStatus, 0) << result.standardError;
    EXPECT_EQ(result.standardOutput, "");
}

TEST_F(CheckModesPulseTest, ServerThatRefusesTheConnectionListsNothingQuickly) {
    const auto start = std::chrono::steady_clock::now();
    const ChildResult diagnose = run("--diagnose", "unix:" + (configHome.path() / "nobody-listens").string());
    const ChildResult verify = run("--verify-controls", "unix:" + (configHome.path() / "nobody-listens").string());
    const auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(diagnose.exitStatus, 0);
    EXPECT_EQ(diagnose.standardOutput, "");
    EXPECT_EQ(verify.exitStatus, 0);
    EXPECT_EQ(verify.standardOutput, "");
    EXPECT_LT(elapsed, std::chrono::seconds(5));
}

TEST_F(CheckModesPulseTest, DeadServerInTheMiddleOfARunIsNotFatal) {
    killServer();
    const ChildResult result = run("--diagnose");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.standardOutput, "");
    startServer();
    EXPECT_NE(run("--diagnose").standardOutput.find("DEFAULT " + std::to_string(sinkIdOf("studio"))), std::string::npos);
}

}  // namespace
}  // namespace vantle::testing
