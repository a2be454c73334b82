#pragma once

#include <string>
#include <vector>

#include "services/workspace.h"

namespace vantle {

// Starts the desktop's settings applications as processes of their own, which outlive us.
class DesktopWorkspace final : public Workspace {
public:
    bool openSettings(SettingsPlace place) override;
    bool openUrl(const std::string& url) override;
};

// Starts the first of the commands whose program is on the PATH, detached from this process.
// False when none could be started.
bool startFirstAvailable(const std::vector<std::vector<std::string>>& commands);

}  // namespace vantle
