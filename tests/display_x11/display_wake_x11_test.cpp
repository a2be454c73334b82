// The displays after the machine woke from sleep, announced by a stand-in logind on a private
// system bus, against a private Xvfb: the gamma dimming is laid again and the DDC/CI monitors are
// opened anew. No refresh tick runs here, so what happens is the wake's doing alone.
#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <chrono>
#include <cstdlib>
#include <cmath>
#include <functional>
#include <thread>

#include "app/display_backends_linux.h"
#include "app/platform.h"
#include "display/backlight/testing/stand_in_system_bus.h"
#include "display/ddc/testing/stand_in_ddc_bus.h"
#include "display/testing/synthetic_edid.h"
#include "services/testing/memory_defaults_store.h"
#include "x_server_fixture.h"

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;

// The ramp's top at level 0.5: 0.15 + 0.85 × 0.5 of the identity ramp.
const std::uint16_t kHalfDimmedTop = static_cast<std::uint16_t>(std::lround(65535 * 0.575));

class DisplayWakeX11Test : public XServerTest {
protected:
    DisplayWakeX11Test() {
        EXPECT_TRUE(systemBus.running()) << "the private dbus-daemon did not start";
        EXPECT_TRUE(systemBus.startLogind(sysfs.path())) << "the logind stand-in did not take its name";
        ::setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
        defaults.set("softwareBrightness", true);
    }
    ~DisplayWakeX11Test() override {
        backends.reset();
        platform.reset();
    }

    // The program's displays with the stand-in monitors, made once the stand-in bus is there.
    void makeBackends() {
        static int argc = 1;
        static char name[] = "display_wake_x11_test";
        static char* argv[] = {name, nullptr};
        platform = makePlatform(argc, argv, defaults);
        ddc::DdcBrightness::Options ddc;
        ddc.hasI2cBuses = [] { return true; };
        ddc.loadBus = [this]() -> std::shared_ptr<ddc::DdcBus> { return ddcBus; };
        ddc.timings.settleAfterWake = 50ms;
        xcb_connection_t* connection = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
        backends = makeX11DisplayBackends(connection, defaults, {}, X11DisplayOptions{std::move(ddc)});
        // The backends listen to the system bus from the event loop's first turns on.
        pump(300ms, [] { return false; });
    }

    static bool pump(std::chrono::milliseconds atMost, const std::function<bool()>& done) {
        const auto deadline = std::chrono::steady_clock::now() + atMost;
        while (!done()) {
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            QGuiApplication::processEvents(QEventLoop::AllEvents, 10);
            std::this_thread::sleep_for(5ms);
        }
        return true;
    }

    StandInSystemBus systemBus;
    TemporaryDirectory sysfs;
    TemporaryDirectory runtime;
    MemoryDefaultsStore store;
    UserDefaults defaults{store};
    std::shared_ptr<ddc::testing::StandInDdcBus> ddcBus =
        std::make_shared<ddc::testing::StandInDdcBus>(std::vector<ddc::testing::StandInMonitor>{});
    std::unique_ptr<Platform> platform;
    std::unique_ptr<DisplayBackends> backends;
};

TEST_F(DisplayWakeX11Test, WakeAnnouncedByStandInLogindDimsTheRampAgain) {
    makeBackends();
    ASSERT_TRUE(backends->brightness().write(leftDisplayId(), 0.5f));
    ASSERT_EQ(gammaTop(), kHalfDimmedTop);

    // Asleep, the driver puts back a ramp of its own.
    ASSERT_TRUE(systemBus.announceSleep(true));
    setGammaTop(65535);
    EXPECT_FALSE(pump(300ms, [] { return gammaTop() != 65535; })) << "dimmed again before the wake";
    ASSERT_TRUE(systemBus.announceSleep(false));
    EXPECT_TRUE(pump(2s, [] { return gammaTop() == kHalfDimmedTop; })) << "the ramp's top is " << gammaTop();
}

// Whether window a lies above window b among the root window's children.
bool stackedAbove(xcb_window_t a, xcb_window_t b) {
    xcb_connection_t* x = xcb_connect(nullptr, nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    xcb_query_tree_reply_t* tree = xcb_query_tree_reply(x, xcb_query_tree(x, root), nullptr);
    int positionOfA = -1;
    int positionOfB = -1;
    if (tree != nullptr) {
        // Bottom to top.
        const xcb_window_t* children = xcb_query_tree_children(tree);
        for (int index = 0; index < xcb_query_tree_children_length(tree); ++index) {
            positionOfA = children[index] == a ? index : positionOfA;
            positionOfB = children[index] == b ? index : positionOfB;
        }
    }
    std::free(tree);
    xcb_disconnect(x);
    return positionOfA >= 0 && positionOfB >= 0 && positionOfA > positionOfB;
}

TEST_F(DisplayWakeX11Test, WakeAnnouncedByStandInLogindRaisesTheShadeWindowAgain) {
    startCompositor();
    makeBackends();
    std::uint32_t right = 0;
    for (const DisplayEntry& entry : backends->brightness().screens()) {
        right = entry.id != leftDisplayId() ? entry.id : right;
    }
    ASSERT_TRUE(backends->brightness().write(right, 0.5f));
    QGuiApplication::processEvents();
    xcb_window_t shade = 0;
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible() && window->title() == "Vantle Control shade") {
            shade = static_cast<xcb_window_t>(window->winId());
        }
    }
    ASSERT_NE(shade, 0u);

    // Another unmanaged window, as a screen locker's, comes above the shade while asleep.
    xcb_connection_t* locker = xcb_connect(nullptr, nullptr);
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(locker)).data;
    const xcb_window_t cover = xcb_generate_id(locker);
    const std::uint32_t overrideRedirect = 1;
    xcb_create_window(locker, XCB_COPY_FROM_PARENT, cover, screen->root, 1920, 0, 1280, 1024, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
    ASSERT_TRUE(systemBus.announceSleep(true));
    xcb_map_window(locker, cover);
    std::free(xcb_get_input_focus_reply(locker, xcb_get_input_focus(locker), nullptr));
    ASSERT_TRUE(stackedAbove(cover, shade));

    ASSERT_TRUE(systemBus.announceSleep(false));
    EXPECT_TRUE(pump(2s, [&] { return stackedAbove(shade, cover); }));
    xcb_disconnect(locker);
    stopCompositor();
}

TEST_F(DisplayWakeX11Test, WakeAnnouncedByStandInLogindReopensTheStandInDdcMonitor) {
    const std::vector<std::uint8_t> edid = syntheticEdid("VANTLE DDC", 7);
    setOutputEdid(edid);
    ddcBus->attach({edid, "card0-DP-1", 30, 100});
    makeBackends();
    Brightness& brightness = backends->brightness();
    ASSERT_TRUE(pump(5s, [&] { return brightness.nativeRead(leftDisplayId()) == 0.3f; }));
    ASSERT_EQ(ddcBus->opens(0), 1);

    // Back from standby, the monitor shows a level of its own.
    ddcBus->setCurrent(0, 60);
    ASSERT_TRUE(systemBus.announceSleep(true));
    ASSERT_TRUE(systemBus.announceSleep(false));
    EXPECT_TRUE(pump(2s, [&] { return ddcBus->closes(0) == 1 && ddcBus->opens(0) == 2; }))
        << ddcBus->closes(0) << " closes, " << ddcBus->opens(0) << " opens";
    EXPECT_TRUE(pump(2s, [&] { return brightness.nativeRead(leftDisplayId()) == 0.6f; }));
    removeOutputEdid();
}

}  // namespace
}  // namespace vantle::testing
