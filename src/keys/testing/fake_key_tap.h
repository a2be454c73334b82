#pragma once

#include "keys/key_tap.h"

namespace vantle::testing {

// A key tap that another program may hold: start fails while heldElsewhere is set. The system
// may switch it off (switchedOff), as macOS does to a slow tap; start then switches it on again,
// unless it stays off (staysOff), when it is given up. Tests send keys through press().
class FakeKeyTap final : public KeyTap {
public:
    bool start(std::function<void(const MediaKeyEvent&)> onKey) override {
        ++starts;
        if (installed()) {
            if (staysOff) {
                stop();
                return false;
            }
            switchedOff = false;
            onKey_ = std::move(onKey);
            return true;
        }
        if (heldElsewhere) {
            return false;
        }
        onKey_ = std::move(onKey);
        return true;
    }
    void stop() override {
        onKey_ = nullptr;
        switchedOff = false;
    }
    bool running() const override { return installed() && !switchedOff; }
    bool installed() const override { return static_cast<bool>(onKey_); }

    void press(const MediaKeyEvent& event) {
        if (onKey_) {
            onKey_(event);
        }
    }

    bool heldElsewhere = false;
    bool switchedOff = false;
    bool staysOff = false;
    int starts = 0;

private:
    std::function<void(const MediaKeyEvent&)> onKey_;
};

}  // namespace vantle::testing
