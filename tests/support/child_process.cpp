#include "support/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <thread>
#include <stdexcept>

extern char** environ;

namespace vantle::testing {
namespace {

std::vector<std::string> mergedEnvironment(const ChildOptions& options) {
    std::map<std::string, std::string> merged;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text(*entry);
        const std::size_t equals = text.find('=');
        if (equals != std::string::npos) {
            merged[text.substr(0, equals)] = text.substr(equals + 1);
        }
    }
    for (const auto& [name, value] : options.environment) {
        if (value) {
            merged[name] = *value;
        } else {
            merged.erase(name);
        }
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

// Starts the child with its standard output and error going to the given descriptors (or
// /dev/null when negative) and standard input from /dev/null.
int spawn(const std::string& program, const std::vector<std::string>& arguments, const ChildOptions& options,
          int outputFd, int errorFd) {
    std::vector<std::string> argumentStrings{program};
    argumentStrings.insert(argumentStrings.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environmentStrings = mergedEnvironment(options);
    std::vector<char*> argv = pointers(argumentStrings);
    std::vector<char*> envp = pointers(environmentStrings);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    if (outputFd >= 0) {
        posix_spawn_file_actions_adddup2(&actions, outputFd, 1);
    } else {
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    }
    if (errorFd >= 0) {
        posix_spawn_file_actions_adddup2(&actions, errorFd, 2);
    } else {
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    }
    pid_t pid = -1;
    const int error = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        throw std::runtime_error("cannot start " + program + ": " + std::to_string(error));
    }
    return pid;
}

void recordStatus(int status, ChildResult& result) {
    if (WIFEXITED(status)) {
        result.exitStatus = WEXITSTATUS(status);
    } else if (WIFSIGNALED(status)) {
        result.signal = WTERMSIG(status);
    }
}

}  // namespace

ChildResult runChild(const std::string& program, const std::vector<std::string>& arguments,
                     const ChildOptions& options) {
    int outputPipe[2];
    int errorPipe[2];
    if (::pipe2(outputPipe, O_CLOEXEC) != 0 || ::pipe2(errorPipe, O_CLOEXEC) != 0) {
        throw std::runtime_error("cannot create pipes");
    }
    const int pid = spawn(program, arguments, options, outputPipe[1], errorPipe[1]);
    ::close(outputPipe[1]);
    ::close(errorPipe[1]);

    ChildResult result;
    const auto deadline = std::chrono::steady_clock::now() + options.timeout;
    pollfd fds[2] = {{outputPipe[0], POLLIN, 0}, {errorPipe[0], POLLIN, 0}};
    std::string* sinks[2] = {&result.standardOutput, &result.standardError};
    int open = 2;
    while (open > 0) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            result.timedOut = true;
            ::kill(pid, SIGKILL);
            break;
        }
        if (::poll(fds, 2, static_cast<int>(left.count())) < 0 && errno != EINTR) {
            break;
        }
        for (int index = 0; index < 2; ++index) {
            if (fds[index].fd < 0 || fds[index].revents == 0) {
                continue;
            }
            char buffer[4096];
            const ssize_t count = ::read(fds[index].fd, buffer, sizeof buffer);
            if (count > 0) {
                sinks[index]->append(buffer, static_cast<std::size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                ::close(fds[index].fd);
                fds[index].fd = -1;
                --open;
            }
        }
    }
    for (pollfd& fd : fds) {
        if (fd.fd >= 0) {
            ::close(fd.fd);
        }
    }
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    recordStatus(status, result);
    return result;
}

int spawnChild(const std::string& program, const std::vector<std::string>& arguments,
               const std::map<std::string, std::optional<std::string>>& environment,
               const std::filesystem::path& outputFile, const std::filesystem::path& errorFile) {
    const auto open = [](const std::filesystem::path& file) {
        return file.empty() ? -1 : ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600);
    };
    const int output = open(outputFile);
    const int error = errorFile == outputFile ? output : open(errorFile);
    const auto closeFiles = [output, error] {
        if (output >= 0) {
            ::close(output);
        }
        if (error >= 0 && error != output) {
            ::close(error);
        }
    };
    ChildOptions options;
    options.environment = environment;
    try {
        const int pid = spawn(program, arguments, options, output, error);
        closeFiles();
        return pid;
    } catch (...) {
        closeFiles();
        throw;
    }
}

RunningChild::RunningChild(const std::string& program, const std::vector<std::string>& arguments,
                           const ChildOptions& options)
    : pid_(spawn(program, arguments, options, -1, -1)) {}

RunningChild::~RunningChild() {
    if (pid_ > 0) {
        killAndWait(SIGKILL);
    }
}

void RunningChild::killAndWait(int signal) {
    if (pid_ <= 0) {
        return;
    }
    ::kill(pid_, signal);
    int status = 0;
    while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    pid_ = -1;
}

std::optional<int> RunningChild::waitForExit(std::chrono::milliseconds atMost) {
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    while (pid_ > 0) {
        int status = 0;
        const pid_t ended = ::waitpid(pid_, &status, WNOHANG);
        if (ended == pid_) {
            pid_ = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        if (ended < 0 && errno != EINTR) {
            return std::nullopt;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return std::nullopt;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return std::nullopt;
}

}  // namespace vantle::testing
