#include "display/ddc/ddc_matching_linux.h"

#include <algorithm>
#include <cstddef>

#include "display/connector_name_linux.h"
#include "display/edid.h"

namespace vantle::ddc {

std::vector<DdcMatch> matchDisplays(const std::vector<DisplayIdentity>& displays,
                                    const std::vector<DdcDisplayInfo>& monitors) {
    std::vector<DdcMatch> matches;
    for (const DisplayIdentity& display : displays) {
        std::vector<const DdcDisplayInfo*> candidates;
        for (const DdcDisplayInfo& monitor : monitors) {
            if (sameMonitor(display.edid, monitor.edid)) {
                candidates.push_back(&monitor);
            }
        }
        const auto twins = std::count_if(displays.begin(), displays.end(), [&](const auto& other) {
            return sameMonitor(display.edid, other.edid);
        });
        // One display and one monitor with this EDID need no connector, which the library may
        // not know; any more on either side and only the connector can pair them.
        if (candidates.size() > 1 || twins > 1) {
            std::erase_if(candidates, [&](const DdcDisplayInfo* monitor) {
                return display.connector.empty() ||
                       withoutCardPrefix(monitor->connector) != display.connector;
            });
        }
        if (candidates.size() == 1) {
            matches.push_back({display.displayId, *candidates.front()});
        }
    }
    // Two displays claiming one monitor (the same connector reported twice) are both dropped.
    std::vector<DdcMatch> unique;
    for (const DdcMatch& match : matches) {
        const auto claims = std::count_if(matches.begin(), matches.end(), [&](const DdcMatch& other) {
            return other.monitor.token == match.monitor.token;
        });
        if (claims == 1) {
            unique.push_back(match);
        }
    }
    return unique;
}

}  // namespace vantle::ddc
