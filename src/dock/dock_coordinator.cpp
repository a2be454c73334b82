#include "dock/dock_coordinator.h"

#include <thread>

#include "dock/dock_tiles.h"
#include "dock/identifiers.h"
#include "dock/tool_commands.h"
#include "localization/localization.h"
#include "services/property_list_codec.h"

namespace vantle {
namespace {

const std::vector<std::string> kFreeze{"-STOP", "Dock"};
const std::vector<std::string> kThaw{"-CONT", "Dock"};
// Killed, the Dock is started again by the system; it is never started from here, and a
// killed Dock needs no thaw even if it was frozen.
const std::vector<std::string> kRestart{"-KILL", "Dock"};

}  // namespace

DockCoordinator::DockCoordinator(ProcessRunner& runner, MainThreadPoster postToMainThread, Sleep sleep)
    : runner_(runner),
      postToMainThread_(std::move(postToMainThread)),
      sleep_(sleep ? std::move(sleep) : Sleep([](std::chrono::milliseconds pause) { std::this_thread::sleep_for(pause); })),
      completed_(std::make_shared<Completion>()),
      queue_(std::string(kApplicationIdentifier) + ".dock") {
    // The queue's thread looks texts up. The language tables are loaded once, on first use;
    // loading them here, on the interface thread, keeps that first use off the queue.
    Localization::selected();
    Localization::english();
}

DockCoordinator::~DockCoordinator() = default;

void DockCoordinator::setCompleted(Completion completed) {
    *completed_ = std::move(completed);
}

Expected<std::vector<TileRecord>> DockCoordinator::tiles() {
    Expected<std::string> exported = command(kDefaultsTool, dockExportArguments());
    if (!exported) {
        return exported.error();
    }
    return tileListFromExport(*exported, dockCoordinatorFailure(L("s120")));
}

void DockCoordinator::append(TileRecord tile, std::string message) {
    queue_.async([this, tile = std::move(tile), message = std::move(message)] { performAppend(tile, message); });
}

void DockCoordinator::refreshAppearance() {
    queue_.async([this] {
        command(kKillallTool, kRestart);
        sleep_(kFirstReadingPause);
    });
}

std::optional<std::string> DockCoordinator::path(const TileRecord& tile) {
    return tilePath(tile);
}

int DockCoordinator::count(const TileRecord& tile, const std::vector<TileRecord>& tiles) {
    int matching = 0;
    if (const std::optional<std::string> wanted = path(tile)) {
        for (const TileRecord& candidate : tiles) {
            matching += path(candidate) == wanted ? 1 : 0;
        }
        return matching;
    }
    const std::optional<std::string> type = tileType(tile);
    for (const TileRecord& candidate : tiles) {
        matching += tileType(candidate) == type ? 1 : 0;
    }
    return matching;
}

Expected<std::string> DockCoordinator::command(std::string_view tool, const std::vector<std::string>& arguments) {
    return runDockCommand(runner_, runner_.tool(tool), arguments);
}

// The Dock is frozen while its list is read and written, so that it cannot write its own copy
// of its preferences over the new entry in between; every way out of a frozen Dock either
// kills it or thaws it.
void DockCoordinator::performAppend(const TileRecord& tile, const std::string& message) {
    // Counted in the first attempt only: once the tile has been written, a later attempt that
    // finds it must not raise the figure and write it a second time.
    std::optional<int> expected;
    int attemptsLeft = kAttempts;
    for (;;) {
        const bool frozen = command(kKillallTool, kFreeze).hasValue();
        const auto failWhileFrozen = [&](const CommandError& error) {
            if (frozen) {
                command(kKillallTool, kThaw);
            }
            finish(error);
        };

        Expected<std::vector<TileRecord>> before = tiles();
        if (!before) {
            return failWhileFrozen(before.error());
        }
        if (!expected) {
            expected = count(tile, *before) + 1;
        }
        if (count(tile, *before) < *expected) {
            Expected<std::string> written =
                command(kDefaultsTool, dockWriteArguments(serializePropertyListXml(tile), true));
            if (!written) {
                return failWhileFrozen(written.error());
            }
        }

        command(kKillallTool, kRestart);
        sleep_(kFirstReadingPause);
        Expected<std::vector<TileRecord>> first = tiles();
        if (!first) {
            return finish(first.error());
        }
        const int firstCount = count(tile, *first);
        sleep_(kSecondReadingPause);
        Expected<std::vector<TileRecord>> second = tiles();
        if (!second) {
            return finish(second.error());
        }
        if (firstCount >= *expected && count(tile, *second) >= *expected) {
            return finish(message);
        }
        if (attemptsLeft-- == 1) {
            return finish(dockCoordinatorFailure(L("s121")));
        }
    }
}

void DockCoordinator::finish(Result result) {
    postToMainThread_([slot = std::weak_ptr<Completion>(completed_), result = std::move(result)] {
        if (const std::shared_ptr<Completion> completed = slot.lock(); completed && *completed) {
            (*completed)(result);
        }
    });
}

}  // namespace vantle
