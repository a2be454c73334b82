#include "observed_program.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <optional>
#include <thread>

#include "support/child_process.h"

namespace vantle::testing {

ObservedProgram::ObservedProgram(const std::string& program, const std::vector<std::string>& arguments,
                                 const std::map<std::string, std::string>& environment, std::filesystem::path errorLog)
    : errorLog_(std::move(errorLog)) {
    std::map<std::string, std::optional<std::string>> changes(environment.begin(), environment.end());
    // Both outputs in one file, in the order written: a sanitizer's report follows what led to it.
    pid_ = spawnChild(program, arguments, changes, errorLog_, errorLog_);
}

ObservedProgram::~ObservedProgram() {
    if (!ended_ && pid_ > 0) {
        ::kill(pid_, SIGKILL);
        reap(true);
    }
}

bool ObservedProgram::reap(bool wait) {
    if (ended_) {
        return true;
    }
    int status = 0;
    pid_t result = -1;
    do {
        result = ::waitpid(pid_, &status, wait ? 0 : WNOHANG);
    } while (result < 0 && errno == EINTR);
    if (result != pid_) {
        return false;
    }
    ended_ = true;
    if (WIFEXITED(status)) {
        ending_.exitStatus = WEXITSTATUS(status);
    } else if (WIFSIGNALED(status)) {
        ending_.signal = WTERMSIG(status);
    }
    return true;
}

bool ObservedProgram::running() {
    return !reap(false);
}

std::optional<long> ObservedProgram::residentKilobytes() const {
    if (ended_) {
        return std::nullopt;
    }
    std::ifstream status("/proc/" + std::to_string(pid_) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0) {
            return std::stol(line.substr(6));
        }
    }
    return std::nullopt;
}

std::optional<int> ObservedProgram::openDescriptors() const {
    if (ended_) {
        return std::nullopt;
    }
    std::error_code error;
    std::filesystem::directory_iterator entries("/proc/" + std::to_string(pid_) + "/fd", error);
    if (error) {
        return std::nullopt;
    }
    int count = 0;
    for (; entries != std::filesystem::directory_iterator(); entries.increment(error)) {
        ++count;
    }
    if (error) {
        return std::nullopt;
    }
    return count;
}

const ObservedProgram::Ending& ObservedProgram::terminate(std::chrono::milliseconds atMost) {
    if (ended_) {
        return ending_;
    }
    ::kill(pid_, SIGTERM);
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    while (!reap(false)) {
        if (std::chrono::steady_clock::now() >= deadline) {
            ::kill(pid_, SIGKILL);
            reap(true);
            ending_ = {};
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return ending_;
}

std::string ObservedProgram::errorOutput() const {
    std::ifstream file(errorLog_, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace vantle::testing
