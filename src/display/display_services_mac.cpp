#include "display/display_services_mac.h"

#include <CoreGraphics/CoreGraphics.h>
#include <dlfcn.h>

#include <cmath>
#include <cstring>
#include <utility>

namespace vantle {
namespace {

constexpr const char* kFrameworkPath = "/System/Library/PrivateFrameworks/DisplayServices.framework/DisplayServices";

// The framework's functions take a CGDirectDisplayID; ours say std::uint32_t so that the header
// stays free of Apple's types. They must be one type for the calls through them to be right.
static_assert(sizeof(CGDirectDisplayID) == sizeof(std::uint32_t));

// dlsym hands back an object pointer; POSIX guarantees that it converts to a function pointer.
template <typename Function>
Function lookUp(void* library, const char* name) {
    void* symbol = dlsym(library, name);
    Function function = nullptr;
    static_assert(sizeof function == sizeof symbol);
    std::memcpy(&function, &symbol, sizeof function);
    return function;
}

}  // namespace

DisplayServicesBrightness::DisplayServicesBrightness() {
    // Opened once and never closed: the functions are called for the life of the process.
    void* framework = dlopen(kFrameworkPath, RTLD_LAZY);
    if (framework == nullptr) {
        return;
    }
    getBrightness_ = lookUp<GetBrightness>(framework, "DisplayServicesGetBrightness");
    setBrightness_ = lookUp<SetBrightness>(framework, "DisplayServicesSetBrightness");
}

void DisplayServicesBrightness::updateDisplays(const std::vector<DisplayIdentity>& displays) {
    // A window server always has a display online; an empty list means it could not be read,
    // which must not switch every display's control off.
    if (displays.empty()) {
        online_.reset();
        return;
    }
    std::set<std::uint32_t> online;
    for (const DisplayIdentity& display : displays) {
        online.insert(display.displayId);
    }
    online_ = std::move(online);
}

bool DisplayServicesBrightness::knownDisplay(std::uint32_t displayId) const {
    return !online_ || online_->count(displayId) > 0;
}

std::optional<float> DisplayServicesBrightness::get(std::uint32_t displayId) {
    if (getBrightness_ == nullptr || !knownDisplay(displayId)) {
        return std::nullopt;
    }
    float level = 0;
    if (getBrightness_(displayId, &level) != 0 || !std::isfinite(level)) {
        return std::nullopt;
    }
    return std::fmin(std::fmax(level, 0.0f), 1.0f);
}

bool DisplayServicesBrightness::set(std::uint32_t displayId, float level) {
    if (setBrightness_ == nullptr || !knownDisplay(displayId)) {
        return false;
    }
    return setBrightness_(displayId, level) == 0;
}

}  // namespace vantle
