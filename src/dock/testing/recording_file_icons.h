#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "dock/file_icons.h"

namespace vantle::testing {

// Remembers every icon given, and refuses them all when told to.
class RecordingFileIcons final : public FileIcons {
public:
    struct Given {
        std::string image;
        std::filesystem::path target;
    };

    bool setIcon(std::string_view image, const std::filesystem::path& target) override {
        if (refuse) {
            return false;
        }
        given.push_back({std::string(image), target});
        return true;
    }

    std::vector<Given> given;
    bool refuse = false;
};

}  // namespace vantle::testing
