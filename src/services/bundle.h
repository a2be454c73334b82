#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vantle {

// The program's resources and information keys ("CFBundleVersion", "VantleReleaseVersion",
// "VantleReleaseDate"). On macOS this is the application bundle; elsewhere it is the install
// tree: the resource folder share/vantle-control beside the bin folder of the executable.
class Bundle {
public:
    Bundle(std::filesystem::path resourceDirectory, std::map<std::string, std::string, std::less<>> info)
        : resourceDirectory_(std::move(resourceDirectory)), info_(std::move(info)) {}

    const std::filesystem::path& resourceDirectory() const { return resourceDirectory_; }

    // The path of the resource "name.type" (a file or a folder), or empty when it is absent.
    std::optional<std::filesystem::path> resource(std::string_view name, std::string_view type) const;

    // An information key's value, or empty when the bundle does not have it.
    std::optional<std::string> info(std::string_view key) const;

private:
    std::filesystem::path resourceDirectory_;
    std::map<std::string, std::string, std::less<>> info_;
};

// The running program's own bundle.
const Bundle& mainBundle();

}  // namespace vantle
