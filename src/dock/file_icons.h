#pragma once

#include <filesystem>
#include <string_view>

namespace vantle {

// Gives files and folders a custom icon, as the file manager shows them.
class FileIcons {
public:
    virtual ~FileIcons() = default;
    // Sets the PNG image `image` as the icon of the file or folder at target. False when the
    // platform refuses it (the target is missing, or cannot take an icon).
    virtual bool setIcon(std::string_view image, const std::filesystem::path& target) = 0;
};

}  // namespace vantle
