#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <utility>

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
    // Absent in libraries older than 1.2, which cannot look at the buses again.
    decltype(&ddca_redetect_displays) redetect = nullptr;
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

// What the bus and every handle it opened share. Looking at the buses again makes the library
// close every open display and free every display reference, so it may only happen while no
// command runs: commands hold the lock shared, a new look holds it alone. Each look starts a new
// generation; a handle of an earlier one was closed by the library and must not be used again.
struct Library {
    Functions functions;
    std::shared_mutex looking;
    std::uint64_t generation = 0;
    // Tokens stay the same across looks, while the library's references change with each.
    std::mutex records;
    std::map<std::uint64_t, DDCA_Display_Ref> references;
    std::map<std::pair<std::string, std::vector<std::uint8_t>>, std::uint64_t> tokens;
    std::uint64_t nextToken = 1;
};

class LibddcutilHandle final : public DdcMonitorHandle {
public:
    LibddcutilHandle(std::shared_ptr<Library> library, DDCA_Display_Handle handle, std::uint64_t generation)
        : library_(std::move(library)), handle_(handle), generation_(generation) {}
    ~LibddcutilHandle() override {
        std::shared_lock lock(library_->looking);
        if (!lostLocked()) {
            library_->functions.close(handle_);
        }
    }
    LibddcutilHandle(const LibddcutilHandle&) = delete;
    LibddcutilHandle& operator=(const LibddcutilHandle&) = delete;

    std::optional<VcpReading> read(std::uint8_t feature) override {
        std::shared_lock lock(library_->looking);
        DDCA_Non_Table_Vcp_Value value{};
        if (lostLocked() || library_->functions.get(handle_, feature, &value) != 0) {
            return std::nullopt;
        }
        return VcpReading{static_cast<std::uint16_t>(value.sh << 8 | value.sl),
                          static_cast<std::uint16_t>(value.mh << 8 | value.ml)};
    }

    bool write(std::uint8_t feature, std::uint16_t value) override {
        std::shared_lock lock(library_->looking);
        return !lostLocked() && library_->functions.set(handle_, feature, static_cast<std::uint8_t>(value >> 8),
                                                        static_cast<std::uint8_t>(value & 0xff)) == 0;
    }

    bool lost() const override {
        std::shared_lock lock(library_->looking);
        return lostLocked();
    }

private:
    bool lostLocked() const { return library_->generation != generation_; }

    // Shared, so that a handle never depends on the lifetime of the bus that opened it.
    std::shared_ptr<Library> library_;
    DDCA_Display_Handle handle_;
    std::uint64_t generation_;
};

class LibddcutilBus final : public DdcBus {
public:
    explicit LibddcutilBus(Functions functions) : library_(std::make_shared<Library>()) {
        library_->functions = functions;
    }

    std::vector<DdcDisplayInfo> list() override {
        silenceThisThread(library_->functions);
        // Listing hands out what the library found before and closes nothing, so commands to
        // monitors may go on meanwhile.
        std::shared_lock lock(library_->looking);
        return listLocked();
    }

    std::vector<DdcDisplayInfo> rescan() override {
        silenceThisThread(library_->functions);
        std::unique_lock lock(library_->looking);
        if (library_->functions.redetect != nullptr && library_->functions.redetect() == 0) {
            ++library_->generation;
            std::lock_guard records(library_->records);
            library_->references.clear();
        }
        return listLocked();
    }

    std::unique_ptr<DdcMonitorHandle> open(std::uint64_t token) override {
        silenceThisThread(library_->functions);
        std::shared_lock lock(library_->looking);
        DDCA_Display_Ref reference = nullptr;
        {
            std::lock_guard records(library_->records);
            const auto found = library_->references.find(token);
            if (found == library_->references.end()) {
                return nullptr;
            }
            reference = found->second;
        }
        DDCA_Display_Handle handle = nullptr;
        if (library_->functions.open(reference, false, &handle) != 0 || handle == nullptr) {
            return nullptr;
        }
        return std::make_unique<LibddcutilHandle>(library_, handle, library_->generation);
    }

private:
    std::vector<DdcDisplayInfo> listLocked() {
        const Functions& functions = library_->functions;
        DDCA_Display_Info_List* displays = nullptr;
        if (functions.listDisplays(false, &displays) != 0 || displays == nullptr) {
            return {};
        }
        std::vector<DdcDisplayInfo> result;
        std::lock_guard records(library_->records);
        for (int i = 0; i < displays->ct; ++i) {
            const DDCA_Display_Info& display = displays->info[i];
            DdcDisplayInfo info;
            info.edid.assign(std::begin(display.edid_bytes), std::end(display.edid_bytes));
            std::string place = "other";
            if (display.path.io_mode == DDCA_IO_I2C) {
                info.connector = drmConnectorOfI2cBus(display.path.path.i2c_busno);
                place = "i2c-" + std::to_string(display.path.path.i2c_busno);
            }
            // A monitor is the same one across looks while it answers on the same bus with the
            // same EDID.
            auto [token, added] = library_->tokens.try_emplace({place, info.edid}, library_->nextToken);
            if (added) {
                ++library_->nextToken;
            }
            info.token = token->second;
            library_->references[info.token] = display.dref;
            result.push_back(std::move(info));
        }
        functions.freeList(displays);
        return result;
    }

    std::shared_ptr<Library> library_;
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
    // Without it a monitor attached while the program runs is found at its next start only.
    lookUpLibraryFunction(library, "ddca_redetect_displays", functions.redetect);
    return std::make_shared<LibddcutilBus>(functions);
}

}  // namespace vantle::ddc
