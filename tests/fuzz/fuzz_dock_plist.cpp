// Feeds arbitrary bytes to the reading of the Dock's exported preferences, as "defaults export"
// would print them, and every tile of a list that was read to the tile helpers: type, path,
// identity and the count the verified append relies on. The same bytes also go to the URL
// reader as a "_CFURLString" would. Beyond not crashing, a tile must survive its own XML
// writing (the append writes tiles that way), and a file URL made from a path must read back
// to the same path.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "dock/dock_coordinator.h"
#include "dock/dock_tiles.h"
#include "dock/file_url.h"
#include "dock/tile_record.h"
#include "fuzz_check.h"
#include "localization/utf.h"
#include "services/property_list_codec.h"

namespace {

using vantle::PlistValue;
using vantle::TileRecord;
using vantle::fuzz::require;

void checkTiles(const std::vector<TileRecord>& tiles) {
    for (const TileRecord& tile : tiles) {
        require(tile.asDictionary() != nullptr, "every tile read is a dictionary");
        const std::optional<std::string> type = vantle::tileType(tile);
        const std::string identity = vantle::dockIdentity(tile);
        if (type && type->find("spacer") != std::string::npos) {
            require(identity == *type, "a spacer's identity is its type");
        } else {
            require(identity.starts_with(type.value_or("") + "|"), "a tile's identity starts with its type and a bar");
        }
        const std::optional<std::string> path = vantle::tilePath(tile);
        require(path == vantle::DockCoordinator::path(tile), "both path readings agree");
        if (path) {
            require(vantle::isValidUtf8(*path), "a tile path is UTF-8 text");
        }
        require(vantle::DockCoordinator::count(tile, tiles) >= 1, "a tile in the list counts itself");

        const std::optional<PlistValue> reread = vantle::parsePropertyList(vantle::serializePropertyListXml(tile));
        require(reread.has_value(), "a tile written as XML reads back");
        require(vantle::tileType(*reread) == type, "a tile written as XML keeps its type");
        require(vantle::tilePath(*reread) == path, "a tile written as XML keeps its path");
    }
}

void checkUrl(std::string_view text) {
    const std::optional<std::string> path = vantle::urlPath(text);
    if (path) {
        require(path->empty() || vantle::isValidUtf8(*path), "a URL path is UTF-8 text or empty");
    }
    // A file URL made from an absolute path reads back to that path, standardised; doing it
    // again changes nothing more.
    if (!text.starts_with("/") || !vantle::isValidUtf8(text)) {
        return;
    }
    const std::optional<std::string> first = vantle::urlPath(vantle::fileUrlString(text, text.size() % 2 == 0));
    require(first.has_value() && first->starts_with("/"), "a file URL of an absolute path has an absolute path");
    const std::optional<std::string> second = vantle::urlPath(vantle::fileUrlString(*first, false));
    require(second == first, "a standardised path survives a file URL unchanged");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // The error texts are looked up in the running language, which the settings file may name;
    // a settings folder that does not exist keeps the user's own settings out of reach.
    ::setenv("XDG_CONFIG_HOME", "/nonexistent/vantle-fuzz", 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const vantle::CommandError mismatch{"Dock", 1, "mismatch"};
    const vantle::Expected<std::vector<TileRecord>> tiles = vantle::tileListFromExport(bytes, mismatch);
    if (tiles) {
        checkTiles(*tiles);
    } else {
        require(!tiles.error().description.empty(), "a failed reading says why");
    }
    checkUrl(bytes);
    return 0;
}
