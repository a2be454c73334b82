#pragma once

#include "dock/file_icons.h"

namespace vantle {

// A folder's custom icon as the desktop's file managers read it: the image inside the folder
// as ".icon.png", named by the "Icon" key of the folder's ".directory" entry. Plain files have
// no place for an icon of their own and are refused.
class DirectoryFileIcons final : public FileIcons {
public:
    bool setIcon(std::string_view image, const std::filesystem::path& target) override;
};

}  // namespace vantle
