#include "dock/process_runner_posix.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

// The environment of a program (not of a library loaded into one), which is what we are.
extern char** environ;

namespace vantle {
namespace {

// A descriptor closed when it goes out of scope.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) {
            reset();
            fd_ = std::exchange(other.fd_, -1);
        }
        return *this;
    }

    int get() const { return fd_; }
    void reset() {
        if (fd_ >= 0) {
            ::close(fd_);
            fd_ = -1;
        }
    }

private:
    int fd_ = -1;
};

struct Pipe {
    Descriptor read;
    Descriptor write;
};

bool openPipe(const SpawnChoices& choices, Pipe& pipe, int& error) {
    int ends[2] = {-1, -1};
    const bool opened = choices.openPipe(ends, error);
    // Whatever the system's way made is ours to close, also when it failed half-way.
    pipe.read = Descriptor(ends[0]);
    pipe.write = Descriptor(ends[1]);
    return opened;
}

// Reads every open pipe until each has reached its end. Both are read together: a tool that
// fills one pipe while we wait on the other would otherwise never finish.
void readToEnd(Descriptor& output, std::string& outputText, Descriptor& errors, std::string& errorText) {
    std::array<char, 16384> buffer;
    for (;;) {
        std::array<pollfd, 2> watched{{{output.get(), POLLIN, 0}, {errors.get(), POLLIN, 0}}};
        if (watched[0].fd < 0 && watched[1].fd < 0) {
            return;
        }
        if (::poll(watched.data(), watched.size(), -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            return;
        }
        for (std::size_t index = 0; index < watched.size(); ++index) {
            if (watched[index].fd < 0 || watched[index].revents == 0) {
                continue;
            }
            Descriptor& descriptor = index == 0 ? output : errors;
            std::string& text = index == 0 ? outputText : errorText;
            const ssize_t count = ::read(descriptor.get(), buffer.data(), buffer.size());
            if (count > 0) {
                text.append(buffer.data(), static_cast<std::size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                descriptor.reset();
            }
        }
    }
}

int waitForExit(pid_t pid) {
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) {
            return -1;
        }
    }
    if (WIFEXITED(status)) {
        return WEXITSTATUS(status);
    }
    return WIFSIGNALED(status) ? WTERMSIG(status) : -1;
}

}  // namespace

Expected<ProcessExit> spawnAndCollect(const std::filesystem::path& executable,
                                      const std::vector<std::string>& arguments, ErrorOutput errorOutput,
                                      const SpawnChoices& choices) {
    int error = 0;
    Pipe output;
    Pipe errors;
    if (!openPipe(choices, output, error) ||
        (errorOutput == ErrorOutput::capture && !openPipe(choices, errors, error))) {
        return posixError(error);
    }

    std::vector<std::string> argumentStrings{executable.string()};
    argumentStrings.insert(argumentStrings.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& argument : argumentStrings) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output.write.get(), 1);
    if (errorOutput == ErrorOutput::capture) {
        posix_spawn_file_actions_adddup2(&actions, errors.write.get(), 2);
    } else {
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    }
    // The tool starts with no blocked signals and every signal at its default, whatever the
    // thread that starts it has set up for itself.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes,
                             static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | choices.extraFlags));

    pid_t pid = -1;
    error = ::posix_spawn(&pid, executable.c_str(), &actions, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        return posixError(error);
    }
    // Our copies of the writing ends must go, or the pipes would never reach their ends.
    output.write.reset();
    errors.write.reset();

    ProcessExit exit;
    readToEnd(output.read, exit.standardOutput, errors.read, exit.standardError);
    exit.status = waitForExit(pid);
    return exit;
}

}  // namespace vantle
