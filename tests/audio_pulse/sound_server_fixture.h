#pragma once

// The integration tests of the PulseAudio backend run against a real, private sound server that
// scripts/sound-server.sh starts in a temporary folder: PulseAudio, or PipeWire with its pulse
// server when VANTLE_SOUND_SERVER is "pipewire" (CTest runs those tests a second time so), with the devices that script loads
// (the sinks "studio", "desk", "mono", "surround", "cafe", "left_room", "right_room", the
// combined sinks "combo" and "nested", and the source "microphone"). CTest runs every test in a
// process of its own, so every test gets a server in its original state.

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/temporary_directory.h"

namespace vantle::testing {

class SoundServerTest : public ::testing::Test {
protected:
    // Starts the server and points PULSE_SERVER at it, so that backends made with no server
    // string find it the way the program finds the user's server.
    static void SetUpTestSuite();
    static void TearDownTestSuite();

    static std::string serverString();
    static std::filesystem::path folder();

    // Runs pactl against the private server and returns what it printed, without the final line
    // break; the test fails if pactl does.
    static std::string pactl(const std::vector<std::string>& arguments);

    // The device id the backend gives the sink of that name, from the server's index of it:
    // PulseAudio counts sinks from 0, PipeWire numbers them among all its objects.
    static std::uint32_t sinkIdOf(const std::string& sinkName);

    // Whether the server is PipeWire's rather than PulseAudio.
    static bool onPipeWire();
    // PipeWire's pulse server keeps a view of the graph for each client and brings each view up
    // to date on its own, so a change that pactl made, and sees, reaches a client that was
    // already connected a moment later. Waits (up to 5 s) until seen() holds for that client;
    // false if it never does.
    static bool untilSeen(const std::function<bool()>& seen);
    // Loads a virtual source by the module each server has for it; returns the module's index.
    static std::string loadNullSource(const std::string& name);

    // Kills the server as a crash would, and starts it again on the same socket with its devices.
    static void killServer();
    static void startServer();
    // Freezes and thaws the server, which then accepts connections but answers nothing.
    static void pauseServer();
    static void resumeServer();

private:
    static int serverPid();
    static std::unique_ptr<TemporaryDirectory> directory_;
};

}  // namespace vantle::testing
