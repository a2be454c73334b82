#pragma once

#include <string_view>

namespace vantle {

// The maker's reverse-domain prefix, which begins every identifier the program gives out, and
// the program's own identifier built on it.
inline constexpr std::string_view kMakerReverseDomain = "com.orlend";
inline constexpr std::string_view kApplicationIdentifier = "com.orlend.VantleControl";

}  // namespace vantle
