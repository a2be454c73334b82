#include "fault_program.h"

#include <signal.h>
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

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;

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
    pid_ = spawnChild(program, arguments, environment, folder_.path() / "stdout", folder_.path() / "stderr");
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
