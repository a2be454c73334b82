#pragma once

#include <string_view>

namespace vantle {

// Whether text contains part when case is ignored by Unicode's full case folding, so that
// "STUDIO DISPLAY", "Studio Display" and "studio display" all match, and so do "STRASSE" and
// "Straße".
bool containsIgnoringCase(std::string_view text, std::string_view part);

}  // namespace vantle
