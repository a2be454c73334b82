// The media keys of the running application: real key events from xdotool reach the grab on a
// private X server, and the private sound server's devices change.
#include <xcb/xcb.h>

#include <thread>

#include "in_process_app_fixture.h"
#include "localization/localization.h"
#include "services/muted_levels.h"
#include "services/settings_keys.h"

namespace vantle::testing {
namespace {

class AppKeysTest : public InProcessAppTest {};

TEST_F(AppKeysTest, VolumeUpRaisesEveryMemberOfTheCombinedOutputByOneStep) {
    launch();
    ASSERT_TRUE(app->keysTaken());
    pressUntilLevel("XF86AudioRaiseVolume", 0.5625f);
    pressUntilLevel("XF86AudioLowerVolume", 0.5f);
}

TEST_F(AppKeysTest, ShiftAltMakesTheFineStep) {
    launch();
    pressUntilLevel("shift+alt+XF86AudioRaiseVolume", 0.51f);
    // Shift or Alt alone is no fine step.
    pressUntilLevel("shift+XF86AudioRaiseVolume", 0.5725f);
    pressUntilLevel("alt+XF86AudioRaiseVolume", 0.635f);
}

TEST_F(AppKeysTest, VolumeUpStopsAtFull) {
    setSinkLevel("left_room", 0.97f);
    setSinkLevel("right_room", 0.97f);
    launch();
    pressUntilLevel("XF86AudioRaiseVolume", 1.0f);
    key("XF86AudioRaiseVolume");
    pump(500ms);
    EXPECT_NEAR(sinkLevel("left_room"), 1.0f, kTolerance);
}

TEST_F(AppKeysTest, MuteSilencesEveryLeafAndKeepsTheLevelsInTheSettingsFile) {
    setSinkLevel("right_room", 0.25f);
    launch();
    key("XF86AudioMute");
    ASSERT_TRUE(pump(3s, [] { return sinkLevel("left_room") < kTolerance; }));
    EXPECT_LT(sinkLevel("right_room"), kTolerance);
    // Another reader of the file sees what a restart would see.
    PlistFileStore fileAgain(settingsFile());
    UserDefaults reader(fileAgain);
    const SavedLevels saved = loadSavedLevels(reader);
    ASSERT_EQ(saved.size(), 2u);
    EXPECT_NEAR(saved.at("left_room").front(), 0.5f, kTolerance);
    EXPECT_NEAR(saved.at("right_room").front(), 0.25f, kTolerance);
    key("XF86AudioMute");
    ASSERT_TRUE(pump(3s, [] { return std::abs(sinkLevel("left_room") - 0.5f) < kTolerance; }));
    EXPECT_NEAR(sinkLevel("right_room"), 0.25f, kTolerance);
}

TEST_F(AppKeysTest, HeldMuteKeyTogglesOnce) {
    launch();
    keyDown("XF86AudioMute");
    // Xvfb repeats a held key after 660 ms, then every 40 ms.
    pump(1200ms);
    keyUp("XF86AudioMute");
    pump(500ms);
    EXPECT_LT(sinkLevel("left_room"), kTolerance);
    EXPECT_LT(sinkLevel("right_room"), kTolerance);
    EXPECT_FALSE(loadSavedLevels(defaults).empty());
}

TEST_F(AppKeysTest, BrightnessKeysDimADisplayInSoftware) {
    defaults.set(settings::kSoftwareBrightness, true);
    launch();
    const std::uint16_t before = gammaTop();
    key("XF86MonBrightnessDown");
    EXPECT_TRUE(pump(3s, [&] { return gammaTop() < before; })) << gammaTop();
    key("XF86MonBrightnessUp");
    EXPECT_TRUE(pump(3s, [&] { return gammaTop() == before; })) << gammaTop();
}

TEST_F(AppKeysTest, OnScreenDisplayStaysWhileKeysComeAndGoesAfterTheLast) {
    launch();
    EXPECT_TRUE(app->osd().panels().empty());
    for (int press = 0; press < 3; ++press) {
        key("XF86AudioLowerVolume");
        pump(500ms);
        // Each press starts the dismissal anew: the panels are still there 1.5 s after the first.
        EXPECT_EQ(app->osd().panels().size(), 2u) << "press " << press;
    }
    pump(700ms);
    EXPECT_FALSE(app->osd().panels().empty());
    EXPECT_TRUE(pump(1s, [&] { return app->osd().panels().empty(); }));
}

// A client of its own that holds the volume-up key before the program starts.
class KeyHolder {
public:
    KeyHolder() : connection_(xcb_connect(nullptr, nullptr)) {
        const xcb_setup_t* setup = xcb_get_setup(connection_);
        const xcb_window_t root = xcb_setup_roots_iterator(setup).data->root;
        // XF86AudioRaiseVolume's keycode in Xvfb's default keymap.
        const xcb_keycode_t raiseVolume = 123;
        xcb_grab_key(connection_, 1, root, XCB_MOD_MASK_ANY, raiseVolume, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        xcb_flush(connection_);
        std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }
    ~KeyHolder() { xcb_disconnect(connection_); }

private:
    xcb_connection_t* connection_;
};

TEST_F(AppKeysTest, KeysHeldByAnotherProgramBlockTheKeysAndSayWhy) {
    KeyHolder holder;
    launch();
    EXPECT_FALSE(app->keysTaken());
    EXPECT_TRUE(labelShows(L("s111")));
    key("XF86AudioLowerVolume");  // nothing is taken, not even the free keys
    pump(500ms);
    EXPECT_NEAR(sinkLevel("left_room"), 0.5f, kTolerance);
}

// Another client with the keyboard focus, listening for key presses.
class FocusedListener {
public:
    FocusedListener() : connection_(xcb_connect(nullptr, nullptr)) {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        window_ = xcb_generate_id(connection_);
        const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS;
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0, 100, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_EVENT_MASK, &events);
        xcb_map_window(connection_, window_);
        xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
        xcb_flush(connection_);
        std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }
    ~FocusedListener() { xcb_disconnect(connection_); }

    int keyPresses() {
        int presses = 0;
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
            if ((event->response_type & 0x7f) == XCB_KEY_PRESS) {
                ++presses;
            }
            std::free(event);
        }
        return presses;
    }

private:
    xcb_connection_t* connection_;
    xcb_window_t window_ = 0;
};

TEST_F(AppKeysTest, TakenKeyDoesNotReachTheFocusedProgram) {
    FocusedListener listener;
    launch();
    // The listener itself hears ordinary keys, so its silence below means something.
    key("a");
    pump(300ms);
    EXPECT_EQ(listener.keyPresses(), 1);
    pressUntilLevel("XF86AudioRaiseVolume", 0.5625f);
    pump(300ms);
    EXPECT_EQ(listener.keyPresses(), 0);
}

}  // namespace
}  // namespace vantle::testing
