// Stands in for systemd-logind in the display tests: owns org.freedesktop.login1 on the bus that
// DBUS_SYSTEM_BUS_ADDRESS names, answers the session's SetBrightness, and announces a suspend or
// a wake (the manager's PrepareForSleep signal) when a test asks it to through the stand-in's
// own AnnounceSleep(b) on org.vantle.LogindStandIn.
//
// Usage: logind_stand_in <root> <call log>
//
// It plays the kernel's part too: where logind would write the brightness attribute and the
// driver would then show the new level in actual_brightness, the stand-in writes actual_brightness
// of <root>/sys/class/backlight/<name> directly, because the tests make the brightness attribute
// unwritable. Every accepted call is appended to the call log as "<subsystem> <name> <value>".
// The log is created, empty, once the name is owned, which tells the test that calls may begin.

#include <systemd/sd-bus.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

struct StandIn {
    std::filesystem::path root;
    std::filesystem::path log;
};

int setBrightness(sd_bus_message* message, void* userData, sd_bus_error* error) {
    const auto* standIn = static_cast<const StandIn*>(userData);
    const char* subsystem = nullptr;
    const char* name = nullptr;
    std::uint32_t value = 0;
    if (const int read = sd_bus_message_read(message, "ssu", &subsystem, &name, &value); read < 0) {
        return read;
    }
    // The same checks logind makes before it touches a device.
    if (std::strcmp(subsystem, "backlight") != 0 && std::strcmp(subsystem, "leds") != 0) {
        return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "Subsystem type %s not supported", subsystem);
    }
    if (std::strchr(name, '/') != nullptr || std::strlen(name) == 0) {
        return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "Not a valid device name %s", name);
    }
    const std::filesystem::path folder = standIn->root / "sys/class" / subsystem / name;
    if (!std::filesystem::is_directory(folder)) {
        return sd_bus_error_setf(error, "org.freedesktop.DBus.Error.FileNotFound", "No such device %s", name);
    }
    std::ofstream(folder / "actual_brightness", std::ios::trunc) << value << '\n';
    std::ofstream(standIn->log, std::ios::app) << subsystem << ' ' << name << ' ' << value << '\n';
    return sd_bus_reply_method_return(message, nullptr);
}

const sd_bus_vtable kSessionVtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("SetBrightness", "ssu", "", setBrightness, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

// The signal goes out before the answer, so a test that has its answer knows it was sent.
int announceSleep(sd_bus_message* message, void*, sd_bus_error*) {
    int goingToSleep = 0;
    if (const int read = sd_bus_message_read(message, "b", &goingToSleep); read < 0) {
        return read;
    }
    if (const int sent = sd_bus_emit_signal(sd_bus_message_get_bus(message), "/org/freedesktop/login1",
                                            "org.freedesktop.login1.Manager", "PrepareForSleep", "b", goingToSleep);
        sent < 0) {
        return sent;
    }
    return sd_bus_reply_method_return(message, nullptr);
}

const sd_bus_vtable kStandInVtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("AnnounceSleep", "b", "", announceSleep, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        return 2;
    }
    StandIn standIn{argv[1], argv[2]};
    sd_bus* bus = nullptr;
    if (sd_bus_open_system(&bus) < 0) {
        return 1;
    }
    // logind resolves "auto" to the caller's session; the tests have only one caller.
    if (sd_bus_add_object_vtable(bus, nullptr, "/org/freedesktop/login1/session/auto",
                                 "org.freedesktop.login1.Session", kSessionVtable, &standIn) < 0 ||
        sd_bus_add_object_vtable(bus, nullptr, "/org/freedesktop/login1", "org.vantle.LogindStandIn", kStandInVtable,
                                 nullptr) < 0 ||
        sd_bus_request_name(bus, "org.freedesktop.login1", 0) < 0) {
        return 1;
    }
    std::ofstream(standIn.log, std::ios::trunc).flush();
    for (;;) {
        const int processed = sd_bus_process(bus, nullptr);
        if (processed < 0) {
            return 1;
        }
        if (processed > 0) {
            continue;
        }
        if (const int waited = sd_bus_wait(bus, UINT64_MAX); waited < 0 && waited != -EINTR) {
            return 1;
        }
    }
}
