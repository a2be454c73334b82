// One copy of the program per session: a second start hands over to the running copy, and a
// relaunch racing a second start never leaves two copies holding the keys or the tray.
#include <csignal>

#include "program_fixture.h"

namespace vantle::testing {
namespace {

class SingleCopyProgramTest : public ProgramTest {};

TEST_F(SingleCopyProgramTest, SecondStartBringsTheRunningSettingsForwardAndEnds) {
    auto first = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(waitFor(muteKeyTaken, 10s));
    ASSERT_TRUE(waitFor(trayIconShown, 5s));
    EXPECT_FALSE(windowNamed(L("s025")).has_value());

    ChildOptions options;
    options.timeout = 15s;
    const ChildResult second = runChild(VANTLE_PROGRAM, {"--suppress-keyboard-invitation"}, options);
    EXPECT_EQ(second.exitStatus, 0) << second.standardError;
    EXPECT_NE(second.standardError.find("already running"), std::string::npos) << second.standardError;

    EXPECT_TRUE(waitFor([] { return windowNamed(L("s025")).has_value(); }, 5s));
    EXPECT_EQ(trayIconCount(), 1);
    // The first copy is untouched: its keys still work.
    key("XF86AudioLowerVolume");
    EXPECT_TRUE(waitFor([] { return sinkLevel("studio") < 0.49f; }, 5s)) << sinkLevel("studio");
}

TEST_F(SingleCopyProgramTest, StartAfterTheRunningCopyWasKilledTakesTheSession) {
    auto first = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(waitFor(muteKeyTaken, 10s));
    first->killAndWait(SIGKILL);
    // The kernel let go of the name with the process: nothing stale is left to refuse the next.
    auto next = start({"--suppress-keyboard-invitation"});
    EXPECT_TRUE(waitFor(muteKeyTaken, 10s));
    EXPECT_EQ(next->waitForExit(0ms), std::nullopt);
}

TEST_F(SingleCopyProgramTest, RelaunchRacingASecondStartLeavesOneCopy) {
    auto old = start({"--suppress-keyboard-invitation"});
    ASSERT_TRUE(waitFor(muteKeyTaken, 10s));
    ASSERT_TRUE(waitFor(trayIconShown, 5s));
    auto relaunched = start({"--relaunch-parent", std::to_string(old->pid()), "--suppress-keyboard-invitation"});
    auto second = start({"--suppress-keyboard-invitation"});
    std::this_thread::sleep_for(300ms);
    old->killAndWait(SIGTERM);

    // Whichever gets the session first keeps it; the other hands over and ends with status 0.
    std::optional<int> relaunchedEnded;
    std::optional<int> secondEnded;
    waitFor(
        [&] {
            if (!relaunchedEnded) {
                relaunchedEnded = relaunched->waitForExit(0ms);
            }
            if (!secondEnded) {
                secondEnded = second->waitForExit(0ms);
            }
            return relaunchedEnded.has_value() || secondEnded.has_value();
        },
        20s);
    ASSERT_NE(relaunchedEnded.has_value(), secondEnded.has_value()) << "exactly one of them ends";
    EXPECT_EQ(relaunchedEnded.value_or(0), 0);
    EXPECT_EQ(secondEnded.value_or(0), 0);
    ASSERT_TRUE(waitFor(muteKeyTaken, 10s));
    ASSERT_TRUE(waitFor(trayIconShown, 5s));
    // A moment more, in which a second icon or a second grab would show up.
    std::this_thread::sleep_for(2s);
    EXPECT_EQ(trayIconCount(), 1);
    RunningChild& survivor = secondEnded ? *relaunched : *second;
    EXPECT_EQ(survivor.waitForExit(0ms), std::nullopt);
    key("XF86AudioLowerVolume");
    EXPECT_TRUE(waitFor([] { return sinkLevel("studio") < 0.49f; }, 5s)) << sinkLevel("studio");
}

}  // namespace
}  // namespace vantle::testing
