#include <system_error>

#include "services/build_info.h"
#include "services/bundle.h"

namespace vantle {
namespace {

// The executable lives in <prefix>/bin and its resources in <prefix>/share/vantle-control,
// both when installed and in a build tree, which has the same shape.
std::filesystem::path findResourceDirectory() {
    std::error_code error;
    const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) {
        return {};
    }
    return executable.parent_path().parent_path() / "share" / "vantle-control";
}

}  // namespace

const Bundle& mainBundle() {
    static const Bundle bundle(findResourceDirectory(),
                               {{"CFBundleVersion", kBuildNumber},
                                {"VantleReleaseVersion", kReleaseVersion},
                                {"VantleReleaseDate", kReleaseDate}});
    return bundle;
}

}  // namespace vantle
