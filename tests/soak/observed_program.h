#pragma once

// The program under a long test, as a child process whose standard error is kept in a file (the
// sanitizers report there) and whose memory and open descriptors can be read from /proc.
#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vantle::testing {

class ObservedProgram {
public:
    // How the program ended: its exit status or the signal that ended it; both absent while it
    // still runs or when it did not end in time.
    struct Ending {
        std::optional<int> exitStatus;
        std::optional<int> signal;
    };

    // Starts program with arguments, the variables of environment set on top of this process's
    // own, no standard input, and its standard output and error written to errorLog.
    ObservedProgram(const std::string& program, const std::vector<std::string>& arguments,
                    const std::map<std::string, std::string>& environment, std::filesystem::path errorLog);
    // A program still running is killed and reaped.
    ~ObservedProgram();
    ObservedProgram(const ObservedProgram&) = delete;
    ObservedProgram& operator=(const ObservedProgram&) = delete;

    int pid() const { return pid_; }

    // True while the process has not ended; once it has, the ending is kept.
    bool running();
    const Ending& ending() const { return ending_; }

    // VmRSS in kilobytes; absent once the process is gone.
    std::optional<long> residentKilobytes() const;
    // The number of entries in /proc/<pid>/fd; absent once the process is gone.
    std::optional<int> openDescriptors() const;

    // Sends SIGTERM and waits up to atMost for the process to end; it is killed after that, and
    // the ending then stays empty.
    const Ending& terminate(std::chrono::milliseconds atMost);

    // Everything the program wrote to its standard output and error so far.
    std::string errorOutput() const;

private:
    bool reap(bool wait);

    std::filesystem::path errorLog_;
    int pid_ = -1;
    bool ended_ = false;
    Ending ending_;
};

}  // namespace vantle::testing
