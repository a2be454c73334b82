#include "fault_program.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "services/file_contents.h"
#include "services/property_list_codec.h"
#include "support/child_process.h"

extern char** environ;

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;

std::vector<std::string> mergedEnvironment(const std::map<std::string, std::optional<std::string>>& changes) {
    std::map<std::string, std::string> merged;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text(*entry);
        if (const std::size_t equals = text.find('='); equals != std::string::npos) {
            merged[text.substr(0, equals)] = text.substr(equals + 1);
        }
    }
    for (const auto& [name, value] : changes) {
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

ProgramEnd endFromStatus(int status) {
    ProgramEnd end;
    if (WIFEXITED(status)) {
        end.exitStatus = WEXITSTATUS(status);
    } else if (WIFSIGNALED(status)) {
        end.signal = WTERMSIG(status);
        end.coreDumped = WCOREDUMP(status);
    }
    return end;
}

}  // namespace

ProgramProcess::ProgramProcess(const std::string& program, const std::vector<std::string>& arguments,
                               const std::map<std::string, std::optional<std::string>>& environment) {
    std::vector<std::string> argumentStrings{program};
    argumentStrings.insert(argumentStrings.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environmentStrings = mergedEnvironment(environment);
    std::vector<char*> argv = pointers(argumentStrings);
    std::vector<char*> envp = pointers(environmentStrings);
    const std::string output = (folder_.path() / "stdout").string();
    const std::string error = (folder_.path() / "stderr").string();

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, error.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t pid = -1;
    const int failed = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) {
        throw std::runtime_error("cannot start " + program + ": " + std::to_string(failed));
    }
    pid_ = pid;
}

ProgramProcess::~ProgramProcess() {
    if (running()) {
        stop(SIGKILL);
    }
}

bool ProgramProcess::running() {
    if (end_) {
        return false;
    }
    int status = 0;
    const pid_t reaped = ::waitpid(pid_, &status, WNOHANG);
    if (reaped == pid_) {
        end_ = endFromStatus(status);
        return false;
    }
    return reaped == 0 || (reaped < 0 && errno == EINTR);
}

std::optional<ProgramEnd> ProgramProcess::waitForEnd(std::chrono::milliseconds atMost) {
    waitFor([this] { return !running(); }, atMost);
    return end_;
}

ProgramEnd ProgramProcess::stop(int signal) {
    if (running()) {
        ::kill(pid_, signal);
        if (!waitForEnd(10s)) {
            ::kill(pid_, SIGKILL);
            waitForEnd(10s);
        }
    }
    return end_.value_or(ProgramEnd{});
}

std::string ProgramProcess::standardError() const {
    return readFileContents(folder_.path() / "stderr").value_or("");
}

bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds atMost) {
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    while (std::chrono::steady_clock::now() < deadline) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(50ms);
    }
    return condition();
}

bool muteKeyTaken(const std::string& display) {
    xcb_connection_t* connection = xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return false;
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const xcb_keycode_t mute = 121;  // XF86AudioMute in the X server's default keymap
    xcb_generic_error_t* error = xcb_request_check(
        connection, xcb_grab_key_checked(connection, 1, root, 0, mute, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    const bool taken = error != nullptr;
    std::free(error);
    xcb_disconnect(connection);
    return taken;
}

bool programWindowAt(const std::string& geometry) {
    const ChildResult found = runChild("/usr/bin/xdotool", {"search", "--onlyvisible", "--class", "vantle-control"});
    std::istringstream ids(found.standardOutput);
    for (std::string id; std::getline(ids, id);) {
        const std::string info = runChild("/usr/bin/xdotool", {"getwindowgeometry", "--shell", id}).standardOutput;
        const auto value = [&info](const std::string& key) {
            const std::size_t at = info.find(key + "=");
            if (at == std::string::npos) {
                return std::string("?");
            }
            const std::size_t start = at + key.size() + 1;
            return info.substr(start, info.find('\n', start) - start);
        };
        if (value("WIDTH") + "x" + value("HEIGHT") + "+" + value("X") + "+" + value("Y") == geometry) {
            return true;
        }
    }
    return false;
}

std::optional<std::vector<double>> rememberedLevels(const std::filesystem::path& settingsFile, const std::string& uid) {
    const std::optional<std::string> bytes = readFileContents(settingsFile);
    const std::optional<PlistValue> parsed = bytes ? parsePropertyList(*bytes) : std::nullopt;
    const PlistValue::Dictionary* top = parsed ? parsed->asDictionary() : nullptr;
    if (top == nullptr) {
        return std::nullopt;
    }
    const auto muted = top->find("mutedLevels");
    const PlistValue::Dictionary* devices = muted == top->end() ? nullptr : muted->second.asDictionary();
    if (devices == nullptr) {
        return std::nullopt;
    }
    const auto device = devices->find(uid);
    const PlistValue::Array* levels = device == devices->end() ? nullptr : device->second.asArray();
    if (levels == nullptr) {
        return std::nullopt;
    }
    std::vector<double> numbers;
    for (const PlistValue& level : *levels) {
        numbers.push_back(level.asNumber().value_or(-1));
    }
    return numbers;
}

bool hasSanitizerReport(const std::string& text) {
    return text.find("Sanitizer") != std::string::npos || text.find("runtime error:") != std::string::npos;
}

}  // namespace vantle::testing

namespace vantle::testing {

int gammaTopOn(const std::string& display) {
    xcb_connection_t* connection = xcb_connect(display.c_str(), nullptr);
    int top = 0;
    if (xcb_connection_has_error(connection) == 0) {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        xcb_randr_get_screen_resources_current_reply_t* resources = xcb_randr_get_screen_resources_current_reply(
            connection, xcb_randr_get_screen_resources_current(connection, root), nullptr);
        if (resources != nullptr && xcb_randr_get_screen_resources_current_crtcs_length(resources) > 0) {
            const xcb_randr_crtc_t crtc = xcb_randr_get_screen_resources_current_crtcs(resources)[0];
            xcb_randr_get_crtc_gamma_reply_t* gamma =
                xcb_randr_get_crtc_gamma_reply(connection, xcb_randr_get_crtc_gamma(connection, crtc), nullptr);
            if (gamma != nullptr && gamma->size > 0) {
                top = xcb_randr_get_crtc_gamma_red(gamma)[gamma->size - 1];
            }
            std::free(gamma);
        }
        std::free(resources);
    }
    xcb_disconnect(connection);
    return top;
}

}  // namespace vantle::testing
