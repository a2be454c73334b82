#include "app/switches.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace vantle {

Mode chooseMode(const std::vector<std::string>& arguments) {
    static constexpr std::array<std::pair<std::string_view, Mode>, 4> kChecks = {{
        {"--verify-localization", Mode::LocalizationCheck},
        {"--diagnose", Mode::Diagnose},
        {"--verify-controls", Mode::VerifyControls},
        {"--verify-osd", Mode::VerifyOsd},
    }};
    for (const auto& [flag, mode] : kChecks) {
        if (std::find(arguments.begin(), arguments.end(), flag) != arguments.end()) {
            return mode;
        }
    }
    return Mode::NormalStart;
}

}  // namespace vantle
