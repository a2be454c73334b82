#include "display/backlight/testing/stand_in_system_bus.h"

#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace vantle::testing {
namespace {

constexpr std::chrono::seconds kStartTimeout{10};

bool accepts(const std::filesystem::path& socketPath) {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        return false;
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
    const bool connected = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(fd);
    return connected;
}

template <typename Condition>
bool waitFor(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + kStartTimeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

}  // namespace

StandInSystemBus::StandInSystemBus() {
    const std::filesystem::path socketPath = folder_.path() / "system_bus_socket";
    const std::filesystem::path configPath = folder_.path() / "bus.conf";
    writeFile(configPath,
              "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
              " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
              "<busconfig>\n"
              "  <listen>unix:path=" + socketPath.string() + "</listen>\n"
              "  <auth>EXTERNAL</auth>\n"
              "  <policy context=\"default\">\n"
              "    <allow user=\"*\"/>\n"
              "    <allow own=\"*\"/>\n"
              "    <allow send_destination=\"*\"/>\n"
              "    <allow receive_sender=\"*\"/>\n"
              "  </policy>\n"
              "</busconfig>\n");
    daemon_ = std::make_unique<RunningChild>(
        VANTLE_DBUS_DAEMON, std::vector<std::string>{"--config-file=" + configPath.string(), "--nofork", "--nopidfile"});
    running_ = waitFor([&] { return accepts(socketPath); });

    if (const char* previous = std::getenv("DBUS_SYSTEM_BUS_ADDRESS")) {
        previousAddress_ = previous;
    }
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + socketPath.string()).c_str(), 1);
}

StandInSystemBus::~StandInSystemBus() {
    logind_.reset();
    daemon_.reset();
    if (previousAddress_) {
        ::setenv("DBUS_SYSTEM_BUS_ADDRESS", previousAddress_->c_str(), 1);
    } else {
        ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    }
}

bool StandInSystemBus::startLogind(const std::filesystem::path& root) {
    const std::filesystem::path log = folder_.path() / "logind_calls";
    logind_ = std::make_unique<RunningChild>(VANTLE_LOGIND_STAND_IN,
                                             std::vector<std::string>{root.string(), log.string()});
    return waitFor([&] { return std::filesystem::exists(log); });
}

std::string StandInSystemBus::logindCalls() const {
    return readFile(folder_.path() / "logind_calls");
}

bool StandInSystemBus::announceSleep(bool goingToSleep) {
    sd_bus* bus = nullptr;
    if (sd_bus_open_system(&bus) < 0) {
        return false;
    }
    sd_bus_error error = SD_BUS_ERROR_NULL;
    const int called = sd_bus_call_method(bus, "org.freedesktop.login1", "/org/freedesktop/login1",
                                          "org.vantle.LogindStandIn", "AnnounceSleep", &error, nullptr, "b",
                                          static_cast<int>(goingToSleep));
    sd_bus_error_free(&error);
    sd_bus_flush_close_unref(bus);
    return called >= 0;
}

void StandInSystemBus::freezeLogind() {
    if (logind_) {
        ::kill(logind_->pid(), SIGSTOP);
    }
}

}  // namespace vantle::testing
