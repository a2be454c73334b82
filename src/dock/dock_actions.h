#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dock/command_error.h"
#include "dock/dock_coordinator.h"
#include "dock/file_icons.h"
#include "dock/process_runner.h"
#include "dock/tile_record.h"
#include "services/bundle.h"
#include "services/message_line.h"
#include "services/scheduler.h"
#include "services/user_defaults.h"

namespace vantle {

// The commands of the settings window's Dock page and the separators' response to a change of
// appearance. They run on the interface thread and block it while the tools run; only the
// append of a new tile and the Dock restart after new artwork go to the coordinator's queue.
// Every outcome is a line of text on the message line.
class DockActions {
public:
    struct Services {
        ProcessRunner& runner;
        DockCoordinator& coordinator;
        UserDefaults& defaults;
        MessageLine& messageLine;
        const Bundle& bundle;  // the template and the artwork
        FileIcons& icons;
        Scheduler& scheduler;  // the delay between a change of appearance and the redraw
        // The user's folder of application data; the separators live in a folder inside it.
        std::filesystem::path applicationSupport;
        // The desktop's interface style, "Dark" in dark mode and empty otherwise; read afresh
        // each time the theme is needed.
        std::function<std::optional<std::string>()> interfaceStyle;
        // Lets the program's own windows follow the appearance; the first step of the redraw.
        std::function<void()> followSystemAppearance = {};
        // A number drawn uniformly from 0 to 4294967294, for a spacer's GUID. Defaults to the
        // system's random source.
        std::function<std::uint32_t()> drawNumber = {};
        // A fresh upper-case UUID text for a new separator's folder. Defaults to makeUuid.
        std::function<std::string()> makeUuid = {};
        // Whether there is a Dock at all (see dockAvailable). Without one every command does
        // nothing and the redraw only lets the windows follow the appearance, so that no tool
        // that is not there is ever started.
        bool dockAvailable = true;
    };

    // The redraw runs this long after the desktop announced a new appearance.
    static constexpr std::chrono::milliseconds kAppearanceDelay{400};

    explicit DockActions(Services services);
    DockActions(const DockActions&) = delete;
    DockActions& operator=(const DockActions&) = delete;

    // Runs a system tool and returns its standard output (see runTool).
    Expected<std::string> run(const std::filesystem::path& path, const std::vector<std::string>& arguments);
    // The Dock's tile list, read now (see dockTiles).
    Expected<std::vector<TileRecord>> dockTiles();
    static std::optional<std::string> tilePath(const TileRecord& tile);
    static std::string dockIdentity(const TileRecord& tile);

    std::filesystem::path separatorRoot() const;
    // "Dark" or "Light", from the interface style now.
    std::string separatorTheme() const;

    // Makes a new separator application, signs it, gives it the theme's icon, records it and
    // asks the coordinator to add it to the Dock; the coordinator's result replaces the
    // progress message later.
    void addSeparator();
    // Gives the file or folder at path the separator artwork of the current theme. False when
    // the artwork is missing, is not a readable image, or the icon is refused.
    bool setSeparatorIcon(const std::filesystem::path& path);
    // Schedules redrawSeparators after kAppearanceDelay; it does not run if this object is gone
    // by then.
    void themeChanged();
    // Lets the windows follow the appearance, then redraws the icons of the recorded
    // separators that are still in the Dock with the current theme's artwork, unless they were
    // last drawn in this theme with the current artwork version, and restarts the Dock once
    // when an icon changed. The theme and version are stored only when nothing failed.
    void redrawSeparators();

    // Asks the coordinator to add a spacer of the given tile type.
    void spacer(std::string_view type);
    void smallSpacer();
    void bigSpacer();
    // Takes the newest recorded separator that the Dock still shows out of the Dock (every
    // tile of it) and out of the record, then restarts the Dock. Its files stay on disk.
    void removeSeparator();
    // Takes the Dock's last tile away when it is a spacer and the Dock shows exactly the order
    // recorded under "dockExpectedOrder"; without that record it refuses.
    void undoSpacer();

private:
    std::vector<std::string> recordedSeparators() const;
    // Replaces the Dock's whole tile list and restarts the Dock.
    std::optional<CommandError> rewriteDock(const std::vector<TileRecord>& tiles,
                                            const std::function<void()>& afterWrite);
    void report(const std::string& text) { services_.messageLine.report(text); }

    Services services_;
    // Held weakly by the delayed redraw, which must not run on a destroyed object.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

// The text a finished append shows: the message of a success or the error's description.
std::string dockOutcomeText(const DockCoordinator::Result& result);

}  // namespace vantle
