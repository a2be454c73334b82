#pragma once

#include <functional>
#include <memory>

#include "ui/appearance_source.h"

namespace vantle {

// The system's light or dark appearance: the global setting "AppleInterfaceStyle", which is
// "Dark" in dark mode and absent otherwise, and the notification the system posts to every
// process when the user switches. Main thread only.
class MacAppearance final : public AppearanceSource {
public:
    // changed, when given, runs on the main thread after each switch of the system's appearance.
    explicit MacAppearance(std::function<void()> changed);
    ~MacAppearance() override;
    MacAppearance(const MacAppearance&) = delete;
    MacAppearance& operator=(const MacAppearance&) = delete;

    bool dark() const override;
    // Sets the look of every window of the program, the toolkit's included, as AppKit draws them.
    void apply(bool dark) override;

private:
    // Holds the notification centre's observation, which only Objective-C++ can keep.
    struct Observation;
    std::unique_ptr<Observation> observation_;
};

}  // namespace vantle
