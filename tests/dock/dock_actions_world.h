#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "dock/dock_actions.h"
#include "dock/file_icons_linux.h"
#include "dock/process_runner_linux.h"
#include "dock/testing/main_queue.h"
#include "services/testing/manual_scheduler.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"
#include "stand_in_dock_world.h"
#include "support/temporary_directory.h"

namespace vantle::testing {

// The Dock page's commands wired as the program wires them, against the stand-in Dock: real
// tools, real files, the real folder icons, and results shown on a recording message line.
class DockActionsWorld : public ::testing::Test {
protected:
    explicit DockActionsWorld(const PlistValue::Array& apps = {}) : world(apps) {
        coordinator.setCompleted([this](const DockCoordinator::Result& result) { line.report(dockOutcomeText(result)); });
    }

    DockActions& actions() {
        if (!actions_) {
            actions_ = std::make_unique<DockActions>(DockActions::Services{
                .runner = runner,
                .coordinator = coordinator,
                .defaults = defaults,
                .messageLine = line,
                .bundle = mainBundle(),
                .icons = icons,
                .scheduler = scheduler,
                .applicationSupport = home.path() / "Application Support",
                .interfaceStyle = [this] { return interfaceStyle; },
            });
        }
        return *actions_;
    }

    // Waits for the coordinator's queue to finish and shows its results.
    void settle() {
        coordinator.waitUntilIdle();
        mainQueue.drain();
    }

    StandInDockWorld world;
    TemporaryDirectory home;
    PosixProcessRunner runner{world.toolDirectory()};
    MainQueue mainQueue;
    DockCoordinator coordinator{runner, mainQueue.poster(), skipDockPauses()};
    MemoryDefaultsStore store;
    UserDefaults defaults{store};
    RecordingMessageLine line;
    DirectoryFileIcons icons;
    ManualScheduler scheduler;
    std::optional<std::string> interfaceStyle;
    std::unique_ptr<DockActions> actions_;
};

}  // namespace vantle::testing
