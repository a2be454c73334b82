#pragma once

#include <deque>
#include <vector>

#include "keys/keyboard_host.h"

namespace vantle::testing {

// Records what the keyboard handling asks of the application; alerts answer with the button
// the test chose, queued work waits until the test runs it.
class FakeKeyboardHost final : public KeyboardHost {
public:
    void report(const std::string& text) override { reports.push_back(text); }
    void refresh() override { ++refreshes; }
    bool runAlert(const KeyboardAlert& alert) override {
        alerts.push_back(alert);
        return chooseSecondButton;
    }
    bool openKeyboardSettings() override {
        ++settingsOpened;
        return settingsOpen;
    }
    void relaunch() override { ++relaunches; }
    void queue(std::function<void()> work) override { queued.push_back(std::move(work)); }

    void runQueued() {
        while (!queued.empty()) {
            auto work = std::move(queued.front());
            queued.pop_front();
            work();
        }
    }

    bool chooseSecondButton = false;
    bool settingsOpen = true;

    std::vector<std::string> reports;
    std::vector<KeyboardAlert> alerts;
    std::deque<std::function<void()>> queued;
    int refreshes = 0;
    int settingsOpened = 0;
    int relaunches = 0;
};

}  // namespace vantle::testing
