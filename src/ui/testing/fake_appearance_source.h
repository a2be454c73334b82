#pragma once

#include <vector>

#include "ui/appearance_source.h"

namespace vantle::testing {

// The system's appearance as the test sets it; records what the windows were given.
class FakeAppearanceSource final : public AppearanceSource {
public:
    bool dark() const override { return systemDark; }
    void apply(bool dark) override { applied.push_back(dark); }

    bool systemDark = false;
    std::vector<bool> applied;
};

}  // namespace vantle::testing
