#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dock/command_error.h"
#include "dock/process_runner.h"
#include "dock/serial_queue.h"
#include "dock/tile_record.h"

namespace vantle {

// Adds tiles to the Dock with a check that the Dock really took them, and restarts the Dock,
// on a work queue of its own so that the interface never waits for the Dock. Every job asked
// runs after the ones asked before it, never beside them; each append ends with exactly one
// result, handed to the interface thread.
class DockCoordinator {
public:
    // Success carries the text to show, failure the error whose text is shown instead.
    using Result = Expected<std::string>;
    using Completion = std::function<void(const Result&)>;
    // Hands a call over to the interface thread, which runs the calls in the order handed over.
    using MainThreadPoster = std::function<void(std::function<void()>)>;
    // Blocks the calling thread for the given time.
    using Sleep = std::function<void(std::chrono::milliseconds)>;

    static constexpr int kAttempts = 3;
    // The Dock takes about a second to come back after it was killed; the second reading
    // catches a Dock that shows a new tile and then drops it while it finishes starting.
    static constexpr std::chrono::milliseconds kFirstReadingPause{1200};
    static constexpr std::chrono::milliseconds kSecondReadingPause{400};

    // The poster must stay callable for the life of the coordinator. Without a sleep the queue
    // really sleeps.
    DockCoordinator(ProcessRunner& runner, MainThreadPoster postToMainThread, Sleep sleep = {});
    // Waits for a job under way to end (so that the Dock is never left frozen) and drops the
    // ones not yet started. Results not yet delivered are never delivered.
    ~DockCoordinator();
    DockCoordinator(const DockCoordinator&) = delete;
    DockCoordinator& operator=(const DockCoordinator&) = delete;

    // What receives each append's result, on the interface thread. Interface thread only.
    void setCompleted(Completion completed);
    const Completion& completed() const { return *completed_; }

    // The Dock's tile list, read through "defaults" with the queue's error rules: a list of
    // the wrong shape is the coordinator's error with the text of "s120". Blocks the caller.
    Expected<std::vector<TileRecord>> tiles();

    // Queues the verified append of tile and returns at once. The result is `message` when the
    // Dock shows the tile after a restart, in two readings in a row; otherwise an error.
    void append(TileRecord tile, std::string message);

    // Queues a restart of the Dock, so that it draws changed icons, and returns at once. The
    // queue then stays busy for as long as the Dock takes to come back, so that a following
    // append waits for it. Reports nothing.
    void refreshAppearance();

    // Blocks until every job asked so far has ended, for instance before the program quits.
    // Not from the interface thread while a test drains it, nor from a job of this queue.
    void waitUntilIdle() { queue_.waitUntilIdle(); }

    const std::string& queueLabel() const { return queue_.label(); }

    // The path a tile points to (see tilePath).
    static std::optional<std::string> path(const TileRecord& tile);

    // How many of tiles are like tile: with the same path when tile has one (tiles without a
    // path never match), else with the same "tile-type" (no type matching only no type).
    static int count(const TileRecord& tile, const std::vector<TileRecord>& tiles);

private:
    Expected<std::string> command(std::string_view tool, const std::vector<std::string>& arguments);
    void performAppend(const TileRecord& tile, const std::string& message);
    void finish(Result result);

    ProcessRunner& runner_;
    MainThreadPoster postToMainThread_;
    Sleep sleep_;
    // Shared with the calls handed to the interface thread, which hold it weakly: a result that
    // arrives after the coordinator is gone finds nothing to call.
    std::shared_ptr<Completion> completed_;
    SerialQueue queue_;  // last, so that its thread ends before the members it uses go
};

}  // namespace vantle
