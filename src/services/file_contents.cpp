#include "services/file_contents.h"

#include <cstdio>
#include <memory>

namespace vantle {

std::optional<std::string> readFileContents(const std::filesystem::path& path) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
    if (!file) {
        return std::nullopt;
    }
    std::string contents;
    char buffer[16384];
    std::size_t count = 0;
    while ((count = std::fread(buffer, 1, sizeof buffer, file.get())) > 0) {
        contents.append(buffer, count);
    }
    if (std::ferror(file.get()) != 0) {
        return std::nullopt;
    }
    return contents;
}

}  // namespace vantle
