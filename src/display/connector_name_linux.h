#pragma once

#include <string_view>

namespace vantle {

// The connector part of a DRM connector's name as the kernel gives it ("card0-eDP-1" gives
// "eDP-1"), which is the name RandR uses for the same connector. Any other name is returned as
// it is.
std::string_view withoutCardPrefix(std::string_view drmConnector);

}  // namespace vantle
