#include "display/ddc/ddc_matching.h"

#include <algorithm>
#include <cstddef>

namespace vantle::ddc {
namespace {

constexpr std::size_t kEdidBlock = 128;

bool sameEdid(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b) {
    return a.size() >= kEdidBlock && b.size() >= kEdidBlock &&
           std::equal(a.begin(), a.begin() + kEdidBlock, b.begin());
}

}  // namespace

std::string_view withoutCardPrefix(std::string_view drmConnector) {
    if (drmConnector.starts_with("card")) {
        const auto dash = drmConnector.find('-');
        const auto digits = drmConnector.substr(4, dash == std::string_view::npos ? 0 : dash - 4);
        if (!digits.empty() && std::all_of(digits.begin(), digits.end(),
                                           [](char c) { return c >= '0' && c <= '9'; })) {
            return drmConnector.substr(dash + 1);
        }
    }
    return drmConnector;
}

std::vector<DdcMatch> matchDisplays(const std::vector<DisplayIdentity>& displays,
                                    const std::vector<DdcDisplayInfo>& monitors) {
    std::vector<DdcMatch> matches;
    for (const DisplayIdentity& display : displays) {
        std::vector<const DdcDisplayInfo*> candidates;
        for (const DdcDisplayInfo& monitor : monitors) {
            if (sameEdid(display.edid, monitor.edid)) {
                candidates.push_back(&monitor);
            }
        }
        const auto twins = std::count_if(displays.begin(), displays.end(), [&](const auto& other) {
            return sameEdid(display.edid, other.edid);
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
