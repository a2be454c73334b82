#include "app/relaunch_parent.h"

#include <algorithm>
#include <charconv>

namespace vantle {

std::optional<int> relaunchParent(const std::vector<std::string>& arguments) {
    const auto found = std::find(arguments.begin(), arguments.end(), "--relaunch-parent");
    if (found == arguments.end() || std::next(found) == arguments.end()) {
        return std::nullopt;
    }
    std::string_view text = *std::next(found);
    // from_chars takes a minus but not a plus, and skips nothing: blanks stay errors.
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') {
            return std::nullopt;
        }
    }
    int pid = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), pid);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || pid < 1) {
        return std::nullopt;
    }
    return pid;
}

}  // namespace vantle
