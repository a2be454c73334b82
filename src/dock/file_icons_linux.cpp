#include "dock/file_icons_linux.h"

#include <fstream>
#include <string>
#include <system_error>

namespace vantle {
namespace {

// Written beside the final name and then renamed over it, so that a file manager never reads
// half an icon.
bool replaceFile(const std::filesystem::path& path, std::string_view bytes) {
    std::filesystem::path temporary = path;
    temporary += ".new";
    {
        std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        file.flush();
        if (!file) {
            std::error_code ignored;
            std::filesystem::remove(temporary, ignored);
            return false;
        }
    }
    std::error_code error;
    std::filesystem::rename(temporary, path, error);
    return !error;
}

}  // namespace

bool DirectoryFileIcons::setIcon(std::string_view image, const std::filesystem::path& target) {
    std::error_code error;
    if (!std::filesystem::is_directory(target, error)) {
        return false;
    }
    const std::filesystem::path icon = std::filesystem::absolute(target, error) / ".icon.png";
    if (error) {
        return false;
    }
    return replaceFile(icon, image) &&
           replaceFile(target / ".directory", "[Desktop Entry]\nIcon=" + icon.string() + "\n");
}

}  // namespace vantle
