// Screens, shades and the check modes against a private Xvfb with two monitors.
#include <signal.h>
#include <xcb/xcb.h>

#include <QEventLoop>
#include <QGuiApplication>
#include <QWindow>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <thread>

#include "app/platform.h"
#include "app/scheduler_qt.h"
#include "display/brightness_control.h"
#include "display/screens_x11.h"
#include "display/testing/synthetic_edid.h"
#include "keys/osd.h"
#include "keys/osd_check.h"
#include "keys/osd_panel_qt.h"
#include "services/plist_file_store_linux.h"
#include "services/property_list_codec.h"
#include "services/testing/recording_message_line.h"
#include "services/testing/recording_workspace.h"
#include "x_server_fixture.h"

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t kSyntheticIdBit = 0x80000000u;

class DisplayX11Test : public XServerTest {
protected:
    DisplayX11Test() : settingsFile(configHome.path() / "vantle-control" / "defaults.plist") {}

    void softwareBrightness(bool on) { defaults.set("softwareBrightness", on); }

    // The platform, which owns the toolkit's application object, with its displays in front.
    struct PlatformDisplays {
        std::unique_ptr<Platform> platform;
        DisplayBackends* operator->() const { return &platform->displays(); }
    };

    PlatformDisplays backends() {
        static int argc = 1;
        static char name[] = "display_x11_test";
        static char* argv[] = {name, nullptr};
        return {makePlatform(argc, argv, defaults)};
    }

    // The shade windows Qt shows right now.
    static std::vector<QWindow*> visibleShades() {
        QGuiApplication::processEvents();
        std::vector<QWindow*> shades;
        for (QWindow* window : QGuiApplication::topLevelWindows()) {
            if (window->isVisible() && window->title() == "Vantle Control shade") {
                shades.push_back(window);
            }
        }
        return shades;
    }

    ChildOptions childOptions() const {
        ChildOptions options;
        options.environment = {{"XDG_CONFIG_HOME", configHome.path().string()},
                               {"XDG_RUNTIME_DIR", runtime.path().string()},
                               {"PULSE_SERVER", "unix:" + (configHome.path() / "no-sound-server").string()},
                               {"LANGUAGE", "en"}};
        return options;
    }

    TemporaryDirectory configHome;
    TemporaryDirectory runtime;
    std::filesystem::path settingsFile;
    PlistFileStore store{settingsFile};
    UserDefaults defaults{store};
};

TEST_F(DisplayX11Test, MonitorsAreListedWithOutputIdsAndSyntheticIds) {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    X11ScreenSystem screens(connection);
    const std::vector<SystemScreen> listed = screens.screens();
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_EQ(listed[0].number, std::int64_t{leftDisplayId()});
    EXPECT_EQ(listed[0].name, "LEFT");
    EXPECT_EQ(listed[0].frame, (ScreenFrame{0, 0, 1920, 1080}));
    ASSERT_TRUE(listed[1].number.has_value());
    EXPECT_NE(*listed[1].number & kSyntheticIdBit, 0);
    EXPECT_EQ(listed[1].name, "RIGHT");
    EXPECT_EQ(listed[1].frame, (ScreenFrame{1920, 0, 1280, 1024}));
    EXPECT_TRUE(screens.isActive(leftDisplayId()));
    // The synthetic id stays the same while the server runs.
    EXPECT_EQ(screens.screens()[1].number, listed[1].number);
    xcb_disconnect(connection);
}

// A window manager's announcement of the work area on the root window, for the life of the
// object: x, y, width and height for the first virtual desktop.
class AnnouncedWorkArea {
public:
    AnnouncedWorkArea(std::uint32_t x, std::uint32_t y, std::uint32_t width, std::uint32_t height)
        : connection_(xcb_connect(nullptr, nullptr)),
          root_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root),
          atom_(atom("_NET_WORKAREA")) {
        const std::uint32_t values[] = {x, y, width, height};
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root_, atom_, XCB_ATOM_CARDINAL, 32, 4, values);
        std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }
    ~AnnouncedWorkArea() {
        xcb_delete_property(connection_, root_, atom_);
        std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        xcb_disconnect(connection_);
    }

private:
    xcb_atom_t atom(const char* name) {
        xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
            connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr);
        const xcb_atom_t result = reply->atom;
        std::free(reply);
        return result;
    }

    xcb_connection_t* connection_;
    xcb_window_t root_;
    xcb_atom_t atom_;
};

TEST_F(DisplayX11Test, WorkAreaLeavesEachMonitorTheVisiblePartItCovers) {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    X11ScreenSystem screens(connection);
    EXPECT_EQ(screens.screens()[0].visibleFrame, std::nullopt);
    {
        // A 180-pixel panel along the bottom of LEFT; the desktop's right part reaches no lower.
        const AnnouncedWorkArea area(0, 0, 3200, 900);
        const std::vector<SystemScreen> listed = screens.screens();
        ASSERT_EQ(listed.size(), 2u);
        EXPECT_EQ(listed[0].visibleFrame, (ScreenFrame{0, 0, 1920, 900}));
        EXPECT_EQ(listed[1].visibleFrame, (ScreenFrame{1920, 0, 1280, 900}));
    }
    EXPECT_EQ(screens.screens()[0].visibleFrame, std::nullopt);
    xcb_disconnect(connection);
}

TEST_F(DisplayX11Test, OnScreenDisplayStandsAboveAPanelAlongTheBottom) {
    const AnnouncedWorkArea area(0, 0, 3200, 900);
    auto displays = backends();
    QtScheduler scheduler;
    QtOsdPanelFactory factory;
    Brightness& brightness = displays->brightness();
    OSD osd(brightness.screenSystem(), brightness, factory, scheduler);
    osd.show(0.5f, false);
    ASSERT_EQ(osd.panels().size(), 2u);
    OsdPanelWidget* panel = widgetOf(*osd.panels().front());
    ASSERT_NE(panel, nullptr);
    QGuiApplication::processEvents();
    // Where the X server has the window, not where Qt meant it to be.
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_translate_coordinates_reply_t* origin = xcb_translate_coordinates_reply(
        connection, xcb_translate_coordinates(connection, static_cast<xcb_window_t>(panel->winId()), root, 0, 0),
        nullptr);
    ASSERT_NE(origin, nullptr);
    // 24 points above the panel's top edge at 900, higher than the usual 85 above the screen's bottom.
    EXPECT_EQ(origin->dst_y + panel->height(), 900 - 24);
    EXPECT_EQ(origin->dst_x + panel->width() / 2, 960);
    std::free(origin);
    xcb_disconnect(connection);
}

TEST_F(DisplayX11Test, ListingInsideAScopeIsReadOnceAndAfreshOutsideIt) {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    X11ScreenSystem screens(connection);
    {
        ScreenSnapshotScope snapshot(screens);
        EXPECT_EQ(screens.screens().size(), 2u);
        run("/usr/bin/xrandr", {"--delmonitor", "RIGHT"});
        EXPECT_EQ(screens.screens().size(), 2u);
    }
    EXPECT_EQ(screens.screens().size(), 1u);
    xcb_disconnect(connection);
}

TEST_F(DisplayX11Test, EdidMonitorNameWinsAndIdentifiesTheDisplay) {
    const std::vector<std::uint8_t> edid = syntheticEdid("VANTLE 27Q", 42);
    setOutputEdid(edid);
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    X11ScreenSystem screens(connection);
    EXPECT_EQ(screens.screens()[0].name, "VANTLE 27Q");
    const std::vector<DisplayIdentity> identities = screens.identities();
    ASSERT_EQ(identities.size(), 2u);
    EXPECT_EQ(identities[0].edid, edid);
    EXPECT_EQ(identities[0].connector, "screen");
    EXPECT_TRUE(identities[1].edid.empty());
    xcb_disconnect(connection);
}

TEST_F(DisplayX11Test, WithoutCompositorTheGammaRampDimsAndComesBack) {
    softwareBrightness(true);
    auto displays = backends();
    Brightness& brightness = displays->brightness();
    ASSERT_EQ(brightness.screens().size(), 2u);
    ASSERT_TRUE(brightness.write(leftDisplayId(), 0.5f));
    // 0.15 + 0.85 × 0.5 of full scale.
    EXPECT_NEAR(gammaTop(), 65535 * 0.575, 2);
    EXPECT_TRUE(visibleShades().empty());
    EXPECT_EQ(brightness.read(leftDisplayId()), 0.5f);
    ASSERT_TRUE(brightness.write(leftDisplayId(), 1.0f));
    EXPECT_EQ(gammaTop(), 65535);
    EXPECT_EQ(brightness.shades().count(leftDisplayId()), 1u);
}

TEST_F(DisplayX11Test, WithoutCompositorAMonitorWithoutItsOwnOutputCannotBeDimmed) {
    softwareBrightness(true);
    auto displays = backends();
    Brightness& brightness = displays->brightness();
    const std::uint32_t right = brightness.screens()[1].id;
    EXPECT_FALSE(brightness.write(right, 0.5f));
    EXPECT_TRUE(visibleShades().empty());
    EXPECT_EQ(gammaTop(), 65535);
}

TEST_F(DisplayX11Test, QuittingPutsTheRampBack) {
    softwareBrightness(true);
    {
        auto displays = backends();
        ASSERT_TRUE(displays->brightness().write(leftDisplayId(), 0.2f));
        EXPECT_LT(gammaTop(), 65535 * 0.4);
    }
    EXPECT_EQ(gammaTop(), 65535);
}

TEST_F(DisplayX11Test, WithCompositorATranslucentWindowCoversTheScreen) {
    startCompositor();
    softwareBrightness(true);
    auto displays = backends();
    Brightness& brightness = displays->brightness();
    const std::uint32_t right = brightness.screens()[1].id;
    ASSERT_TRUE(brightness.write(right, 0.5f));
    std::vector<QWindow*> shades = visibleShades();
    ASSERT_EQ(shades.size(), 1u);
    EXPECT_EQ(shades[0]->geometry(), QRect(1920, 0, 1280, 1024));
    EXPECT_NEAR(shades[0]->opacity(), 0.425, 0.01);
    EXPECT_TRUE(shades[0]->flags().testFlag(Qt::WindowTransparentForInput));
    EXPECT_TRUE(shades[0]->flags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(shades[0]->flags().testFlag(Qt::X11BypassWindowManagerHint));
    EXPECT_EQ(gammaTop(), 65535);
    // Level 1 takes the window off the screen but keeps it.
    ASSERT_TRUE(brightness.write(right, 1.0f));
    EXPECT_TRUE(visibleShades().empty());
    EXPECT_EQ(brightness.shades().count(right), 1u);
}

// Runs the event loop until done answers true, for at most atMost; done's last answer.
bool pumpUntil(const std::function<bool()>& done, std::chrono::milliseconds atMost) {
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        QGuiApplication::processEvents(QEventLoop::AllEvents, 20);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

TEST_F(DisplayX11Test, ShadesMoveToTheRampWhenTheCompositorStopsAndBackWhenItReturns) {
    startCompositor();
    softwareBrightness(true);
    auto displays = backends();
    Brightness& brightness = displays->brightness();
    const std::uint32_t right = brightness.screens()[1].id;
    ASSERT_TRUE(brightness.write(leftDisplayId(), 0.5f));
    ASSERT_TRUE(brightness.write(right, 0.5f));
    ASSERT_EQ(visibleShades().size(), 2u);
    EXPECT_EQ(gammaTop(), 65535);

    // Without the compositor a translucent window shows as opaque black: LEFT's level moves to its
    // ramp, and RIGHT, which has no ramp of its own, is uncovered rather than blacked out.
    stopCompositor();
    EXPECT_TRUE(pumpUntil([] { return visibleShades().empty(); }, 3s)) << visibleShades().size();
    EXPECT_NEAR(gammaTop(), 65535 * 0.575, 2);
    EXPECT_EQ(brightness.read(leftDisplayId()), 0.5f);

    startCompositor();
    EXPECT_TRUE(pumpUntil([] { return visibleShades().size() == 2; }, 3s)) << visibleShades().size();
    EXPECT_EQ(gammaTop(), 65535);
    for (QWindow* shade : visibleShades()) {
        EXPECT_NEAR(shade->opacity(), 0.425, 0.01);
    }
}

TEST_F(DisplayX11Test, MonitorRemovedWhileDimmedLosesItsShade) {
    startCompositor();
    softwareBrightness(true);
    auto displays = backends();
    Brightness& brightness = displays->brightness();
    RecordingMessageLine messages;
    testing::RecordingWorkspace workspace;
    BrightnessControl control(brightness, defaults, messages, workspace, [] {});
    const std::uint32_t left = leftDisplayId();
    const std::uint32_t right = brightness.screens()[1].id;
    ASSERT_TRUE(brightness.write(left, 0.4f));
    ASSERT_TRUE(brightness.write(right, 0.6f));
    EXPECT_EQ(visibleShades().size(), 2u);
    run("/usr/bin/xrandr", {"--delmonitor", "RIGHT"});
    control.screensChanged();
    EXPECT_EQ(brightness.shades().count(right), 0u);
    EXPECT_EQ(brightness.softwareLevels().count(right), 0u);
    EXPECT_EQ(brightness.softwareLevels().at(left), 0.4f);
    EXPECT_EQ(visibleShades().size(), 1u);
}

TEST_F(DisplayX11Test, GammaIsPutBackByTheNextCopyToTakeTheSessionAfterTheProcessWasKilled) {
    softwareBrightness(true);
    {
        RunningChild dimming(BRIGHTNESS_COMMAND, {std::to_string(leftDisplayId()), "0.3"}, childOptions());
        for (int attempt = 0; attempt < 200 && gammaTop() == 65535; ++attempt) {
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
        }
        dimming.killAndWait(SIGKILL);
    }
    const double dimmed = 65535 * (0.15 + 0.85 * 0.3);
    EXPECT_NEAR(gammaTop(), dimmed, 2);
    // A check mode may run beside a copy whose dimming is its own to undo, so it leaves it alone.
    const ChildResult diagnose = runChild(VANTLE_PROGRAM, {"--diagnose"}, childOptions());
    EXPECT_EQ(diagnose.exitStatus, 0) << diagnose.standardError;
    EXPECT_NEAR(gammaTop(), dimmed, 2);

    RunningChild next(VANTLE_PROGRAM, {"--suppress-keyboard-invitation"}, childOptions());
    for (int attempt = 0; attempt < 400 && gammaTop() != 65535; ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    EXPECT_EQ(gammaTop(), 65535);
    next.killAndWait(SIGTERM);
}

TEST_F(DisplayX11Test, DiagnoseListsBothDisplays) {
    const ChildResult off = runChild(VANTLE_PROGRAM, {"--diagnose"}, childOptions());
    EXPECT_EQ(off.exitStatus, 0) << off.standardError;
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const std::string rightId = std::to_string(*X11ScreenSystem(connection).screens()[1].number);
    xcb_disconnect(connection);
    const std::string left = std::to_string(leftDisplayId());
    EXPECT_EQ(off.standardOutput, "DISPLAY " + left + " LEFT brightness=nil\nDISPLAY " + rightId +
                                      " RIGHT brightness=nil\n");
    softwareBrightness(true);
    const ChildResult on = runChild(VANTLE_PROGRAM, {"--diagnose"}, childOptions());
    EXPECT_EQ(on.standardOutput, "DISPLAY " + left + " LEFT brightness=Optional(1.0)\nDISPLAY " + rightId +
                                     " RIGHT brightness=Optional(1.0)\n");
}

TEST_F(DisplayX11Test, VerifyControlsWithoutCompositorFailsOnTheMonitorItCannotDim) {
    softwareBrightness(true);
    const ChildResult result = runChild(VANTLE_PROGRAM, {"--verify-controls"}, childOptions());
    EXPECT_EQ(result.exitStatus, 1);
    const std::string left = std::to_string(leftDisplayId());
    EXPECT_TRUE(result.standardOutput.starts_with("BRIGHTNESS write/read unchanged " + left + ": true\n"))
        << result.standardOutput;
    EXPECT_NE(result.standardOutput.find(": false\n"), std::string::npos) << result.standardOutput;
}

TEST_F(DisplayX11Test, VerifyControlsWithCompositorPassesOnBothDisplays) {
    startCompositor();
    softwareBrightness(true);
    const ChildResult result = runChild(VANTLE_PROGRAM, {"--verify-controls"}, childOptions());
    EXPECT_EQ(result.exitStatus, 0) << result.standardOutput << result.standardError;
    EXPECT_EQ(std::count(result.standardOutput.begin(), result.standardOutput.end(), '\n'), 2);
    EXPECT_EQ(result.standardOutput.find("false"), std::string::npos);
}

TEST_F(DisplayX11Test, SoftwareOffMeansNoLinesAndAFailedRoundTrip) {
    const ChildResult result = runChild(VANTLE_PROGRAM, {"--verify-controls"}, childOptions());
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.standardOutput, "");
}

// Without a compositor the panels' rounded corners exist only through the windows' shape.
TEST_F(DisplayX11Test, VerifyOsdShowsAPanelOnEachMonitorAndDismissesThem) {
    const ChildResult result = runChild(VANTLE_PROGRAM, {"--verify-osd"}, childOptions());
    EXPECT_EQ(result.exitStatus, 0) << result.standardError;
    const std::string pass = std::string(kOsdPassLines[0]) + "\n" + kOsdPassLines[1] + "\n";
    EXPECT_EQ(result.standardOutput, pass + pass + "PASS: automatic OSD dismissal\n");
}

TEST_F(DisplayX11Test, VerifyOsdPassesWithACompositorBlendingThePanels) {
    startCompositor();
    const ChildResult result = runChild(VANTLE_PROGRAM, {"--verify-osd"}, childOptions());
    EXPECT_EQ(result.exitStatus, 0) << result.standardOutput << result.standardError;
    const std::string pass = std::string(kOsdPassLines[0]) + "\n" + kOsdPassLines[1] + "\n";
    EXPECT_EQ(result.standardOutput, pass + pass + "PASS: automatic OSD dismissal\n");
}

}  // namespace
}  // namespace vantle::testing
