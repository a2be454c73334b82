#pragma once

#include <vector>

#include "services/workspace.h"

namespace vantle::testing {

// Notes every settings place and address asked for instead of starting anything.
class RecordingWorkspace final : public Workspace {
public:
    bool openSettings(SettingsPlace place) override {
        opened.push_back(place);
        return settingsOpen;
    }
    bool openUrl(const std::string& url) override {
        urls.push_back(url);
        return true;
    }
    bool settingsOpen = true;
    std::vector<SettingsPlace> opened;
    std::vector<std::string> urls;
};

}  // namespace vantle::testing
