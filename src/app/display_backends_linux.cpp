#include <xcb/xcb.h>

#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "app/display_backends_linux.h"
#include "display/backlight/backlight_linux.h"
#include "display/connector_watch_linux.h"
#include "display/ddc/ddc_linux.h"
#include "display/gamma_shade_x11.h"
#include "display/native_chain.h"
#include "display/output_watch_x11.h"
#include "display/screens_x11.h"
#include "display/shade_factory_linux.h"
#include "display/sleep_watch_linux.h"
#include "services/settings_location_linux.h"

namespace vantle {
namespace {

class NoScreens final : public ScreenSystem {
public:
    std::vector<SystemScreen> screens() override { return {}; }
    bool isActive(std::uint32_t) override { return false; }
};

class NoShades final : public ShadeFactory {
public:
    std::unique_ptr<ShadePanel> makePanel(std::uint32_t, const ScreenFrame&) override { return nullptr; }
};

// Ramps of displays that were dimmed when the program last ended live with other per-session
// state, which the system clears at log-out, when the ramps are reset anyway.
std::filesystem::path savedRampDirectory() {
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime != nullptr && runtime[0] == '/') {
        return std::filesystem::path(runtime) / "vantle-control";
    }
    return settingsDirectory();
}

class HeadlessDisplayBackends final : public DisplayBackends {
public:
    HeadlessDisplayBackends(UserDefaults& defaults, const std::vector<std::string>& arguments)
        : brightness_({}, screens_, shades_, defaults, arguments) {}
    Brightness& brightness() override { return brightness_; }
    void matchNativeControls() override {}
    void displayWentAway() override {}
    void undoDimmingOfAnEarlierCopy() override {}

private:
    NoScreens screens_;
    NoShades shades_;
    Brightness brightness_;
};

class X11DisplayBackends final : public DisplayBackends {
public:
    X11DisplayBackends(xcb_connection_t* connection, UserDefaults& defaults, const std::vector<std::string>& arguments,
                       X11DisplayOptions options)
        : connection_(connection),
          screens_(connection_),
          savedRamps_(savedRampDirectory(), std::getenv("DISPLAY")),
          shades_(connection_, screens_, savedRamps_),
          ddc_(options.ddc ? ddc::DdcBrightness(std::move(*options.ddc)) : ddc::DdcBrightness()),
          brightness_(chainNativeControls({&backlight_, &ddc_}), screens_, shades_, defaults, arguments),
          outputs_(connection_,
                   [this] {
                       screens_.forgetOutputDetails();
                       matchSoon();
                   }) {
        // The system's notices are listened for from the first turn of the event loop: connecting
        // to the system bus and to udev costs a few tenths of a millisecond, which the start of the
        // tray icon need not wait for, and a check mode, which runs no event loop, never pays.
        QTimer::singleShot(0, &matchTimer_, [this] {
            connectors_ = std::make_unique<ConnectorWatch>([this] {
                connectorsChanged_ = true;
                matchSoon();
            });
            sleep_ = std::make_unique<SleepWatch>([this] { resumed(); });
        });
        // Notices come in bursts (an output connected brings several); one matching serves them.
        matchTimer_.setSingleShot(true);
        matchTimer_.setInterval(0);
        QObject::connect(&matchTimer_, &QTimer::timeout, [this] {
            matchNativeControls();
            // A monitor may answer on its bus only now, though the X server showed it before.
            if (std::exchange(connectorsChanged_, false)) {
                ddc_.searchAgain();
            }
        });
        matchNativeControls();
    }
    ~X11DisplayBackends() override {
        // Shades go before the toolkit does, so that every dimmed ramp is put back.
        brightness_.clearShades();
    }

    Brightness& brightness() override { return brightness_; }
    // Built-in panels first; the monitor control gets the displays no backlight drives, so that
    // it loads its library only when an external monitor is there.
    void matchNativeControls() override {
        const std::vector<DisplayIdentity> identities = screens_.identities();
        backlight_.updateDisplays(identities);
        std::vector<DisplayIdentity> external;
        for (const DisplayIdentity& identity : identities) {
            if (!backlight_.get(identity.displayId)) {
                external.push_back(identity);
            }
        }
        ddc_.updateDisplays(external);
    }

    // When only our connection was cut (the server ended it, say), the server still shows the
    // dimmed ramps and a fresh connection can put them back. When the server itself is gone,
    // the saved ramps stay on disk for the next start.
    void displayWentAway() override {
        xcb_connection_t* fresh = xcb_connect(nullptr, nullptr);
        if (xcb_connection_has_error(fresh) == 0) {
            X11ScreenSystem screens(fresh);
            restoreSavedGammaRamps(fresh, screens, savedRamps_);
        }
        xcb_disconnect(fresh);
    }

    // The ramps an earlier copy saved before it dimmed are on disk until it undimmed; any still
    // there belong to a copy that ended without doing so.
    void undoDimmingOfAnEarlierCopy() override { restoreSavedGammaRamps(connection_, screens_, savedRamps_); }

private:
    void matchSoon() { matchTimer_.start(); }

    // Asleep, the monitors may have been switched off and on, the X server or the driver may have
    // reset the ramps, and a screen locker may have come above the shade windows.
    void resumed() {
        ddc_.reopenAfterSleep();
        shades_.raiseShades();
    }

    xcb_connection_t* connection_;
    X11ScreenSystem screens_;
    SavedGammaRamps savedRamps_;
    LinuxShadeFactory shades_;
    BacklightBrightness backlight_;
    ddc::DdcBrightness ddc_;
    Brightness brightness_;
    QTimer matchTimer_;
    bool connectorsChanged_ = false;
    OutputWatch outputs_;
    std::unique_ptr<ConnectorWatch> connectors_;
    std::unique_ptr<SleepWatch> sleep_;
};

}  // namespace

bool xServerReachable() {
    const char* display = std::getenv("DISPLAY");
    if (display == nullptr || display[0] == '\0') {
        return false;
    }
    xcb_connection_t* connection = xcb_connect(display, nullptr);
    const bool reachable = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return reachable;
}

std::unique_ptr<DisplayBackends> makeX11DisplayBackends(xcb_connection_t* connection, UserDefaults& defaults,
                                                        const std::vector<std::string>& arguments,
                                                        X11DisplayOptions options) {
    return std::make_unique<X11DisplayBackends>(connection, defaults, arguments, std::move(options));
}

std::unique_ptr<DisplayBackends> makeHeadlessDisplayBackends(UserDefaults& defaults,
                                                             const std::vector<std::string>& arguments) {
    return std::make_unique<HeadlessDisplayBackends>(defaults, arguments);
}

}  // namespace vantle
