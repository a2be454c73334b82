#pragma once

// What the fault tests share: the real program as a child process whose standard error is
// kept, and the questions the tests ask about the desktop and the settings file.
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "desktop_windows.h"
#include "support/temporary_directory.h"

namespace vantle::testing {

// How the program ended.
struct ProgramEnd {
    std::optional<int> exitStatus;  // when it exited
    std::optional<int> signal;      // when a signal ended it
    bool coreDumped = false;
};

// The program started as a child with no standard input; what it prints goes to files that the
// test can read at any time. The child is killed and reaped when the object goes away.
class ProgramProcess {
public:
    ProgramProcess(const std::string& program, const std::vector<std::string>& arguments,
                   const std::map<std::string, std::optional<std::string>>& environment = {});
    ~ProgramProcess();
    ProgramProcess(const ProgramProcess&) = delete;
    ProgramProcess& operator=(const ProgramProcess&) = delete;

    int pid() const { return pid_; }
    // Whether it still runs; reaps it when it has ended.
    bool running();
    // Waits until it ends, at most atMost; empty when it still runs then.
    std::optional<ProgramEnd> waitForEnd(std::chrono::milliseconds atMost);
    // Sends a signal and waits for the end (SIGKILL after ten seconds of waiting).
    ProgramEnd stop(int signal);
    std::string standardError() const;

private:
    TemporaryDirectory folder_;
    int pid_ = -1;
    std::optional<ProgramEnd> end_;
};

// Whether the window tree of DISPLAY shows a mapped window of the program at exactly this
// geometry ("1920x1080+0+0"), which is how a shade or a full-screen window of ours looks.
bool programWindowAt(const std::string& geometry);

// The levels remembered for a device in a settings file, when the file holds any.
std::optional<std::vector<double>> rememberedLevels(const std::filesystem::path& settingsFile, const std::string& uid);

// Text a sanitizer prints when it finds something wrong.
bool hasSanitizerReport(const std::string& text);

// The top entry of the red gamma ramp of the first output's CRTC on display, 0..65535; 0 when
// it cannot be read.
int gammaTopOn(const std::string& display);

}  // namespace vantle::testing
