#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "services/property_list.h"

namespace vantle {

// One entry of the Dock's "persistent-apps" list: a dictionary of which only "tile-type",
// "GUID" and "tile-data" are read here. Every other key the Dock keeps in a record is carried
// through untouched.
using TileRecord = PlistValue;

inline constexpr std::string_view kFileTile = "file-tile";
inline constexpr std::string_view kSpacerTile = "spacer-tile";
inline constexpr std::string_view kSmallSpacerTile = "small-spacer-tile";

// The "tile-type" text of the record, or empty when it has none or it is not text.
std::optional<std::string> tileType(const TileRecord& tile);

// The path the tile points to: "tile-data" / "file-data" / "_CFURLString" read as a URL (see
// urlPath). Empty as soon as one step is missing or has the wrong type, so spacers have none.
std::optional<std::string> tilePath(const TileRecord& tile);

// What tells tiles apart when the Dock's order is compared: a spacer's type alone (spacers of
// one type are interchangeable), otherwise the type, "|" and the GUID's decimal digits, or
// nothing after the bar when the record has no GUID.
std::string dockIdentity(const TileRecord& tile);

// An empty spacer of the given type with its GUID (1 to 4294967295; never 0).
TileRecord spacerTile(std::string_view type, std::uint32_t guid);

// The GUID of a new spacer from a number drawn uniformly from 0 to 4294967294.
std::uint32_t spacerGuid(std::uint32_t drawn);

// A file tile showing the application at urlString (an absolute file URL), labelled label.
// It has no GUID: the Dock gives it one.
TileRecord separatorTile(std::string_view urlString, std::string_view label);

}  // namespace vantle
