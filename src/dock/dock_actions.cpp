#include "dock/dock_actions.h"

#include <algorithm>
#include <random>

#include "dock/dock_tiles.h"
#include "dock/file_url.h"
#include "dock/separator_bundle.h"
#include "dock/tool_commands.h"
#include "localization/localization.h"
#include "services/file_contents.h"
#include "services/property_list_codec.h"
#include "services/settings_keys.h"

namespace vantle {
namespace {

std::uint32_t drawFromSystem() {
    std::random_device device;
    std::uniform_int_distribution<std::uint32_t> distribution(0, 4294967294u);
    return distribution(device);
}

bool hasTileAt(const std::vector<TileRecord>& tiles, const std::string& path) {
    return std::any_of(tiles.begin(), tiles.end(), [&](const TileRecord& tile) { return tilePath(tile) == path; });
}

}  // namespace

DockActions::DockActions(Services services) : services_(std::move(services)) {
    if (!services_.drawNumber) {
        services_.drawNumber = drawFromSystem;
    }
    if (!services_.makeUuid) {
        services_.makeUuid = makeUuid;
    }
}

Expected<std::string> DockActions::run(const std::filesystem::path& path, const std::vector<std::string>& arguments) {
    return runTool(services_.runner, path, arguments);
}

Expected<std::vector<TileRecord>> DockActions::dockTiles() {
    return vantle::dockTiles(services_.runner);
}

std::optional<std::string> DockActions::tilePath(const TileRecord& tile) {
    return vantle::tilePath(tile);
}

std::string DockActions::dockIdentity(const TileRecord& tile) {
    return vantle::dockIdentity(tile);
}

std::filesystem::path DockActions::separatorRoot() const {
    return vantle::separatorRoot(services_.applicationSupport);
}

std::string DockActions::separatorTheme() const {
    return vantle::separatorTheme(services_.interfaceStyle ? services_.interfaceStyle() : std::nullopt);
}

void DockActions::addSeparator() {
    if (!services_.dockAvailable) {
        return;
    }
    const std::optional<std::filesystem::path> templatePath = separatorTemplate(services_.bundle);
    if (!templatePath) {
        return report(L("s037"));
    }
    Expected<std::filesystem::path> bundlePath =
        createSeparatorBundle(*templatePath, separatorRoot(), services_.makeUuid());
    if (!bundlePath) {
        return report(L("s043", bundlePath.error().description));
    }
    // An ad-hoc signature: the copy with its new identifier is an application of its own.
    Expected<std::string> signedBundle =
        run(services_.runner.tool(kCodesignTool), {"--force", "--sign", "-", bundlePath->string()});
    if (!signedBundle) {
        return report(L("s043", signedBundle.error().description));
    }
    // A separator without its divider icon would show in the Dock as a generic application;
    // it stays on disk, but it is neither recorded nor added.
    if (!setSeparatorIcon(*bundlePath)) {
        return report(L("s039"));
    }
    TileRecord tile = separatorTile(fileUrlString(bundlePath->string(), true), L("s040"));

    // Recorded before the Dock has taken it, so that a failed append still leaves it known to
    // the redraw and the removal.
    std::vector<std::string> paths = recordedSeparators();
    paths.push_back(bundlePath->string());
    services_.defaults.set(settings::kSeparatorPaths, PlistValue::stringArray(paths));

    report(L("s041"));
    services_.coordinator.append(std::move(tile), L("s042"));
}

bool DockActions::setSeparatorIcon(const std::filesystem::path& path) {
    const std::optional<std::filesystem::path> artwork = separatorArtwork(services_.bundle, separatorTheme());
    if (!artwork) {
        return false;
    }
    const std::optional<std::string> image = readFileContents(*artwork);
    if (!image || !isReadablePng(*image)) {
        return false;
    }
    return services_.icons.setIcon(*image, path);
}

void DockActions::themeChanged() {
    services_.scheduler.after(kAppearanceDelay, [this, alive = std::weak_ptr<bool>(alive_)] {
        if (alive.lock()) {
            redrawSeparators();
        }
    });
}

void DockActions::redrawSeparators() {
    if (services_.followSystemAppearance) {
        services_.followSystemAppearance();
    }
    if (!services_.dockAvailable) {
        return;
    }
    const std::string theme = separatorTheme();
    if (services_.defaults.string(settings::kSeparatorTheme) == theme &&
        services_.defaults.integer(settings::kSeparatorArtworkVersion) == kSeparatorArtworkVersion) {
        return;
    }

    bool changed = false;
    bool failed = false;
    if (const std::vector<std::string> paths = recordedSeparators(); !paths.empty()) {
        // Without the Dock's list no separator counts as shown; nothing is redrawn, and that is
        // no failure.
        Expected<std::vector<TileRecord>> tiles = dockTiles();
        const std::vector<TileRecord> shown = tiles ? std::move(*tiles) : std::vector<TileRecord>{};
        for (const std::string& path : paths) {
            // A separator the user has dragged out of the Dock is left as it is.
            if (!hasTileAt(shown, path)) {
                continue;
            }
            if (setSeparatorIcon(path)) {
                changed = true;
            } else {
                failed = true;
            }
        }
        if (changed) {
            // The Dock keeps the icons it has drawn until it starts again.
            services_.coordinator.refreshAppearance();
        }
    }
    // After a failure the next change of appearance, or the next launch, tries again.
    if (!failed) {
        services_.defaults.set(settings::kSeparatorTheme, PlistValue(theme));
        services_.defaults.set(settings::kSeparatorArtworkVersion, PlistValue(kSeparatorArtworkVersion));
    }
}

void DockActions::spacer(std::string_view type) {
    if (!services_.dockAvailable) {
        return;
    }
    TileRecord tile = spacerTile(type, spacerGuid(services_.drawNumber()));
    report(L("s114"));
    services_.coordinator.append(std::move(tile), L("s115"));
}

void DockActions::smallSpacer() {
    spacer(kSmallSpacerTile);
}

void DockActions::bigSpacer() {
    spacer(kSpacerTile);
}

void DockActions::removeSeparator() {
    if (!services_.dockAvailable) {
        return;
    }
    std::vector<std::string> paths = recordedSeparators();
    Expected<std::vector<TileRecord>> tiles = dockTiles();
    if (!tiles) {
        return report(L("s043", tiles.error().description));
    }
    // The newest separator the Dock still shows; older ones and those already gone stay.
    const auto newest = std::find_if(paths.rbegin(), paths.rend(),
                                     [&](const std::string& path) { return hasTileAt(*tiles, path); });
    if (newest == paths.rend()) {
        return report(L("s044"));
    }
    const std::string removed = *newest;
    std::vector<TileRecord> kept;
    for (const TileRecord& tile : *tiles) {
        if (tilePath(tile) != removed) {
            kept.push_back(tile);
        }
    }
    const std::optional<CommandError> error = rewriteDock(kept, [&] {
        std::erase(paths, removed);
        services_.defaults.set(settings::kSeparatorPaths, PlistValue::stringArray(paths));
    });
    report(error ? L("s043", error->description) : L("s045"));
}

void DockActions::undoSpacer() {
    if (!services_.dockAvailable) {
        return;
    }
    const std::optional<std::vector<std::string>> expectedOrder =
        services_.defaults.stringArray(settings::kDockExpectedOrder);
    if (!expectedOrder || expectedOrder->empty()) {
        return report(L("s116"));
    }
    Expected<std::vector<TileRecord>> tiles = dockTiles();
    if (!tiles) {
        return report(L("s133", tiles.error().description));
    }
    std::vector<std::string> identities;
    std::transform(tiles->begin(), tiles->end(), std::back_inserter(identities),
                   [](const TileRecord& tile) { return vantle::dockIdentity(tile); });
    // Spacers of one type share an identity, so the order only has to match type for type.
    if (tiles->empty() || identities != *expectedOrder ||
        tileType(tiles->back()).value_or("").find("spacer") == std::string::npos) {
        return report(L("s117"));
    }
    tiles->pop_back();
    const std::optional<CommandError> error =
        rewriteDock(*tiles, [&] { services_.defaults.remove(settings::kDockExpectedOrder); });
    report(error ? L("s133", error->description) : L("s118"));
}

std::vector<std::string> DockActions::recordedSeparators() const {
    return services_.defaults.stringArray(settings::kSeparatorPaths).value_or(std::vector<std::string>{});
}

// The removals replace the whole list at once and restart the Dock so that it reads the new
// one. Unlike an append they neither freeze the Dock nor check what it shows afterwards.
std::optional<CommandError> DockActions::rewriteDock(const std::vector<TileRecord>& tiles,
                                                     const std::function<void()>& afterWrite) {
    const std::string xml = serializePropertyListXml(PlistValue(PlistValue::Array(tiles)));
    Expected<std::string> written = run(services_.runner.tool(kDefaultsTool), dockWriteArguments(xml, false));
    if (!written) {
        return written.error();
    }
    afterWrite();
    Expected<std::string> restarted = run(services_.runner.tool(kKillallTool), {"Dock"});
    if (!restarted) {
        return restarted.error();
    }
    return std::nullopt;
}

std::string dockOutcomeText(const DockCoordinator::Result& result) {
    return result ? *result : result.error().description;
}

}  // namespace vantle
