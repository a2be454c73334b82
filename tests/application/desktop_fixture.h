#pragma once

// Tests of the whole application against a private X server (two monitors, see
// x_server_fixture.h) and a private sound server (see sound_server_fixture.h) at once, with the
// settings in a fresh folder of each test.
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/temporary_directory.h"
#include "x_server_fixture.h"

namespace vantle::testing {

class DesktopTest : public XServerTest {
protected:
    DesktopTest();
    ~DesktopTest() override;

    static void SetUpTestSuite();
    static void TearDownTestSuite();

    static std::string pactl(const std::vector<std::string>& arguments);
    // A sink's level as the sound server holds it: its first channel, 0..1.
    static float sinkLevel(const std::string& sink);
    static void setSinkLevel(const std::string& sink, float level);
    static void killSoundServer();
    static void startSoundServer();
    static std::string soundServerString();

    // Sends keys with xdotool, as a keyboard would ("shift+alt+XF86AudioRaiseVolume").
    static void key(const std::string& keys);
    static void keyDown(const std::string& keys);
    static void keyUp(const std::string& keys);

    // A tray host, so that a tray icon can be shown.
    static void startTrayHost();

    // Runs the event loop of this process for a while, or until done answers true; the answer
    // of done, or true when there was none.
    static bool pump(std::chrono::milliseconds atMost, const std::function<bool()>& done = nullptr);

    // This test's settings folder (XDG_CONFIG_HOME) and the settings file in it.
    std::filesystem::path configHome() const { return config_.path(); }
    std::filesystem::path settingsFile() const { return config_.path() / "vantle-control" / "defaults.plist"; }

private:
    TemporaryDirectory config_;
};

}  // namespace vantle::testing
