#include "display/desktop_coordinates.h"

#include <cmath>
#include <limits>

namespace vantle {
namespace {

std::optional<int> roundedEdge(double value) {
    if (!std::isfinite(value)) {
        return std::nullopt;
    }
    const double rounded = std::round(value);
    if (rounded < std::numeric_limits<int>::min() || rounded > std::numeric_limits<int>::max()) {
        return std::nullopt;
    }
    return static_cast<int>(rounded);
}

}  // namespace

std::optional<ScreenFrame> roundedFrame(double x, double y, double width, double height) {
    const std::optional<int> left = roundedEdge(x);
    const std::optional<int> top = roundedEdge(y);
    const std::optional<int> right = roundedEdge(x + width);
    const std::optional<int> bottom = roundedEdge(y + height);
    if (!left || !top || !right || !bottom || *right < *left || *bottom < *top) {
        return std::nullopt;
    }
    // The differences fit: both edges are ints and the far one is not before the near one,
    // but their distance may still pass the largest int.
    const long long width64 = static_cast<long long>(*right) - *left;
    const long long height64 = static_cast<long long>(*bottom) - *top;
    if (width64 > std::numeric_limits<int>::max() || height64 > std::numeric_limits<int>::max()) {
        return std::nullopt;
    }
    return ScreenFrame{*left, *top, static_cast<int>(width64), static_cast<int>(height64)};
}

ScreenFrame flippedVertically(const ScreenFrame& frame, int primaryHeight) {
    // Screens lie within a few tens of thousands of points of the origin, so this cannot overflow.
    return ScreenFrame{frame.x, primaryHeight - frame.y - frame.height, frame.width, frame.height};
}

}  // namespace vantle
