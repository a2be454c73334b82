#pragma once

// The whole program as a real process on the private X server (with a tray host) and the private
// sound server, driven by a seeded random sequence of what a user and the system do to it: media
// keys, clicks and drags on the popover's sliders, page switches in the settings window, sound
// devices that come and go or become the default, and monitors that come and go.
//
// VANTLE_SOAK_SECONDS sets how long the random sequence runs (45 s when unset); VANTLE_SOAK_SEED
// replays the sequence of an earlier run, whose seed the test prints.
#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "desktop_fixture.h"
#include "desktop_windows.h"
#include "observed_program.h"

namespace vantle::testing {

class SoakTest : public DesktopTest {
protected:
    SoakTest();
    ~SoakTest() override;

    static std::chrono::seconds soakDuration();
    static std::uint64_t soakSeed();

    // Starts the program with its settings window shown and waits until its tray icon is
    // embedded and its keys are taken.
    void startProgram();
    ObservedProgram& program() { return *program_; }

    // One action of every kind, each checked for its visible effect where there is one.
    void warmUp();
    // One action chosen by the random sequence.
    void randomAction();
    // Closes the popover, removes the added sound devices, makes "studio" the default, puts the
    // original monitors back and shows the settings' first page: the state in which memory and
    // descriptors are compared.
    void returnToRestingState();

    // Fails the test, with the program's output, when the program is no longer running.
    bool programStillRuns();
    // The recent actions, for the message of a failure.
    std::string recentActions() const;
    void note(const std::string& action);

    // Whether our grab of the mute key is refused because some program, ours, holds it.
    std::optional<Geometry> popover() const;
    std::optional<Geometry> settingsWindow() const;
    bool openPopover();
    void closePopover();

    std::mt19937_64 random_;

private:
    int pick(int count);
    void pressMediaKey();
    void holdMediaKey(std::optional<std::string> keys = std::nullopt);
    void waitUntilTheVolumeSettles();
    void moveAPopoverSlider();
    void clickPopoverMute();
    void togglePopoverByTrayIcon();
    void switchSettingsPage(std::optional<int> page = std::nullopt);
    void changeSoundDevices();
    void addSoundDevice(bool makeDefault);
    void removeSoundDevice();
    void changeScreens(std::optional<std::size_t> layout = std::nullopt);

    struct AddedSink {
        std::string name;
        std::string module;
    };

    std::unique_ptr<ObservedProgram> program_;
    std::vector<AddedSink> addedSinks_;
    int sinksMade_ = 0;
    std::size_t layout_ = 0;
    std::deque<std::string> recent_;
    std::size_t actionsDone_ = 0;
};

}  // namespace vantle::testing
