// The media-key grab against a private Xvfb, with real key events from xdotool (XTest).
#include <xcb/xcb.h>

#include <QApplication>
#include <chrono>
#include <thread>

#include "keys/key_tap_x11.h"
#include "x_server_fixture.h"

namespace vantle::testing {
namespace {

class KeyTapX11Test : public XServerTest {
protected:
    KeyTapX11Test() {
        static int argc = 1;
        static char name[] = "key_tap_x11_test";
        static char* argv[] = {name, nullptr};
        qputenv("QT_QPA_PLATFORM", "xcb");
        application = std::make_unique<QApplication>(argc, argv);
        connection = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
        tap = std::make_unique<X11KeyTap>(connection);
    }
    ~KeyTapX11Test() override {
        tap.reset();
        application.reset();
    }

    bool startRecording() {
        return tap->start([this](const MediaKeyEvent& event) { events.push_back(event); });
    }

    // Runs the event loop until count events arrived, or two seconds passed.
    void waitForEvents(std::size_t count) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
        while (events.size() < count && std::chrono::steady_clock::now() < deadline) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    static void xdotool(const std::vector<std::string>& arguments) { run("/usr/bin/xdotool", arguments); }

    std::unique_ptr<QApplication> application;
    xcb_connection_t* connection = nullptr;
    std::unique_ptr<X11KeyTap> tap;
    std::vector<MediaKeyEvent> events;
};

TEST_F(KeyTapX11Test, PressAndReleaseOfAMediaKeyAreReported) {
    ASSERT_TRUE(startRecording());
    xdotool({"key", "XF86AudioRaiseVolume"});
    waitForEvents(2);
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0], (MediaKeyEvent{kSoundUp, true, false, false}));
    EXPECT_EQ(events[1].key, kSoundUp);
    EXPECT_FALSE(events[1].pressed);
}

TEST_F(KeyTapX11Test, EveryMediaKeyIsTaken) {
    ASSERT_TRUE(startRecording());
    for (const char* key : {"XF86AudioLowerVolume", "XF86AudioMute", "XF86MonBrightnessUp", "XF86MonBrightnessDown"}) {
        xdotool({"key", key});
    }
    waitForEvents(8);
    std::vector<int> pressed;
    for (const MediaKeyEvent& event : events) {
        if (event.pressed) {
            pressed.push_back(event.key);
        }
    }
    EXPECT_EQ(pressed, (std::vector<int>{kSoundDown, kMute, kBrightnessUp, kBrightnessDown}));
}

TEST_F(KeyTapX11Test, ShiftAndAltMakeTheFineStepEvenWithCapsLockOn) {
    ASSERT_TRUE(startRecording());
    xdotool({"key", "shift+alt+XF86AudioRaiseVolume"});
    waitForEvents(1);
    ASSERT_FALSE(events.empty());
    EXPECT_TRUE(events[0].fine);
    events.clear();
    xdotool({"key", "Caps_Lock"});
    xdotool({"key", "XF86AudioLowerVolume"});
    xdotool({"key", "Caps_Lock"});
    waitForEvents(1);
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events[0].key, kSoundDown);
    EXPECT_FALSE(events[0].fine);
}

TEST_F(KeyTapX11Test, HeldKeyGivesRepeatedPressesAndOneRelease) {
    ASSERT_TRUE(startRecording());
    xdotool({"keydown", "XF86AudioLowerVolume"});
    // The server starts repeating after 660 ms, then every 40 ms.
    waitForEvents(4);
    xdotool({"keyup", "XF86AudioLowerVolume"});
    const std::size_t pressesSoFar = events.size();
    waitForEvents(pressesSoFar + 1);
    ASSERT_GE(events.size(), 4u);
    EXPECT_FALSE(events[0].repeated);
    EXPECT_TRUE(events[1].pressed);
    EXPECT_TRUE(events[1].repeated);
    int releases = 0;
    for (const MediaKeyEvent& event : events) {
        releases += event.pressed ? 0 : 1;
    }
    EXPECT_EQ(releases, 1);
    EXPECT_FALSE(events.back().pressed);
}

TEST_F(KeyTapX11Test, OtherKeysAreNotTaken) {
    ASSERT_TRUE(startRecording());
    xdotool({"key", "a", "XF86AudioMute"});
    waitForEvents(2);
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events[0].key, kMute);
}

TEST_F(KeyTapX11Test, KeysHeldByAnotherProgramBlockTheTapAndNothingIsTaken) {
    xcb_connection_t* other = xcb_connect(nullptr, nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
    // The other program holds the mute key (keycode 121 in Xvfb's keymap).
    xcb_grab_key(other, 1, root, 0, 121, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    free(xcb_get_input_focus_reply(other, xcb_get_input_focus(other), nullptr));
    EXPECT_FALSE(startRecording());
    EXPECT_FALSE(tap->running());
    // Volume up, which it does not hold, was not kept by us either.
    xcb_void_cookie_t grab = xcb_grab_key_checked(other, 1, root, 0, 123, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    xcb_generic_error_t* error = xcb_request_check(other, grab);
    EXPECT_EQ(error, nullptr);
    free(error);
    xcb_disconnect(other);
}

TEST_F(KeyTapX11Test, StoppingGivesTheKeysBack) {
    ASSERT_TRUE(startRecording());
    tap->stop();
    EXPECT_FALSE(tap->running());
    xcb_connection_t* other = xcb_connect(nullptr, nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
    xcb_void_cookie_t grab = xcb_grab_key_checked(other, 1, root, 0, 123, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    xcb_generic_error_t* error = xcb_request_check(other, grab);
    EXPECT_EQ(error, nullptr);
    free(error);
    xcb_disconnect(other);
}

}  // namespace
}  // namespace vantle::testing
