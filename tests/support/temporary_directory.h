#pragma once

#include <filesystem>
#include <string>

namespace vantle::testing {

// A fresh folder under the system's temporary folder, removed with everything in it when the
// object goes away.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

// Writes text to a file, creating its folders.
void writeFile(const std::filesystem::path& path, const std::string& text);
std::string readFile(const std::filesystem::path& path);

}  // namespace vantle::testing
