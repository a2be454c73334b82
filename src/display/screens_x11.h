#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "display/native_display_control.h"
#include "display/screen_system.h"

struct xcb_connection_t;
struct xcb_get_property_cookie_t;

namespace vantle {

// The screens of an X server as RandR monitors, which is what Qt makes a screen of.
//
// A display's id is the id of the RandR output its monitor shows. A monitor with no output, or
// one that shares its output with another monitor (set-ups made with xrandr --setmonitor, some
// docking stations), gets a synthetic id with bit 31 set, derived from its name atom, which
// stays the same while the X server runs; real output ids never have that bit. The name comes
// from the EDID's monitor name, else the monitor's own name. The visible part of each is what
// the window manager's work area leaves of it.
class X11ScreenSystem final : public ScreenSystem {
public:
    // Uses the connection's first screen; the connection stays owned by the caller.
    explicit X11ScreenSystem(xcb_connection_t* connection);

    std::vector<SystemScreen> screens() override;
    bool isActive(std::uint32_t display) override;
    void beginSnapshot() override;
    void endSnapshot() override;

    // EDID and connector of every listed display, for matching native controls.
    std::vector<DisplayIdentity> identities();
    // The server reported a change of its outputs: their details are read afresh at the next
    // listing, even where the server's configuration timestamp stayed the same (it does when
    // only an EDID changes).
    void forgetOutputDetails() { outputDetails_.clear(); }

    // The RandR output and CRTC that show a display; empty ids when it has none of its own.
    struct Output {
        std::uint32_t output = 0;
        std::uint32_t crtc = 0;
        std::string name;
    };
    // The display showing the output of that name, if any is listed now.
    std::optional<Output> outputNamed(const std::string& name);
    Output outputOf(std::uint32_t display);

private:
    struct Monitor {
        std::uint32_t id = 0;
        SystemScreen screen;
        bool active = false;
        Output output;
        DisplayIdentity identity;
    };
    std::vector<Monitor> readMonitors();
    // The work area of the current desktop from the replies to these two requests.
    std::optional<ScreenFrame> readWorkArea(xcb_get_property_cookie_t workArea, xcb_get_property_cookie_t currentDesktop);

    xcb_connection_t* connection_;
    std::uint32_t root_ = 0;
    // Learnt at a listing: the atom exists only once some output has an EDID.
    std::uint32_t edidAtom_ = 0;
    std::map<std::uint32_t, std::string> atomNames_;
    std::uint32_t workAreaAtom_ = 0;
    std::uint32_t currentDesktopAtom_ = 0;
    // Per output: its CRTC, connector name and EDID, valid while the server's configuration
    // timestamp stays detailsTimestamp_.
    struct OutputDetails {
        std::uint32_t crtc = 0;
        std::string connector;
        std::vector<std::uint8_t> edid;
    };
    std::map<std::uint32_t, OutputDetails> outputDetails_;
    std::uint32_t detailsTimestamp_ = 0;
    // Activity and outputs as seen by the last listing, which isActive and outputOf answer from.
    std::map<std::uint32_t, Monitor> lastSeen_;
    std::vector<SystemScreen> lastListing_;
    int snapshotDepth_ = 0;
    bool snapshotTaken_ = false;
};

}  // namespace vantle
