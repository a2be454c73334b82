#pragma once

#include <QAbstractNativeEventFilter>
#include <cstdint>
#include <map>
#include <set>

#include "keys/key_tap.h"

struct xcb_connection_t;

namespace vantle {

// The media keys on X11 as passive grabs on the root window, for every combination of the lock
// modifiers (Caps Lock, Num Lock) with no other modifier and with Shift+Alt, the fine step. A
// grabbed key reaches no other client. The toolkit's connection asks the server for detectable
// auto-repeat, so a held key comes as repeated presses and one release: a press of a key that is
// already down is a repeat.
class X11KeyTap final : public KeyTap, private QAbstractNativeEventFilter {
public:
    explicit X11KeyTap(xcb_connection_t* connection);
    ~X11KeyTap() override;

    bool start(std::function<void(const MediaKeyEvent&)> onKey) override;
    void stop() override;
    bool running() const override { return running_; }

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    // Grabs every media key with every modifier; false, with some perhaps kept, when one was refused.
    bool grabAll();
    void ungrabAll();

    xcb_connection_t* connection_;
    std::uint32_t root_ = 0;
    std::function<void(const MediaKeyEvent&)> onKey_;
    // Our keycodes and the media key each stands for.
    std::map<std::uint8_t, int> keys_;
    std::set<std::uint8_t> down_;
    bool running_ = false;
};

}  // namespace vantle
