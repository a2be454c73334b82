#include "dock/dock_tiles.h"

#include <optional>

#include "dock/tool_commands.h"
#include "localization/localization.h"
#include "services/property_list_codec.h"

namespace vantle {

std::vector<std::string> dockExportArguments() {
    return {"export", std::string(kDockPreferencesDomain), "-"};
}

CommandError propertyListReadError(std::string description) {
    return {std::string(kPropertyListDomain), kPropertyListCorruptCode, std::move(description)};
}

Expected<std::vector<TileRecord>> tileListFromExport(std::string_view exported, const CommandError& mismatch) {
    std::optional<PlistValue> root = parsePropertyList(exported);
    if (!root) {
        return propertyListReadError(L("s113"));
    }
    // An empty domain is what "defaults" prints for a Dock that has never run; it is no list
    // of tiles, and treating it as an empty one would let a later write replace the user's Dock.
    const PlistValue::Dictionary* domain = root->asDictionary();
    if (domain == nullptr || domain->empty()) {
        return mismatch;
    }
    const auto apps = domain->find(kPersistentAppsKey);
    if (apps == domain->end() || apps->second.asArray() == nullptr) {
        return mismatch;
    }
    std::vector<TileRecord> tiles = *apps->second.asArray();
    for (const TileRecord& tile : tiles) {
        if (tile.asDictionary() == nullptr) {
            return mismatch;
        }
    }
    return tiles;
}

Expected<std::vector<TileRecord>> dockTiles(ProcessRunner& runner) {
    Expected<std::string> exported = runTool(runner, runner.tool(kDefaultsTool), dockExportArguments());
    if (!exported) {
        return exported.error();
    }
    return tileListFromExport(*exported, CommandError{std::string(kDockListDomain), 1, L("s113")});
}

std::vector<std::string> dockWriteArguments(std::string xmlValue, bool appending) {
    std::vector<std::string> arguments{"write", std::string(kDockPreferencesDomain), std::string(kPersistentAppsKey)};
    if (appending) {
        arguments.emplace_back("-array-add");
    }
    arguments.push_back(std::move(xmlValue));
    return arguments;
}

}  // namespace vantle
