#pragma once

#include "keys/key_tap.h"

namespace vantle::testing {

// A key tap that another program may hold: start fails while heldElsewhere is set. Tests send
// keys through press().
class FakeKeyTap final : public KeyTap {
public:
    bool start(std::function<void(const MediaKeyEvent&)> onKey) override {
        ++starts;
        if (heldElsewhere) {
            return false;
        }
        onKey_ = std::move(onKey);
        return true;
    }
    void stop() override { onKey_ = nullptr; }
    bool running() const override { return static_cast<bool>(onKey_); }

    void press(const MediaKeyEvent& event) {
        if (onKey_) {
            onKey_(event);
        }
    }

    bool heldElsewhere = false;
    int starts = 0;

private:
    std::function<void(const MediaKeyEvent&)> onKey_;
};

}  // namespace vantle::testing
