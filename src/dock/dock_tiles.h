#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "dock/command_error.h"
#include "dock/process_runner.h"
#include "dock/tile_record.h"

namespace vantle {

// The Dock's preferences domain and its list of tiles.
inline constexpr std::string_view kDockPreferencesDomain = "com.apple.dock";
inline constexpr std::string_view kPersistentAppsKey = "persistent-apps";

// The arguments of "defaults" that print the whole Dock domain as a property list.
std::vector<std::string> dockExportArguments();

// The error of bytes that should have been a property list (of the expected kind) but are not
// one; description names what could not be read.
CommandError propertyListReadError(std::string description);

// The tile list of an exported Dock domain: the bytes must be a property list (of any format)
// whose root is a dictionary that is not empty, with a "persistent-apps" array in which every
// element is a dictionary. Bytes that are no property list give propertyListReadError with the
// text of "s113"; any other mismatch gives the error `mismatch`.
Expected<std::vector<TileRecord>> tileListFromExport(std::string_view exported, const CommandError& mismatch);

// The Dock's tile list, read on the calling thread through runTool; a list of the wrong shape
// is an error of domain "Dock", code 1, with the text of "s113".
Expected<std::vector<TileRecord>> dockTiles(ProcessRunner& runner);

// The arguments of "defaults" that put the XML property list `value` in "persistent-apps",
// replacing the whole list, or appending to it when appending is true.
std::vector<std::string> dockWriteArguments(std::string xmlValue, bool appending);

}  // namespace vantle
