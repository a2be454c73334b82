#include "app/quit_flow.h"

#include <gtest/gtest.h>

#include "audio/testing/fake_audio_hal.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"

namespace vantle {
namespace {

using testing::FakeAudioHal;

class ScriptedQuitAlerts final : public QuitAlerts {
public:
    bool confirmQuit() override {
        ++questions;
        return confirm;
    }
    bool stayAfterFailedRestore() override {
        ++secondQuestions;
        return stay;
    }
    bool confirm = true;
    bool stay = false;
    int questions = 0;
    int secondQuestions = 0;
};

class QuitFlowTest : public ::testing::Test {
protected:
    QuitFlowTest() {
        hal.add(10, FakeAudioHal::plainDevice("Speakers", "uid-10", {0.4f, 0.6f}));
        hal.defaultOutput = 10;
    }

    void muteAndBreakTheDevice() {
        volume.toggleMute();
        hal.failWhen = [](const FakeAudioHal::Call& call) { return call.operation == FakeAudioHal::Operation::SetData; };
    }

    FakeAudioHal hal;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    testing::RecordingMessageLine messages;
    VolumeControl volume{hal, defaults, messages, [] {}};
    ScriptedQuitAlerts alerts;
};

TEST_F(QuitFlowTest, ConfirmedQuitWhileMutedGivesTheLevelsBackFirst) {
    volume.toggleMute();
    ASSERT_TRUE(volume.muted());
    EXPECT_EQ(applicationShouldTerminate(false, false, volume, alerts), QuitAnswer::terminateNow);
    EXPECT_FALSE(volume.muted());
    EXPECT_FLOAT_EQ(hal.volume(10, 2), 0.6f);
    EXPECT_EQ(alerts.questions, 1);
    EXPECT_EQ(alerts.secondQuestions, 0);
}

TEST_F(QuitFlowTest, CancelledQuitChangesNothing) {
    volume.toggleMute();
    alerts.confirm = false;
    EXPECT_EQ(applicationShouldTerminate(false, false, volume, alerts), QuitAnswer::cancel);
    EXPECT_TRUE(volume.muted());
}

TEST_F(QuitFlowTest, FailedRestoreAsksASecondTime) {
    muteAndBreakTheDevice();
    EXPECT_EQ(applicationShouldTerminate(false, false, volume, alerts), QuitAnswer::terminateNow);
    EXPECT_EQ(alerts.secondQuestions, 1);
    // The levels stay remembered for the next start.
    EXPECT_TRUE(volume.muted());
    alerts.stay = true;
    EXPECT_EQ(applicationShouldTerminate(false, false, volume, alerts), QuitAnswer::cancel);
}

TEST_F(QuitFlowTest, NothingMutedAsksOnce) {
    EXPECT_EQ(applicationShouldTerminate(false, false, volume, alerts), QuitAnswer::terminateNow);
    EXPECT_EQ(alerts.questions, 1);
    EXPECT_EQ(alerts.secondQuestions, 0);
}

TEST_F(QuitFlowTest, LanguageRelaunchEndsWithoutADialog) {
    volume.toggleMute();
    EXPECT_EQ(applicationShouldTerminate(true, false, volume, alerts), QuitAnswer::terminateNow);
    EXPECT_EQ(alerts.questions, 0);
    EXPECT_TRUE(volume.muted());  // the new instance remembers them
}

TEST_F(QuitFlowTest, UpdateInstallationRestoresWithoutADialog) {
    volume.toggleMute();
    EXPECT_EQ(applicationShouldTerminate(false, true, volume, alerts), QuitAnswer::terminateNow);
    EXPECT_FALSE(volume.muted());
    EXPECT_EQ(alerts.questions, 0);
}

TEST_F(QuitFlowTest, UpdateInstallationThatCannotRestoreIsCancelled) {
    muteAndBreakTheDevice();
    EXPECT_EQ(applicationShouldTerminate(false, true, volume, alerts), QuitAnswer::cancel);
    EXPECT_EQ(alerts.questions, 0);
}

}  // namespace
}  // namespace vantle
