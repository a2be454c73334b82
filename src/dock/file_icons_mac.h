#pragma once

#include "dock/file_icons.h"

namespace vantle {

// A file's or folder's custom icon as the Finder and the Dock show it, set through the
// workspace, which makes every size the Finder needs from the one image.
class WorkspaceFileIcons final : public FileIcons {
public:
    bool setIcon(std::string_view image, const std::filesystem::path& target) override;
};

}  // namespace vantle
