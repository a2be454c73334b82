#pragma once

#include <string>

#include "services/workspace.h"

namespace vantle {

// Opens addresses, settings pages and applications through AppKit's workspace, which hands
// them to the program the user chose for their kind. Main thread only.
class MacWorkspace final : public Workspace {
public:
    bool openSettings(SettingsPlace place) override;
    bool openUrl(const std::string& url) override;
};

}  // namespace vantle
