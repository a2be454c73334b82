#pragma once

#include <vector>

#include "services/workspace.h"

namespace vantle::testing {

// Notes every settings place asked for instead of starting anything.
class RecordingWorkspace final : public Workspace {
public:
    bool openSettings(SettingsPlace place) override {
        opened.push_back(place);
        return true;
    }
    std::vector<SettingsPlace> opened;
};

}  // namespace vantle::testing
