#include "display/work_area.h"

#include <algorithm>
#include <limits>

namespace vantle {

std::optional<ScreenFrame> workAreaOf(const std::vector<std::uint32_t>& numbersPerDesktop, std::uint32_t desktop) {
    const std::size_t first = static_cast<std::size_t>(desktop) * 4;
    if (numbersPerDesktop.size() < first + 4) {
        return std::nullopt;
    }
    constexpr std::uint32_t kLargest = static_cast<std::uint32_t>(std::numeric_limits<int>::max());
    for (std::size_t index = first; index < first + 4; ++index) {
        if (numbersPerDesktop[index] > kLargest) {
            return std::nullopt;
        }
    }
    const ScreenFrame area{static_cast<int>(numbersPerDesktop[first]), static_cast<int>(numbersPerDesktop[first + 1]),
                           static_cast<int>(numbersPerDesktop[first + 2]), static_cast<int>(numbersPerDesktop[first + 3])};
    if (area.width <= 0 || area.height <= 0) {
        return std::nullopt;
    }
    return area;
}

std::optional<ScreenFrame> visiblePart(const ScreenFrame& frame, const std::optional<ScreenFrame>& workArea) {
    if (!workArea) {
        return std::nullopt;
    }
    // In 64 bits: a frame near the end of the coordinate range must not wrap round.
    const long long left = std::max<long long>(frame.x, workArea->x);
    const long long top = std::max<long long>(frame.y, workArea->y);
    const long long right = std::min<long long>(static_cast<long long>(frame.x) + frame.width,
                                                static_cast<long long>(workArea->x) + workArea->width);
    const long long bottom = std::min<long long>(static_cast<long long>(frame.y) + frame.height,
                                                 static_cast<long long>(workArea->y) + workArea->height);
    if (right <= left || bottom <= top) {
        return std::nullopt;
    }
    return ScreenFrame{static_cast<int>(left), static_cast<int>(top), static_cast<int>(right - left),
                       static_cast<int>(bottom - top)};
}

}  // namespace vantle
