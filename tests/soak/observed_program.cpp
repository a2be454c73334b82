#include "observed_program.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

extern char** environ;

namespace vantle::testing {
namespace {

std::vector<std::string> mergedEnvironment(const std::map<std::string, std::string>& overrides) {
    std::map<std::string, std::string> merged;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text(*entry);
        const std::size_t equals = text.find('=');
        if (equals != std::string::npos) {
            merged[text.substr(0, equals)] = text.substr(equals + 1);
        }
    }
    for (const auto& [name, value] : overrides) {
        merged[name] = value;
    }
    std::vector<std::string> list;
    for (const auto& [name, value] : merged) {
        list.push_back(name + "=" + value);
    }
    return list;
}

std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> result;
    for (std::string& string : strings) {
        result.push_back(string.data());
    }
    result.push_back(nullptr);
    return result;
}

}  // namespace

ObservedProgram::ObservedProgram(const std::string& program, const std::vector<std::string>& arguments,
                                 const std::map<std::string, std::string>& environment, std::filesystem::path errorLog)
    : errorLog_(std::move(errorLog)) {
    std::vector<std::string> argumentStrings{program};
    argumentStrings.insert(argumentStrings.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environmentStrings = mergedEnvironment(environment);
    std::vector<char*> argv = pointers(argumentStrings);
    std::vector<char*> envp = pointers(environmentStrings);

    // A file rather than a pipe: nobody has to keep reading while the program runs for minutes,
    // and the report of a sanitizer written at exit is complete once the process is reaped.
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, errorLog_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
    posix_spawn_file_actions_adddup2(&actions, 2, 1);
    pid_t pid = -1;
    const int error = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("cannot start " + program + ": " + std::to_string(error));
    }
    pid_ = pid;
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
