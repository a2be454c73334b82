#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vantle {

// The whole content of a file, or empty when it cannot be opened or read (a folder, a missing
// or unreadable file). Never throws.
std::optional<std::string> readFileContents(const std::filesystem::path& path);

}  // namespace vantle
