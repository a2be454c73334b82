#pragma once

#include <functional>

#include "app/single_instance.h"

namespace vantle::testing {

// A session held by another copy for a number of claims, or free; the held copy answers a
// request to reopen or not.
class FakeSingleInstance final : public SingleInstance {
public:
    bool claim(std::function<void()> onReopen) override {
        ++claims;
        if (claimsRefused > 0) {
            --claimsRefused;
            return false;
        }
        reopen = std::move(onReopen);
        return true;
    }
    bool askRunningCopyToReopen() const override {
        ++requests;
        return runningCopyAnswers;
    }

    int claimsRefused = 0;
    bool runningCopyAnswers = false;
    int claims = 0;
    mutable int requests = 0;
    std::function<void()> reopen;
};

}  // namespace vantle::testing
