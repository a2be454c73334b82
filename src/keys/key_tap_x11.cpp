#include "keys/key_tap_x11.h"

#include <xcb/xcb.h>
// xkb.h names a structure member "explicit", which C++ reserves.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <QCoreApplication>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include "keys/media_keys_x11.h"

namespace vantle {
namespace {

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> own(Reply* reply) {
    return {reply, &std::free};
}

// The lock modifiers a user may have on without meaning anything by it: Caps Lock and Num Lock.
constexpr std::uint16_t kLockCombinations[] = {0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};
// A plain press, the fine step (Shift+Alt), and Shift or Alt alone, which make an ordinary step:
// a key pressed with half of the fine step's modifiers still means the key.
constexpr std::uint16_t kStepModifiers[] = {0, XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_1, XCB_MOD_MASK_SHIFT, XCB_MOD_MASK_1};

// How often a refused grab is tried, and the pause between the tries.
constexpr int kGrabAttempts = 3;
constexpr std::chrono::milliseconds kGrabRetryPause{40};

// Every keycode whose key symbols include one of the media keys'.
std::map<std::uint8_t, int> mediaKeycodes(xcb_connection_t* connection) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const std::uint8_t first = setup->min_keycode;
    const std::uint8_t count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    auto mapping = own(xcb_get_keyboard_mapping_reply(connection, xcb_get_keyboard_mapping(connection, first, count),
                                                      nullptr));
    std::map<std::uint8_t, int> keycodes;
    if (!mapping) {
        return keycodes;
    }
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    const int perKeycode = mapping->keysyms_per_keycode;
    for (int index = 0; index < count; ++index) {
        for (int column = 0; column < perKeycode; ++column) {
            if (std::optional<int> key = mediaKeyOfKeysym(symbols[index * perKeycode + column])) {
                keycodes.emplace(static_cast<std::uint8_t>(first + index), *key);
                break;
            }
        }
    }
    return keycodes;
}

// Asks the server to send a held key as repeated presses and one release, instead of a release
// and a press for every repeat, so that a repeat can be told from a new press.
void askForDetectableAutoRepeat(xcb_connection_t* connection) {
    auto extension = own(xcb_xkb_use_extension_reply(
        connection, xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION), nullptr));
    if (!extension || !extension->supported) {
        return;
    }
    free(xcb_xkb_per_client_flags_reply(
        connection,
        xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                 XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0),
        nullptr));
}

}  // namespace

X11KeyTap::X11KeyTap(xcb_connection_t* connection) : connection_(connection) {
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

X11KeyTap::~X11KeyTap() {
    stop();
}

bool X11KeyTap::start(std::function<void(const MediaKeyEvent&)> onKey) {
    stop();
    keys_ = mediaKeycodes(connection_);
    if (keys_.empty()) {
        return false;
    }
    // A program may hold a key for a moment only (a probe, a desktop rebinding its shortcuts), so
    // a refused grab is tried again shortly before the keys count as held by another program.
    for (int attempt = 1; !grabAll(); ++attempt) {
        ungrabAll();
        if (attempt == kGrabAttempts) {
            keys_.clear();
            return false;
        }
        std::this_thread::sleep_for(kGrabRetryPause);
    }
    askForDetectableAutoRepeat(connection_);
    onKey_ = std::move(onKey);
    down_.clear();
    QCoreApplication::instance()->installNativeEventFilter(this);
    running_ = true;
    return true;
}

bool X11KeyTap::grabAll() {
    std::vector<xcb_void_cookie_t> grabs;
    for (const auto& [keycode, key] : keys_) {
        for (std::uint16_t step : kStepModifiers) {
            for (std::uint16_t locks : kLockCombinations) {
                grabs.push_back(xcb_grab_key_checked(connection_, 1, root_, static_cast<std::uint16_t>(step | locks),
                                                     keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
            }
        }
    }
    // Another program holding any of the keys refuses that grab: then none is kept, so that the
    // keys stay wholly with the program that has them.
    bool refused = false;
    for (const xcb_void_cookie_t& grab : grabs) {
        if (auto error = own(xcb_request_check(connection_, grab))) {
            refused = true;
        }
    }
    return !refused;
}

void X11KeyTap::stop() {
    if (!running_) {
        return;
    }
    QCoreApplication::instance()->removeNativeEventFilter(this);
    ungrabAll();
    keys_.clear();
    onKey_ = nullptr;
    running_ = false;
}

void X11KeyTap::ungrabAll() {
    for (const auto& [keycode, key] : keys_) {
        for (std::uint16_t step : kStepModifiers) {
            for (std::uint16_t locks : kLockCombinations) {
                xcb_ungrab_key(connection_, keycode, root_, static_cast<std::uint16_t>(step | locks));
            }
        }
    }
    // A round trip, so that the keys are free by the time this returns and another program
    // (or a new instance of ours) can take them at once.
    free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

bool X11KeyTap::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const std::uint8_t type = event->response_type & 0x7F;
    if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE) {
        return false;
    }
    const auto* keyEvent = reinterpret_cast<const xcb_key_press_event_t*>(event);
    auto found = keys_.find(keyEvent->detail);
    if (found == keys_.end()) {
        return false;
    }
    MediaKeyEvent decoded;
    decoded.key = found->second;
    decoded.pressed = type == XCB_KEY_PRESS;
    if (decoded.pressed) {
        decoded.repeated = !down_.insert(keyEvent->detail).second;
        // The fine step is decided on the press: a synthetic release often carries no modifiers.
        decoded.fine = isFineStep(keyEvent->state);
    } else {
        down_.erase(keyEvent->detail);
    }
    if (onKey_) {
        onKey_(decoded);
    }
    return true;
}

}  // namespace vantle
