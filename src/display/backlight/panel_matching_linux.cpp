#include "display/backlight/panel_matching_linux.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <tuple>

#include "display/connector_name_linux.h"
#include "display/edid.h"

namespace vantle::backlight {
namespace {

bool isUnder(const std::filesystem::path& path, const std::filesystem::path& folder) {
    if (path.empty() || folder.empty()) {
        return false;
    }
    // Compare whole components, so that "0000:00:02.0" is not taken to contain "0000:00:02.01".
    return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

bool belongsToCard(const BacklightDevice& backlight, const PanelConnector& panel) {
    return std::any_of(panel.cardPaths.begin(), panel.cardPaths.end(),
                       [&](const std::filesystem::path& card) { return isUnder(backlight.device, card); });
}

}  // namespace

bool isInternalConnectorName(const std::string& sysfsName) {
    const std::string connector(withoutCardPrefix(sysfsName));
    if (connector == sysfsName) {
        return false;
    }
    constexpr std::array<std::string_view, 3> kInternalKinds{"eDP-", "LVDS-", "DSI-"};
    return std::any_of(kInternalKinds.begin(), kInternalKinds.end(),
                       [&](std::string_view kind) { return connector.starts_with(kind); });
}

std::optional<PanelConnector> panelShowing(const DisplayIdentity& display,
                                           const std::vector<PanelConnector>& panels) {
    std::vector<const PanelConnector*> sameEdid;
    for (const PanelConnector& panel : panels) {
        if (sameMonitor(display.edid, panel.edid)) {
            sameEdid.push_back(&panel);
        }
    }
    if (sameEdid.size() == 1) {
        return *sameEdid.front();
    }
    // Identical panels: only the connector can tell them apart, and a display whose connector is
    // none of them is left alone rather than given a guess.
    for (const PanelConnector* panel : sameEdid) {
        if (panel->connector == display.connector) {
            return *panel;
        }
    }
    return std::nullopt;
}

std::optional<BacklightDevice> backlightFor(const PanelConnector& panel,
                                            const std::vector<BacklightDevice>& backlights) {
    if (backlights.empty()) {
        return std::nullopt;
    }
    // Ordered by type, then devices of the panel's own card (on a machine with two GPUs each may
    // register a raw backlight, and only the panel's card drives it), then by name so that the
    // choice does not depend on the order in which the folder is listed.
    const auto rank = [&](const BacklightDevice& backlight) {
        return std::make_tuple(static_cast<int>(backlight.type), !belongsToCard(backlight, panel),
                               std::string_view(backlight.name));
    };
    return *std::min_element(backlights.begin(), backlights.end(),
                             [&](const BacklightDevice& left, const BacklightDevice& right) {
                                 return rank(left) < rank(right);
                             });
}

}  // namespace vantle::backlight
