#include "services/bundle.h"

#include <system_error>

namespace vantle {

std::optional<std::filesystem::path> Bundle::resource(std::string_view name, std::string_view type) const {
    std::filesystem::path path = resourceDirectory_ / (std::string(name) + "." + std::string(type));
    std::error_code error;
    if (!std::filesystem::exists(path, error)) {
        return std::nullopt;
    }
    return path;
}

std::optional<std::string> Bundle::info(std::string_view key) const {
    if (auto found = info_.find(key); found != info_.end()) {
        return found->second;
    }
    return std::nullopt;
}

}  // namespace vantle
