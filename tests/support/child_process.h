#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vantle::testing {

// How a child process ended and what it printed.
struct ChildResult {
    std::string standardOutput;
    std::string standardError;
    std::optional<int> exitStatus;  // when it exited
    std::optional<int> signal;      // when a signal ended it
    bool timedOut = false;          // it was killed after the time limit
};

struct ChildOptions {
    // Variables to set (or, with an empty optional, to remove) on top of this process's
    // environment.
    std::map<std::string, std::optional<std::string>> environment;
    std::chrono::milliseconds timeout{20000};
};

// Runs program with arguments, no standard input, and waits for it.
ChildResult runChild(const std::string& program, const std::vector<std::string>& arguments,
                     const ChildOptions& options = {});

// Starts program with arguments, no standard input, and its standard output and error written
// to the files named (to /dev/null when a name is empty; one name for both interleaves them in
// the order written). A file rather than a pipe: nobody has to keep reading while the child runs
// for minutes, and what it writes as it ends is all there once it is reaped. The process id,
// for the caller to reap; throws when the child cannot start.
int spawnChild(const std::string& program, const std::vector<std::string>& arguments,
               const std::map<std::string, std::optional<std::string>>& environment,
               const std::filesystem::path& outputFile, const std::filesystem::path& errorFile);

// A child left running, for tests that kill it at a moment of their choosing.
class RunningChild {
public:
    RunningChild(const std::string& program, const std::vector<std::string>& arguments,
                 const ChildOptions& options = {});
    ~RunningChild();
    RunningChild(const RunningChild&) = delete;
    RunningChild& operator=(const RunningChild&) = delete;

    int pid() const { return pid_; }
    // Sends the signal and reaps the child.
    void killAndWait(int signal);
    // Waits for the child to end by itself and reaps it: its exit status, or 128 + the signal
    // that ended it. Empty when it still runs after atMost; it is then left running.
    std::optional<int> waitForExit(std::chrono::milliseconds atMost);

private:
    int pid_ = -1;
};

}  // namespace vantle::testing
