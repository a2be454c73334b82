#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "display/native_display_control.h"

namespace vantle {

// The displays' own brightness through the system's private DisplayServices framework, opened
// at run time because it is not part of the public SDK and may be missing or change. It drives
// the built-in panel and Apple's own external displays; other monitors do not answer.
//
// Whether a display answers is asked at every call: a successful read is the only reliable
// test, as the framework's own can-change query says yes or no wrongly on recent systems.
// A system without the framework, or with it lacking a function, simply has no native control.
// Main thread only; every call answers within the process.
class DisplayServicesBrightness final : public NativeDisplayControl {
public:
    DisplayServicesBrightness();

    // The framework takes the window server's display id itself, so nothing needs matching;
    // only the ids of the online displays are kept, so that the undocumented functions are
    // never handed one that names no display (a preview display, one unplugged since).
    void updateDisplays(const std::vector<DisplayIdentity>& displays) override;
    std::optional<float> get(std::uint32_t displayId) override;
    bool set(std::uint32_t displayId, float level) override;

private:
    bool knownDisplay(std::uint32_t displayId) const;

    // The framework's signatures: a status (0 for success) and the level 0..1.
    using GetBrightness = int (*)(std::uint32_t display, float* level);
    using SetBrightness = int (*)(std::uint32_t display, float level);

    GetBrightness getBrightness_ = nullptr;
    SetBrightness setBrightness_ = nullptr;
    // Empty until a list of displays is known: then every display may be asked.
    std::optional<std::set<std::uint32_t>> online_;
};

}  // namespace vantle
