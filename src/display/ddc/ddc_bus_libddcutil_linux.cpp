#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include <ddcutil_c_api.h>

#include "display/ddc/ddc_bus.h"
#include "display/ddc/ddc_sysfs_linux.h"
#include "services/library_function_linux.h"

namespace vantle::ddc {
namespace {

// The library's functions this backend uses, looked up by name so that the program neither
// links against libddcutil nor pays for loading it on machines without DDC/CI.
struct Functions {
    decltype(&ddca_get_display_info_list2) listDisplays = nullptr;
    decltype(&ddca_free_display_info_list) freeList = nullptr;
    decltype(&ddca_open_display2) open = nullptr;
    decltype(&ddca_close_display) close = nullptr;
    decltype(&ddca_get_non_table_vcp_value) get = nullptr;
    decltype(&ddca_set_non_table_vcp_value) set = nullptr;
    decltype(&ddca_set_fout) setOut = nullptr;
    decltype(&ddca_set_ferr) setErr = nullptr;
};

// libddcutil's own messages go to the calling thread's output streams; it has to be told per
// thread to keep quiet, because the program's standard output belongs to its check modes.
void silenceThisThread(const Functions& functions) {
    thread_local bool silenced = false;
    if (!silenced) {
        functions.setOut(nullptr);
        functions.setErr(nullptr);
        silenced = true;
    }
}

class LibddcutilHandle final : public DdcMonitorHandle {
public:
    LibddcutilHandle(const Functions& functions, DDCA_Display_Handle handle)
        : functions_(functions), handle_(handle) {}
    ~LibddcutilHandle() override { functions_.close(handle_); }
    LibddcutilHandle(const LibddcutilHandle&) = delete;
    LibddcutilHandle& operator=(const LibddcutilHandle&) = delete;

    std::optional<VcpReading> read(std::uint8_t feature) override {
        DDCA_Non_Table_Vcp_Value value{};
        if (functions_.get(handle_, feature, &value) != 0) {
            return std::nullopt;
        }
        return VcpReading{static_cast<std::uint16_t>(value.sh << 8 | value.sl),
                          static_cast<std::uint16_t>(value.mh << 8 | value.ml)};
    }

    bool write(std::uint8_t feature, std::uint16_t value) override {
        return functions_.set(handle_, feature, static_cast<std::uint8_t>(value >> 8),
                              static_cast<std::uint8_t>(value & 0xff)) == 0;
    }

private:
    // A copy, so that a handle never depends on the lifetime of the bus that opened it.
    Functions functions_;
    DDCA_Display_Handle handle_;
};

class LibddcutilBus final : public DdcBus {
public:
    explicit LibddcutilBus(Functions functions) : functions_(functions) {}

    std::vector<DdcDisplayInfo> list() override {
        silenceThisThread(functions_);
        DDCA_Display_Info_List* displays = nullptr;
        if (functions_.listDisplays(false, &displays) != 0 || displays == nullptr) {
            return {};
        }
        std::vector<DdcDisplayInfo> result;
        for (int i = 0; i < displays->ct; ++i) {
            const DDCA_Display_Info& display = displays->info[i];
            DdcDisplayInfo info;
            // The reference stays valid as long as the library does not redetect, which this
            // backend never asks it to do.
            info.token = reinterpret_cast<std::uintptr_t>(display.dref);
            info.edid.assign(std::begin(display.edid_bytes), std::end(display.edid_bytes));
            if (display.path.io_mode == DDCA_IO_I2C) {
                info.connector = drmConnectorOfI2cBus(display.path.path.i2c_busno);
            }
            result.push_back(std::move(info));
        }
        functions_.freeList(displays);
        return result;
    }

    std::unique_ptr<DdcMonitorHandle> open(std::uint64_t token) override {
        silenceThisThread(functions_);
        DDCA_Display_Handle handle = nullptr;
        auto* reference = reinterpret_cast<DDCA_Display_Ref>(static_cast<std::uintptr_t>(token));
        if (functions_.open(reference, false, &handle) != 0 || handle == nullptr) {
            return nullptr;
        }
        return std::make_unique<LibddcutilHandle>(functions_, handle);
    }

private:
    Functions functions_;
};

// Runs the loading with standard output pointed at /dev/null: libddcutil reports what it finds
// on standard output while it initialises, which would end up in the check modes' lines.
void* openQuietly(const char* name) {
    std::fflush(stdout);
    const int saved = dup(STDOUT_FILENO);
    const int devNull = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (saved >= 0 && devNull >= 0) {
        dup2(devNull, STDOUT_FILENO);
    }
    void* library = dlopen(name, RTLD_NOW | RTLD_LOCAL);
    std::fflush(stdout);
    if (saved >= 0 && devNull >= 0) {
        dup2(saved, STDOUT_FILENO);
    }
    if (devNull >= 0) {
        ::close(devNull);
    }
    if (saved >= 0) {
        ::close(saved);
    }
    return library;
}

}  // namespace

std::shared_ptr<DdcBus> loadLibddcutilBus() {
    // The library is never closed again: it starts threads of its own and registers exit
    // handlers, and a monitor thread abandoned at shutdown may still be inside it.
    void* library = openQuietly("libddcutil.so.4");
    if (library == nullptr) {
        return nullptr;
    }
    Functions functions;
    const bool complete = lookUpLibraryFunction(library, "ddca_get_display_info_list2", functions.listDisplays) &&
                          lookUpLibraryFunction(library, "ddca_free_display_info_list", functions.freeList) &&
                          lookUpLibraryFunction(library, "ddca_open_display2", functions.open) &&
                          lookUpLibraryFunction(library, "ddca_close_display", functions.close) &&
                          lookUpLibraryFunction(library, "ddca_get_non_table_vcp_value", functions.get) &&
                          lookUpLibraryFunction(library, "ddca_set_non_table_vcp_value", functions.set) &&
                          lookUpLibraryFunction(library, "ddca_set_fout", functions.setOut) &&
                          lookUpLibraryFunction(library, "ddca_set_ferr", functions.setErr);
    if (!complete) {
        return nullptr;
    }
    return std::make_shared<LibddcutilBus>(functions);
}

}  // namespace vantle::ddc
