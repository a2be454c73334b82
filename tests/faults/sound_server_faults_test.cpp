// The sound server dies and comes back while the program runs, and the program dies while it
// holds an output muted: the next key press works and no remembered level is lost.
#include <signal.h>

#include <chrono>
#include <thread>

#include "fault_fixture.h"

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;

using SoundServerFaultTest = FaultTest;

TEST_F(SoundServerFaultTest, NextKeyPressWorksOnceARestartedServerIsBack) {
    auto program = startAndWaitForKeys();
    killSoundServer();
    // A press while no server is there changes nothing and must not take the program down.
    key("XF86AudioRaiseVolume");
    std::this_thread::sleep_for(300ms);
    ASSERT_TRUE(program->running()) << program->standardError();

    startSoundServer();
    pactl({"set-default-sink", "studio"});
    setSinkLevel("studio", 0.5f);
    key("XF86AudioRaiseVolume");
    EXPECT_TRUE(waitFor([] { return studioNear(0.5625f); }, 5s)) << sinkLevel("studio");
    EXPECT_TRUE(program->running());
}

TEST_F(SoundServerFaultTest, LevelsRememberedAcrossAServerRestartAreGivenBackByUnmute) {
    auto program = startAndWaitForKeys();
    key("XF86AudioMute");
    ASSERT_TRUE(waitFor([] { return studioNear(0.0f); }, 5s));

    killSoundServer();
    // An unmute with the device gone restores nothing and must keep the memory for later.
    key("XF86AudioMute");
    std::this_thread::sleep_for(500ms);
    ASSERT_TRUE(program->running()) << program->standardError();
    const std::optional<std::vector<double>> remembered = rememberedLevels(settingsFile(), "studio");
    ASSERT_TRUE(remembered.has_value());
    ASSERT_EQ(remembered->size(), 1u);
    EXPECT_NEAR(remembered->front(), 0.5, 0.002);

    // The server comes back with its devices in their first state; the user hears nothing.
    startSoundServer();
    pactl({"set-default-sink", "studio"});
    setSinkLevel("studio", 0.0f);
    key("XF86AudioMute");
    EXPECT_TRUE(waitFor([] { return studioNear(0.5f); }, 5s)) << sinkLevel("studio");
    EXPECT_TRUE(waitFor([this] { return !rememberedLevels(settingsFile(), "studio").has_value(); }, 3s));
}

TEST_F(SoundServerFaultTest, ProgramKilledWhileMutedGivesTheLevelsBackAtTheEndOfItsNextSession) {
    auto first = startAndWaitForKeys();
    key("XF86AudioMute");
    ASSERT_TRUE(waitFor([] { return studioNear(0.0f); }, 5s));
    first->stop(SIGKILL);
    first.reset();
    EXPECT_TRUE(studioNear(0.0f));
    ASSERT_TRUE(rememberedLevels(settingsFile(), "studio").has_value());

    auto second = startAndWaitForKeys();
    const ProgramEnd end = second->stop(SIGTERM);
    EXPECT_EQ(end.exitStatus, 0) << second->standardError();
    EXPECT_TRUE(studioNear(0.5f)) << sinkLevel("studio");
    EXPECT_FALSE(rememberedLevels(settingsFile(), "studio").has_value());
}

TEST_F(SoundServerFaultTest, ProgramKilledWhileMutedIsUnmutedByTheNextPressAfterARestart) {
    auto first = startAndWaitForKeys();
    key("XF86AudioMute");
    ASSERT_TRUE(waitFor([] { return studioNear(0.0f); }, 5s));
    first->stop(SIGKILL);
    first.reset();

    auto second = startAndWaitForKeys();
    key("XF86AudioMute");
    EXPECT_TRUE(waitFor([] { return studioNear(0.5f); }, 5s)) << sinkLevel("studio");
    EXPECT_TRUE(second->running()) << second->standardError();
}

}  // namespace
}  // namespace vantle::testing
