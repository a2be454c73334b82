#pragma once

#include <compare>
#include <string_view>

namespace vantle {

// Orders two version texts the way people read them, not as plain text: runs of digits compare
// as numbers ("1.10" is newer than "1.9"), and a run of letters marks a pre-release that comes
// before the release it names ("1.0b2" < "1.0rc1" < "1.0"). Separators (".", "-", "_", "+",
// blanks) only split the runs. Missing trailing parts read as zero, so "1.0" equals "1.0.0".
// Letters compare without regard to case.
std::weak_ordering compareVersions(std::string_view left, std::string_view right);

}  // namespace vantle
