#include "display/connector_name_linux.h"

#include <algorithm>

namespace vantle {

std::string_view withoutCardPrefix(std::string_view drmConnector) {
    if (drmConnector.starts_with("card")) {
        const auto dash = drmConnector.find('-');
        const auto digits = drmConnector.substr(4, dash == std::string_view::npos ? 0 : dash - 4);
        if (!digits.empty() &&
            std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; })) {
            return drmConnector.substr(dash + 1);
        }
    }
    return drmConnector;
}

}  // namespace vantle
