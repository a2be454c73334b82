#pragma once

#include <cstdint>
#include <functional>

namespace vantle {

// A display's own brightness control, as a getter and a setter that answer with a status
// (0 for success). Either may be absent: a platform or a display without native control.
// The getter's level is 0..1 when it succeeds; a non-finite level counts as no answer.
struct NativeBrightnessFunctions {
    std::function<std::int32_t(std::uint32_t display, float* level)> get;
    std::function<std::int32_t(std::uint32_t display, float level)> set;
};

}  // namespace vantle
