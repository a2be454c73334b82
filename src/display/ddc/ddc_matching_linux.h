#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "display/ddc/ddc_bus.h"
#include "display/native_display_control.h"

namespace vantle::ddc {

struct DdcMatch {
    std::uint32_t displayId = 0;
    DdcDisplayInfo monitor;
};

// Pairs displays with DDC monitors by the first 128 bytes of their EDID. Where that leaves a
// choice (two identical monitors), the connector decides; a display whose monitor still cannot
// be told apart is left out, because driving the wrong monitor is worse than driving none.
std::vector<DdcMatch> matchDisplays(const std::vector<DisplayIdentity>& displays,
                                    const std::vector<DdcDisplayInfo>& monitors);

}  // namespace vantle::ddc
